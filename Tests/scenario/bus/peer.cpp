// A process of a run that does what it is told: a command a line on standard input, an answer a line on standard
// output.
#include "PeerFlows.hpp"
#include "host/bus/BadDatagrams.hpp"

#include <pal/AaConfig.h>
#include <pal/AaPro.h>
#include <pal/AaSem.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

using namespace mox::testing;

namespace {

using Words = std::istringstream;

std::uint32_t number(Words& words) {
    std::string word = "0";
    words >> word;
    return static_cast<std::uint32_t>(std::stoull(word, nullptr, 0));
}

std::int32_t signedNumber(Words& words) {
    std::string word = "0";
    words >> word;
    return std::stoi(word, nullptr, 0);
}

std::uint16_t shortNumber(Words& words) {
    return static_cast<std::uint16_t>(number(words));
}

class Commands {
public:
    Commands();
    std::string carryOut(const std::string& line);

private:
    void addRegistrations();
    void addMessages();
    void addFlows();
    void addSemaphores();
    void addTags();
    void addProcess();
    void addBusinessOfMixedTraffic();

    void* m_kept = nullptr;
    TAaSem m_sem = nullptr;
    std::map<std::string, std::function<std::string(Words&)>> m_commands;
};

Commands::Commands() {
    addRegistrations();
    addMessages();
    addFlows();
    addSemaphores();
    addTags();
    addProcess();
    addBusinessOfMixedTraffic();
}

std::string Commands::carryOut(const std::string& line) {
    Words words(line);
    std::string name;
    words >> name;
    const auto found = m_commands.find(name);
    return found == m_commands.end() ? "unknown command " + name : found->second(words);
}

void Commands::addRegistrations() {
    m_commands["register"] = [](Words& words) { return std::to_string(AaSysComEuUserRegister(shortNumber(words))); };
    m_commands["further"] = [](Words& words) { return std::to_string(AaSysComUserRegister(shortNumber(words))); };
    m_commands["deregister"] = [](Words& words) { return std::to_string(AaSysComUserDeregister(shortNumber(words))); };
    m_commands["link"] = [](Words& words) {
        const std::uint32_t watched = number(words);
        return std::to_string(AaSysComLinkRegister(watched, number(words)));
    };
    m_commands["unlink"] = [](Words& words) {
        const std::uint32_t watched = number(words);
        return std::to_string(AaSysComLinkDeregister(watched, number(words)));
    };
    m_commands["hop"] = [](Words& words) {
        const std::uint16_t node = shortNumber(words);
        return std::to_string(AaSysComHopRegister(node, number(words)));
    };
    // cycles COUNT CPID ADDRESS: register, send to an address and deregister again and again
    m_commands["cycles"] = [](Words& words) {
        const std::uint32_t count = number(words);
        const std::uint16_t cpid = shortNumber(words);
        const std::uint32_t to = number(words);
        std::uint32_t failures = 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint16_t got = AaSysComEuUserRegister(cpid);
            if (got == 0 || (to != 0 && AaSysComMsgSend(AaSysComMsgCreate(1, 8, to)) != 0))
                ++failures;
            AaSysComUserDeregister(got);
        }
        return std::to_string(failures);
    };
}

void Commands::addMessages() {
    // receive TIMEOUT: takes a message and keeps it for the commands that follow
    m_commands["receive"] = [this](Words& words) {
        AaSysComMsgDestroy(&m_kept);
        m_kept = AaSysComMsgReceive(signedNumber(words), 0);
        return describe(m_kept);
    };
    // wait TIMEOUT: how many milliseconds it takes until nothing has come
    m_commands["wait"] = [](Words& words) {
        const std::int32_t timeoutUs = signedNumber(words);
        const Stopwatch watch;
        void* message = AaSysComMsgReceive(timeoutUs, 0);
        const bool came = message != nullptr;
        AaSysComMsgDestroy(&message);
        return came ? std::string("-1") : std::to_string(watch.ms());
    };
    m_commands["select"] = [this](Words& words) {
        const std::int32_t timeout = signedNumber(words);
        const std::uint16_t filter[2] = {1, shortNumber(words)};
        AaSysComMsgDestroy(&m_kept);
        m_kept = AaSysComMsgReceiveSelective(timeout, filter);
        return describe(m_kept);
    };
    m_commands["reply"] = [this](Words& words) {
        return std::to_string(AaSysComMsgSend(AaSysComMsgCreateReply(m_kept, shortNumber(words), 0)));
    };
    m_commands["forward"] = [this](Words& words) {
        return std::to_string(AaSysComMsgForward(AaSysComMsgTake(&m_kept), number(words)));
    };
    m_commands["relay"] = [this](Words& words) {
        return std::to_string(AaSysComMsgRelay(AaSysComMsgTake(&m_kept), number(words)));
    };
    // hoard LEFT: keeps all memory for messages but for so many short ones
    m_commands["hoard"] = [](Words& words) {
        std::vector<void*> spared(number(words));
        for (void*& message : spared)
            message = AaSysComMsgCreate(1, 1, 0);
        std::vector<void*> kept;
        for (std::uint32_t size = 65535; size != 0; size /= 2)
            for (void* message = nullptr; (message = AaSysComMsgCreate(1, size, 0)) != nullptr;)
                kept.push_back(message);
        for (void*& message : spared)
            AaSysComMsgDestroy(&message);
        return std::to_string(kept.size());
    };
    // trailer TO ID SIZE CRC: sends a message with trailer
    m_commands["trailer"] = [](Words& words) {
        const std::uint32_t to = number(words);
        const std::uint16_t id = shortNumber(words);
        void* message = numbered(id, number(words), to, 0);
        AaSysComMsgAddTrailer(&message);
        static_cast<SAaSysComMsgTrailer*>(AaSysComMsgGetTrailer(message))->crc = shortNumber(words);
        return std::to_string(AaSysComMsgSend(message));
    };
}

void Commands::addFlows() {
    // send TO ID SIZE COUNT FIRST
    m_commands["send"] = [](Words& words) {
        const std::uint32_t to = number(words);
        const std::uint16_t id = shortNumber(words);
        const std::uint32_t size = number(words);
        const std::uint32_t count = std::max(1U, number(words));
        return sendMany(to, id, size, count, number(words), false);
    };
    m_commands["fill"] = [](Words& words) {
        const std::uint32_t to = number(words);
        const std::uint32_t size = number(words);
        return sendMany(to, 1, size, number(words), 0, true);
    };
    // collect COUNT TIMEOUT [NAPAFTER]
    m_commands["collect"] = [](Words& words) {
        const std::uint32_t count = number(words);
        const std::int32_t timeoutUs = signedNumber(words);
        return collect(count, timeoutUs, number(words));
    };
    // exchange TO SIZE COUNT: sends all before it receives as many
    m_commands["exchange"] = [](Words& words) {
        const std::uint32_t to = number(words);
        const std::uint32_t size = number(words);
        const std::uint32_t count = number(words);
        const std::string sent = sendMany(to, 1, size, count, 0, true);
        return sent.substr(0, sent.rfind(' ')) + " " + collect(count, 60000000, 0);
    };
    // echo COUNT: answers so many messages
    m_commands["echo"] = [](Words& words) {
        for (std::uint32_t left = number(words); left > 0; --left) {
            void* message = AaSysComMsgReceive(60000000, 0);
            void* answer = AaSysComMsgCreateReply(message, AaSysComMsgGetId(message), 0);
            AaSysComMsgDestroy(&message);
            if (AaSysComMsgSend(answer) != 0)
                return std::string("failed");
        }
        return std::string("echoed");
    };
    m_commands["clear"] = [](Words&) {
        for (void* message = nullptr; (message = AaSysComMsgReceive(0, 0)) != nullptr;)
            AaSysComMsgDestroy(&message);
        return std::string("clear");
    };
    // drain: throws messages away until one with id 0x4242 comes
    m_commands["drain"] = [](Words&) {
        for (std::uint16_t id = 0; id != 0x4242;) {
            void* message = AaSysComMsgReceive(60000000, 0);
            if (message == nullptr)
                return std::string("time-out");
            id = AaSysComMsgGetId(message);
            AaSysComMsgDestroy(&message);
        }
        return std::string("drained");
    };
    m_commands["server"] = [](Words& words) { return startServer(shortNumber(words)); };
    m_commands["pingpong"] = [](Words& words) {
        const std::uint32_t to = number(words);
        for (std::uint32_t left = number(words); left > 0; --left) {
            if (AaSysComMsgSend(AaSysComMsgCreate(1, 0, to)) != 0)
                return std::string("failed");
            void* answer = AaSysComMsgReceive(60000000, 0);
            if (answer == nullptr)
                return std::string("time-out");
            AaSysComMsgDestroy(&answer);
        }
        return std::string("played");
    };
}

void Commands::addSemaphores() {
    m_commands["semopen"] = [this](Words& words) {
        std::string name;
        words >> name;
        return std::to_string(AaSemCreateNamedC(&m_sem, name.c_str(), number(words)));
    };
    m_commands["semclose"] = [this](Words&) { return std::to_string(AaSemDestroy(m_sem)); };
    m_commands["semunlink"] = [](Words& words) {
        std::string name;
        words >> name;
        return std::to_string(AaSemUnlink(name.c_str()));
    };
    m_commands["semvalue"] = [this](Words&) {
        std::int32_t value = -1;
        AaSemGetValue(m_sem, &value);
        return std::to_string(value);
    };
    m_commands["sempost"] = [this](Words& words) {
        int failures = 0;
        for (std::uint32_t left = number(words); left > 0; --left)
            failures += AaSemPost(m_sem) == 0 ? 0 : 1;
        return std::to_string(failures);
    };
    m_commands["semwait"] = [this](Words& words) {
        int failures = 0;
        for (std::uint32_t left = number(words); left > 0; --left)
            failures += AaSemWait(m_sem) == 0 ? 0 : 1;
        return std::to_string(failures);
    };
}

void Commands::addTags() {
    static std::atomic<bool> held{false};
    static std::atomic<int> seen{0};
    // observe NAME: counts publications of a tag, and holds on to the first one
    m_commands["observe"] = [](Words& words) {
        std::string name;
        words >> name;
        held = true;
        return std::to_string(AaConfigTagRegister(name.c_str(), [](const char*, const void*, unsigned int) {
            while (held)
                std::this_thread::yield();
            ++seen;
        }));
    };
    m_commands["go-on"] = [](Words&) {
        held = false;
        return std::string("going on");
    };
    // seen COUNT: waits until so many publications have been seen
    m_commands["seen"] = [](Words& words) {
        const Stopwatch watch;
        for (const auto count = static_cast<int>(number(words)); seen < count && watch.ms() < 20000;)
            std::this_thread::yield();
        return std::to_string(seen);
    };
    // publish NAME SIZE MOST: until one takes long; how many went fast
    m_commands["publish"] = [](Words& words) {
        std::string name;
        words >> name;
        const std::string value(number(words), 'v');
        const std::uint32_t most = number(words);
        for (std::uint32_t done = 0; done < most; ++done) {
            const Stopwatch watch;
            if (AaConfigTagPublicSet(name.c_str(), value.data(), static_cast<unsigned int>(value.size())) != 0)
                return std::string("failed");
            if (watch.ms() > 1500)
                return std::to_string(done);
        }
        return std::to_string(most);
    };
}

void Commands::addProcess() {
    m_commands["node"] = [](Words&) { return std::to_string(AaSysComGetOwnNid()); };
    m_commands["dropped"] = [](Words&) { return std::to_string(mox::host::droppedDatagrams()); };
    m_commands["sleep"] = [](Words& words) {
        std::this_thread::sleep_for(std::chrono::milliseconds(number(words)));
        return std::string("slept");
    };
    m_commands["descriptors"] = [](Words&) {
        int count = 0;
        DIR* directory = opendir("/proc/self/fd");
        while (readdir(directory) != nullptr)
            ++count;
        closedir(directory);
        return std::to_string(count);
    };
    // await-dropped COUNT: waits until so many datagrams have been dropped
    m_commands["await-dropped"] = [](Words& words) {
        const std::uint32_t count = number(words);
        const Stopwatch watch;
        while (mox::host::droppedDatagrams() < count && watch.ms() < 20000)
            std::this_thread::yield();
        return std::to_string(mox::host::droppedDatagrams());
    };
    // exhaust [LEFT]: uses up the descriptors but for a few
    m_commands["exhaust"] = [](Words& words) {
        int last = -1;
        for (int fd = -1; (fd = open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0;)
            last = fd;
        for (std::uint32_t left = number(words); left > 0; --left)
            close(last--);
        return std::to_string(last);
    };
    m_commands["shutdown"] = [](Words&) { return std::to_string(AaStartupEeShutdown()); };
    m_commands["startup"] = [](Words&) {
        AaConfigEarlyStartup();
        return std::to_string(AaStartupEeStartup());
    };
}

void Commands::addBusinessOfMixedTraffic() {
    // local TO COUNT BURST: starts an EU of this process that sends bursts
    m_commands["local"] = [](Words& words) {
        Bursts what{};
        what.to = number(words);
        what.count = number(words);
        what.burst = number(words);
        const TAaProEuEntry entry = [](void* argument) -> void* {
            AaSysComEuUserRegister(0);
            sendInBursts(*static_cast<Bursts*>(argument));
            return nullptr;
        };
        return std::to_string(AaSysComEuCreateAndStart(nullptr, "local", entry, 65536, 1, &what, sizeof(what)));
    };
    m_commands["bursts"] = [](Words& words) {
        Bursts what{};
        what.to = number(words);
        what.count = number(words);
        what.burst = number(words);
        sendInBursts(what);
        return std::string("sent");
    };
}

} // namespace

int main() {
    if (AaConfigEarlyStartup() != EAaConfigRetVal_NoError || AaStartupEeStartup() != EAaStartupRetVal_NoError) {
        std::cout << "cannot start" << std::endl;
        return 1;
    }
    std::cout << "started" << std::endl;
    Commands commands;
    for (std::string line; std::getline(std::cin, line) && line != "end";)
        std::cout << commands.carryOut(line) << std::endl;
    AaStartupEeShutdown();
    std::cout << "ended" << std::endl;
    return 0;
}
