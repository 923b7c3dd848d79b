#include "host/run/Sandbox.hpp"

#include "host/run/SandboxPaths.hpp"
#include "support/Files.hpp"
#include "support/OtherUser.hpp"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>

namespace {

using namespace mox::host;
namespace fs = std::filesystem;
using mox::testing::asOtherUser;
using mox::testing::contentOf;
using mox::testing::whyNotAsOtherUser;
using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::uint16_t node = 0x1011;

struct Outcome {
    int status = -1;
    std::string output;
};

/// A run with one node, as far as a sandbox needs it, and shell commands in it.
class Sandbox : public testing::Test {
protected:
    Sandbox() { makeRun("mox-sandbox-XXXXXX"); }
    ~Sandbox() override { fs::remove_all(m_top); }

    void makeRun(const std::string& pattern) {
        std::string name = "/tmp/" + pattern;
        m_top = mkdtemp(name.data());
        m_run = m_top;
        fs::create_directories(nodePath());
    }
    std::string nodePath() const { return m_run + "/nodes/1011"; }
    std::string storage(const std::string& name) const { return nodePath() + "/fs/" + name; }
    /// Moves the run to a path of at least this many characters.
    void lengthenRunPath(std::size_t length) {
        while (m_run.size() < length)
            m_run += "/a-long-directory-name-of-a-build-farm";
        fs::create_directories(nodePath());
    }

    Outcome run(const std::vector<std::string>& argv, SandboxOptions options = {}) const {
        std::array<int, 2> ends{};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        options.standardOutput = options.standardError = ends[1];
        std::string why;
        const auto started = spawnInSandbox(m_run, node, argv, options, why);
        close(ends[1]);
        Outcome outcome{-1, why};
        std::array<char, 512> part{};
        for (ssize_t got = 0; (got = read(ends[0], part.data(), part.size())) > 0;)
            outcome.output.append(part.data(), static_cast<std::size_t>(got));
        close(ends[0]);
        if (started)
            outcome.status = waitFor(started->sandbox);
        return outcome;
    }
    Outcome shell(const std::string& script, const SandboxOptions& options = {}) const {
        return run({"/bin/sh", "-c", script}, options);
    }
    static int waitFor(pid_t process) {
        int status = 0;
        waitpid(process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    std::string m_top;
    std::string m_run;
};

TEST_F(Sandbox, GivesTheNodeDirectoriesOfItsOwn) {
    for (const PrivateDirectory& own : privateDirectories()) {
        const Outcome outcome = shell("echo from inside > " + std::string(own.inside) + "/mark");
        EXPECT_EQ(outcome.status, 0) << own.inside << ": " << outcome.output;
        EXPECT_EQ(contentOf(storage(own.storage) + "/mark"), "from inside\n") << own.inside;
        EXPECT_FALSE(fs::exists(std::string(own.inside) + "/mark")) << own.inside;
    }
}

TEST_F(Sandbox, HasOneDirectoryUnderBothNamesOfTheKeptMemory) {
    EXPECT_EQ(shell("echo 7 > /var/tmp/hwapi/field && cat /rpram/hwapi/field").output, "7\n");
}

TEST_F(Sandbox, ShowsTheRunAtAShortPathAndSaysWhere) {
    lengthenRunPath(200);
    std::ofstream(m_run + "/board.json") << "{}";
    const Outcome outcome = shell("echo $MOX_RUN $MOX_NODE; cat /run/mox/board.json; touch /run/mox/nodes/1011/new");
    EXPECT_EQ(outcome.output, "/run/mox 1011\n{}");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(fs::exists(nodePath() + "/new"));
}

TEST_F(Sandbox, KeepsTheWorkstationReadOnly) {
    EXPECT_NE(shell("touch /usr/mox-was-here").status, 0);
    EXPECT_NE(shell("touch /etc/mox-was-here").status, 0);
    EXPECT_FALSE(fs::exists("/usr/mox-was-here"));
}

TEST_F(Sandbox, HidesTheWorkstationsTemporaryFiles) {
    std::ofstream(m_top + "/outside") << "x";
    EXPECT_NE(shell("cat " + m_top + "/outside").status, 0);
}

TEST_F(Sandbox, KeepsTheProgramReachableBelowTheTemporaryFiles) {
    const std::string directory = m_top + "/tools/bin";
    fs::create_directories(directory);
    std::ofstream(directory + "/beside") << "read by the tool";
    std::ofstream(directory + "/tool") << "#!/bin/sh\ncat \"$(dirname \"$0\")/beside\"\n";
    fs::permissions(directory + "/tool", fs::perms::owner_all);
    EXPECT_EQ(run({directory + "/tool"}).output, "read by the tool");
}

TEST_F(Sandbox, KeepsTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::create_directories(m_top + "/work");
    std::ofstream(m_top + "/work/input") << "42";
    fs::current_path(m_top + "/work");
    const Outcome outcome = shell("pwd; cat input; echo done > output");
    fs::current_path(before);
    EXPECT_EQ(outcome.output, m_top + "/work\n42");
    EXPECT_EQ(contentOf(m_top + "/work/output"), "done\n");
}

TEST_F(Sandbox, DoesNotUncoverTheTemporaryFilesForAProgramThatLiesDirectlyInThem) {
    const fs::path before = fs::current_path();
    fs::current_path("/tmp");
    const Outcome outcome = shell("pwd; ls " + m_top);
    fs::current_path(before);
    EXPECT_THAT(outcome.output, HasSubstr("/tmp\n"));
    EXPECT_NE(outcome.status, 0);
}

TEST_F(Sandbox, ShowsWhatTheCallerAsksFor) {
    fs::create_directories(m_top + "/read");
    fs::create_directories(m_top + "/write");
    std::ofstream(m_top + "/read/file") << "r";
    SandboxOptions options;
    options.reachable = {m_top + "/read"};
    options.writable = {m_top + "/write"};
    options.environment = {{"MOX_TEST_WORD", "two words"}};
    const Outcome outcome = shell("cat " + m_top + "/read/file; touch " + m_top +
                                      "/write/new; echo $MOX_TEST_WORD; touch " + m_top + "/read/new 2>/dev/null",
                                  options);
    EXPECT_EQ(outcome.output, "rtwo words\n");
    EXPECT_TRUE(fs::exists(m_top + "/write/new"));
    EXPECT_FALSE(fs::exists(m_top + "/read/new"));
}

TEST_F(Sandbox, PassesTheExitStatusOn) {
    EXPECT_EQ(shell("exit 7").status, 7);
    EXPECT_EQ(shell("kill -SEGV $$").status, 128 + SIGSEGV);
}

/// What a shell command prints that is started directly.
std::string outputOf(const char* command) {
    std::string output;
    std::array<char, 512> part{};
    FILE* pipe = popen(command, "r");
    while (pipe != nullptr && fgets(part.data(), part.size(), pipe) != nullptr)
        output += part.data();
    pclose(pipe);
    return output;
}

TEST_F(Sandbox, AddsNoOpenDescriptorToThoseThatAnyChildInherits) {
    EXPECT_EQ(shell("exec ls /proc/self/fd").output, outputOf("exec ls /proc/self/fd"));
}

TEST_F(Sandbox, TellsTheProcessThatSignalsGoTo) {
    std::string why;
    const auto started = spawnInSandbox(m_run, node, {"/bin/sleep", "60"}, {}, why);
    ASSERT_TRUE(started) << why;
    EXPECT_EQ(kill(started->process, SIGTERM), 0);
    EXPECT_EQ(waitFor(started->sandbox), 128 + SIGTERM);
}

TEST_F(Sandbox, WorksInsideAnotherOne) {
    fs::create_directories(nodePath() + "/inner/nodes/2022");
    const Outcome outcome = run({MOX_SANDBOX_STARTER, "/run/mox/nodes/1011/inner", "2022", "/bin/sh", "-c",
                                 "echo $MOX_NODE > /ram/mark; cat /ram/mark"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "2022\n");
    EXPECT_EQ(contentOf(nodePath() + "/inner/nodes/2022/fs/ram/mark"), "2022\n");
}

TEST_F(Sandbox, BeginsASessionOfItsOwnWhenAskedTo) {
    const std::string script = "cut -d' ' -f6 /proc/self/stat";
    const std::string own = std::to_string(getsid(0)) + "\n";
    EXPECT_EQ(shell(script).output, own);
    SandboxOptions options;
    options.newSession = true;
    EXPECT_NE(shell(script, options).output, own);
}

TEST_F(Sandbox, WorksForAUserWithoutPrivileges) {
    if (geteuid() != 0)
        GTEST_SKIP() << "every test of this file runs without privileges";
    if (const std::string whyNot = whyNotAsOtherUser(MOX_SANDBOX_STARTER); !whyNot.empty())
        GTEST_SKIP() << whyNot;
    std::string why;
    const std::vector<std::string> command =
        sandboxCommand(m_run, node, {"/bin/sh", "-c", "id -u > /ram/mark; cat /ram/mark"}, {}, why);
    ASSERT_THAT(command, Not(IsEmpty())) << why;
    fs::permissions(m_top, fs::perms::all);
    for (const auto& entry : fs::recursive_directory_iterator(m_top))
        fs::permissions(entry.path(), fs::perms::all);
    std::string line;
    for (const std::string& word : asOtherUser(command))
        line += " '" + word + "'";
    EXPECT_EQ(WEXITSTATUS(system(line.c_str())), 0);
    EXPECT_EQ(contentOf(storage("ram") + "/mark"), "65534\n");
}

TEST_F(Sandbox, SaysWhatIsMissing) {
    std::string why;
    EXPECT_THAT(sandboxCommand(m_run, 0x2022, {"/bin/true"}, {}, why), IsEmpty());
    EXPECT_THAT(why, AllOf(HasSubstr("nodes/2022"), EndsWith("no such node")));
    EXPECT_THAT(sandboxCommand(m_run, node, {"/no/such/program"}, {}, why), IsEmpty());
    EXPECT_EQ(why, "/no/such/program: no such program");
    EXPECT_THAT(sandboxCommand(m_run, node, {}, {}, why), IsEmpty());
    EXPECT_EQ(why, "no program given");
}

TEST_F(Sandbox, DiesWithItsParentWhenAskedTo) {
    SandboxOptions options;
    std::string why;
    EXPECT_THAT(sandboxCommand(m_run, node, {"true"}, options, why), Not(Contains("--die-with-parent")));
    options.dieWithParent = true;
    EXPECT_THAT(sandboxCommand(m_run, node, {"true"}, options, why), Contains("--die-with-parent"));
}

/// Sets a variable of the environment for one test.
class Variable {
public:
    Variable(const char* name, const std::string& value) : m_name(name) { setenv(name, value.c_str(), 1); }
    ~Variable() { unsetenv(m_name); }

private:
    const char* m_name;
};

TEST_F(Sandbox, ShowsTheDirectoriesThatTheEnvironmentNames) {
    fs::create_directories(m_top + "/one");
    fs::create_directories(m_top + "/two");
    const Variable readable("MOX_SANDBOX_READABLE", m_top + "/one:" + m_top + "/two:/no/such/directory");
    const Outcome outcome = shell("ls " + m_top + "; touch " + m_top + "/one/new 2>/dev/null");
    EXPECT_EQ(outcome.output, "one\ntwo\n");
    EXPECT_FALSE(fs::exists(m_top + "/one/new"));
}

TEST_F(Sandbox, PutsTheEmulatorBeforeAProgramForAnotherMachine) {
    std::array<unsigned char, 20> head{0x7F, 'E', 'L', 'F', 1, 1, 1};
    head[18] = 40; // 32-bit ARM
    const std::string program = m_top + "/foreign";
    std::ofstream(program, std::ios::binary).write(reinterpret_cast<const char*>(head.data()), head.size());
    fs::permissions(program, fs::perms::owner_all);
    const Variable emulator("MOX_EMULATOR", "/bin/echo -L /usr");
    EXPECT_EQ(run({program, "argument"}).output, "-L /usr " + program + " argument\n");
    EXPECT_EQ(run({"/bin/echo", "native"}).output, "native\n");
}

} // namespace
