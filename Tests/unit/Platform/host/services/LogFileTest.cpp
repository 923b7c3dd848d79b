#include "InRun.hpp"

#include <pal/AaSysLog.h>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <syslog.h>
#include <unistd.h>

#include <csignal>
#include <thread>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

class LogFile : public InRun {
protected:
    /// Lines go to a file of their own.
    void useName(const std::string& name) {
        host::log::setProcessName(name);
        m_path = nodePath() + "/log/" + name + ".log";
    }
    void TearDown() override {
        host::log::setProcessName("");
        InRun::TearDown();
    }
    std::vector<std::string> fileLines() const {
        std::vector<std::string> found;
        std::ifstream file(m_path);
        for (std::string line; std::getline(file, line);)
            found.push_back(line);
        return found;
    }
    std::string m_path;
};

TEST_F(LogFile, BeginsWithALineThatNamesThePlatform) {
    useName("banner");
    AaSysLogPrintE(EAaSysLogSeverityLevel_Error, 0x20001, "first");
    AaSysLogPrintE(EAaSysLogSeverityLevel_Error, 0x20001, "second");
    const auto found = fileLines();
    ASSERT_EQ(found.size(), 3U);
    EXPECT_THAT(found[0], HasSubstr("simulated board"));
    EXPECT_THAT(found[0], HasSubstr(" INF 100e banner["));
    EXPECT_THAT(found[1], HasSubstr(": first"));
    EXPECT_THAT(found[2], HasSubstr(": second"));
}

TEST_F(LogFile, HoldsOneLineAMessageInTheDocumentedForm) {
    useName("form");
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, 0x20063, "two\nlines\x1B");
    const auto found = fileLines();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_THAT(found[1], MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}[.][0-9]{6}Z WRN 100e "
                                       "form\\[[0-9]+\\] 00020063 [^ :]+: two\\\\nlines\\\\x1B"));
}

TEST_F(LogFile, HasNoDebugLineWhoseFlagIsOff) {
    useName("quiet");
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, 0x20064, "hidden");
    AaSysLogPrintE(EAaSysLogSeverityLevel_Info, 0x20064, "shown");
    EXPECT_EQ(contentOf(m_path).find("hidden"), std::string::npos);
    EXPECT_THAT(contentOf(m_path), HasSubstr("shown"));
}

/// What is left of lines from the level on.
std::vector<std::string> withoutTimeAndProcess(const std::vector<std::string>& lines) {
    std::vector<std::string> rests;
    for (const std::string& line : lines)
        rests.push_back(line.substr(line.find(' ') + 1, 3) + line.substr(line.find(']') + 1));
    return rests;
}

TEST_F(LogFile, HoldsTheLinesOfTheSystemLogToo) {
    useName("system");
    errno = ENOENT;
    syslog(LOG_DEBUG, "%s %d", "one", 1);
    syslog(LOG_INFO, "two\n");
    syslog(LOG_NOTICE, "three");
    syslog(LOG_WARNING | LOG_DAEMON, "four");
    for (const int priority : {LOG_ERR, LOG_CRIT, LOG_ALERT, LOG_EMERG})
        syslog(priority, "grave %d", priority);
    EXPECT_EQ(errno, ENOENT);
    std::vector<std::string> found = withoutTimeAndProcess(fileLines());
    found.erase(found.begin());
    EXPECT_THAT(found,
                ElementsAre("DBG 00000000 syslog: one 1", "INF 00000000 syslog: two", "INF 00000000 syslog: three",
                            "WRN 00000000 syslog: four", "ERR 00000000 syslog: grave 3", "ERR 00000000 syslog: grave 2",
                            "ERR 00000000 syslog: grave 1", "ERR 00000000 syslog: grave 0"));
}

TEST_F(LogFile, HasNoLineThatTheMaskOfTheSystemLogLeavesOut) {
    useName("masked");
    const int before = setlogmask(LOG_UPTO(LOG_INFO));
    syslog(LOG_DEBUG, "hidden");
    syslog(LOG_INFO, "shown");
    setlogmask(before);
    EXPECT_EQ(contentOf(m_path).find("hidden"), std::string::npos);
    EXPECT_THAT(contentOf(m_path), HasSubstr("shown"));
}

TEST_F(LogFile, BearsTheNameOfTheExecutionEnvironment) {
    host::log::setProcessName("");
    ASSERT_EQ(AaConfigTagSetString("pal.service.aapro.eename", "Env/Name"), 0);
    AaSysLogPrint(EAaSysLogSeverityLevel_Info, "named");
    EXPECT_THAT(contentOf(nodePath() + "/log/Env_Name.log"), HasSubstr("named"));
}

TEST_F(LogFile, ContinuesAfterAnotherProcess) {
    useName("shared");
    std::ofstream(m_path) << "older line\n";
    AaSysLogPrint(EAaSysLogSeverityLevel_Info, "newer");
    const auto found = fileLines();
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0], "older line");
}

TEST_F(LogFile, KeepsLinesOfManyThreadsWhole) {
    useName("threads");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([] {
            for (int i = 0; i < 250; ++i)
                AaSysLogPrint(EAaSysLogSeverityLevel_Info, "line %d end", i);
        });
    for (std::thread& thread : threads)
        thread.join();
    const auto found = fileLines();
    EXPECT_EQ(found.size(), 1001U);
    for (std::size_t i = 1; i < found.size(); ++i)
        EXPECT_THAT(found[i], MatchesRegex(".*: line [0-9]+ end"));
}

TEST_F(LogFile, IsClosedWhenTheProcessRunsAnother) {
    useName("inherit");
    AaSysLogPrint(EAaSysLogSeverityLevel_Info, "open now");
    FILE* output = popen("ls -l /proc/self/fd", "r");
    ASSERT_NE(output, nullptr);
    std::string listing;
    for (char line[512]; fgets(line, sizeof line, output) != nullptr;)
        listing += line;
    pclose(output);
    EXPECT_THAT(listing, HasSubstr("pipe:"));
    EXPECT_EQ(listing.find("inherit.log"), std::string::npos);
}

TEST_F(LogFile, LosesLinesButNotTheProcessWhenTheDiskIsFull) {
    useName("full");
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        setrlimit(RLIMIT_FSIZE, &limit);
        for (int i = 0; i < 100; ++i)
            AaSysLogPrint(EAaSysLogSeverityLevel_Info, "line %d", i);
        _exit(7);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 7);
    EXPECT_THAT(contentOf(m_path), HasSubstr(": line 0\n"));
    EXPECT_LE(std::filesystem::file_size(m_path), 1000U);
}

} // namespace
} // namespace mox::testing
