#include "SandboxPaths.hpp"

#include <elf.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace mox::host {
namespace {

namespace fs = std::filesystem;

bool isAtOrBelow(const std::string& path, const std::string& directory) {
    return path == directory || path.compare(0, directory.size() + 1, directory + "/") == 0;
}

/// e_machine of an ELF file; EM_NONE for anything else.
unsigned machineOf(const std::string& executable) {
    std::array<unsigned char, 20> head{};
    std::ifstream file(executable, std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(head.data()), head.size()) || std::memcmp(head.data(), ELFMAG, SELFMAG) != 0)
        return EM_NONE;
    const bool bigEndian = head[EI_DATA] == ELFDATA2MSB;
    return bigEndian ? head[18] * 256U + head[19] : head[19] * 256U + head[18];
}

} // namespace

const std::vector<PrivateDirectory>& privateDirectories() {
    static const std::vector<PrivateDirectory> all = {
        {"/ffs", "ffs"},
        {"/ram", "ram"},
        {"/rpram", "rpram"},
        {"/var/tmp/hwapi", "rpram/hwapi"},
        {"/tmp", "tmp"},
        {"/opt/mox", "opt/mox"},
        {"/sys/devices/platform", "sys/devices/platform"},
    };
    return all;
}

bool isHidden(const std::string& path) {
    const auto& all = privateDirectories();
    return std::any_of(all.begin(), all.end(),
                       [&path](const PrivateDirectory& own) { return isAtOrBelow(path, own.inside); });
}

bool wouldUncover(const std::string& path) {
    const auto& all = privateDirectories();
    return path == "/" || std::any_of(all.begin(), all.end(),
                                      [&path](const PrivateDirectory& own) { return isAtOrBelow(own.inside, path); });
}

std::string absolutePath(const std::string& path) {
    std::string plain = fs::absolute(path).lexically_normal().string();
    if (plain.size() > 1 && plain.back() == '/')
        plain.pop_back();
    return plain;
}

std::string findProgram(const std::string& name) {
    if (name.find('/') != std::string::npos)
        return access(name.c_str(), X_OK) == 0 ? absolutePath(name) : "";
    const char* path = std::getenv("PATH");
    std::istringstream directories(path == nullptr ? "/usr/bin:/bin" : path);
    for (std::string directory; std::getline(directories, directory, ':');) {
        const std::string candidate = (directory.empty() ? "." : directory) + "/" + name;
        if (access(candidate.c_str(), X_OK) == 0 && !fs::is_directory(candidate))
            return absolutePath(candidate);
    }
    return "";
}

bool isForeign(const std::string& executable, const std::string& native) {
    const unsigned machine = machineOf(executable);
    return machine != EM_NONE && machine != machineOf(native);
}

std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> all;
    for (std::string word; stream >> word;)
        all.push_back(word);
    return all;
}

} // namespace mox::host
