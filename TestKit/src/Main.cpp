// The main() of test executables on a simulated board: starts each selected test as a process of its own in the sandbox
// of a fresh run.
#include "RunOfTest.hpp"
#include "Selection.hpp"
#include "host/run/Sandbox.hpp"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace mox::testkit;

/// Set for the process that runs one test.
constexpr const char* insideVariable = "MOX_TESTKIT_INSIDE";
constexpr int statusOfFailure = 1;

volatile sig_atomic_t g_child = 0;
volatile sig_atomic_t g_interrupted = 0;

/// Ends the test's process, so that its run is removed before this one ends.
void interrupt(int signal) {
    g_interrupted = signal;
    if (g_child > 0)
        kill(static_cast<pid_t>(g_child), SIGKILL);
}

int await(pid_t child) {
    g_child = child;
    if (g_interrupted != 0)
        interrupt(g_interrupted);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    g_child = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

int failed(const SelectedTest& test, const std::string& why) {
    std::cout << "[  FAILED  ] " << test.full() << ": " << why << std::endl;
    return statusOfFailure;
}

/// @param arguments  the executable and its flags as given
int runTest(const SelectedTest& test, const std::vector<std::string>& arguments) {
    std::string why;
    const RunOfTest run(BoardOf::find(test.suite), why);
    if (!why.empty())
        return failed(test, why);
    std::vector<std::string> command = arguments;
    command.push_back("--gtest_filter=" + test.full());
    mox::host::SandboxOptions options;
    options.dieWithParent = true;
    options.environment = {{insideVariable, "1"}};
    options.writable = {MOX_BUILD_TREE};
    options.reachable = {MOX_SOURCE_TREE};
    const auto started = mox::host::spawnInSandbox(run.path(), run.node(), command, options, why);
    if (!started)
        return failed(test, why);
    const int status = await(started->sandbox);
    if (status > 128)
        failed(test, std::string("ended by signal ") + std::to_string(status - 128) + ", " + strsignal(status - 128));
    return status;
}

int runTests(const std::vector<SelectedTest>& tests, const std::vector<std::string>& arguments) {
    std::vector<std::string> failures;
    for (const SelectedTest& test : tests) {
        if (runTest(test, arguments) != 0)
            failures.push_back(test.full());
        if (g_interrupted != 0)
            return 128 + g_interrupted;
    }
    std::cout << "[==========] " << tests.size() << " tests ran, each on a board of its own.\n"
              << "[  PASSED  ] " << tests.size() - failures.size() << " tests.\n";
    for (const std::string& name : failures)
        std::cout << "[  FAILED  ] " << name << '\n';
    return failures.empty() ? 0 : statusOfFailure;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv, argv + argc);
    arguments[0] = std::filesystem::read_symlink("/proc/self/exe").string();
    ::testing::InitGoogleMock(&argc, argv);
    if (std::getenv(insideVariable) != nullptr || GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    const auto misspelt = boardsWithoutSuite();
    for (const std::string& suite : misspelt)
        std::cerr << "BoardOf names the suite " << suite << ", which has no test here\n";
    if (!misspelt.empty())
        return statusOfFailure;
    const auto tests = selectedTests();
    const std::string report = GTEST_FLAG_GET(output);
    if (tests.size() > 1 && !report.empty() && report.back() != '/') {
        std::cerr << "each test writes a report of its own: --gtest_output=" << report
                  << " must name a directory, with '/'\n";
        return statusOfFailure;
    }
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        ::signal(number, interrupt);
    return tests.size() == 1 ? runTest(tests.front(), arguments) : runTests(tests, arguments);
}
