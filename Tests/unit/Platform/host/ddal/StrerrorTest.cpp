#include "host/ddal/Ddal.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <set>
#include <string>

namespace {

constexpr int knownCodes[] = {DDAL_OK,
                              DDAL_NOT_FOUND,
                              DDAL_IO_ERROR,
                              DDAL_BAD_HANDLE,
                              DDAL_NO_RESOURCE,
                              DDAL_BUSY,
                              DDAL_ALREADY_EXISTS,
                              DDAL_NO_DEVICE,
                              DDAL_INVALID_PARAMETER,
                              DDAL_NO_SPACE,
                              DDAL_NOT_SUPPORTED,
                              DDAL_TIMEOUT};

std::string textOf(int code) {
    char text[63] = {};
    return mox::host::ddal_strerror(code, text, sizeof text);
}

TEST(ResultText, DiffersForEachKnownCode) {
    std::set<std::string> texts;
    for (const int code : knownCodes) {
        EXPECT_NE(textOf(code), "") << code;
        EXPECT_NE(textOf(code), "unknown error") << code;
        texts.insert(textOf(code));
    }
    EXPECT_EQ(texts.size(), std::size(knownCodes));
}

TEST(ResultText, SaysSoForAnUnknownCode) {
    EXPECT_EQ(textOf(1), "unknown error");
    EXPECT_EQ(textOf(-4711), "unknown error");
}

TEST(ResultText, IsCutToTheSizeAndTerminated) {
    char text[] = "........";
    EXPECT_EQ(mox::host::ddal_strerror(DDAL_ALREADY_EXISTS, text, 5), text);
    EXPECT_EQ(std::memcmp(text, "alre\0...", 8), 0);
}

TEST(ResultText, FillsABufferOfExactlyItsLength) {
    char text[] = "........";
    mox::host::ddal_strerror(DDAL_OK, text, 8);
    EXPECT_STREQ(text, "success");
}

TEST(ResultText, LeavesABufferWithoutRoomUntouched) {
    char text[] = "x";
    EXPECT_EQ(mox::host::ddal_strerror(DDAL_OK, text, 0), text);
    EXPECT_STREQ(text, "x");
    EXPECT_EQ(mox::host::ddal_strerror(DDAL_OK, nullptr, 10), nullptr);
}

} // namespace
