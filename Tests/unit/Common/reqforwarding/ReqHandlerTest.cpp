#include "unit/Common/reqforwarding/ReqUnderTest.hpp"

#include <mox/MsgHandlingException.hpp>

#include <cstring>
#include <memory>
#include <stdexcept>

namespace mox::testing {
namespace {

using ps::hwapi::common::MsgHandlingException;
using ps::hwapi::common::ReqHandler;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RequestHandler : public ReqForwarding {
protected:
    RequestHandler() { platform.takeTrace(); }

    /// Has the handler keep a new request; what that notes is dropped.
    TestReq* keep(const char* name) {
        auto* const req = new TestReq(platform, handler, feature, name);
        handler.HandleNewReq(req);
        platform.takeTrace();
        return req;
    }

    /// What the requests were told, without the log lines.
    std::vector<std::string> told() {
        std::vector<std::string> events;
        for (const std::string& event : platform.takeTrace()) {
            if (event.rfind("log ", 0) != 0) {
                events.push_back(event);
            }
        }
        return events;
    }

    /// A time-out message that names a request.
    static TestMessage timeoutOf(const void* req) {
        TestMessage timeout;
        timeout.payload.resize(sizeof req);
        std::memcpy(timeout.payload.data(), &req, sizeof req);
        return timeout;
    }

    void expectEmptyList() { EXPECT_TRUE(handler.m_reqs.empty()); }

    TestMessage message{0x0601};
    const std::string msg = pointer(&message);
};

TEST(RequestHandlerConstruction, LogsItself) {
    ServicePlatform platform;
    {
        const HandlerUnderTest sut(ps::hwapi::common::ERadHwapi_FIRM);
        EXPECT_THAT(platform.takeTrace(), ElementsAre(logLine(1, 0x20054, "ReqHandler::ReqHandler")));
    }
    EXPECT_THAT(platform.takeTrace(), ElementsAre(logLine(1, 0x20054, "ReqHandler::~ReqHandler")));
}

TEST(RequestHandlerDestruction, DeletesTheRequestsThatAreLeftFrontFirst) {
    ServicePlatform platform;
    const auto feature = ps::hwapi::common::ERadHwapi_FIRM;
    auto sut = std::make_unique<HandlerUnderTest>(feature);
    auto* const first = new TestReq(platform, *sut, feature, "first");
    auto* const second = new TestReq(platform, *sut, feature, "second");
    sut->HandleNewReq(first);
    sut->HandleNewReq(second);
    sut->m_reqs.push_back(nullptr);
    platform.takeTrace();
    const std::string one = pointer(first);
    const std::string two = pointer(second);
    sut.reset();
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre(logLine(1, 0x20054, "ReqHandler::~ReqHandler"),
                            logLine(1, 0x20054, "ReqHandler::~ReqHandler delete req '" + one + "'"), "~first",
                            logLine(1, 0x20054, "Req::~Req this: '" + one + "'"),
                            logLine(1, 0x20054, "ReqHandler::~ReqHandler delete req '" + two + "'"), "~second",
                            logLine(1, 0x20054, "Req::~Req this: '" + two + "'"),
                            logLine(1, 0x20054, "ReqHandler::~ReqHandler delete req '(nil)'")));
}

TEST_F(RequestHandler, CreatesARequestForANewMessageKeepsItAndHasItBegin) {
    TestReq* created = nullptr;
    void* seen = nullptr;
    std::size_t kept = 0;
    handler.onCreate = [&](void* msgHandle) {
        seen = msgHandle;
        created = new TestReq(platform, handler, feature, "req");
        created->onReq = [&](TestReq&) { kept = handler.m_reqs.size(); };
        return created;
    };
    handler.HandleNewReq(static_cast<void*>(&message));
    EXPECT_EQ(seen, &message);
    EXPECT_EQ(kept, 1U) << "before it began";
    const std::string req = pointer(created);
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre(log("ReqHandler::HandleNewReq msgHandle '" + msg + "'"), log("Req::Req"),
                            log("ReqHandler::HandleNewReq req '" + req + "'"),
                            log("ReqHandler::HandleNewReq m_reqs.size '1' req '" + req + "'"), "req begins"));
    EXPECT_THAT(handler.m_reqs, ElementsAre(created));
}

TEST_F(RequestHandler, KeepsRequestsInOrderOfArrival) {
    TestReq* const first = keep("first");
    TestReq* const second = keep("second");
    EXPECT_THAT(handler.m_reqs, ElementsAre(first, second));
}

TEST_F(RequestHandler, WithoutRequestForAMessageSaysWhichOperationFailed) {
    try {
        handler.HandleNewReq(static_cast<void*>(&message));
        FAIL() << "no exception";
    } catch (const MsgHandlingException& failure) {
        EXPECT_EQ(failure.getDescription(), "ReqHandler::HandleNewReq CreateReq returned no request");
        EXPECT_EQ(failure.getFile(), "Common/src/reqforwarding/ReqHandler");
        EXPECT_GT(failure.getLine(), 0U);
    }
    expectEmptyList();
}

TEST_F(RequestHandler, LetsAnExceptionOfABeginningRequestThroughAndKeepsIt) {
    auto* const req = new TestReq(platform, handler, feature, "req");
    req->onReq = [](TestReq&) { throw std::runtime_error("x"); };
    EXPECT_THROW(handler.HandleNewReq(req), std::runtime_error);
    EXPECT_THAT(handler.m_reqs, ElementsAre(req));
}

TEST_F(RequestHandler, DeletesARequestThatCompletesAtOnce) {
    auto* const req = new TestReq(platform, handler, feature, "req");
    req->onReq = [](TestReq& self) { self.complete(); };
    handler.HandleNewReq(req);
    EXPECT_THAT(told(), ElementsAre("req begins", "~req"));
    expectEmptyList();
}

TEST_F(RequestHandler, DeletesACompletedRequest) {
    TestReq* const first = keep("first");
    TestReq* const second = keep("second");
    const std::string req = pointer(second);
    handler.ReqCompleted(second);
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre(log("ReqHandler::ReqCompleted reqPointer '" + req + "'"),
                            log("ReqHandler::ReqCompleted delete req '" + req + "'"), "~second",
                            log("Req::~Req this: '" + req + "'"), log("ReqHandler::ReqCompleted m_reqs.size '1'")));
    EXPECT_THAT(handler.m_reqs, ElementsAre(first));
}

TEST_F(RequestHandler, IgnoresTheCompletionOfARequestThatIsNotKept) {
    TestReq* const kept = keep("kept");
    TestReq stranger(platform, handler, feature, "stranger");
    platform.takeTrace();
    handler.ReqCompleted(&stranger);
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre(log("ReqHandler::ReqCompleted reqPointer '" + pointer(&stranger) + "'"),
                            log("ReqHandler::ReqCompleted m_reqs.size '1'")));
    EXPECT_THAT(handler.m_reqs, ElementsAre(kept));
}

TEST_F(RequestHandler, ErasesTheFirstOfEqualEntriesOnly) {
    handler.m_reqs = {nullptr, nullptr};
    handler.ReqCompleted(nullptr);
    EXPECT_EQ(handler.m_reqs.size(), 1U);
    EXPECT_THAT(platform.takeTrace(), ElementsAre(log("ReqHandler::ReqCompleted reqPointer '(nil)'"),
                                                  log("ReqHandler::ReqCompleted delete req '(nil)'"),
                                                  log("ReqHandler::ReqCompleted m_reqs.size '1'")));
}

class ForwardedResponse : public RequestHandler {
protected:
    void offer() { handler.HandleForwardedReqResp(&message); }
    const std::string offered = " is offered " + msg;
};

TEST_F(ForwardedResponse, IsOfferedUntilARequestTakesIt) {
    TestReq* const first = keep("first");
    TestReq* const second = keep("second");
    TestReq* const third = keep("third");
    second->onResp = [](TestReq& self) { self.complete(); };
    const std::string one = pointer(first);
    const std::string two = pointer(second);
    offer();
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre(log("ReqHandler::HandleForwardedReqResp msgHandle '" + msg + "' m_reqs.size '3'"),
                            log("ReqHandler::HandleForwardedReqResp req '" + one + "'"), "first" + offered,
                            log("ReqHandler::HandleForwardedReqResp req '" + two + "'"), "second" + offered,
                            log("ReqHandler::ReqCompleted reqPointer '" + two + "'"),
                            log("ReqHandler::ReqCompleted delete req '" + two + "'"), "~second",
                            log("Req::~Req this: '" + two + "'"), log("ReqHandler::ReqCompleted m_reqs.size '2'"),
                            log("ReqHandler::HandleForwardedReqResp m_reqs.size '2'")));
    EXPECT_THAT(handler.m_reqs, ElementsAre(first, third));
}

TEST_F(ForwardedResponse, ThatNobodyTakesIsOfferedToEachOnce) {
    keep("first");
    keep("second");
    keep("third");
    offer();
    EXPECT_EQ(handler.m_reqs.size(), 3U);
    EXPECT_THAT(told(), ElementsAre("first" + offered, "second" + offered, "third" + offered));
}

TEST_F(ForwardedResponse, WithoutRequestsOnlyLogs) {
    offer();
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre(log("ReqHandler::HandleForwardedReqResp msgHandle '" + msg + "' m_reqs.size '0'"),
                            log("ReqHandler::HandleForwardedReqResp m_reqs.size '0'")));
}

TEST_F(ForwardedResponse, StopsWhenARequestAddsAnother) {
    TestReq* const first = keep("first");
    keep("second");
    first->onResp = [this](TestReq&) { handler.HandleNewReq(new TestReq(platform, handler, feature, "added")); };
    offer();
    EXPECT_THAT(told(), ElementsAre("first" + offered, "added begins"));
}

TEST_F(ForwardedResponse, StopsWhenARequestCompletesAndAddsAnother) {
    TestReq* const first = keep("first");
    keep("second");
    first->onResp = [this](TestReq& self) {
        ReqHandler& keeper = handler;
        ServicePlatform& board = platform;
        self.complete();
        // Often at the very address that has just become free.
        keeper.HandleNewReq(new TestReq(board, keeper, feature, "added"));
    };
    offer();
    EXPECT_THAT(told(), ElementsAre("first" + offered, "~first", "added begins"));
    EXPECT_EQ(handler.m_reqs.size(), 2U);
}

TEST_F(ForwardedResponse, GoesOnWhenAnotherRequestIsReplaced) {
    TestReq* const first = keep("first");
    TestReq* const second = keep("second");
    keep("third");
    second->onResp = [this, first](TestReq&) {
        handler.ReqCompleted(first);
        handler.HandleNewReq(new TestReq(platform, handler, feature, "added"));
    };
    offer();
    EXPECT_THAT(told(), ElementsAre("first" + offered, "second" + offered, "~first", "added begins", "third" + offered,
                                    "added" + offered));
}

TEST_F(ForwardedResponse, GoesOnAfterARequestHasHandedOnAnother) {
    TestReq* const first = keep("first");
    keep("second");
    first->onResp = [this](TestReq& self) {
        auto& test = *this; // what is captured goes with the next line
        self.onResp = [](TestReq&) {};
        test.offer();
    };
    offer();
    EXPECT_THAT(told(), ElementsAre("first" + offered, "first" + offered, "second" + offered, "second" + offered));
}

TEST_F(ForwardedResponse, StopsWhenAnotherThatWasHandedOnIsTakenAndReplaced) {
    TestReq* const first = keep("first");
    keep("second");
    first->onResp = [this](TestReq& self) {
        auto& test = *this;
        self.onResp = [&test](TestReq& inner) {
            HandlerUnderTest& keeper = test.handler;
            ServicePlatform& board = test.platform;
            inner.complete();
            keeper.HandleNewReq(new TestReq(board, keeper, feature, "added"));
        };
        test.offer();
    };
    offer();
    EXPECT_THAT(told(), ElementsAre("first" + offered, "first" + offered, "~first", "added begins"));
    EXPECT_EQ(handler.m_reqs.size(), 2U);
}

TEST_F(ForwardedResponse, LetsAnExceptionOfARequestThrough) {
    keep("first")->onResp = [](TestReq&) { throw std::runtime_error("x"); };
    keep("second");
    EXPECT_THROW(offer(), std::runtime_error);
    EXPECT_THAT(told(), ElementsAre("first" + offered));
    EXPECT_EQ(handler.m_reqs.size(), 2U);
}

class ForwardingTimeout : public RequestHandler {};

TEST_F(ForwardingTimeout, ReachesTheRequestThatItNames) {
    TestReq* const first = keep("first");
    TestReq* const second = keep("second");
    keep("third");
    TestMessage timeout = timeoutOf(second);
    handler.HandleForwardedReqTimeout(&timeout);
    const std::string two = pointer(second);
    EXPECT_THAT(platform.takeTrace(),
                ElementsAre(log("ReqHandler::HandleForwardedReqTimeout req'" + two + "' (*it)'" + pointer(first) + "'"),
                            log("ReqHandler::HandleForwardedReqTimeout req'" + two + "' (*it)'" + two + "'"),
                            "second has timed out"));
}

TEST_F(ForwardingTimeout, MayCompleteTheRequest) {
    TestReq* const first = keep("first");
    keep("second");
    first->onTimeout = [](TestReq& self) { self.complete(); };
    TestMessage timeout = timeoutOf(first);
    handler.HandleForwardedReqTimeout(&timeout);
    EXPECT_THAT(told(), ElementsAre("first has timed out", "~first"));
    EXPECT_EQ(handler.m_reqs.size(), 1U);
}

TEST_F(ForwardingTimeout, OfACompletedRequestOnlyLogsTheWalk) {
    TestReq* const first = keep("first");
    TestReq* const second = keep("second");
    int elsewhere = 0;
    const std::string gone = pointer(&elsewhere);
    TestMessage timeout = timeoutOf(&elsewhere);
    handler.HandleForwardedReqTimeout(&timeout);
    EXPECT_THAT(
        platform.takeTrace(),
        ElementsAre(log("ReqHandler::HandleForwardedReqTimeout req'" + gone + "' (*it)'" + pointer(first) + "'"),
                    log("ReqHandler::HandleForwardedReqTimeout req'" + gone + "' (*it)'" + pointer(second) + "'")));
    EXPECT_EQ(handler.m_reqs.size(), 2U);
}

TEST_F(ForwardingTimeout, WithoutAPointerInItsPayloadIsRefused) {
    TestReq* const req = keep("req");
    TestMessage withoutPayload;
    TestMessage tooShort = timeoutOf(req);
    tooShort.payload.resize(sizeof(void*) - 1);
    for (TestMessage* const timeout : {&withoutPayload, &tooShort}) {
        try {
            handler.HandleForwardedReqTimeout(timeout);
            FAIL() << "no exception";
        } catch (const MsgHandlingException& failure) {
            EXPECT_EQ(failure.getDescription(),
                      "ReqHandler::HandleForwardedReqTimeout Payload missing from API_FORWARD_TIMEOUT_OUT");
            EXPECT_EQ(failure.getFile(), "Common/src/reqforwarding/ReqHandler");
            EXPECT_EQ(failure.getLine(), 133U);
        }
        EXPECT_THAT(platform.takeTrace(), IsEmpty());
        EXPECT_THAT(handler.m_reqs, ElementsAre(req));
    }
}

TEST_F(ForwardingTimeout, WithALongerPayloadReadsThePointerInFront) {
    TestReq* const req = keep("req");
    TestMessage timeout = timeoutOf(req);
    timeout.payload.resize(sizeof(void*) + 4, 0xEE);
    handler.HandleForwardedReqTimeout(&timeout);
    EXPECT_THAT(told(), ElementsAre("req has timed out"));
}

TEST_F(ForwardingTimeout, LetsAnExceptionOfTheRequestThrough) {
    TestReq* const req = keep("req");
    req->onTimeout = [](TestReq&) { throw std::runtime_error("x"); };
    TestMessage timeout = timeoutOf(req);
    EXPECT_THROW(handler.HandleForwardedReqTimeout(&timeout), std::runtime_error);
    EXPECT_THAT(handler.m_reqs, ElementsAre(req));
}

} // namespace
} // namespace mox::testing
