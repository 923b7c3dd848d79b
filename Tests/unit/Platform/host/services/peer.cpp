// Another process of the run, for tests of what reaches it: subscribes, takes shell commands, registers a
// troubleshooting file, and prints each publication that it gets. Ends with its standard input.
#include <pal/AaConfig.h>
#include <pal/AaShell.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysMb.h>
#include <pal/AaSysTime.h>
#include <pal/AaTrbl.h>

#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

constexpr std::uint16_t publication = 0x1198;

int tellTime(int, const char* const*, char* output, std::size_t outputSize) {
    SAaTime time{};
    AaUtcTimeGet(&time);
    std::snprintf(output, outputSize, "%u-%u-%u", time.year, time.month, time.day);
    return 0;
}

EAaTrblCbStatus store(const char* fileName, const std::uint32_t*, std::uint32_t) {
    std::ofstream(fileName) << "state of the peer";
    return EAaTrblCbStatus_Ok;
}

bool start(const char* fileName, std::uint32_t& self) {
    if (AaConfigEarlyStartup() != 0 || AaStartupEeStartup() != 0)
        return false;
    self = AaSysComSicadGet(AaSysComEuUserRegister(0), AaSysComGetOwnNid());
    return AaSysMbSubscribe(publication, self, 0, 15) == 0 && AaShellAddCommand("time", "node time", tellTime) == 0 &&
           AaShellApplicationStartup() == 0 &&
           AaTrblFileRegister("peer.txt", fileName, EAaTrblFilePriority_High, 0, nullptr, store, nullptr, nullptr) == 0;
}

bool inputHasEnded() {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, 0) != 0;
}

} // namespace

int main(int argc, char** argv) {
    std::uint32_t self = 0;
    if (argc != 2 || !start(argv[1], self))
        return 1;
    std::printf("ready %u\n", self);
    std::fflush(stdout);
    while (!inputHasEnded()) {
        void* message = AaSysComMsgReceive(50'000, 0);
        if (!message)
            continue;
        std::printf("got %.*s\n", static_cast<int>(AaSysComMsgGetPayloadSize(message)),
                    static_cast<const char*>(AaSysComMsgGetPayload(message)));
        std::fflush(stdout);
        AaSysComMsgDestroy(&message);
    }
    return AaStartupEeShutdown();
}
