#include "unit/Common/ServiceUnderTest.hpp"

#include <unistd.h>

namespace {
/// What setgid(0) answers; the process's own group stays as it is.
int setgidResult = 0;
std::vector<gid_t> setgidCalls;
} // namespace

extern "C" int setgid(gid_t gid) noexcept {
    setgidCalls.push_back(gid);
    return setgidResult;
}

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct StateRow {
    unsigned int state;
    bool withCommonStates;
    bool withoutCommonStates;
};

void PrintTo(const StateRow& row, std::ostream* out) {
    *out << "state " << row.state;
}

class ServiceStateWritten : public ServiceOnPlatform, public ::testing::WithParamInterface<StateRow> {
protected:
    std::vector<std::string> written() {
        sut.SetServiceStateRad(GetParam().state);
        return platform.takeTrace();
    }
    std::vector<std::string> expected(bool isWritten) const {
        return isWritten ? std::vector<std::string>{state(GetParam().state)} : std::vector<std::string>{};
    }
};

TEST_P(ServiceStateWritten, DependsOnStateAndSwitch) {
    EXPECT_EQ(written(), expected(GetParam().withCommonStates));
    sut.SetUseCommonServiceState(0);
    EXPECT_EQ(written(), expected(GetParam().withoutCommonStates));
    sut.SetUseCommonServiceState(2);
    EXPECT_EQ(written(), expected(GetParam().withCommonStates));
}

INSTANTIATE_TEST_SUITE_P(Rows, ServiceStateWritten,
                         ::testing::Values(StateRow{0, true, false}, StateRow{1, true, false}, StateRow{2, true, false},
                                           StateRow{3, true, false}, StateRow{4, true, false}, StateRow{5, true, false},
                                           StateRow{6, false, false}, StateRow{7, true, true}, StateRow{8, true, true},
                                           StateRow{4096, true, true}, StateRow{0xFFFFFFFF, true, true}));

class ServiceState : public ServiceOnPlatform {};

TEST_F(ServiceState, IsReadFromItsParameter) {
    platform.answers.radValue = 0xFFFFFFFF;
    EXPECT_EQ(sut.GetServiceStateRad(), 0xFFFFFFFFU);
    EXPECT_THAT(platform.takeTrace(), ElementsAre(call("AaConfigRadGetValue", "0x22000C")));
}

TEST_F(ServiceState, IsWrittenByTheFlagOperationSoThatAFailureIsLogged) {
    platform.answers.radSetValue = 5;
    sut.SetServiceStateRad(7);
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre(state(7), log(4, "SetFlagValue: failed to set flag 2228236 to 7 (reason 5)")));
}

class ServiceFlag : public ServiceOnPlatform {};

TEST_F(ServiceFlag, IsSet) {
    sut.SetFlagValue(0x20000, 60);
    EXPECT_THAT(platform.takeTrace(), ElementsAre(call("AaConfigRadSetValue", "0x20000", "60")));
}

TEST_F(ServiceFlag, ThatCannotBeSetIsLoggedWithNumbersOfFullRange) {
    platform.answers.radSetValue = -1;
    sut.SetFlagValue(0xFFFFFFFF, 0x80000000);
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(log(4, "SetFlagValue: failed to set flag 4294967295 to 2147483648 (reason 4294967295)")));
}

class ServiceAddress : public ServiceOnPlatform {};

TEST_F(ServiceAddress, IsTheAssignedCpidOnTheOwnNode) {
    sut.InitEu();
    platform.takeTrace();
    EXPECT_EQ(sut.GetSicad(), 0x01231234U);
    EXPECT_THAT(platform.takeTrace(), ElementsAre(call("AaSysComSicadGet", "0x1234", "0x123")));
}

TEST_F(ServiceAddress, IsOnNode0F01WhileTheNodeHasNoId) {
    platform.answers.ownNid = 0;
    sut.InitEu();
    EXPECT_EQ(sut.GetSicad(), 0x0F011234U);
}

TEST_F(ServiceAddress, HasCpid0BeforeTheRegistration) {
    EXPECT_EQ(sut.GetSicad(), 0x01230000U);
}

class ServiceRootPrivileges : public ServiceOnPlatform {
protected:
    ServiceRootPrivileges() { setgidCalls.clear(); }
};

TEST_F(ServiceRootPrivileges, TakenAreADebugLine) {
    setgidResult = 0;
    sut.SetRootPrivileges();
    EXPECT_THAT(setgidCalls, ElementsAre(0U));
    EXPECT_THAT(platform.takeTrace(), ElementsAre(log(1, "setgid for root access rights successful")));
}

TEST_F(ServiceRootPrivileges, RefusedAreAnErrorLine) {
    setgidResult = -1;
    sut.SetRootPrivileges();
    EXPECT_THAT(setgidCalls, ElementsAre(0U));
    EXPECT_THAT(platform.takeTrace(), ElementsAre(log(4, "setgid for root access rights failed")));
}

TEST_F(ServiceRootPrivileges, AreNotTakenByTheFrameworkItself) {
    sut.onInit = [this] { sut.Terminate(); };
    platform.receives(nullptr);
    EXPECT_TRUE(sut.CreateAndStartEu());
    sut.Shutdown();
    EXPECT_THAT(setgidCalls, IsEmpty());
}

/// The hooks as they are when nobody overrides them.
class PlainService : public Service {
public:
    PlainService() : Service("Plain", 1, ERadHwapi_LED, ERadHwapiState_LedState) {}
    using Service::Exit;
    using Service::Init;
    using Service::PingWatchdog;
    using Service::PreStartup;
};

TEST(ServiceWithoutOverrides, HasHooksThatDoNothing) {
    ServicePlatform platform;
    PlainService sut;
    platform.takeTrace();
    EXPECT_TRUE(sut.PreStartup());
    sut.Init();
    sut.PingWatchdog();
    sut.HandleConfigTagChange("tag", 1);
    EXPECT_THAT(platform.takeTrace(), IsEmpty());
}

TEST(ServiceWithoutOverrides, ExitsByDeregistering) {
    ServicePlatform platform;
    PlainService sut;
    platform.takeTrace();
    sut.Exit();
    EXPECT_THAT(platform.takeTrace(), ElementsAre(call("AaSysComUserDeregister", "0x0")));
}

} // namespace
} // namespace mox::testing
