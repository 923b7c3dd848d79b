#include "InRun.hpp"

#include <pal/AaSysMb.h>
#include <pal/AaSysTime.h>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <host/bus/Process.hpp>
#include <host/pal/Mailboxes.hpp>
#include <host/pal/Shell.hpp>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;

constexpr std::uint16_t publication = 0x1198;
constexpr std::uint32_t limitMs = 10'000;

/// The process of peer.cpp.
class Peer {
public:
    explicit Peer(const std::string& fileName) {
        int in[2];
        int out[2];
        EXPECT_EQ(pipe2(in, O_CLOEXEC), 0);
        EXPECT_EQ(pipe2(out, O_CLOEXEC), 0);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_adddup2(&files, in[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&files, out[1], STDOUT_FILENO);
        const std::string program = MOX_SERVICES_PEER;
        char* arguments[] = {const_cast<char*>(program.c_str()), const_cast<char*>(fileName.c_str()), nullptr};
        EXPECT_EQ(posix_spawn(&m_pid, program.c_str(), &files, nullptr, arguments, environ), 0);
        posix_spawn_file_actions_destroy(&files);
        close(in[0]);
        close(out[1]);
        m_input = in[1];
        m_output = fdopen(out[0], "r");
        EXPECT_THAT(nextLine(), HasSubstr("ready "));
    }
    ~Peer() {
        end();
        std::fclose(m_output);
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /// Blocks until the peer prints; the test's own deadline ends a peer that does not.
    std::string nextLine() const {
        char line[512];
        return std::fgets(line, sizeof line, m_output) ? line : "";
    }
    host::ProcessAddress address() const { return {host::ownProcess().node, static_cast<std::uint32_t>(m_pid)}; }
    /// Lets it shut down. @return its exit status
    int end() {
        if (m_input < 0)
            return -1;
        close(m_input);
        m_input = -1;
        return wait();
    }
    void kill() {
        ::kill(m_pid, SIGKILL);
        close(m_input);
        m_input = -1;
        wait();
    }

private:
    int wait() const {
        int status = 0;
        waitpid(m_pid, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    pid_t m_pid = -1;
    int m_input = -1;
    FILE* m_output = nullptr;
};

class TwoProcesses : public InRun {
protected:
    void SetUp() override {
        InRun::SetUp();
        m_peer = std::make_unique<Peer>(m_directory / "peer.txt");
    }
    void TearDown() override {
        m_peer.reset();
        for (const host::mailbox::Subscription& left : host::mailbox::allSubscriptions())
            host::mailbox::erase(left); // of a peer that was killed
        InRun::TearDown();
    }
    static int publish(const char* text, EAaSysMbPublMode mode) {
        void* message = AaSysComMsgCreate(publication, static_cast<std::uint32_t>(std::strlen(text)), 0);
        std::memcpy(AaSysComMsgGetPayload(message), text, std::strlen(text));
        AaSysComMsgSetSender(message, 0x100E0042);
        return AaSysMbPublish(message, mode);
    }
    static std::size_t subscriptions() { return host::mailbox::subscriptionsTo(publication).size(); }

    TemporaryDirectory m_directory;
    std::unique_ptr<Peer> m_peer;
};

TEST_F(TwoProcesses, PublicationsReachTheOtherExceptThoseOfTheProcess) {
    EXPECT_EQ(publish("process", EAaSysMbPublMode_Process), 0);
    EXPECT_EQ(publish("node", EAaSysMbPublMode_Node), 0);
    EXPECT_EQ(publish("board", EAaSysMbPublMode_Board), 0);
    EXPECT_EQ(publish("system", EAaSysMbPublMode_System), 0);
    EXPECT_EQ(m_peer->nextLine(), "got node\n");
    EXPECT_EQ(m_peer->nextLine(), "got board\n");
    EXPECT_EQ(m_peer->nextLine(), "got system\n");
}

TEST_F(TwoProcesses, ASubscriberThatEndsTakesItsSubscriptionAlong) {
    EXPECT_EQ(subscriptions(), 1U);
    EXPECT_EQ(m_peer->end(), 0);
    EXPECT_EQ(subscriptions(), 0U);
}

TEST_F(TwoProcesses, ASubscriberThatWasKilledIsForgottenWithTheNextPublication) {
    m_peer->kill();
    EXPECT_EQ(subscriptions(), 1U);
    EXPECT_EQ(publish("anybody", EAaSysMbPublMode_System), 0);
    EXPECT_EQ(subscriptions(), 0U);
    EXPECT_TRUE(logged(2, "is gone and forgotten"));
}

TEST_F(TwoProcesses, TheTimeOfTheNodeIsTheSameInBoth) {
    const SAaTime wanted{2031, 5, 6, 12, 0, 0, 0};
    ASSERT_EQ(AaUtcTimeSet(&wanted), 0);
    const auto answer = host::shell::ask(m_peer->address(), {"time"}, limitMs);
    host::Run::current()->store().erase(host::Table::devices, "100e/time/utcOffsetNs");
    ASSERT_TRUE(answer.has_value());
    EXPECT_EQ(answer->text, "2031-5-6");
}

TEST_F(TwoProcesses, TheOtherListsItsCommandsAndCollectsItsFiles) {
    const auto help = host::shell::ask(m_peer->address(), {"@help"}, limitMs);
    ASSERT_TRUE(help.has_value());
    EXPECT_THAT(help->text, HasSubstr("time  node time\n"));
    const auto collected = host::shell::ask(m_peer->address(), {"@collect"}, limitMs);
    ASSERT_TRUE(collected.has_value());
    EXPECT_EQ(collected->status, 0);
    const std::string directory = collected->text.substr(0, collected->text.find('\n'));
    EXPECT_THAT(directory, HasSubstr("/nodes/100e/troubleshooting/"));
    EXPECT_EQ(contentOf(directory + "/peer.txt"), "state of the peer");
}

TEST_F(TwoProcesses, AKilledProcessAnswersNoCommand) {
    const host::ProcessAddress gone = m_peer->address();
    m_peer->kill();
    EXPECT_FALSE(host::shell::ask(gone, {"time"}, limitMs).has_value());
}

} // namespace
} // namespace mox::testing
