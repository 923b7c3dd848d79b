#include "support/TemporaryDirectory.hpp"

#include <pal/AaSysLog.h>

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <functional>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

/// What a process of its own prints on standard error; the log reads its settings once a process.
std::string printed(const char* setting, const std::function<void()>& body) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDERR_FILENO);
        close(ends[0]);
        close(ends[1]);
        unsetenv("MOX_LOG");
        if (setting)
            setenv("MOX_LOG", setting, 1);
        body();
        _exit(0);
    }
    close(ends[1]);
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t got = 0; (got = read(ends[0], buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(got));
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return text;
}

void logAllLevels() {
    for (int level = 1; level <= 4; ++level)
        AaSysLogPrint(static_cast<EAaSysLogSeverityLevel>(level), "level %d", level);
}

TEST(LogTerminal, ShowsWhatItIsSetTo) {
    const struct {
        const char* setting;
        const char* shown; // the levels
    } table[] = {{nullptr, "34"},   {"warning", "34"}, {"error", "4"},    {"info", "234"},
                 {"debug", "1234"}, {"off", ""},       {"nonsense", "34"}};
    for (const auto& row : table) {
        const std::string text = printed(row.setting, logAllLevels);
        std::string shown;
        for (const char level : std::string("1234"))
            if (text.find(std::string(": level ") + level + "\n") != std::string::npos)
                shown += level;
        EXPECT_EQ(shown, row.shown) << (row.setting ? row.setting : "(not set)");
    }
}

TEST(LogTerminal, BeginsWithALineThatNamesThePlatform) {
    const std::string text = printed(nullptr, logAllLevels);
    const std::string first = text.substr(0, text.find('\n'));
    EXPECT_THAT(first, HasSubstr("this process runs on the simulated board"));
    EXPECT_THAT(first, HasSubstr(" INF 0000 host_services_a"));
    EXPECT_EQ(text.find("simulated", first.size()), std::string::npos);
}

TEST(LogTerminal, IsSilentWhileNothingIsShown) {
    EXPECT_THAT(printed(nullptr, [] { AaSysLogPrint(EAaSysLogSeverityLevel_Info, "nothing to see"); }), IsEmpty());
    EXPECT_THAT(printed("off", logAllLevels), IsEmpty());
}

TEST(LogTerminal, OutlivesAStandardErrorThatIsClosed) {
    const std::string text = printed(nullptr, [] {
        const int keep = dup(STDERR_FILENO);
        close(STDERR_FILENO);
        AaSysLogPrint(EAaSysLogSeverityLevel_Error, "lost");
        dup2(keep, STDERR_FILENO);
        AaSysLogPrint(EAaSysLogSeverityLevel_Error, "seen");
    });
    EXPECT_THAT(text, HasSubstr(": seen\n"));
}

class Journal : public ::testing::Test {
protected:
    void SetUp() override {
        m_path = m_directory / "journal";
        m_socket = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        m_path.copy(address.sun_path, sizeof address.sun_path - 1);
        ASSERT_EQ(bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }
    void TearDown() override {
        close(m_socket);
        unsetenv("MOX_LOG_JOURNAL");
    }
    std::string next() const {
        std::array<char, 4096> buffer{};
        const ssize_t got = recv(m_socket, buffer.data(), buffer.size(), 0);
        return got > 0 ? std::string(buffer.data(), static_cast<std::size_t>(got)) : std::string();
    }
    TemporaryDirectory m_directory;
    std::string m_path;
    int m_socket = -1;
};

TEST_F(Journal, GetsEveryLineThatPassesWhenAskedFor) {
    setenv("MOX_LOG_JOURNAL", m_path.c_str(), 1);
    printed("off", [] {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Info, 0x20063, "two\nlines");
        AaSysLogPrintE(EAaSysLogSeverityLevel_Error, 7, "failed");
    });
    EXPECT_THAT(next(), HasSubstr("simulated board"));
    const std::string line = next();
    EXPECT_THAT(line, StartsWith("PRIORITY=6\nMOX_NODE=0000\nMOX_FEATURE=00020063\nSYSLOG_IDENTIFIER="));
    EXPECT_THAT(line, HasSubstr("\nMESSAGE=two\\nlines\n"));
    EXPECT_THAT(next(), StartsWith("PRIORITY=3\n"));
    EXPECT_EQ(next(), "");
}

TEST_F(Journal, GetsNothingOtherwise) {
    printed("off", logAllLevels);
    EXPECT_EQ(next(), "");
}

TEST_F(Journal, DoesNotHoldUpAProcessWhenItDoesNotListen) {
    setenv("MOX_LOG_JOURNAL", (m_directory / "nobody").c_str(), 1);
    EXPECT_THAT(printed("error", logAllLevels), HasSubstr(": level 4\n"));
}

} // namespace
} // namespace mox::testing
