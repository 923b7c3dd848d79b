#include "EuFixture.hpp"

#include <pal/AaPro.h>
#include <pal/AaSysCom.h>

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr std::uint32_t receiver = 0x10110A7B;

/// A socket that other processes of the run take for an endpoint; nobody reads it.
class DeafEndpoint {
public:
    DeafEndpoint() : m_path(std::string(std::getenv("MOX_RUN")) + "/nodes/1011/0a7b.sock") {
        sockaddr_un own{};
        own.sun_family = AF_UNIX;
        std::strncpy(own.sun_path, m_path.c_str(), sizeof(own.sun_path) - 1);
        EXPECT_EQ(bind(m_fd, reinterpret_cast<const sockaddr*>(&own), sizeof(own)), 0) << m_path;
    }
    ~DeafEndpoint() {
        unlink(m_path.c_str());
        close(m_fd);
    }
    DeafEndpoint(const DeafEndpoint&) = delete;
    DeafEndpoint& operator=(const DeafEndpoint&) = delete;

private:
    const std::string m_path;
    const int m_fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

struct Sent {
    int accepted = 0;
    EAaSysComRetVal last = EAaSysComRetVal_NoError;
    bool returned = false;
};

} // namespace

TEST(SendingToAFullReceiverWithACancellationPending, EndsWithItsResult) {
    const DeafEndpoint deaf;
    Sent sent;
    Sent* variable = &sent;
    const TAaProEuEntry entry = [](void* argument) -> void* {
        Sent& mine = **static_cast<Sent**>(argument);
        pthread_cancel(pthread_self());
        while ((mine.last = AaSysComMsgSend(AaSysComMsgCreate(1, 1000, receiver))) == EAaSysComRetVal_NoError)
            ++mine.accepted;
        mine.returned = true;
        return nullptr;
    };
    ASSERT_EQ(AaProEuCreateAndStartJoinable(nullptr, "cancelled", entry, 65536, 1, &variable, sizeof(variable), 1),
              EAaProEuRetVal_NoError);
    EXPECT_TRUE(sent.returned);
    EXPECT_EQ(sent.last, EAaSysComRetVal_ReceiverFull);
    EXPECT_GT(sent.accepted, 0);
}
