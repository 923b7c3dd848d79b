#include "unit/Common/reqforwarding/ReqUnderTest.hpp"

#include <mox/MsgHandlingException.hpp>

namespace mox::testing {
namespace {

using ps::hwapi::common::MsgHandlingException;
using ps::hwapi::common::Req;
using ::testing::ElementsAre;

class ReqWithoutOverrides : public ReqForwarding {
protected:
    ReqWithoutOverrides() { platform.takeTrace(); }

    template <typename Operation>
    void expectNotImplemented(Operation operation, const char* description, unsigned int line) {
        try {
            operation();
            FAIL() << "no exception";
        } catch (const MsgHandlingException& failure) {
            EXPECT_STREQ(failure.what(), "Message handling error");
            EXPECT_EQ(failure.getDescription(), description);
            EXPECT_EQ(failure.getFile(), "Common/src/reqforwarding/Req");
            EXPECT_EQ(failure.getLine(), line);
            EXPECT_EQ(failure.getDetail(), "");
        }
    }
};

TEST_F(ReqWithoutOverrides, LogsItsBeginningAndItsEnd) {
    std::string end;
    {
        const Req sut(handler, feature, nullptr);
        EXPECT_THAT(platform.takeTrace(), ElementsAre(log("Req::Req")));
        end = "Req::~Req this: '" + pointer(&sut) + "'";
    }
    EXPECT_THAT(platform.takeTrace(), ElementsAre(log(end)));
}

TEST_F(ReqWithoutOverrides, RefusesToBegin) {
    Req sut(handler, feature, nullptr);
    expectNotImplemented([&] { sut.HandleReq(); }, "Req::HandleReq NOT IMPLEMENTED", 40);
}

TEST_F(ReqWithoutOverrides, RefusesAResponse) {
    Req sut(handler, feature, nullptr);
    expectNotImplemented([&] { sut.HandleForwardedReqResp(nullptr); }, "Req::HandleForwardedReqResp NOT IMPLEMENTED",
                         51);
}

TEST_F(ReqWithoutOverrides, RefusesATimeout) {
    Req sut(handler, feature, nullptr);
    expectNotImplemented([&] { sut.HandleForwardedReqTimeout(); }, "Req::HandleForwardedReqTimeout NOT IMPLEMENTED",
                         61);
}

/// Shows what it was built with.
class OpenReq : public Req {
public:
    using Req::m_feature;
    using Req::m_handler;
    using Req::m_msgHandle;
    using Req::Req;
};

TEST_F(ReqWithoutOverrides, KeepsWhatItWasBuiltWith) {
    TestMessage message;
    const OpenReq sut(handler, feature, &message);
    EXPECT_EQ(&sut.m_handler, &handler);
    EXPECT_EQ(sut.m_feature, feature);
    EXPECT_EQ(sut.m_msgHandle, &message);
}

TEST_F(ReqWithoutOverrides, LeavesItsMessageAlone) {
    TestMessage message;
    EXPECT_CALL(platform.sysCom, AaSysComMsgDestroy(::testing::_)).Times(0);
    const Req sut(handler, feature, &message);
}

} // namespace
} // namespace mox::testing
