#include "host/ddal/VersionMarker.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace {

using mox::host::VersionMarker;

constexpr std::uint32_t greatest = 0xFFFFFFFF;

std::optional<std::uint32_t> versionIn(const std::string& image, std::size_t piece = 65536) {
    VersionMarker sut;
    for (std::size_t at = 0; at < image.size(); at += piece)
        sut.take(image.substr(at, piece));
    return sut.version();
}

TEST(VersionMarker, IsReadAsStrtoulReadsIt) {
    EXPECT_EQ(versionIn("MOX-SW-VERSION:258"), 258u);
    EXPECT_EQ(versionIn("MOX-SW-VERSION:0x0102"), 258u);
    EXPECT_EQ(versionIn("MOX-SW-VERSION:0X0102"), 258u);
    EXPECT_EQ(versionIn("MOX-SW-VERSION:0402"), 258u);
    EXPECT_EQ(versionIn("MOX-SW-VERSION: 258 and more"), 258u);
    EXPECT_EQ(versionIn("MOX-SW-VERSION:4294967295"), greatest);
    EXPECT_EQ(versionIn("MOX-SW-VERSION:4294967296"), greatest);
    EXPECT_EQ(versionIn("MOX-SW-VERSION:" + std::string(100, '9')), greatest);
    EXPECT_EQ(versionIn("MOX-SW-VERSION:x"), 0u);
    EXPECT_EQ(versionIn("MOX-SW-VERSION:"), 0u);
}

TEST(VersionMarker, IsNoneWithoutItsWholeText) {
    EXPECT_FALSE(versionIn(""));
    EXPECT_FALSE(versionIn("MOX-SW-VERSION"));
    EXPECT_FALSE(versionIn("mox-sw-version:258"));
    EXPECT_FALSE(versionIn(std::string(100000, 'M')));
}

TEST(VersionMarker, CountsWhereItStandsFirst) {
    EXPECT_EQ(versionIn("MOX-SW-MOX-SW-VERSION:1MOX-SW-VERSION:2"), 1u);
}

TEST(VersionMarker, IsFoundWhateverThePiecesAre) {
    const std::string image = std::string(70000, '\0') + "MOX-SW-VERSION:258\nMOX-SW-VERSION:3" + std::string(99, '9');
    for (const std::size_t piece : {1U, 2U, 3U, 7U, 14U, 15U, 16U, 17U, 100U, 65536U, 200000U})
        EXPECT_EQ(versionIn(image, piece), 258u) << piece;
}

TEST(VersionMarker, IsFoundAtTheVeryEndOfAnImage) {
    EXPECT_EQ(versionIn(std::string(1000, 'x') + "MOX-SW-VERSION:7"), 7u);
}

} // namespace
