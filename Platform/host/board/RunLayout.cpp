#include "RunLayout.hpp"

#include "../ddal/BmuReset.hpp"
#include "../ddal/FlashRecord.hpp"
#include "../pal/Rad.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace mox::host {
namespace {

namespace files = std::filesystem;

// What a process of the node finds under its root directory.
constexpr const char* directories[] = {"ffs", "ram", "rpram/hwapi", "tmp", "var/tmp", "opt/mox"};

// Below the flash file system that the software runs from.
constexpr const char* runningDirectories[] = {"logs", "boot"};

bool fail(std::string& why, const files::path& path, const std::error_code& error) {
    why = path.string() + ": " + error.message();
    return false;
}

bool makeDirectory(const files::path& path, std::string& why) {
    std::error_code error;
    files::create_directories(path, error);
    return !error || fail(why, path, error);
}

bool makeLink(const files::path& path, const char* target, std::string& why) {
    std::error_code error;
    files::create_directory_symlink(target, path, error);
    return !error || fail(why, path, error);
}

bool makeFile(const files::path& path, std::string& why) {
    if (!makeDirectory(path.parent_path(), why)) {
        return false;
    }
    if (std::ofstream(path)) {
        return true;
    }
    return fail(why, path, {errno, std::generic_category()});
}

std::string runningFileSystem(const Devices& devices) {
    const std::uint32_t running = devices.boot ? devices.boot->linuxActive : BootDevice().linuxActive;
    const auto& all = devices.flash;
    const auto found = std::find_if(all.begin(), all.end(), [running](const auto& fs) { return fs.id == running; });
    return found != all.end() ? found->path : std::string();
}

/// "/ffs/run" is the file system that the software runs from; a unit without one has a directory of that name.
bool layOutFlash(const files::path& root, const Devices& devices, std::string& why) {
    for (const auto& fileSystem : devices.flash) {
        if (!makeDirectory(root / fileSystem.path.substr(1), why)) {
            return false;
        }
    }
    const files::path run = root / "ffs/run";
    const std::string running = runningFileSystem(devices);
    if (!files::exists(run) && !running.empty() && !makeLink(run, files::path(running).filename().c_str(), why)) {
        return false;
    }
    return std::all_of(std::begin(runningDirectories), std::end(runningDirectories),
                       [&](const char* name) { return makeDirectory(run / name, why); });
}

bool layOutRoot(const files::path& root, const Devices& devices, std::string& why) {
    for (const char* name : directories) {
        if (!makeDirectory(root / name, why)) {
            return false;
        }
    }
    if (hasBmuReset(devices) && !makeFile(root / bmuResetFile, why)) {
        return false;
    }
    return makeLink(root / "var/tmp/hwapi", "../../rpram/hwapi", why) && layOutFlash(root, devices, why);
}

/// The records that make these images whole are put with the rest of the store.
bool fillFlash(const files::path& directory, const NodeDescription& node, std::string& why) {
    for (const FactoryImage& factory : factoryImages(node)) {
        const files::path path = directory / flashFile(factory.area);
        std::ofstream file(path, std::ios::binary);
        if (!(file << factory.bytes << std::flush)) {
            return fail(why, path, {errno, std::generic_category()});
        }
    }
    return true;
}

bool writeRadValues(const std::string& directory, const NodeDescription& node, std::string& why) {
    const int fd = ::open(directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        return fail(why, directory, {errno, std::generic_category()});
    }
    const auto words = rad::Words::open(fd, why);
    ::close(fd);
    if (!words) {
        return false;
    }
    for (const auto& [id, value] : node.radValues) {
        words->set(id, value);
    }
    return true;
}

} // namespace

bool layOutNode(const std::string& directory, const NodeDescription& node, std::string& why) {
    return makeDirectory(directory, why) && makeDirectory(directory + "/log", why) &&
           makeDirectory(directory + "/flash", why) && layOutRoot(directory + "/fs", node.devices, why) &&
           fillFlash(directory, node, why) && writeRadValues(directory, node, why);
}

} // namespace mox::host
