#include <mox/Board.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace mox::testing {
namespace {

struct Row {
    std::uint32_t moduleVersion;
    const char* code;
    const char* shown;
};

TEST(DisplayProductCode, IsTheOneThatTheModuleIsSoldUnder) {
    const Row rows[] = {
        {6, "511001A", "611001A"},    {43, "511002A", "611002A"},      {43, "511003A", "611002A"},
        {43, "511004A", "611002A"},   {27, "511005A", "611003A"},      {6, "511001A.102", "611001A"},
        {43, "511003AXY", "611002A"}, {27, "511005A.1234", "611003A"},
    };
    for (const Row& row : rows) {
        char text[32] = {};
        EXPECT_EQ(ApiGetModuleDisplayProductCodeEx(row.moduleVersion, row.code, text, 32), text);
        EXPECT_STREQ(text, row.shown) << "for version " << row.moduleVersion << " and " << row.code;
    }
}

TEST(DisplayProductCode, IsElseTheOneBurntIn) {
    const Row rows[] = {
        {6, "511002A", ""},  {6, "511005A", ""},  {43, "511001A", ""}, {43, "511005A", ""},   {27, "511001A", ""},
        {27, "511004A", ""}, {44, "511002A", ""}, {64, "511001A", ""}, {0, "511001A", ""},    {6, "511001B", ""},
        {6, "511001", ""},   {6, "X511001A", ""}, {6, "", ""},         {43, "511002B.7", ""}, {6, "611001A", ""},
    };
    for (const Row& row : rows) {
        char text[32] = "-";
        EXPECT_EQ(ApiGetModuleDisplayProductCodeEx(row.moduleVersion, row.code, text, 32), text);
        EXPECT_STREQ(text, row.code) << "for version " << row.moduleVersion;
    }
}

TEST(DisplayProductCode, GoesByAModulesVersionForEveryVersion) {
    for (std::uint32_t version = 0; version < 256; ++version) {
        char text[16] = {};
        ApiGetModuleDisplayProductCodeEx(version, "511001A", text, 16);
        EXPECT_STREQ(text, version == 6 ? "611001A" : "511001A") << "for version " << version;
        ApiGetModuleDisplayProductCodeEx(version, "511003A", text, 16);
        EXPECT_STREQ(text, version == 43 ? "611002A" : "511003A") << "for version " << version;
        ApiGetModuleDisplayProductCodeEx(version, "511005A", text, 16);
        EXPECT_STREQ(text, version == 27 ? "611003A" : "511005A") << "for version " << version;
    }
}

TEST(DisplayProductCode, IsCutWithoutATerminatorAndFilledUpWithZeros) {
    for (const std::uint32_t version : {6U, 7U}) {
        const std::string shown = version == 6 ? "611001A" : "511001A";
        char text[12] = "-----------";
        ApiGetModuleDisplayProductCodeEx(version, "511001A", text, 0);
        EXPECT_EQ(std::string(text, 12), std::string("-----------\0", 12));
        ApiGetModuleDisplayProductCodeEx(version, "511001A", text, 7);
        EXPECT_EQ(std::string(text, 12), shown + std::string("----\0", 5));
        ApiGetModuleDisplayProductCodeEx(version, "511001A", text, 10);
        EXPECT_EQ(std::string(text, 12), shown + std::string("\0\0\0-\0", 5));
    }
}

} // namespace
} // namespace mox::testing
