#include "unit/Common/ServiceUnderTest.hpp"

#include <mox/InvalidParameterException.hpp>

#include <stdexcept>

namespace mox::testing {
namespace {

using ps::hwapi::common::MsgDelegateBase;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ServiceDelegates : public ServiceOnPlatform {
protected:
    std::unique_ptr<TestDelegate> delegate(std::uint16_t id, const char* name = "") {
        return std::make_unique<TestDelegate>(platform, id, [this, name](void*) { platform.note(name); });
    }
    void handle(std::uint16_t id) {
        TestMessage message{id};
        platform.receives(&message);
        sut.HandleMessages();
    }
    bool isHandled(std::uint16_t id) {
        handle(id);
        return platform.takeLog().empty();
    }
};

TEST_F(ServiceDelegates, HaveTheirId) {
    const TestDelegate sutDelegate(platform, 0xFFFF);
    EXPECT_EQ(sutDelegate.GetMsgId(), 0xFFFF);
}

TEST_F(ServiceDelegates, GivenAsNullAreRefused) {
    try {
        sut.AddMsgDelegate(static_cast<MsgDelegateBase*>(nullptr));
        FAIL() << "no exception";
    } catch (const ps::hwapi::common::InvalidParameterException& failure) {
        EXPECT_STREQ(failure.what(), "Invalid parameter");
        EXPECT_EQ(failure.getDescription(), "Nullptr pointer argument passed to Service::AddMsgDelegate ");
        EXPECT_EQ(failure.getFile(), "Common/src/Service");
        EXPECT_GT(failure.getLine(), 0U);
    }
}

TEST_F(ServiceDelegates, GivenAsPointerAreOwned) {
    sut.AddMsgDelegate(delegate(0x0601).release());
    EXPECT_THAT(platform.takeTrace(), IsEmpty());
    EXPECT_TRUE(isHandled(0x0601));
    sut.RemoveMsgDelegate(0x0601);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("~TestDelegate(0x601)"));
}

TEST_F(ServiceDelegates, GivenAsPointerForATakenIdStayTheCallers) {
    sut.AddMsgDelegate(delegate(0x0ABC, "first"));
    const auto second = delegate(0x0ABC, "second");
    sut.AddMsgDelegate(second.get());
    EXPECT_THAT(platform.takeTrace(), ElementsAre(log(4, "Duplicate message delegate, id 0xABC")));
    handle(0x0ABC);
    EXPECT_THAT(platform.takeCalls("HandleMessage"), ElementsAre("HandleMessage(0xABC)"));
    handle(0x0ABC);
    EXPECT_THAT(platform.takeTrace(), ::testing::Contains("first"));
}

TEST_F(ServiceDelegates, GivenAsOwnedForATakenIdAreDestroyedWithoutALine) {
    sut.AddMsgDelegate(delegate(0x0601, "first"));
    sut.AddMsgDelegate(delegate(0x0601, "second"));
    EXPECT_THAT(platform.takeTrace(), ElementsAre("~TestDelegate(0x601)"));
    handle(0x0601);
    EXPECT_THAT(platform.takeTrace(), ::testing::Contains("first"));
}

TEST_F(ServiceDelegates, OfOtherIdsAreNotTouchedByARemoval) {
    sut.AddMsgDelegate(delegate(0));
    sut.AddMsgDelegate(delegate(0xFFFF));
    sut.RemoveMsgDelegate(0xFFFF);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("~TestDelegate(0xFFFF)"));
    EXPECT_TRUE(isHandled(0));
    EXPECT_FALSE(isHandled(0xFFFF));
}

TEST_F(ServiceDelegates, OfAnUnknownIdAreRemovedWithoutAnEffect) {
    sut.RemoveMsgDelegate(0x0601);
    EXPECT_THAT(platform.takeTrace(), IsEmpty());
}

TEST_F(ServiceDelegates, MayRemoveThemselvesWhileTheyHandle) {
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601},
                                                      [this](void*) { sut.RemoveMsgDelegate(0x0601); }));
    handle(0x0601);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("AaSysComMsgReceive(-1, 0)", state(3), "HandleMessage(0x601)",
                                                  "~TestDelegate(0x601)", "AaSysComMsgDestroy(0x601)"));
}

TEST_F(ServiceDelegates, MayRemoveThemselvesAndFail) {
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601}, [this](void*) {
        Service& service = sut;
        service.RemoveMsgDelegate(0x0601); // this function has gone with it
        throw std::runtime_error("broken");
    }));
    EXPECT_THROW(handle(0x0601), Service::RuntimeException);
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre("AaSysComMsgReceive(-1, 0)", state(3), "HandleMessage(0x601)", "~TestDelegate(0x601)",
                            log(4, "Message handling failed 0x0601"), "AaSysComMsgDestroy(0x601)"));
}

TEST_F(ServiceDelegates, MayRemoveAndAddOthersWhileTheyHandle) {
    sut.AddMsgDelegate(delegate(0x0602));
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{0x0601}, [this](void*) {
        sut.RemoveMsgDelegate(0x0602);
        sut.AddMsgDelegate(delegate(0x0603));
    }));
    ASSERT_FALSE(isHandled(0x0603));
    handle(0x0601);
    EXPECT_THAT(platform.takeTrace(), ElementsAre("AaSysComMsgReceive(-1, 0)", state(3), "HandleMessage(0x601)",
                                                  "~TestDelegate(0x602)", "AaSysComMsgDestroy(0x601)"));
    EXPECT_FALSE(isHandled(0x0602));
    EXPECT_TRUE(isHandled(0x0603));
    EXPECT_TRUE(isHandled(0x0601));
}

TEST_F(ServiceDelegates, MayBeAddedAgainAfterTheirRemoval) {
    sut.AddMsgDelegate(delegate(0x0601));
    sut.RemoveMsgDelegate(0x0601);
    sut.AddMsgDelegate(delegate(0x0601).release());
    EXPECT_THAT(platform.takeLog(), IsEmpty());
    EXPECT_TRUE(isHandled(0x0601));
}

/// Sees every delegate that is added.
class WatchingService : public ServiceUnderTest {
public:
    using ServiceUnderTest::AddMsgDelegate;
    using ServiceUnderTest::ServiceUnderTest;
    void AddMsgDelegate(std::unique_ptr<MsgDelegateBase> added) override {
        seen.push_back(added->GetMsgId());
        Service::AddMsgDelegate(std::move(added));
    }
    std::vector<std::uint16_t> seen;
};

TEST(ServiceDelegatesOfADerivedService, AllGoThroughTheOwningForm) {
    ServicePlatform platform;
    WatchingService sut(platform);
    sut.AddMsgDelegate(new TestDelegate(platform, 1));
    sut.AddMsgDelegate(std::make_unique<TestDelegate>(platform, std::uint16_t{2}));
    EXPECT_THAT(sut.seen, ElementsAre(1, 2));
}

} // namespace
} // namespace mox::testing
