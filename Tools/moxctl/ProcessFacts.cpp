#include "ProcessFacts.hpp"

#include "FileText.hpp"

#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string_view>
#include <vector>

namespace mox::tools {

namespace {

constexpr std::string_view emulator = "qemu-";
constexpr int signalBase = 128;

std::string fileOf(const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
}

/// A program for another processor stands behind its emulator.
std::string nameOf(const std::string& directory, const std::string& threadName) {
    std::string commandLine;
    readFileText(directory + "/cmdline", commandLine); // empty when it has just ended
    std::istringstream words(commandLine);
    std::string word;
    std::getline(words, word, '\0');
    std::string name = fileOf(word);
    std::error_code unreadable; // then it is none that was started
    while (name.compare(0, emulator.size(), emulator) == 0 && std::getline(words, word, '\0')) {
        name = std::filesystem::is_regular_file(word, unreadable) ? fileOf(word) : name;
    }
    return name.empty() ? threadName : name;
}

} // namespace

std::optional<ProcessFacts> readProcess(std::uint32_t pid) {
    const std::string directory = "/proc/" + std::to_string(pid);
    std::string status;
    readFileText(directory + "/stat", status); // empty when there is no such process
    const std::size_t nameBegin = status.find('(');
    // A name may hold blanks and brackets, so the fields count from the last one.
    const std::size_t nameEnd = status.rfind(')');
    if (nameBegin == std::string::npos || nameEnd == std::string::npos) {
        return std::nullopt;
    }
    std::istringstream fields(status.substr(nameEnd + 1));
    const std::vector<std::string> field{std::istream_iterator<std::string>(fields), {}};
    constexpr std::size_t state = 0, parent = 1, session = 3, startTicks = 19, residentPages = 21;
    if (field.size() <= residentPages || field[state] == "Z" || field[state] == "X") {
        return std::nullopt;
    }
    ProcessFacts facts;
    facts.pid = pid;
    facts.parent = static_cast<std::uint32_t>(std::stoul(field[parent]));
    facts.session = static_cast<std::uint32_t>(std::stoul(field[session]));
    facts.startTicks = std::stoull(field[startTicks]);
    facts.residentKib = std::stoull(field[residentPages]) * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)) / 1024;
    facts.name = nameOf(directory, status.substr(nameBegin + 1, nameEnd - nameBegin - 1));
    return facts;
}

int exitStatusOf(int waitStatus) {
    return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : signalBase + WTERMSIG(waitStatus);
}

std::string signalName(int exitStatus) {
    const char* name = exitStatus > signalBase ? sigabbrev_np(exitStatus - signalBase) : nullptr;
    return name != nullptr ? std::string("SIG") + name : "";
}

std::int64_t startTime(const ProcessFacts& process) {
    timespec now{};
    timespec sinceBoot{};
    clock_gettime(CLOCK_REALTIME, &now);
    clock_gettime(CLOCK_BOOTTIME, &sinceBoot);
    const auto startSeconds = process.startTicks / static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
    return now.tv_sec - sinceBoot.tv_sec + static_cast<std::int64_t>(startSeconds);
}

std::string showTime(std::int64_t secondsUtc) {
    const auto seconds = static_cast<time_t>(secondsUtc);
    tm parts{};
    gmtime_r(&seconds, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

} // namespace mox::tools
