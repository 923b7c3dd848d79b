#pragma once
#include <cstdint>

namespace ps::hwapi::common {

/// Handles the messages of one id. A service registers one delegate per id and writes its own kinds of them, typically
/// a template that binds one of its member functions.
///
/// Built and destroyed by the service; its handler runs on the main execution unit.
class MsgDelegateBase {
public:
    /// @param msgId  id of the messages to handle
    explicit MsgDelegateBase(std::uint16_t msgId) : m_msgId(msgId) {}
    MsgDelegateBase(const MsgDelegateBase&) = delete;
    MsgDelegateBase& operator=(const MsgDelegateBase&) = delete;
    virtual ~MsgDelegateBase() = default;

    /// Handles one message.
    /// @param msg  owned by the message loop, which destroys it afterwards: copy what is needed longer
    /// @throws anything; every exception ends the service
    /// Main execution unit. While it blocks, no other message is handled.
    virtual void HandleMessage(void* msg) = 0;

    std::uint16_t GetMsgId() const { return m_msgId; }

private:
    std::uint16_t m_msgId;
};

} // namespace ps::hwapi::common
