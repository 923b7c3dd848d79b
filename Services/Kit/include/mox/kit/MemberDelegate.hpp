#pragma once
#include <mox/MsgDelegateBase.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <type_traits>

namespace mox::kit {

/// Has a member function of an object, usually of the service itself, handle the messages of one id. Use
/// makeDelegate().
///
/// The object outlives the delegate, which a service's own delegates may take for granted. No allocation and one
/// indirect call for each message.
template <typename Object, typename Handler>
class MemberDelegate final : public ps::hwapi::common::MsgDelegateBase {
    static_assert(std::is_member_function_pointer_v<Handler>, "the handler is a pointer to a member function");
    static_assert(std::is_invocable_v<Handler, Object&, void*>, "the handler takes the message as a void*");

public:
    /// @param msgId    id of the messages to handle
    /// @param object   whose member is called
    /// @param handler  takes the message as `void*`, without owning it
    MemberDelegate(std::uint16_t msgId, Object& object, Handler handler)
        : MsgDelegateBase(msgId), m_object(object), m_handler(handler) {}

    void HandleMessage(void* msg) override { std::invoke(m_handler, m_object, msg); }

private:
    Object& m_object;
    Handler m_handler;
};

/// Binds a member function to a message id:
///
///     void Echo::Init() { AddMsgDelegate(mox::kit::makeDelegate(0x0601, *this, &Echo::onRequest)); }
///     void Echo::onRequest(void* msg) { ... }
///
/// @param msgId    id of the messages to handle
/// @param object   whose member is called; outlives the delegate
/// @param handler  takes the message as `void*`, without owning it
/// @return the delegate, owned by the caller
template <typename Object, typename Handler>
std::unique_ptr<ps::hwapi::common::MsgDelegateBase> makeDelegate(std::uint16_t msgId, Object& object, Handler handler) {
    return std::make_unique<MemberDelegate<Object, Handler>>(msgId, object, handler);
}

} // namespace mox::kit
