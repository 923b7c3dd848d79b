#include "abi/slots.hpp"
#include "unit/Common/ServicePlatform.hpp"

#include <mox/ReqHandler.hpp>
#include <mox/Service.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

namespace ps::hwapi::common {
namespace {

using mox::abi::callSlot;
using mox::abi::firstSlotAfterDestructors;

static_assert(std::is_convertible_v<Service*, AbstractService*>, "a public base");
static_assert(sizeof(AbstractService) == sizeof(void*), "no data");

/// Notes which operation was called.
class NamingService : public Service {
public:
    NamingService() : Service("Led", 1, ERadHwapi_LED, ERadHwapiState_LedState) {}
    void AddMsgDelegate(MsgDelegateBase*) override { called = "AddMsgDelegate pointer"; }
    void AddMsgDelegate(std::unique_ptr<MsgDelegateBase>) override { called = "AddMsgDelegate owned"; }
    void RemoveMsgDelegate(unsigned short msgId) override { called = "RemoveMsgDelegate " + std::to_string(msgId); }
    std::uint32_t GetSicad() const override { return 17; }
    ERadHwapi GetRadId() const override { return ERadHwapi_SFP; }
    bool Startup(int argc, char**) override {
        called = "Startup " + std::to_string(argc);
        return true;
    }
    void Shutdown() override { called = "Shutdown"; }
    void InitEu() override { called = "InitEu"; }
    void SetServiceStateRad(unsigned int state) override { called = "SetServiceStateRad " + std::to_string(state); }
    bool Run() override {
        called = "Run";
        return true;
    }
    void HandleConfigTagChange(const std::string& tag, unsigned int value) override {
        called = "HandleConfigTagChange " + tag + " " + std::to_string(value);
    }
    bool PreStartup() override {
        called = "PreStartup";
        return true;
    }
    void Init() override { called = "Init"; }
    void Exit() override { called = "Exit"; }

    std::string called;
};

class ServiceSlots : public testing::Test {
protected:
    mox::testing::ServicePlatform platform;
    NamingService service;
};

/// Calls the eleven operations that the interface and the class share.
template <typename Class>
void expectSharedOrder(Class& sut, const std::string& called) {
    using AddPointer = void (Class::*)(MsgDelegateBase*);
    using AddOwned = void (Class::*)(std::unique_ptr<MsgDelegateBase>);
    std::size_t slot = firstSlotAfterDestructors;
    callSlot(sut, slot++, AddPointer{&Class::AddMsgDelegate}, nullptr);
    EXPECT_EQ(called, "AddMsgDelegate pointer");
    callSlot(sut, slot++, AddOwned{&Class::AddMsgDelegate}, nullptr);
    EXPECT_EQ(called, "AddMsgDelegate owned");
    callSlot(sut, slot++, &Class::RemoveMsgDelegate, std::uint16_t{3});
    EXPECT_EQ(called, "RemoveMsgDelegate 3");
    EXPECT_EQ(callSlot(sut, slot++, &Class::GetSicad), 17U);
    EXPECT_EQ(callSlot(sut, slot++, &Class::GetRadId), ERadHwapi_SFP);
    EXPECT_TRUE(callSlot(sut, slot++, &Class::Startup, 5, nullptr));
    EXPECT_EQ(called, "Startup 5");
    callSlot(sut, slot++, &Class::Shutdown);
    EXPECT_EQ(called, "Shutdown");
    callSlot(sut, slot++, &Class::InitEu);
    EXPECT_EQ(called, "InitEu");
    callSlot(sut, slot++, &Class::SetServiceStateRad, 7U);
    EXPECT_EQ(called, "SetServiceStateRad 7");
    EXPECT_TRUE(callSlot(sut, slot++, &Class::Run));
    EXPECT_EQ(called, "Run");
    callSlot(sut, slot++, &Class::HandleConfigTagChange, std::string("tag"), 9U);
    EXPECT_EQ(called, "HandleConfigTagChange tag 9");
    EXPECT_EQ(slot, 13U);
}

TEST_F(ServiceSlots, OfTheInterfaceStandInTheDeclaredOrder) {
    expectSharedOrder(static_cast<AbstractService&>(service), service.called);
}

TEST_F(ServiceSlots, StandInTheOrderOfTheInterfaceWithTheHooksBehind) {
    Service& sut = service;
    expectSharedOrder(sut, service.called);
    EXPECT_TRUE(callSlot(sut, 13, &Service::Run));
    EXPECT_EQ(service.called, "PreStartup");
    callSlot(sut, 14, &Service::Shutdown);
    EXPECT_EQ(service.called, "Init");
    callSlot(sut, 15, &Service::Shutdown);
    EXPECT_EQ(service.called, "Exit");
}

/// Notes which operation was called.
class NamingDelegate : public MsgDelegateBase {
public:
    NamingDelegate() : MsgDelegateBase(1) {}
    void HandleMessage(void* msg) override { handled = msg; }
    void* handled = nullptr;
};

TEST(MsgDelegateBaseSlots, HoldTheHandlerBehindTheDestructors) {
    NamingDelegate delegate;
    MsgDelegateBase& sut = delegate;
    callSlot(sut, firstSlotAfterDestructors, &MsgDelegateBase::HandleMessage, static_cast<void*>(&delegate));
    EXPECT_EQ(delegate.handled, &delegate);
}

/// Notes which operation was called.
class NamingReq : public Req {
public:
    explicit NamingReq(ReqHandler& handler) : Req(handler, ERadHwapi_LED, nullptr) {}
    void HandleReq() override { called = "HandleReq"; }
    void HandleForwardedReqResp(void*) override { called = "HandleForwardedReqResp"; }
    void HandleForwardedReqTimeout() override { called = "HandleForwardedReqTimeout"; }
    std::string called;
};

class OneReqHandler : public ReqHandler {
public:
    OneReqHandler() : ReqHandler(ERadHwapi_LED) {}
    Req* req = nullptr;

protected:
    Req* CreateReq(void*) override { return req; }
};

TEST(ReqSlots, StandInTheDeclaredOrder) {
    const mox::testing::ServicePlatform platform;
    OneReqHandler handler;
    NamingReq req(handler);
    Req& sut = req;
    callSlot(sut, firstSlotAfterDestructors, &Req::HandleReq);
    EXPECT_EQ(req.called, "HandleReq");
    callSlot(sut, firstSlotAfterDestructors + 1, &Req::HandleForwardedReqResp, nullptr);
    EXPECT_EQ(req.called, "HandleForwardedReqResp");
    callSlot(sut, firstSlotAfterDestructors + 2, &Req::HandleForwardedReqTimeout);
    EXPECT_EQ(req.called, "HandleForwardedReqTimeout");
}

TEST(ReqHandlerSlots, HoldTheCreationBehindTheDestructors) {
    const mox::testing::ServicePlatform platform;
    OneReqHandler handler;
    NamingReq req(handler);
    handler.req = &req;
    ReqHandler& sut = handler;
    using Create = Req* (ReqHandler::*)(void*);
    EXPECT_EQ(callSlot(sut, firstSlotAfterDestructors, Create{nullptr}, nullptr), &req);
}

} // namespace
} // namespace ps::hwapi::common
