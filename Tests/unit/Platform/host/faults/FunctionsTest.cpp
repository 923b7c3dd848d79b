#include "support/Files.hpp"

#include <gmock/gmock.h>
#include <host/faults/Functions.hpp>

#include <filesystem>
#include <fstream>
#include <ostream>
#include <regex>

namespace mox::host::faults {
namespace {

using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

const Function& function(const char* name) {
    const Function* found = findFunction(name);
    if (found == nullptr)
        throw std::runtime_error(name);
    return *found;
}

TEST(FunctionsLike, BeginWithTheNearest) {
    EXPECT_EQ(functionsLike("ddal_fpga_updat_mod", 3).front(), "ddal_fpga_update_mod");
    EXPECT_EQ(functionsLike("aasyscommsgsend", 3).front(), "AaSysComMsgSend");
    EXPECT_THAT(functionsLike("fpga", 2),
                ElementsAre("ddal_cpri_axc_fpga_airframe_set", "ddal_fpga_get_active_version"));
}

TEST(FunctionsLike, AreAtLeastOne) {
    EXPECT_EQ(functionsLike("", 3).size(), 1U);
    EXPECT_EQ(functionsLike("completely different from every name of the platform", 3).size(), 1U);
}

struct ResultRow {
    const char* function;
    const char* text;
    std::optional<std::int64_t> result;
};

void PrintTo(const ResultRow& row, std::ostream* stream) {
    *stream << row.function << " " << row.text;
}

class ResultOfAFault : public ::testing::TestWithParam<ResultRow> {};

TEST_P(ResultOfAFault, IsCheckedAgainstWhatTheFunctionAnswers) {
    const ResultRow& row = GetParam();
    std::string why;
    const auto result = parseResult(function(row.function), row.text, why);
    ASSERT_EQ(result.has_value(), row.result.has_value()) << why;
    EXPECT_EQ(why.empty(), row.result.has_value()) << why;
    if (row.result)
        EXPECT_EQ(*result, static_cast<std::uint64_t>(*row.result));
    else
        EXPECT_THAT(why, HasSubstr(std::string(row.function) + ": expected "));
}

INSTANTIATE_TEST_SUITE_P(
    Functions, ResultOfAFault,
    ::testing::Values(
        ResultRow{"ddal_fpga_update_mod", "-5", -5}, ResultRow{"ddal_fpga_update_mod", "0x10", 16},
        ResultRow{"ddal_fpga_update_mod", "DDAL_IO_ERROR", -5},
        ResultRow{"ddal_fpga_update_mod", "-2147483648", INT32_MIN},
        ResultRow{"ddal_fpga_update_mod", "-2147483649", {}}, ResultRow{"ddal_fpga_update_mod", "2147483648", {}},
        ResultRow{"ddal_fpga_update_mod", "EAaFileRetVal_Error", {}}, ResultRow{"ddal_fpga_update_mod", "null", {}},
        ResultRow{"ddal_fpga_update_mod", "", {}}, ResultRow{"ddal_fpga_update_mod", "-", {}},
        ResultRow{"ddal_fpga_update_mod", "5x", {}}, ResultRow{"AaSemCreateC", "EAaSemRetVal_OutOfResources", 3},
        ResultRow{"AaSemCreateC", "3", 3}, ResultRow{"AaSemCreateC", "6", {}}, ResultRow{"AaSemCreateC", "-1", {}},
        ResultRow{"AaSemCreateC", "EAaSysComRetVal_Error", {}},
        ResultRow{"AaSysComMsgSend", "EAaSysComRetVal_NoReceiver", 4},
        ResultRow{"AaUtcTimeGet", "EAaSysTimeRetVal_Error", 3},
        ResultRow{"AaSysTimermCreate", "EAaSysTimerRetVal_OutOfResources", 3},
        ResultRow{"AaSysTimermCreate", "EAaSysTimeRetVal_Error", {}}, ResultRow{"AaConfigTagIsSet", "1", 1},
        ResultRow{"AaConfigTagIsSet", "EAaConfigRetVal_NotFound", {}},
        ResultRow{"AaSysComEuUserRegister", "65535", 65535}, ResultRow{"AaSysComEuUserRegister", "65536", {}},
        ResultRow{"AaSysComEuUserRegister", "-1", {}}, ResultRow{"AaFileGetSize", "-9223372036854775808", INT64_MIN},
        ResultRow{"AaTicks64Get", "0xFFFFFFFFFFFFFFFF", -1}, ResultRow{"AaMemMalloc", "null", 0},
        ResultRow{"AaMemMalloc", "0", {}}, ResultRow{"AaMemRef", "0", {}}, ResultRow{"AaMemRef", "", {}}));

TEST(ExpectedResult, IsNamed) {
    std::string why;
    parseResult(function("ddal_fpga_update_mod"), "x", why);
    EXPECT_EQ(why, "ddal_fpga_update_mod: expected a number that fits int, or a name such as DDAL_IO_ERROR, got 'x'");
    parseResult(function("AaSemWait"), "x", why);
    EXPECT_EQ(why, "AaSemWait: expected one of EAaSemRetVal, by name or number, got 'x'");
    parseResult(function("AaMemMalloc"), "x", why);
    EXPECT_EQ(why, "AaMemMalloc: expected null, got 'x'");
    parseResult(function("AaMemUnRef"), "x", why);
    EXPECT_EQ(why, "AaMemUnRef: expected no value, since it answers nothing, got 'x'");
    parseResult(function("AaFileExists"), "x", why);
    EXPECT_EQ(why, "AaFileExists: expected a number that fits int, got 'x'");
}

TEST(ShownResult, IsANumberAndItsName) {
    const auto minusFive = static_cast<std::uint64_t>(std::int64_t{-5});
    EXPECT_EQ(showResult(function("ddal_fpga_update_mod"), minusFive), "-5");
    EXPECT_EQ(nameOfResult(function("ddal_fpga_update_mod"), minusFive), "DDAL_IO_ERROR");
    EXPECT_EQ(nameOfResult(function("ddal_fpga_update_mod"), 77), "");
    EXPECT_EQ(showResult(function("AaTicks64Get"), UINT64_MAX), "18446744073709551615");
    EXPECT_EQ(showResult(function("AaMemMalloc"), 0), "null");
    EXPECT_EQ(showResult(function("AaMemRef"), 0), "");
}

/// What the header's enumerations of results hold is what their names stand for.
TEST(NamesOfResults, AreThoseOfThePlatformsHeaders) {
    const std::regex enumeration(R"(typedef enum (EAa\w*RetVal) \{([^}]*)\})");
    const std::regex enumerator(R"(\b(\w+_\w+) = (\d+))");
    unsigned count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(MOX_PAL_HEADERS)) {
        const std::string text = contentOf(entry.path());
        for (std::sregex_iterator found(text.begin(), text.end(), enumeration), end; found != end; ++found) {
            const std::string body = (*found)[2];
            for (std::sregex_iterator row(body.begin(), body.end(), enumerator); row != end; ++row, ++count) {
                const ResultName* name = findResultName((*found)[1].str(), std::string_view((*row)[1].str()));
                ASSERT_NE(name, nullptr) << (*row)[1];
                EXPECT_EQ(name->value, std::stoll((*row)[2]));
            }
        }
    }
    EXPECT_GT(count, 70U);
}

TEST(Functions, TellWhichOfThemCanBeStuckOrGarbled) {
    EXPECT_TRUE(function("AaConfigTagGet").handsOut);
    EXPECT_FALSE(function("AaConfigTagGet").canGarble);
    EXPECT_TRUE(function("AaSemCreateC").handsOut);
    EXPECT_TRUE(function("AaFileOpen").handsOut);
    EXPECT_TRUE(function("AaSysComMsgReceive").handsOut);
    EXPECT_FALSE(function("AaSysComMsgReceive").canGarble);
    EXPECT_TRUE(function("ddal_strerror").canGarble);
    EXPECT_TRUE(function("ddal_boot_get_uboot_version").canGarble);
    EXPECT_TRUE(function("AaFileRead").canGarble);
    EXPECT_FALSE(function("AaFileWrite").canGarble);
    EXPECT_FALSE(function("AaFileFreeListDirArray").canGarble);
    EXPECT_FALSE(function("AaSemWait").canGarble);
    EXPECT_FALSE(function("AaSysLogVPrint").canGarble);
    EXPECT_FALSE(function("AaSysLogPrintE").canGarble);
    EXPECT_FALSE(function("ddal_sysinfo_set_uint").canGarble);
}

TEST(Functions, TellWhichOfThemRead) {
    for (const char* name : {"ddal_fpga_get_active_version", "ddal_unit_get_board", "AaTicks64Get", "AaFileExists",
                             "AaSysComMsgGetPayloadSize", "ddal_sysinfo_get_data"})
        EXPECT_TRUE(isReading(function(name))) << name;
    for (const char* name :
         {"ddal_fpga_update_mod", "AaSemWait", "AaMemUnRef", "AaSysComMsgSend", "AaConfigTagSetString"})
        EXPECT_FALSE(isReading(function(name))) << name;
}

} // namespace
} // namespace mox::host::faults
