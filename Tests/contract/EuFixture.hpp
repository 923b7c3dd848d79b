#pragma once
/// What the tests of messages and execution units share.
#include <pal/AaPro.h>
#include <pal/AaSysCom.h>

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <string>

namespace mox::testing {

/// How long a test waits for what must happen.
constexpr std::chrono::seconds patience{50};

/// A message that is destroyed at the end, unless somebody else has got it.
class Message {
public:
    explicit Message(void* handle = nullptr) : m_handle(handle) {}
    Message(Message&& other) noexcept : m_handle(other.release()) {}
    Message& operator=(Message&& other) noexcept;
    ~Message() { reset(); }
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;

    void* get() const { return m_handle; }
    void** variable() { return &m_handle; }
    void* release();
    void reset();
    explicit operator bool() const { return m_handle != nullptr; }

    std::uint16_t id() const { return AaSysComMsgGetId(m_handle); }
    std::uint32_t sender() const { return AaSysComMsgGetSender(m_handle); }
    std::uint32_t receiver() const { return AaSysComMsgGetReceiver(m_handle); }
    std::uint32_t size() const { return AaSysComMsgGetPayloadSize(m_handle); }
    template <typename T>
    T& payload() const {
        return *static_cast<T*>(AaSysComMsgGetPayload(m_handle));
    }

private:
    void* m_handle;
};

Message create(std::uint16_t id, std::uint32_t size = 0, std::uint32_t receiver = 0);
Message receive(std::int32_t timeoutUs = 0);

/// A registration of the calling EU; at the end it is given back, and what the EU has queued is thrown away.
class Registration {
public:
    explicit Registration(std::uint16_t cpid = 0);
    ~Registration();
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    std::uint16_t cpid() const { return m_cpid; }
    std::uint32_t address() const;
    void deregister();

private:
    std::uint16_t m_cpid;
};

/// An EU that runs a function; the destructor waits for its end.
class Eu {
public:
    explicit Eu(std::function<void()> body, const char* name = "test");
    ~Eu() { join(); }
    Eu(const Eu&) = delete;
    Eu& operator=(const Eu&) = delete;

    /// Waits until the function has returned. An EU that does not end ends the process.
    void join();
    std::uint32_t id() const { return m_id; }
    EAaProEuRetVal result() const { return m_result; }

private:
    std::uint32_t m_id = 0;
    EAaProEuRetVal m_result = EAaProEuRetVal_Error;
    std::shared_ptr<std::promise<void>> m_promise;
    std::future<void> m_ended;
};

/// Open descriptors of the process.
std::size_t openDescriptors();

/// The time that a function takes.
std::chrono::microseconds timeOf(const std::function<void()>& function);

/// Waits until something holds.
/// @return whether it did before the patience ended
bool eventually(const std::function<bool()>& holds);

/// The node of the run that these tests run in, 0: they run in a process that belongs to none. Each executable says.
std::uint16_t expectedOwnNode();

} // namespace mox::testing
