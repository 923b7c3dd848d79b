#include "Poll.hpp"
#include "host/pal/ConfigTools.hpp"
#include "host/run/Run.hpp"
#include "host/run/Sandbox.hpp"

#include <testkit/ChildService.hpp>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

namespace mox::testkit {
namespace {

constexpr unsigned int waitingForMessage = 2;
constexpr int stillRunning = -1;

std::string findExecutable(const std::string& name) {
    const char* path = std::getenv("MOX_EXE_PATH");
    std::istringstream directories(std::string(path == nullptr ? "" : path) + ":" MOX_BUILD_TREE "/bin");
    for (std::string directory; std::getline(directories, directory, ':');) {
        std::string candidate = directory;
        candidate.append("/MOX").append(name).append("Exe");
        if (access(candidate.c_str(), X_OK) == 0)
            return candidate;
    }
    return MOX_BUILD_TREE "/bin/MOX" + name + "Exe"; // its absence is told by who starts it
}

} // namespace

struct ChildService::State {
    explicit State(ChildRequest what) : request(std::move(what)) {}
    ~State();
    bool start();
    int end(); ///< exit status, or stillRunning
    std::string printed() const;

    ChildRequest request;
    host::Sandboxed process;
    std::string outputFile;
    std::unique_ptr<host::RadOfNode> rad;
    int status = stillRunning;
};

ChildService::State::~State() {
    if (process.sandbox <= 0 || end() != stillRunning)
        return;
    kill(process.process, SIGKILL);
    waitpid(process.sandbox, nullptr, 0);
}

bool ChildService::State::start() {
    std::string why;
    if (host::Run::attach(why) != host::Run::Attach::done) {
        ADD_FAILURE() << "this test has no board: " << why;
        return false;
    }
    const host::Run& run = *host::Run::current();
    if (request.node == 0)
        request.node = run.node();
    rad = host::RadOfNode::open(run, request.node, why);
    outputFile = run.path() + "/" + request.name + "-XXXXXX";
    const int output = mkostemp(outputFile.data(), O_CLOEXEC | O_APPEND);
    if (rad == nullptr || output < 0) {
        ADD_FAILURE() << "service " << request.name
                      << " could not be started: " << (rad == nullptr ? why : outputFile + ": " + std::strerror(errno));
        return false;
    }
    if (request.stateRadId != 0)
        rad->set(request.stateRadId, 0); // a service that was killed has left the state that is waited for
    std::vector<std::string> command = request.arguments;
    command.insert(command.begin(), findExecutable(request.name));
    host::SandboxOptions options;
    options.dieWithParent = true;
    options.environment = request.environment;
    options.environment.insert(options.environment.begin(), {"MOX_LOG", "debug"});
    options.standardOutput = options.standardError = output;
    options.writable = {MOX_BUILD_TREE};
    const auto started = host::spawnInSandbox(run.path(), request.node, command, options, why);
    close(output);
    if (!started) {
        ADD_FAILURE() << "service " << request.name << " could not be started: " << why << printed();
        return false;
    }
    process = *started;
    return true;
}

int ChildService::State::end() {
    if (status != stillRunning || process.sandbox <= 0)
        return status;
    int how = 0;
    if (waitpid(process.sandbox, &how, WNOHANG) == process.sandbox)
        status = WIFEXITED(how) ? WEXITSTATUS(how) : 128 + WTERMSIG(how);
    return status;
}

std::string ChildService::State::printed() const {
    std::ifstream file(outputFile);
    std::ostringstream all;
    all << "\nit printed:\n" << file.rdbuf();
    return all.str();
}

ChildService::ChildService(const ChildRequest& request) : m_state(std::make_unique<State>(request)) {
    if (!m_state->start() || request.stateRadId == 0)
        return;
    pollFor(request.limitMs, [this] {
        return m_state->end() != stillRunning || radValue(m_state->request.stateRadId) == waitingForMessage;
    });
    if (m_state->end() != stillRunning)
        ADD_FAILURE() << "service " << request.name << " has ended with status " << m_state->status
                      << m_state->printed();
    else if (radValue(request.stateRadId) != waitingForMessage)
        ADD_FAILURE() << "service " << request.name << " does not wait for messages after " << request.limitMs
                      << " ms: state " << radValue(request.stateRadId) << m_state->printed();
}

ChildService::~ChildService() = default;
ChildService::ChildService(ChildService&&) noexcept = default;

bool ChildService::isRunning() {
    return m_state->process.sandbox > 0 && m_state->end() == stillRunning;
}

void ChildService::signal(int number) {
    if (isRunning())
        kill(m_state->process.process, number);
}

int ChildService::stop(unsigned limitMs) {
    signal(SIGTERM);
    if (!pollFor(limitMs, [this] { return !isRunning(); })) {
        signal(SIGKILL);
        pollFor(limitMs, [this] { return !isRunning(); });
    }
    return m_state->status;
}

int ChildService::awaitEnd(unsigned limitMs) {
    pollFor(limitMs, [this] { return !isRunning(); });
    return m_state->status;
}

unsigned int ChildService::radValue(unsigned int id) const {
    const auto parameter = m_state->rad == nullptr ? std::nullopt : m_state->rad->get(id);
    return parameter ? parameter->value : 0;
}

::testing::AssertionResult ChildService::awaitState(unsigned int state, unsigned limitMs) {
    const unsigned int id = m_state->request.stateRadId;
    pollFor(limitMs, [&] { return radValue(id) == state || !isRunning(); });
    if (radValue(id) == state)
        return ::testing::AssertionSuccess();
    auto failure = ::testing::AssertionFailure() << m_state->request.name;
    if (isRunning())
        failure << " is in state " << radValue(id) << " after " << limitMs << " ms, not in " << state;
    else
        failure << " has ended with status " << m_state->status << " in state " << radValue(id) << ", not in " << state;
    return failure << m_state->printed();
}

std::vector<std::string> ChildService::output() const {
    std::ifstream file(m_state->outputFile);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

::testing::AssertionResult ChildService::awaitOutput(const ::testing::Matcher<std::string>& line, unsigned limitMs) {
    const auto found = [&] {
        for (const std::string& printed : output())
            if (line.Matches(printed))
                return true;
        return false;
    };
    if (pollFor(limitMs, found))
        return ::testing::AssertionSuccess();
    std::ostringstream wanted;
    line.DescribeTo(&wanted);
    return ::testing::AssertionFailure() << "within " << limitMs << " ms no line of " << m_state->request.name << " "
                                         << wanted.str() << m_state->printed();
}

} // namespace mox::testkit
