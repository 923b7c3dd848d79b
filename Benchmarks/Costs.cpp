/// What the library costs while nothing happens: a debug line whose flag is off, the heap under messages, the start and
/// the memory of a service.
#include "harness/CountingHeap.hpp"
#include "harness/Suite.hpp"
#include "harness/TemporaryRun.hpp"

#include <mox/Logger.hpp>
#include <pal/AaConfig.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>

#include <host/pal/Rad.hpp>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

using namespace mox::bench;

namespace {

constexpr unsigned debugFlag = 0x20054;
constexpr int lines = 1'000'000;

template <typename Line>
double nanosecondsPerLine(Line line) {
    for (int i = 0; i < lines / 10; ++i) {
        line(i);
    }
    const std::uint64_t begin = nowNs();
    for (int i = 0; i < lines; ++i) {
        line(i);
    }
    return static_cast<double>(nowNs() - begin) / lines;
}

Samples debugLines() {
    const TemporaryRun run;
    TemporaryRun::join();
    const ps::hwapi::common::Logger logger(debugFlag, "Led");
    return {{"debug line, flag off [ns]", nanosecondsPerLine([](int i) {
                 AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, debugFlag, "value %d of %s", i, "something");
             })},
            {"Logger's debug line, flag off [ns]",
             nanosecondsPerLine([&](int i) { logger.logDebug("value %d of %s", i, "something"); })}};
}

Samples heapUnderMessages() {
    constexpr int messages = 100'000;
    const auto cycle = [] {
        void* msg = AaSysComMsgCreate(1, 64, 0);
        keep(msg);
        AaSysComMsgDestroy(&msg);
    };
    for (int i = 0; i < 1000; ++i) {
        cycle();
    }
    const long before = heapAllocations();
    const std::uint64_t begin = nowNs();
    for (int i = 0; i < messages; ++i) {
        cycle();
    }
    const double ns = static_cast<double>(nowNs() - begin) / messages;
    // one is added, because a median of nothing cannot be told from a missing one
    return {{"heap allocations in 100000 messages, plus 1", static_cast<double>(heapAllocations() - before) + 1},
            {"create and destroy 64 B [ns]", ns}};
}

double residentMiB(pid_t pid) {
    const std::string name = "/proc/" + std::to_string(pid) + "/statm";
    long total = 0;
    long resident = 0;
    FILE* file = std::fopen(name.c_str(), "r");
    if (file == nullptr || std::fscanf(file, "%ld %ld", &total, &resident) != 2) {
        die("statm");
    }
    std::fclose(file);
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576.0;
}

/// From the creation of the process to state 2 in its state parameter.
Samples serviceStart(const char* executable, unsigned stateParameter) {
    const TemporaryRun run;
    TemporaryRun::join();
    const std::uint64_t begin = nowNs();
    const pid_t service = spawn([=] {
        if (std::freopen("/dev/null", "w", stdout) == nullptr || std::freopen("/dev/null", "w", stderr) == nullptr) {
            die("freopen");
        }
        execl(executable, executable, static_cast<char*>(nullptr));
        _exit(127);
    });
    while (mox::host::rad::value(stateParameter) != 2) {
        int status = 0;
        if (waitpid(service, &status, WNOHANG) == service) {
            die("the service ended");
        }
        usleep(100);
    }
    const double ms = static_cast<double>(nowNs() - begin) / 1e6;
    usleep(200'000);
    const double memory = residentMiB(service);
    kill(service, SIGKILL);
    reap(service);
    return {{"start to state 2 [ms]", ms}, {"resident memory, idle [MiB]", memory}};
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s MOXEchoExe\n", argv[0]);
        return 2;
    }
    const std::string executable = argv[1];
    Suite suite("costs at rest");
    suite.add("libMOX", debugLines);
    suite.add("libMOX messages", heapUnderMessages);
    suite.add("echo service", [=] { return serviceStart(executable.c_str(), 0x220034); });
    suite.goal("debug line, flag off [ns]", "libMOX", Goal::atMost, 20);
    suite.goal("heap allocations in 100000 messages, plus 1", "libMOX messages", Goal::atMost, 1);
    suite.goal("start to state 2 [ms]", "echo service", Goal::atMost, 50);
    suite.goal("resident memory, idle [MiB]", "echo service", Goal::atMost, 12);
    return suite.run() ? 0 : 1;
}
