#pragma once
/// An endpoint by which a test sends and awaits messages: the script of a conversation.
///
///     Messages script;                                             // registers a dynamic endpoint
///     script.send(service.address(), 0x0601, payload(Ask{7}));
///     const Message answer = script.await(0x0602);
///     EXPECT_EQ(answer.as<Answer>().value, 49U);
///     script.expectNone(100);                                      // nothing further within 100 ms
///
/// A message that does not come fails the test with what came instead. Messages that come before they are awaited are
/// kept; a thread may have several endpoints. Starts the platform if no service has; used by the thread that built it.
/// Time limits are in real time, also while a ManualClock stands.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <deque>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

namespace mox::testkit {

using Bytes = std::vector<std::uint8_t>;

/// The bytes of a plain record, as they lie in memory.
template <typename Record>
Bytes payload(const Record& record) {
    static_assert(std::is_trivially_copyable_v<Record>);
    Bytes bytes(sizeof record);
    std::memcpy(bytes.data(), &record, sizeof record);
    return bytes;
}

/// A message as it was received, or none.
struct Message {
    bool received = false;
    std::uint16_t id = 0;
    std::uint32_t sender = 0;
    std::uint32_t receiver = 0;
    Bytes bytes; ///< payload

    explicit operator bool() const { return received; }
    /// The payload as a plain record; fails the test and gives zeros when the sizes differ.
    template <typename Record>
    Record as() const {
        static_assert(std::is_trivially_copyable_v<Record>);
        Record record{};
        if (bytes.size() == sizeof record)
            std::memcpy(&record, bytes.data(), sizeof record);
        else
            ADD_FAILURE() << "a payload of " << bytes.size() << " bytes is no record of " << sizeof record;
        return record;
    }
};

/// "message 0x0601 from 0x10110600, 4 bytes: 01 02 03 04"
std::ostream& operator<<(std::ostream& out, const Message& message);

class Messages {
public:
    /// @param cpid  static endpoint; 0: a dynamic one. Fails the test when it cannot be registered
    explicit Messages(std::uint16_t cpid = 0);
    ~Messages();
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    /// The endpoint's address.
    std::uint32_t address() const { return m_address; }
    /// Sends a message; fails the test when the platform refuses it. May block while the receiver's queue is full.
    void send(std::uint32_t receiver, std::uint16_t id, const Bytes& bytes = {}) const;
    /// Sends a message and awaits one with another id, as send() and await() do.
    Message request(std::uint32_t receiver, std::uint16_t id, const Bytes& bytes, std::uint16_t answerId,
                    unsigned limitMs = 10'000);
    /// Awaits the next message with an id. @return none, and the test has failed, when the limit has passed first
    Message await(std::uint16_t id, unsigned limitMs = 10'000);
    /// Fails the test when a message comes within the time, or lies unread.
    void expectNone(unsigned forMs);

private:
    bool receive(std::uint64_t deadlineNs);
    void keep(Message message);
    std::string pendingText() const;

    std::uint16_t m_cpid = 0;
    std::uint32_t m_address = 0;
    std::deque<Message> m_pending;
};

} // namespace mox::testkit
