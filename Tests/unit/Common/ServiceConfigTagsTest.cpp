#include "unit/Common/ServiceUnderTest.hpp"

#include <cstdint>

namespace mox::testing {
namespace {

using ::testing::_;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A service that notes the changes that it is told.
class ObservingService : public ServiceUnderTest {
public:
    explicit ObservingService(ServicePlatform& platform) : ServiceUnderTest(platform), m_platform(platform) {}
    void HandleConfigTagChange(const std::string& tag, unsigned int value) override {
        m_platform.note(tag + " = " + std::to_string(value));
    }

private:
    ServicePlatform& m_platform;
};

class ConfigTagObservation : public ::testing::Test {
protected:
    ConfigTagObservation() {
        EXPECT_CALL(platform.config, AaConfigTagRegister(_, _))
            .WillRepeatedly([this](const char* tag, TAaConfigTagCb callback) {
                platform.note(call("AaConfigTagRegister", tag));
                observer = callback;
                return platform.answers.tagRegister;
            });
        platform.takeTrace();
    }
    ~ConfigTagObservation() override { sut.UnSetObservedTag("a.b"); }

    std::string log(int level, const std::string& text) const { return logLine(level, ledFeature, text); }

    ServicePlatform platform;
    ObservingService sut{platform};
    TAaConfigTagCb observer = nullptr;
    const std::uint32_t value = 0x80000001;
};

TEST_F(ConfigTagObservation, RegistersTheTag) {
    sut.SetObservedTag("a.b");
    EXPECT_THAT(platform.takeTrace(), ElementsAre(call("AaConfigTagRegister", "a.b")));
}

TEST_F(ConfigTagObservation, TellsTheServiceOfEveryPublication) {
    sut.SetObservedTag("a.b");
    platform.takeTrace();
    observer("a.b", &value, sizeof value);
    observer("a.b", &value, sizeof value);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("a.b = 2147483649", "a.b = 2147483649"));
}

TEST_F(ConfigTagObservation, DoesNotLookAtTheLength) {
    sut.SetObservedTag("a.b");
    platform.takeTrace();
    observer("a.b", &value, 0);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("a.b = 2147483649"));
}

TEST_F(ConfigTagObservation, IgnoresOtherTagsAndMissingValues) {
    sut.SetObservedTag("a.b");
    platform.takeTrace();
    observer("a.c", &value, sizeof value);
    observer("a.b", nullptr, 0);
    EXPECT_THAT(platform.takeTrace(), IsEmpty());
}

TEST_F(ConfigTagObservation, OfAnObservedTagIsLoggedAndRegistersOnce) {
    sut.SetObservedTag("a.b");
    sut.SetObservedTag("a.b");
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre(call("AaConfigTagRegister", "a.b"), log(4, "SetObservedTag: tag 'a.b' already observed")));
}

TEST_F(ConfigTagObservation, ThatCannotBeRegisteredIsLoggedAndStaysObserved) {
    platform.answers.tagRegister = 4;
    sut.SetObservedTag("a.b");
    sut.SetObservedTag("a.b");
    EXPECT_THAT(platform.takeLog(), ElementsAre(log(4, "RegisterTag: Failed to register tag 'a.b' (reason 4)"),
                                                log(4, "SetObservedTag: tag 'a.b' already observed")));
}

TEST_F(ConfigTagObservation, AddedDirectlyRegistersEachTime) {
    sut.AddNewObservedTag("a.b");
    sut.AddNewObservedTag("a.b");
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre(call("AaConfigTagRegister", "a.b"), call("AaConfigTagRegister", "a.b")));
}

TEST_F(ConfigTagObservation, EndsByUnregistering) {
    sut.SetObservedTag("a.b");
    platform.takeTrace();
    EXPECT_CALL(platform.config, AaConfigTagUnregister(::testing::StrEq("a.b"), observer))
        .WillOnce(::testing::Return(0));
    sut.UnSetObservedTag("a.b");
    EXPECT_THAT(platform.takeLog(), IsEmpty());
    observer("a.b", &value, sizeof value);
    EXPECT_THAT(platform.takeTrace(), IsEmpty());
}

TEST_F(ConfigTagObservation, ThatCannotBeUnregisteredIsLoggedAndEnds) {
    sut.SetObservedTag("a.b");
    platform.takeTrace();
    platform.answers.tagUnregister = 1;
    sut.UnSetObservedTag("a.b");
    sut.UnSetObservedTag("a.b");
    EXPECT_THAT(platform.takeTrace(), ElementsAre(call("AaConfigTagUnregister", "a.b"),
                                                  log(4, "UnSetObservedTag: Failed to unregister tag 'a.b' (reason 1)"),
                                                  log(4, "UnSetObservedTag: tag 'a.b' not found")));
}

TEST_F(ConfigTagObservation, OfATagThatIsNotObservedCannotEnd) {
    sut.UnSetObservedTag("x.y");
    EXPECT_THAT(platform.takeTrace(), ElementsAre(log(4, "UnSetObservedTag: tag 'x.y' not found")));
}

TEST_F(ConfigTagObservation, IsForTheServiceObjectBuiltLast) {
    sut.SetObservedTag("a.b");
    const ObservingService second(platform);
    platform.takeTrace();
    observer("a.b", &value, sizeof value);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("a.b = 2147483649"));
}

/// Semaphores that note their use and let nobody wait.
class ConfigTagWait : public ::testing::Test {
protected:
    ConfigTagWait() {
        ON_CALL(platform.sem, AaSemReMutexTake(_)).WillByDefault([this](TAaSemReMutex) {
            platform.note("take");
            return EAaSemRetVal_NoError;
        });
        ON_CALL(platform.sem, AaSemReMutexRelease(_)).WillByDefault([this](TAaSemReMutex) {
            platform.note("release");
            return EAaSemRetVal_NoError;
        });
        ON_CALL(platform.sem, AaSemCreateC(_, _)).WillByDefault([this](TAaSem* sem, std::uint32_t count) {
            *sem = handle(++m_created);
            platform.note("create " + name(*sem) + " with " + std::to_string(count));
            return EAaSemRetVal_NoError;
        });
        ON_CALL(platform.sem, AaSemPost(_)).WillByDefault([this](TAaSem sem) {
            platform.note("post " + name(sem));
            return EAaSemRetVal_NoError;
        });
        ON_CALL(platform.sem, AaSemWait(_)).WillByDefault([this](TAaSem sem) {
            platform.note("wait " + name(sem));
            whileWaiting();
            return EAaSemRetVal_NoError;
        });
        ON_CALL(platform.sem, AaSemDestroy(_)).WillByDefault([this](TAaSem sem) {
            platform.note("destroy " + name(sem));
            return EAaSemRetVal_NoError;
        });
        ON_CALL(platform.config, AaConfigTagRegister(_, _))
            .WillByDefault([this](const char* tag, TAaConfigTagCb callback) {
                platform.note(call("AaConfigTagRegister", tag));
                observer = callback;
                return platform.answers.tagRegister;
            });
        platform.takeTrace();
    }

    static TAaSem handle(std::uintptr_t number) { return reinterpret_cast<TAaSem>(number); }
    static std::string name(TAaSem sem) { return std::to_string(reinterpret_cast<std::uintptr_t>(sem)); }
    void publish(const char* tag, std::uint32_t value) { observer(tag, &value, sizeof value); }
    /// The platform forgets a registration when the process ends; the double is told.
    ~ConfigTagWait() override { AaConfigTagUnregister("a.b", observer); }

    ServicePlatform platform;
    ServiceUnderTest sut{platform};
    TAaConfigTagCb observer = nullptr;
    std::function<void()> whileWaiting = [] {};

private:
    std::uintptr_t m_created = 0;
};

TEST_F(ConfigTagWait, RegistersUnderTheMutexAndWaitsOutsideIt) {
    whileWaiting = [this] { publish("a.b", 1); };
    sut.WaitForConfigTag("a.b", 1);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("create 1 with 0", "take", call("AaConfigTagRegister", "a.b"),
                                                  "release", "wait 1", "take", "post 1", "release", "destroy 1"));
}

TEST_F(ConfigTagWait, ReleasesAllWaitersOfTheValueInTheirOrder) {
    whileWaiting = [this] {
        whileWaiting = [this] { publish("a.b", 7); };
        sut.WaitForConfigTag("a.b", 7);
    };
    sut.WaitForConfigTag("a.b", 7);
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre("create 1 with 0", "take", call("AaConfigTagRegister", "a.b"), "release", "wait 1",
                            "create 2 with 0", "take", call("AaConfigTagRegister", "a.b"), "release", "wait 2", "take",
                            "post 1", "post 2", "release", "destroy 2", "destroy 1"));
}

TEST_F(ConfigTagWait, IsNotEndedByAnotherValueWhichIsLogged) {
    whileWaiting = [this] {
        publish("a.b", 4294967295U);
        publish("a.b", 1);
    };
    sut.WaitForConfigTag("a.b", 1);
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(logLine(3, 0, "PostConfigTagSemaphores: key 'a.b_4294967295' not found")));
}

TEST_F(ConfigTagWait, IsNotEndedByAValueOfAnotherLengthWhichIsLogged) {
    const std::uint64_t value = 1;
    for (const unsigned int length : {0U, 3U, 5U, 8U}) {
        whileWaiting = [&] {
            observer("a.b", &value, length);
            EXPECT_THAT(platform.takeTrace(), Contains(logLine(3, 0,
                                                               "WaitForConfigTagObserver: invalid length length " +
                                                                   std::to_string(length) + " for 'a.b'")));
            publish("a.b", 1);
        };
        sut.WaitForConfigTag("a.b", 1);
        EXPECT_THAT(platform.takeLog(), IsEmpty());
    }
}

TEST_F(ConfigTagWait, LeavesLaterPublicationsWithoutAWaiter) {
    whileWaiting = [this] { publish("a.b", 1); };
    sut.WaitForConfigTag("a.b", 1);
    platform.takeTrace();
    publish("a.b", 1);
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre("take", logLine(3, 0, "PostConfigTagSemaphores: key 'a.b_1' not found"), "release"));
}

TEST_F(ConfigTagWait, WhoseRegistrationFailsIsLoggedAndStillWaits) {
    platform.answers.tagRegister = 2;
    whileWaiting = [this] { publish("a.b", 1); };
    sut.WaitForConfigTag("a.b", 1);
    EXPECT_THAT(platform.takeTrace(),
                ::testing::IsSupersetOf({logLine(4, ledFeature, "RegisterTag: Failed to register tag 'a.b' (reason 2)"),
                                         std::string("wait 1")}));
}

TEST_F(ConfigTagWait, WithoutASemaphoreHandsANullHandleOnAndReturns) {
    EXPECT_CALL(platform.sem, AaSemCreateC(_, 0)).WillOnce(::testing::Return(EAaSemRetVal_OutOfResources));
    EXPECT_CALL(platform.sem, AaSemWait(nullptr)).WillOnce(::testing::Return(EAaSemRetVal_InvalidValue));
    EXPECT_CALL(platform.sem, AaSemDestroy(nullptr)).WillOnce(::testing::Return(EAaSemRetVal_InvalidValue));
    sut.WaitForConfigTag("a.b", 1);
    platform.takeTrace();
    publish("a.b", 1);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("take", "post 0", "release"));
}

} // namespace
} // namespace mox::testing
