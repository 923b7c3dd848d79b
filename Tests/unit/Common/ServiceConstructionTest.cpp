#include "unit/Common/ServiceUnderTest.hpp"

#include <memory>
#include <type_traits>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;

static_assert(std::is_abstract_v<ps::hwapi::common::AbstractService>);
static_assert(std::has_virtual_destructor_v<ps::hwapi::common::AbstractService>);

TEST(ServiceConstruction, CreatesTheMutexOfTheWaitingMapAndNothingElse) {
    ServicePlatform platform;
    const ServiceUnderTest sut(platform);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("AaSemReMutexCreate()"));
}

TEST(ServiceConstruction, MakesTheObjectTheOneThatGetAnswers) {
    ServicePlatform platform;
    const ServiceUnderTest first(platform);
    EXPECT_EQ(Service::Get(), &first);
}

TEST(ServiceConstruction, OfASecondObjectReplacesTheFirstSilently) {
    ServicePlatform platform;
    const ServiceUnderTest first(platform);
    const ServiceUnderTest second(platform);
    EXPECT_EQ(Service::Get(), &second);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("AaSemReMutexCreate()")) << "one mutex for both, and no line";
}

TEST(ServiceConstruction, KeepsNameAndIds) {
    ServicePlatform platform;
    const ServiceUnderTest sut(platform);
    EXPECT_EQ(sut.GetName(), "Led");
    EXPECT_EQ(sut.GetRadId(), ERadHwapi_LED);
}

TEST(ServiceConstruction, WithoutParserMakesTheUsualOne) {
    ServicePlatform platform;
    ServiceUnderTest sut(platform);
    EXPECT_EQ(sut.GetArgumentParser().ReadArgument("help"), "arg off");
}

TEST(ServiceConstruction, WithAParserUsesIt) {
    ServicePlatform platform;
    auto parser = std::make_unique<ps::hwapi::common::ArgParser>();
    const ps::hwapi::common::ArgParserBase* const given = parser.get();
    ServiceUnderTest sut(platform, ledCpid, std::move(parser));
    EXPECT_EQ(&sut.GetArgumentParser(), given);
}

/// Two interfaces of a service share the one AbstractService below them.
class Fans : public virtual ps::hwapi::common::AbstractService {};
class FanService : public Service, public Fans {
public:
    FanService() : Service("Fan", 1, ERadHwapi_LED, ERadHwapiState_LedState) {}
};

TEST(ServiceConstruction, CombinesWithFurtherInterfacesOfTheSameBase) {
    ServicePlatform platform;
    FanService sut;
    EXPECT_EQ(static_cast<Fans&>(sut).GetRadId(), ERadHwapi_LED);
}

/// A parser that notes its end.
class NotingParser : public ps::hwapi::common::ArgParser {
public:
    explicit NotingParser(ServicePlatform& platform) : m_platform(platform) {}
    ~NotingParser() override { m_platform.note("~NotingParser()"); }

private:
    ServicePlatform& m_platform;
};

TEST(ServiceDestruction, WritesState4ThenMutexThenParserThenDelegates) {
    ServicePlatform platform;
    {
        ServiceUnderTest sut(platform, ledCpid, std::make_unique<NotingParser>(platform));
        sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{2}));
        sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{1}));
        platform.takeTrace();
    }
    std::vector<std::string> trace = platform.takeTrace();
    ASSERT_EQ(trace.size(), 5U);
    EXPECT_THAT(std::vector<std::string>(trace.begin() + 3, trace.end()),
                ::testing::UnorderedElementsAre("~TestDelegate(0x1)", "~TestDelegate(0x2)"));
    trace.resize(3);
    EXPECT_THAT(trace, ElementsAre(stateWritten(ledState, 4), "AaSemReMutexDestroy()", "~NotingParser()"));
}

TEST(ServiceDestruction, LeavesAMutexAloneThatWasNotCreated) {
    ServicePlatform platform;
    EXPECT_CALL(platform.sem, AaSemReMutexCreate(::testing::_)).WillOnce([](TAaSemReMutex* mutex) {
        *mutex = nullptr;
        return EAaSemRetVal_OutOfResources;
    });
    EXPECT_CALL(platform.sem, AaSemReMutexDestroy(::testing::_)).Times(0);
    { const ServiceUnderTest sut(platform); }
    EXPECT_THAT(platform.takeTrace(), ElementsAre(stateWritten(ledState, 4)));
}

TEST(ServiceDestruction, WithTheCommonStatesSwitchedOffWritesNoState) {
    ServicePlatform platform;
    {
        ServiceUnderTest sut(platform);
        sut.SetUseCommonServiceState(0);
        platform.takeTrace();
    }
    EXPECT_THAT(platform.takeTrace(), ElementsAre("AaSemReMutexDestroy()"));
}

/// Writes its states elsewhere, too.
class TalkativeService : public ServiceUnderTest {
public:
    using ServiceUnderTest::ServiceUnderTest;
    void SetServiceStateRad(unsigned int state) override { Service::SetServiceStateRad(state + 3); }
};

TEST(ServiceDestruction, NoLongerSeesAnOverrideOfTheState) {
    ServicePlatform platform;
    { const TalkativeService sut(platform); }
    EXPECT_THAT(platform.takeCalls("AaConfigRadSetValue"), ElementsAre(stateWritten(ledState, 4)));
}

} // namespace
} // namespace mox::testing
