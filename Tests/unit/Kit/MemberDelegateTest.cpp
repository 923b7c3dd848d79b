#include <mox/kit/MemberDelegate.hpp>

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>
#include <vector>

namespace mox::kit {
namespace {

/// Has handlers of every kind that can be bound.
class Fans {
public:
    auto bindPrivate() { return makeDelegate(0x0603, *this, &Fans::onPrivate); }
    void onRequest(void* msg) { calls.emplace_back("onRequest", msg); }
    void onQuery(void* msg) const noexcept { calls.emplace_back("onQuery", msg); }
    int onCount(const void* msg) {
        calls.emplace_back("onCount", msg);
        return 1;
    }
    void onBroken(void*) { throw std::runtime_error("broken"); }
    virtual ~Fans() = default;
    virtual void onVirtual(void*) { calls.emplace_back("Fans", nullptr); }

    mutable std::vector<std::pair<std::string, const void*>> calls;

private:
    void onPrivate(void* msg) { calls.emplace_back("onPrivate", msg); }
};

class LoudFans : public Fans {
public:
    void onVirtual(void*) override { calls.emplace_back("LoudFans", nullptr); }
};

class MemberDelegateOfAnObject : public testing::Test {
protected:
    std::pair<std::string, const void*> called() const { return fans.calls.at(0); }

    LoudFans fans;
    int message = 0;
};

TEST_F(MemberDelegateOfAnObject, HasItsMessageId) {
    EXPECT_EQ(makeDelegate(0xFFFF, fans, &Fans::onRequest)->GetMsgId(), 0xFFFF);
}

TEST_F(MemberDelegateOfAnObject, CallsTheMemberWithTheMessage) {
    makeDelegate(0x0601, fans, &Fans::onRequest)->HandleMessage(&message);
    EXPECT_EQ(called(), std::make_pair(std::string("onRequest"), static_cast<const void*>(&message)));
    EXPECT_EQ(fans.calls.size(), 1U);
}

TEST_F(MemberDelegateOfAnObject, CallsAConstantMember) {
    const Fans& constant = fans;
    makeDelegate(0x0601, constant, &Fans::onQuery)->HandleMessage(&message);
    EXPECT_EQ(called().first, "onQuery");
}

TEST_F(MemberDelegateOfAnObject, CallsAMemberWithAResultAndAConstantMessage) {
    makeDelegate(0x0601, fans, &Fans::onCount)->HandleMessage(&message);
    EXPECT_EQ(called().first, "onCount");
}

TEST_F(MemberDelegateOfAnObject, CallsAPrivateMemberThatTheClassItselfHasBound) {
    fans.bindPrivate()->HandleMessage(&message);
    EXPECT_EQ(called().first, "onPrivate");
}

TEST_F(MemberDelegateOfAnObject, CallsTheOverrideOfAVirtualMember) {
    makeDelegate(0x0601, static_cast<Fans&>(fans), &Fans::onVirtual)->HandleMessage(&message);
    EXPECT_EQ(called().first, "LoudFans");
}

TEST_F(MemberDelegateOfAnObject, LetsExceptionsThrough) {
    EXPECT_THROW(makeDelegate(0x0601, fans, &Fans::onBroken)->HandleMessage(&message), std::runtime_error);
}

} // namespace
} // namespace mox::kit
