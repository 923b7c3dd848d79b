#include "abi/CommonHeaders.h"

#include "unit/Common/ServicePlatform.hpp"

#include <gmock/gmock.h>

namespace mox::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

TEST(CommonFunctionsCalledFromC, Receive) {
    ServicePlatform platform;
    platform.receives(nullptr);
    platform.receives(nullptr);
    const std::uint16_t filter[] = {0};
    EXPECT_EQ(receiveFromC(-1, 3), nullptr);
    EXPECT_EQ(receiveSelectivelyFromC(7, filter), nullptr);
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre("AaSysComMsgReceive(-1, 3)",
                            call("AaSysComMsgReceiveSelective", "7", hex(reinterpret_cast<std::uintptr_t>(filter)))));
}

TEST(CommonFunctionsCalledFromC, StartTheExecutionEnvironment) {
    ServicePlatform platform;
    EXPECT_EQ(startFromC("Led"), 1);
    EXPECT_THAT(platform.takeTrace(), Contains(call("AaConfigTagSetString", "pal.service.aapro.eename", "Led")));
}

TEST(CommonFunctionsCalledFromC, InitialiseLogAndParameters) {
    ServicePlatform platform;
    initialiseFromC();
    EXPECT_THAT(platform.takeTrace(),
                ::testing::IsSupersetOf({call("AaConfigTagGetU32", "pal.service.aasyslog.hwapi.startuplog.size", "0"),
                                         call("AaConfigRadSetMaxTagCount", "2", "0x20106"),
                                         call("AaConfigRadSetMaxTagCount", "34", "0x220035")}));
}

} // namespace
} // namespace mox::testing
