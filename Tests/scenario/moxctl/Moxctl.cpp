#include "Moxctl.hpp"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace mox::testing {

namespace fs = std::filesystem;

CommandSetting settingFor(std::vector<std::pair<std::string, std::optional<std::string>>> changes) {
    CommandSetting setting;
    setting.environment = std::move(changes);
    for (const char* name : {"MOX_RUN", "MOX_NODE", "MOX_EXE_PATH", "MOX_BOARDS", "MOX_LOG"}) {
        const auto isName = [name](const auto& change) { return change.first == name; };
        if (std::none_of(setting.environment.begin(), setting.environment.end(), isName)) {
            setting.environment.emplace_back(name, std::nullopt);
        }
    }
    return setting;
}

Words moxctlWords(const Words& words) {
    Words all{MOXCTL_PATH};
    all.insert(all.end(), words.begin(), words.end());
    return all;
}

CommandResult moxctlAlone(const Words& words) {
    return runCommand(moxctlWords(words), settingFor({}));
}

TemporaryDirectory::TemporaryDirectory() : m_path((fs::temp_directory_path() / "moxctl-test-XXXXXX").string()) {
    if (mkdtemp(m_path.data()) == nullptr) {
        throw std::runtime_error(m_path + ": " + std::strerror(errno));
    }
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored; // what cannot be removed is no failure of the test
    fs::remove_all(m_path, ignored);
}

std::string TemporaryDirectory::write(const std::string& name, const std::string& text) const {
    std::string path = m_path + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

std::string boardWith(const std::vector<ServiceRow>& services, const std::string& node) {
    Json list = Json::array();
    for (const ServiceRow& service : services) {
        list.push_back({{"name", service.name}, {"executable", service.executable}, {"arguments", service.arguments}});
    }
    const Json unit{{"id", "KORA"}, {"hwSwId", "0x00500000"}};
    return Json{{"nodes", Json::array({{{"id", node}, {"unit", unit}, {"services", list}}})}}.dump();
}

SimulatedRun::SimulatedRun(const std::string& board, const std::string& directory)
    : m_path(m_directory.path() + "/" + directory) {
    const std::string name = board.empty() ? "echo-pair" : m_directory.write("board.json", board);
    const CommandResult made = moxctlAlone({"sim", "new", m_path, "--board", name});
    if (made.status != 0) {
        throw std::runtime_error("no run: " + made.err);
    }
}

SimulatedRun::~SimulatedRun() {
    moxctl({"sim", "down", "--wait", "0"});
}

CommandSetting SimulatedRun::setting() const {
    return settingFor({{"MOX_RUN", m_path}});
}

Json SimulatedRun::json(const Words& words) const {
    Words all = words;
    all.emplace_back("--json");
    const CommandResult result = moxctl(all);
    EXPECT_EQ(result.status, 0) << result.err;
    return Json::parse(result.out);
}

void SimulatedRun::up() const {
    const CommandResult result = moxctl({"sim", "up"});
    ASSERT_EQ(result.status, 0) << result.err;
}

pid_t SimulatedRun::pidOf(const std::string& node, const std::string& service) const {
    const Json status = json({"sim", "status"});
    for (const Json& item : status.at("services")) {
        if (item.at("node") == node && item.at("name") == service && !item.at("pid").is_null()) {
            return item.at("pid").get<pid_t>();
        }
    }
    throw std::runtime_error("no process of " + service + " on " + node);
}

void killProcess(pid_t pid) {
    const int process = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    pollfd watched{process, POLLIN, 0};
    const bool ended = kill(pid, SIGKILL) == 0 && poll(&watched, 1, 10'000) == 1;
    close(process);
    if (!ended) {
        throw std::runtime_error("process " + std::to_string(pid) + " cannot be killed");
    }
}

std::vector<Json> jsonLines(const std::string& text) {
    std::vector<Json> values;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        values.push_back(Json::parse(line));
    }
    return values;
}

} // namespace mox::testing
