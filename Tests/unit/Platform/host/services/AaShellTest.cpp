#include "InRun.hpp"

#include <pal/AaShell.h>

#include <gmock/gmock.h>
#include <host/bus/Process.hpp>
#include <host/pal/Shell.hpp>

#include <cstring>
#include <thread>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr std::uint32_t limitMs = 10'000;

int joinWords(int argc, const char* const* argv, char* output, std::size_t outputSize) {
    EXPECT_GE(outputSize, 4096U);
    EXPECT_STREQ(output, "");
    std::string text;
    for (int i = 0; i < argc; ++i)
        text += std::string(i == 0 ? "" : "|") + argv[i];
    std::strcpy(output, text.c_str());
    return argc;
}

int fillOutput(int, const char* const*, char* output, std::size_t outputSize) {
    std::memset(output, 'f', outputSize);
    return 0;
}

class AaShell : public InRun {
protected:
    void TearDown() override {
        for (const char* name : {"join", "fill"})
            AaShellDeleteCommand(name);
        InRun::TearDown();
    }
    static host::shell::Answer ask(const std::vector<std::string>& words) {
        auto answer = host::shell::ask(host::ownProcess(), words, limitMs);
        EXPECT_TRUE(answer.has_value());
        return answer.value_or(host::shell::Answer{-99, ""});
    }
};

TEST_F(AaShell, RunsACommandWithItsWordsAndTellsItsAnswer) {
    ASSERT_EQ(AaShellAddCommand("join", "joins words", joinWords), 0);
    ASSERT_EQ(AaShellApplicationStartup(), 0);
    EXPECT_EQ(AaShellApplicationStartup(), 0);
    const auto answer = ask({"join", "a b", "", "c"});
    EXPECT_EQ(answer.status, 4);
    EXPECT_EQ(answer.text, "join|a b||c");
}

TEST_F(AaShell, TakesNoCommandBeforeTheApplicationSaysSo) {
    ASSERT_EQ(AaShellAddCommand("join", "joins words", joinWords), 0);
    host::shell::listen();
    EXPECT_EQ(ask({"join"}).status, host::shell::notOffered);
    EXPECT_THAT(ask({"@help"}).text, Not(HasSubstr("join")));
}

TEST_F(AaShell, SaysThatThereIsNoSuchCommand) {
    ASSERT_EQ(AaShellApplicationStartup(), 0);
    const auto answer = ask({"none"});
    EXPECT_EQ(answer.status, host::shell::unknownCommand);
    EXPECT_THAT(answer.text, HasSubstr("none"));
}

TEST_F(AaShell, ForgetsADeletedCommand) {
    ASSERT_EQ(AaShellAddCommand("join", "joins words", joinWords), 0);
    ASSERT_EQ(AaShellApplicationStartup(), 0);
    EXPECT_EQ(AaShellDeleteCommand("join"), 0);
    EXPECT_EQ(AaShellDeleteCommand("join"), EAaShellRetVal_NotFound);
    EXPECT_EQ(ask({"join"}).status, host::shell::unknownCommand);
}

TEST_F(AaShell, ListsItsCommands) {
    ASSERT_EQ(AaShellAddCommand("join", "joins words", joinWords), 0);
    ASSERT_EQ(AaShellApplicationStartup(), 0);
    const auto answer = ask({"@help"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.text, HasSubstr("join  joins words\n"));
    EXPECT_THAT(answer.text, HasSubstr("@help  "));
}

TEST_F(AaShell, EndsAnOutputThatTheCommandDidNot) {
    ASSERT_EQ(AaShellAddCommand("fill", "fills its output", fillOutput), 0);
    ASSERT_EQ(AaShellApplicationStartup(), 0);
    const auto answer = ask({"fill"});
    EXPECT_GE(answer.text.size(), 4095U);
    EXPECT_EQ(answer.text, std::string(answer.text.size(), 'f'));
}

TEST_F(AaShell, RunsCommandsOfManyAskersInTurn) {
    static std::atomic<int> running{0};
    static std::atomic<int> most{0};
    const auto command = [](int, const char* const* argv, char* output, std::size_t) {
        most = std::max(most.load(), ++running);
        std::strcpy(output, argv[1]);
        --running;
        return 0;
    };
    ASSERT_EQ(AaShellAddCommand("join", "", command), 0);
    ASSERT_EQ(AaShellApplicationStartup(), 0);
    std::vector<std::thread> askers;
    for (int t = 0; t < 4; ++t)
        askers.emplace_back([t] {
            for (int i = 0; i < 50; ++i) {
                const std::string word = std::to_string(t * 1000 + i);
                EXPECT_EQ(ask({"join", word}).text, word);
            }
        });
    for (std::thread& asker : askers)
        asker.join();
    EXPECT_EQ(most, 1);
}

TEST_F(AaShell, GetsNoAnswerFromAProcessThatIsGone) {
    host::ProcessAddress nobody = host::ownProcess();
    nobody.pid = 1;
    EXPECT_FALSE(host::shell::ask(nobody, {"@help"}, limitMs).has_value());
}

TEST_F(AaShell, RefusesCommandsThatCannotBe) {
    EXPECT_EQ(AaShellAddCommand("join", "", joinWords), 0);
    EXPECT_EQ(AaShellAddCommand("join", "", fillOutput), EAaShellRetVal_AlreadyExists);
    EXPECT_EQ(AaShellAddCommand(nullptr, "", joinWords), EAaShellRetVal_InvalidValue);
    EXPECT_EQ(AaShellAddCommand("fill", nullptr, joinWords), EAaShellRetVal_InvalidValue);
    EXPECT_EQ(AaShellAddCommand("fill", "", nullptr), EAaShellRetVal_InvalidValue);
    EXPECT_EQ(AaShellAddCommand("", "", joinWords), EAaShellRetVal_InvalidValue);
    EXPECT_EQ(AaShellAddCommand("two words", "", joinWords), EAaShellRetVal_InvalidValue);
    EXPECT_EQ(AaShellAddCommand(std::string(64, 'n').c_str(), "", joinWords), EAaShellRetVal_InvalidValue);
    EXPECT_EQ(AaShellAddCommand(std::string(63, 'n').c_str(), "", joinWords), 0);
    EXPECT_EQ(AaShellDeleteCommand(std::string(63, 'n').c_str()), 0);
    EXPECT_EQ(AaShellDeleteCommand(nullptr), EAaShellRetVal_InvalidValue);
    host::setEnvironmentState(host::EnvironmentState::ended);
    EXPECT_EQ(AaShellApplicationStartup(), EAaShellRetVal_NotStarted);
}

TEST_F(AaShell, IgnoresNoticesThatAreNoCommands) {
    ASSERT_EQ(AaShellApplicationStartup(), 0);
    const std::string notices[] = {"",
                                   "Q",
                                   std::string("Q\1\0\0\0", 5),
                                   std::string("Q\1\0\0\0word", 9),
                                   std::string("A\1\0\0\0", 5),
                                   std::string("Z\1\0\0\0word\0", 10)};
    for (const std::string& notice : notices)
        host::tell(host::ownProcess(), host::Topic::shellCommand, notice);
    EXPECT_EQ(ask({"@help"}).status, 0);
}

} // namespace
} // namespace mox::testing
