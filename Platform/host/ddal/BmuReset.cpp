#include "BmuReset.hpp"

#include "../board/Description.hpp"
#include "../run/Run.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

namespace mox::host {

namespace {

std::string pathOf(const Run& run, std::uint16_t node) {
    return run.nodePath(node) + "/fs/" + bmuResetFile;
}

} // namespace

bool hasBmuReset(const Devices& devices) {
    return std::any_of(devices.fpgas.begin(), devices.fpgas.end(), [](const auto& fpga) { return fpga.resetControl; });
}

bool bmuResetIsAsked(const Run& run, std::uint16_t node) {
    const std::string path = pathOf(run, node);
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && status.st_size > 0 && std::ifstream(path).get() == '1';
}

void forgetBmuReset(const Run& run, std::uint16_t node) {
    // Fails where there is no such file, which is as good.
    [[maybe_unused]] const int result = ::truncate(pathOf(run, node).c_str(), 0);
}

} // namespace mox::host
