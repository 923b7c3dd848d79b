#include "unit/Common/ServiceUnderTest.hpp"

#include <mox/HwapiAssert.hpp>

#include <pthread.h>

#include <stdexcept>

namespace mox::testing {
namespace {

using ::testing::_;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::MatchesRegex;
using ::testing::Not;

class ServiceMainEu : public ServiceOnPlatform {
protected:
    /// Runs the main EU to its end; what creating it notes is dropped.
    bool run() {
        const bool result = sut.CreateAndStartEu();
        trace = platform.takeTrace();
        trace.erase(trace.begin(), trace.begin() + 2);
        return result;
    }

    std::vector<std::string> trace;
    TestMessage first{0x0601};
    TestMessage second{0x0602};
};

TEST_F(ServiceMainEu, WritesState2BeforeEveryPassAndState3BeforeEveryDelegate) {
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601}));
    sut.AddMsgDelegate(
        std::make_unique<TestDelegate>(platform, std::uint16_t{0x0602}, [this](void*) { sut.Terminate(); }));
    platform.receives(&first);
    platform.receives(nullptr);
    platform.receives(&second);
    EXPECT_TRUE(run());
    EXPECT_THAT(trace, ElementsAre(state(1), call("AaSysComEuUserRegister", "0x1234"), "Init()",
                                   log(2, "Service initialized ( 0x01234 )"),                               //
                                   state(2), "AaSysComMsgReceive(-1, 0)", state(3), "HandleMessage(0x601)", //
                                   "AaSysComMsgDestroy(0x601)", state(2), "AaSysComMsgReceive(-1, 0)",      //
                                   state(2), "AaSysComMsgReceive(-1, 0)", state(3), "HandleMessage(0x602)", //
                                   "AaSysComMsgDestroy(0x602)", state(4)));
}

TEST_F(ServiceMainEu, TerminatedBeforeTheFirstMessageStillHandlesOne) {
    sut.Terminate();
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601}));
    platform.receives(&first);
    EXPECT_TRUE(run());
    EXPECT_THAT(trace, Contains("HandleMessage(0x601)"));
}

struct RegistrationRow {
    const char* situation;
    std::uint16_t requested;
    std::uint16_t assigned;
    const char* failure; ///< empty: it succeeds
    const char* logged;
};

void PrintTo(const RegistrationRow& row, std::ostream* out) {
    *out << row.situation;
}

class ServiceRegistration : public ::testing::TestWithParam<RegistrationRow> {};

TEST_P(ServiceRegistration, SucceedsOnlyWithAFittingCpid) {
    const RegistrationRow& row = GetParam();
    ServicePlatform platform;
    platform.answers.userRegister = [&row](std::uint16_t) { return row.assigned; };
    ServiceUnderTest sut(platform, row.requested);
    platform.takeTrace();
    if (*row.failure == '\0') {
        sut.InitEu();
        EXPECT_THAT(platform.takeTrace(), ElementsAre(call("AaSysComEuUserRegister", hex(row.requested)), "Init()",
                                                      logLine(2, ledFeature, row.logged)));
        return;
    }
    try {
        sut.InitEu();
        FAIL() << "no exception";
    } catch (const Service::InitFailedException& failure) {
        EXPECT_EQ(failure.getDescription(), row.failure);
        EXPECT_EQ(failure.getFile(), "Common/src/Service");
        EXPECT_GT(failure.getLine(), 0U);
    }
    EXPECT_THAT(platform.takeTrace(), ElementsAre(call("AaSysComEuUserRegister", hex(row.requested))));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ServiceRegistration,
    ::testing::Values(RegistrationRow{"static", 0x1234, 0x1234, "", "Service initialized ( 0x01234 )"},
                      RegistrationRow{"dynamic", 0, 0x8001, "", "Service initialized ( 0x08001 )"},
                      RegistrationRow{"one digit", 0x7, 0x7, "", "Service initialized ( 0x07 )"},
                      RegistrationRow{"none dynamic", 0, 0, "Failed to register dynamic CPID", ""},
                      RegistrationRow{"static taken", 0x1234, 0, "Failed to register static CPID", ""},
                      RegistrationRow{"another static", 0x1234, 0x1235, "Failed to register static CPID", ""}));

TEST_F(ServiceMainEu, WithoutRegistrationFailsBeforeInit) {
    platform.answers.userRegister = [](std::uint16_t) { return std::uint16_t{0}; };
    EXPECT_FALSE(run());
    ASSERT_EQ(trace.size(), 5U);
    EXPECT_EQ(trace[0], state(1));
    EXPECT_EQ(trace[1], call("AaSysComEuUserRegister", "0x1234"));
    EXPECT_THAT(trace[2], MatchesRegex("log 4 0x2002A Initialization failed : Failed to register static CPID "
                                       "\\(file: Common/src/Service, line: [0-9]+\\)"));
    EXPECT_EQ(trace[3], state(5));
    EXPECT_EQ(trace[4], log(4, "Led main EU died unexpectedly"));
}

TEST_F(ServiceMainEu, ThatThrowsInitFailedLogsItAndFails) {
    sut.onInit = [] { throw Service::InitFailedException("no fans", "Led/src/Led", 17); };
    EXPECT_FALSE(run());
    EXPECT_THAT(trace, ElementsAre(state(1), _, "Init()",
                                   log(4, "Initialization failed : no fans (file: Led/src/Led, line: 17)"), state(5),
                                   log(4, "Led main EU died unexpectedly")));
}

TEST_F(ServiceMainEu, ThatThrowsRuntimeErrorLogsItAndFails) {
    sut.onInit = [] { throw Service::RuntimeException("stuck", "Led/src/Led", 2147483647U); };
    EXPECT_FALSE(run());
    EXPECT_THAT(trace, Contains(log(4, "Runtime error : stuck (file: Led/src/Led, line: 2147483647)")));
    EXPECT_THAT(trace, Contains(state(5)));
}

struct UnexpectedRow {
    const char* what;
    std::function<void()> raise;
};

void PrintTo(const UnexpectedRow& row, std::ostream* out) {
    *out << row.what;
}

class ServiceMainEuFailure : public ServiceMainEu, public ::testing::WithParamInterface<UnexpectedRow> {};

TEST_P(ServiceMainEuFailure, OutsideTheTwoKnownKindsIsLoggedAsUnexpected) {
    sut.onInit = GetParam().raise;
    EXPECT_FALSE(run());
    ASSERT_GE(trace.size(), 3U);
    trace.erase(trace.begin(), trace.begin() + 3);
    EXPECT_THAT(trace, ElementsAre(MatchesRegex("log 4 0x2002A Unexpected exception in Common/src/Service:[1-9][0-9]*"),
                                   state(5), log(4, "Led main EU died unexpectedly")));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ServiceMainEuFailure,
    ::testing::Values(UnexpectedRow{"a number", [] { throw 42; }},
                      UnexpectedRow{"a standard exception", [] { throw std::logic_error("x"); }},
                      UnexpectedRow{"an assertion", [] { throw ps::hwapi::common::AssertionException(); }},
                      UnexpectedRow{"another kind of the family",
                                    [] { throw ps::hwapi::common::CHwapiException("kind", "x", "file", 1); }}));

TEST_F(ServiceMainEu, WhoseDelegateFailsEndsWithTheRuntimeError) {
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601},
                                                      [](void*) { throw std::runtime_error("broken"); }));
    platform.receives(&first);
    platform.receives(&second);
    EXPECT_FALSE(run());
    trace.erase(trace.begin(), trace.begin() + 4);
    EXPECT_THAT(trace, ElementsAre(state(2), "AaSysComMsgReceive(-1, 0)", state(3), "HandleMessage(0x601)",
                                   log(4, "Message handling failed 0x0601"), "AaSysComMsgDestroy(0x601)",
                                   MatchesRegex("log 4 0x2002A Runtime error : std::exception in Run\\(\\) "
                                                "\\(file: Common/src/Service, line: [0-9]+\\)"),
                                   state(5), log(4, "Led main EU died unexpectedly")));
}

TEST_F(ServiceMainEu, GoesOnAfterAnUnknownMessage) {
    sut.AddMsgDelegate(
        std::make_unique<TestDelegate>(platform, std::uint16_t{0x0602}, [this](void*) { sut.Terminate(); }));
    platform.receives(&first);
    platform.receives(&second);
    EXPECT_TRUE(run());
    EXPECT_THAT(trace, Contains("HandleMessage(0x602)"));
}

/// Overrides what the main EU calls.
class OverridingService : public ServiceUnderTest {
public:
    explicit OverridingService(ServicePlatform& platform) : ServiceUnderTest(platform), m_platform(platform) {}
    void InitEu() override { m_platform.note("InitEu()"); }
    bool Run() override {
        m_platform.note("Run()");
        return --passes > 0;
    }
    void SetServiceStateRad(unsigned int state) override { m_platform.note("state " + std::to_string(state)); }
    int passes = 2;

private:
    ServicePlatform& m_platform;
};

TEST(ServiceMainEuOfADerivedService, CallsItsOverrides) {
    ServicePlatform platform;
    OverridingService sut(platform);
    platform.takeTrace();
    EXPECT_TRUE(sut.CreateAndStartEu());
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre(_, _, "state 1", "InitEu()", "state 2", "Run()", "state 2", "Run()", "state 4"));
}

/// Notes its main EU's success flag with each state.
class WatchedService : public ServiceUnderTest {
public:
    using ServiceUnderTest::ServiceUnderTest;
    void SetServiceStateRad(unsigned int state) override { seen.emplace_back(state, success); }
    int success = 0;
    std::vector<std::pair<unsigned int, int>> seen;
};

TEST(ServiceMainEuOfADerivedService, SetsItsSuccessFlagBeforeState4) {
    ServicePlatform platform;
    platform.answers.euRuns = false;
    WatchedService sut(platform);
    ASSERT_FALSE(sut.CreateAndStartEu());
    sut.Terminate();
    platform.receives(nullptr);
    void* block = &sut.success;
    EXPECT_EQ(platform.euEntry(&block), nullptr);
    EXPECT_THAT(sut.seen, ElementsAre(std::pair(1U, 0), std::pair(2U, 0), std::pair(4U, 1)));
}

/// Cannot tell one of its states.
class SpeechlessService : public ServiceUnderTest {
public:
    SpeechlessService(ServicePlatform& platform, unsigned int state) : ServiceUnderTest(platform), m_state(state) {}
    void SetServiceStateRad(unsigned int state) override {
        if (state == m_state) {
            throw RuntimeException("speechless", "Led/src/Led", 4);
        }
    }

private:
    const unsigned int m_state;
};

TEST(ServiceMainEuOfADerivedService, ThatFailsAtTheVeryBeginningHasFailed) {
    ServicePlatform platform;
    SpeechlessService sut(platform, 1);
    EXPECT_FALSE(sut.CreateAndStartEu());
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(logLine(4, ledFeature, "Runtime error : speechless (file: Led/src/Led, line: 4)"),
                            logLine(4, ledFeature, "Led main EU died unexpectedly")));
}

TEST(ServiceMainEuOfADerivedService, ThatFailsAtTheVeryEndHasFailed) {
    ServicePlatform platform;
    SpeechlessService sut(platform, 4);
    sut.onInit = [&sut] { sut.Terminate(); };
    platform.receives(nullptr);
    EXPECT_FALSE(sut.CreateAndStartEu());
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(_, logLine(4, ledFeature, "Runtime error : speechless (file: Led/src/Led, line: 4)"),
                            logLine(4, ledFeature, "Led main EU died unexpectedly")));
}

void* cancelMainEu(void* argument) {
    auto& entryAndBlock = *static_cast<std::pair<TAaProEuEntry, void*>*>(argument);
    return entryAndBlock.first(&entryAndBlock.second);
}

TEST_F(ServiceMainEu, LetsTheUnwindingOfACancelledThreadThrough) {
    platform.answers.euRuns = false;
    ASSERT_FALSE(sut.CreateAndStartEu());
    platform.takeTrace();
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601}, [](void*) {
        pthread_cancel(pthread_self());
        pthread_testcancel();
    }));
    platform.receives(&first);
    int success = 5;
    std::pair<TAaProEuEntry, void*> entryAndBlock{platform.euEntry, &success};
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, nullptr, &cancelMainEu, &entryAndBlock), 0);
    void* result = nullptr;
    ASSERT_EQ(pthread_join(thread, &result), 0);
    EXPECT_EQ(result, PTHREAD_CANCELED);
    EXPECT_EQ(success, 5) << "neither success nor failure";
    const std::vector<std::string> noted = platform.takeTrace();
    EXPECT_THAT(noted, Not(Contains(state(5))));
    EXPECT_THAT(noted, Not(Contains(::testing::StartsWith("log 4"))));
    EXPECT_EQ(noted.back(), "AaSysComMsgDestroy(0x601)");
}

} // namespace
} // namespace mox::testing
