#include "InRun.hpp"
#include "support/SpawnFailures.hpp"

#include <pal/AaPro.h>

#include <gmock/gmock.h>
#include <unistd.h>

#include <csignal>
#include <thread>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AaProCmd : public InRun {
protected:
    static EAaProEuRetVal raw(const std::vector<const char*>& words, std::string& output, std::size_t room = 4096,
                              std::int32_t* status = nullptr) {
        std::vector<const char*> arguments = words;
        arguments.push_back(nullptr);
        std::vector<char> buffer(room + 1, '?');
        const EAaProEuRetVal result = AaProCmdExecRaw(arguments.data(), buffer.data(), room, status);
        EXPECT_EQ(buffer[room], '?');
        output = room == 0 ? std::string() : std::string(buffer.data());
        return result;
    }
};

TEST_F(AaProCmd, LogsWhatACommandPrintsALineEach) {
    std::int32_t status = -1;
    EXPECT_EQ(AaProCmdExec("printf 'one\\ntwo\\n\\nthree'; echo err >&2", &status), 0);
    EXPECT_EQ(status, 0);
    EXPECT_THAT(lines(), ElementsAre(LoggedLine{2, 0, "one"}, LoggedLine{2, 0, "two"}, LoggedLine{2, 0, ""},
                                     LoggedLine{2, 0, "threeerr"}));
}

TEST_F(AaProCmd, CutsALongLineIntoLinesOfTheLog) {
    EXPECT_EQ(AaProCmdExec("head -c 3000 /dev/zero | tr '\\0' x; echo", nullptr), 0);
    std::string all;
    for (const LoggedLine& line : lines()) {
        EXPECT_LE(line.text.size(), 1023U);
        all += line.text;
    }
    EXPECT_EQ(all, std::string(3000, 'x'));
}

TEST_F(AaProCmd, TellsHowACommandEnded) {
    const struct {
        const char* command;
        EAaProEuRetVal result;
        std::int32_t status;
    } table[] = {{"true", EAaProEuRetVal_NoError, 0},
                 {"exit 42", EAaProEuRetVal_NoError, 42},
                 {"no-such-command-at-all 2>/dev/null", EAaProEuRetVal_NoError, 127},
                 {"kill -KILL $$", EAaProEuRetVal_ChildKilled, 128 + SIGKILL},
                 {"ulimit -c 0; kill -SEGV $$", EAaProEuRetVal_ChildKilled, 128 + SIGSEGV}};
    for (const auto& row : table) {
        std::int32_t status = -1;
        EXPECT_EQ(AaProCmdExec(row.command, &status), row.result) << row.command;
        EXPECT_EQ(status, row.status) << row.command;
        EXPECT_EQ(AaProCmdExec(row.command, nullptr), row.result);
    }
}

TEST_F(AaProCmd, DoesNotWaitForWhatACommandLeavesBehind) {
    std::int32_t status = -1;
    EXPECT_EQ(AaProCmdExec("echo done; sleep 30 & echo $! > /tmp/mox-left.$PPID", &status), 0);
    EXPECT_EQ(status, 0);
    EXPECT_THAT(lines(), ElementsAre(LoggedLine{2, 0, "done"}));
    const std::string file = "/tmp/mox-left." + std::to_string(getpid());
    kill(std::stoi(contentOf(file)), SIGKILL);
    std::filesystem::remove(file);
}

TEST_F(AaProCmd, CollectsWhatAProgramPrints) {
    std::string output;
    std::int32_t status = -1;
    EXPECT_EQ(raw({"printf", "%s-%s\\n", "a b", "$HOME"}, output, 4096, &status), 0);
    EXPECT_EQ(output, "a b-$HOME\n");
    EXPECT_EQ(status, 0);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(AaProCmd, CutsTheOutputAtItsRoom) {
    std::string output;
    EXPECT_EQ(raw({"printf", "abcdef"}, output, 4), 0);
    EXPECT_EQ(output, "abc");
    EXPECT_EQ(raw({"printf", "abcdef"}, output, 1), 0);
    EXPECT_EQ(output, "");
    EXPECT_EQ(raw({"printf", "abcdef"}, output, 0), 0);
    EXPECT_EQ(raw({"true"}, output, 4), 0);
    EXPECT_EQ(output, "");
}

TEST_F(AaProCmd, ReadsMoreThanAPipeHolds) {
    std::string output;
    std::int32_t status = -1;
    EXPECT_EQ(raw({"head", "-c", "500000", "/dev/zero"}, output, 10, &status), 0);
    EXPECT_EQ(status, 0);
}

TEST_F(AaProCmd, ReportsAProgramThatCannotBeRun) {
    if (!spawnTellsFailures())
        GTEST_SKIP() << "nobody is told here that a program cannot be run";
    std::string output;
    std::int32_t status = 77;
    EXPECT_EQ(raw({"/no/such/program"}, output, 10, &status), EAaProEuRetVal_Error);
    EXPECT_EQ(status, 77);
    EXPECT_TRUE(logged(4, "/no/such/program cannot be run: No such file"));
}

TEST_F(AaProCmd, RefusesNullArguments) {
    char output[8];
    const char* const none[] = {nullptr};
    const char* const some[] = {"true", nullptr};
    EXPECT_EQ(AaProCmdExec(nullptr, nullptr), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(AaProCmdExecRaw(nullptr, output, sizeof output, nullptr), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(AaProCmdExecRaw(none, output, sizeof output, nullptr), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(AaProCmdExecRaw(some, nullptr, sizeof output, nullptr), EAaProEuRetVal_InvalidValue);
    EXPECT_EQ(AaProCmdExecRaw(some, nullptr, 0, nullptr), EAaProEuRetVal_NoError);
}

TEST_F(AaProCmd, GivesAProgramFreshSignalsAndAnEmptyInput) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::string output;
    EXPECT_EQ(raw({"sh", "-c", "grep SigBlk /proc/self/status; wc -c"}, output), 0);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(output, "SigBlk:\t0000000000000000\n0\n");
}

TEST_F(AaProCmd, RunsCommandsOfManyThreadsSideBySide) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < 10; ++i) {
                std::string output;
                const std::string text = std::to_string(t * 100 + i);
                EXPECT_EQ(raw({"echo", text.c_str()}, output), 0);
                EXPECT_EQ(output, text + "\n");
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
} // namespace mox::testing
