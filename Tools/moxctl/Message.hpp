#pragma once
/// Messages as commands build and show them.
#include "Output.hpp"

#include <cstdint>
#include <string>

namespace mox::tools {

class Session;

/// A message that this process owns; destroyed with the object unless it was sent. One thread at a time.
class OwnedMessage {
public:
    explicit OwnedMessage(void* handle) : m_handle(handle) {}
    ~OwnedMessage();
    OwnedMessage(OwnedMessage&& other) noexcept;
    OwnedMessage(const OwnedMessage&) = delete;
    OwnedMessage& operator=(const OwnedMessage&) = delete;

    void* handle() const { return m_handle; }
    explicit operator bool() const { return m_handle != nullptr; }
    /// Gives the message away.
    void* release();

private:
    void* m_handle;
};

/// The address that a person means: "1011:0600" (both hexadecimal), a SIC address as a number (without a node: the
/// session's), or the name of a service of the session's node. Throws Failure: usage, notFound.
std::uint32_t readAddress(Session& session, const std::string& text);

/// What a message holds: "id", "sender", "receiver", "size", "payload" (hexadecimal).
Json jsonOf(const OwnedMessage& message);

/// The same for a person: a line, and the bytes. Without a line feed at the end.
std::string textOf(const OwnedMessage& message);

/// Throws the Failure for a send that did not succeed; `result` is an EAaSysComRetVal.
void checkSent(int result, std::uint32_t receiver);

} // namespace mox::tools
