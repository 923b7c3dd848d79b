#include "mock/FunctionTable.hpp"

#include <pal/AaSem.h>

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using namespace mox::mock;
using testing::Contains;
using testing::HasSubstr;

TEST(FunctionTable, HasEveryFamily) {
    const auto names = functionNames();
    for (const char* name : {"AaConfigTagGet", "AaSysComMsgSend", "AaSysLogPrint", "AaSysLogPrintE", "AaGpuXmlParse",
                             "AaTrblFileRegister", "ddal_boot_update_uboot", "ddal_watchdog_reboot"})
        EXPECT_THAT(names, Contains(name));
}

TEST(FunctionTable, CountsCallsWhateverTheyAnswer) {
    const auto before = callCount("AaSemPost");
    const auto beforeAll = callCount();
    EXPECT_EQ(AaSemPost(nullptr), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(AaSemPost(nullptr), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(callCount("AaSemPost"), before + 2);
    EXPECT_EQ(callCount(), beforeAll + 2);
}

TEST(FunctionTable, KeepsTheArgumentsOfTheNewestCall) {
    TAaSem sem = nullptr;
    ASSERT_EQ(AaSemCreateC(&sem, 7), EAaSemRetVal_NoError);
    EXPECT_EQ(lastCall("AaSemCreateC").at(0), reinterpret_cast<std::uintptr_t>(&sem));
    EXPECT_EQ(lastCall("AaSemCreateC").at(1), 7U);
    EXPECT_EQ(AaSemDestroy(sem), EAaSemRetVal_NoError);
}

TEST(FunctionTable, RefusesAnUnknownNameWithTheNearestOne) {
    try {
        callCount("AaSemCreate");
        FAIL() << "an unknown name was accepted";
    } catch (const std::invalid_argument& refused) {
        EXPECT_THAT(refused.what(), HasSubstr("no function \"AaSemCreate\""));
        EXPECT_THAT(refused.what(), HasSubstr("did you mean \"AaSemCreateC\"?"));
    }
}

} // namespace
