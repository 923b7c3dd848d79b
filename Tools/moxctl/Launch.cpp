#include "Launch.hpp"

#include "Failure.hpp"

#include <fcntl.h>
#include <host/run/Sandbox.hpp>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace mox::tools {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t tailLines = 15;

class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    ~Descriptor() {
        if (m_fd >= 0) {
            close(m_fd);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }

private:
    int m_fd;
};

std::string labelOf(const LaunchRequest& request) {
    return "service '" + request.name + "'";
}

std::vector<std::string> splitPaths(const char* paths) {
    std::istringstream stream(paths != nullptr ? paths : "");
    std::vector<std::string> all;
    for (std::string path; std::getline(stream, path, ':');) {
        if (!path.empty()) {
            all.push_back(path);
        }
    }
    return all;
}

} // namespace

Launched launch(const LaunchRequest& request) {
    const Descriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
    const Descriptor output(open(request.outputPath.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666));
    if (output.get() < 0) {
        throw Failure(ExitStatus::failed, request.outputPath + ": " + std::strerror(errno));
    }
    Launched launched{request.node, request.name, -1, {}, request.outputPath, lseek(output.get(), 0, SEEK_END)};
    host::SandboxOptions options;
    options.newSession = true;
    options.environment = {{"MOX_SERVICE", request.name}};
    options.standardInput = nothing.get();
    options.standardOutput = output.get();
    options.standardError = output.get();
    std::string why;
    const auto started = host::spawnInSandbox(request.runPath, request.node, request.argv, options, why);
    if (!started) {
        throw Failure(ExitStatus::failed, labelOf(request) + ": " + why,
                      outputTail(launched.outputPath, launched.outputBegin));
    }
    launched.sandbox = started->sandbox;
    // One that has ended already is noticed by whoever waits for the sandbox.
    launched.process = readProcess(static_cast<std::uint32_t>(started->process)).value_or(ProcessFacts{});
    return launched;
}

std::vector<std::string> outputTail(const std::string& path, std::int64_t begin) {
    std::ifstream file(path, std::ios::binary);
    file.seekg(begin);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
        if (lines.size() > tailLines) {
            lines.erase(lines.begin());
        }
    }
    return lines;
}

std::string ownDirectory() {
    std::error_code ignored; // without /proc there is no such directory
    return fs::read_symlink("/proc/self/exe", ignored).parent_path().string();
}

std::string findExecutable(const std::string& name, const std::vector<std::string>& directories) {
    std::vector<std::string> candidates = directories;
    for (const std::vector<std::string>& more :
         {splitPaths(std::getenv("MOX_EXE_PATH")), {ownDirectory()}, splitPaths(std::getenv("PATH"))}) {
        candidates.insert(candidates.end(), more.begin(), more.end());
    }
    if (name.find('/') != std::string::npos) {
        candidates = {""};
    }
    std::string lookedAt;
    for (const std::string& directory : candidates) {
        const std::string path = (fs::path(directory) / name).string();
        if (access(path.c_str(), X_OK) == 0 && !fs::is_directory(path)) {
            return fs::absolute(path).string();
        }
        lookedAt.append(lookedAt.empty() ? "" : ":").append(directory);
    }
    throw Failure(ExitStatus::notFound, "executable '" + name + "' not found" +
                                            (lookedAt.empty() ? "" : " in " + lookedAt) +
                                            " (see --exe-dir and MOX_EXE_PATH)");
}

} // namespace mox::tools
