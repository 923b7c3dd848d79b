#include "abi/fields.hpp"
#include "unit/Common/ServiceUnderTest.hpp"

#include <mox/InvalidParameterException.hpp>
#include <mox/Logger.hpp>
#include <mox/MsgHandlingException.hpp>
#include <mox/ReqHandler.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <list>
#include <map>
#include <memory>
#include <string>

namespace ps::hwapi::common {
namespace {

using mox::abi::FieldWalk;
using mox::abi::firstFieldAfterTable;
using mox::testing::ServicePlatform;
using mox::testing::ServiceUnderTest;

TEST(LoggerFields, AreFeatureAndPrefix) {
    const Logger sut(0x20007, "Led", 3);
    FieldWalk fields(sut);
    EXPECT_EQ(fields.next<unsigned int>(), 0x20007U);
    EXPECT_EQ(fields.next<std::string>(), "[Led][3] ");
}

/// @return the walk behind the four items
FieldWalk expectFourItems(const CHwapiException& sut, const char* kind) {
    FieldWalk fields(sut, firstFieldAfterTable);
    EXPECT_EQ(fields.next<std::string>(), kind);
    EXPECT_EQ(fields.next<std::string>(), "description");
    EXPECT_EQ(fields.next<std::string>(), "file");
    EXPECT_EQ(fields.next<unsigned int>(), 12U);
    return fields;
}

template <typename Exception>
void expectFurtherTextBehind(const char* kind) {
    Exception sut("description", "file", 12);
    sut.setDetail("detail");
    FieldWalk fields = expectFourItems(sut, kind);
    EXPECT_EQ(fields.next<std::string>(), "detail");
}

TEST(CHwapiExceptionFields, AreKindDescriptionFileAndLine) {
    expectFourItems(CHwapiException("kind", "description", "file", 12), "kind");
}

TEST(CHwapiExceptionFields, HaveTheFurtherTextOfSomeKindsBehind) {
    expectFurtherTextBehind<InvalidParameterException>("Invalid parameter");
    expectFurtherTextBehind<MsgHandlingException>("Message handling error");
}

TEST(ArgParserFields, AreArgumentsAndHelp) {
    ArgParser sut;
    FieldWalk fields(sut, firstFieldAfterTable);
    using Arguments = std::map<std::string, std::string>;
    EXPECT_EQ(fields.next<Arguments>(), (Arguments{{"h", "arg off"}, {"help", "arg off"}}));
    EXPECT_EQ(fields.next<std::string>(), sut.GetHelp());
}

TEST(MsgDelegateBaseFields, AreTheId) {
    ServicePlatform platform;
    const mox::testing::TestDelegate delegate(platform, 0x0601);
    const MsgDelegateBase& sut = delegate;
    EXPECT_EQ(FieldWalk(sut, firstFieldAfterTable).next<std::uint16_t>(), 0x0601);
}

TEST(ServiceFields, StandInTheDeclaredOrder) {
    ServicePlatform platform;
    platform.answers.userRegister = [](std::uint16_t) { return std::uint16_t{0x8001}; };
    ServiceUnderTest service(platform, 0);
    service.AddMsgDelegate(std::make_unique<mox::testing::TestDelegate>(platform, std::uint16_t{0x0601}));
    service.InitEu();
    service.SetVerbose(1);
    const Service& sut = service;
    FieldWalk fields(sut, firstFieldAfterTable);
    EXPECT_TRUE(fields.next<std::atomic<bool>>()) << "use common service state";
    EXPECT_EQ(fields.next<ERadHwapiState>(), ERadHwapiState_LedState);
    EXPECT_EQ(fields.next<std::string>(), "Led");
    EXPECT_EQ((fields.next<std::map<std::uint16_t, std::unique_ptr<MsgDelegateBase>>>().count(0x0601)), 1U);
    EXPECT_LE(fields.next<std::chrono::steady_clock::time_point>(), std::chrono::steady_clock::now());
    EXPECT_EQ(fields.next<std::uint16_t>(), 0) << "requested CPID";
    EXPECT_EQ(fields.next<std::atomic<std::uint16_t>>(), 0x8001) << "assigned CPID";
    EXPECT_EQ(fields.next<ERadHwapi>(), ERadHwapi_LED);
    EXPECT_EQ(fields.next<std::unique_ptr<ArgParserBase>>().get(), &service.GetArgumentParser());
    EXPECT_TRUE(fields.next<bool>()) << "verbose";
    const auto& terminateRequest = fields.next<std::atomic<bool>>();
    EXPECT_FALSE(terminateRequest);
    service.Terminate();
    EXPECT_TRUE(terminateRequest);
}

class NoReqHandler : public ReqHandler {
public:
    NoReqHandler() : ReqHandler(ERadHwapi_FIRM) {}

protected:
    Req* CreateReq(void*) override { return nullptr; }
};

class BeginningReq : public Req {
public:
    using Req::Req;
    void HandleReq() override {}
};

TEST(ReqHandlerFields, AreRequestsAndFeature) {
    const ServicePlatform platform;
    NoReqHandler handler;
    auto* const req = new BeginningReq(handler, ERadHwapi_LED, nullptr);
    handler.HandleNewReq(req);
    const ReqHandler& sut = handler;
    FieldWalk fields(sut, firstFieldAfterTable);
    EXPECT_EQ(fields.next<std::list<Req*>>(), std::list<Req*>{req});
    EXPECT_EQ(fields.next<ERadHwapi>(), ERadHwapi_FIRM);
}

TEST(ReqFields, AreHandlerFeatureAndMessage) {
    const ServicePlatform platform;
    NoReqHandler handler;
    int message = 0;
    const Req sut(handler, ERadHwapi_LED, &message);
    FieldWalk fields(sut, firstFieldAfterTable);
    EXPECT_EQ(fields.next<ReqHandler*>(), &handler);
    EXPECT_EQ(fields.next<ERadHwapi>(), ERadHwapi_LED);
    EXPECT_EQ(fields.next<void*>(), &message);
}

} // namespace
} // namespace ps::hwapi::common
