#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <memory>
#include <optional>

namespace ps::hwapi::common::update {
namespace {

constexpr const char* forcedFunction = "is_firmware_update_forced";

struct CloseStream {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, CloseStream>;

/// As the C library opens a file, but what lies there under a marker's name, a FIFO say, does not make the caller wait.
int openMarker(const char* path, int flags) {
    return open(path, flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
}

Stream openStream(const char* path, int flags, const char* mode) {
    const int descriptor = openMarker(path, flags);
    if (descriptor < 0)
        return nullptr;
    Stream stream(fdopen(descriptor, mode));
    if (!stream)
        close(descriptor);
    return stream;
}

bool isThere(const char* path) {
    const int descriptor = openMarker(path, O_RDONLY);
    if (descriptor >= 0)
        close(descriptor);
    return descriptor >= 0;
}

/// Reads how many forced updates are left. A number beyond 32 bits is the nearest one within.
std::optional<int> readCount(std::FILE* stream) {
    long number = 0;
    // NOLINTNEXTLINE(cert-err34-c): the result says whether there is a number, and a large one is clamped
    const int result = std::fscanf(stream, "%ld", &number);
    const int count = static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
    if (result == 1)
        return count;
    syslog(LOG_INFO, "%s(): fscanf() failed %d %d", forcedFunction, result, count);
    return std::nullopt;
}

bool writeCount(const char* path, int count) {
    const Stream stream = openStream(path, O_WRONLY | O_CREAT | O_TRUNC, "w");
    if (!stream) {
        syslog(LOG_INFO, "%s(): fopen() failed %d", forcedFunction, errno);
        return false;
    }
    std::setvbuf(stream.get(), nullptr, _IONBF, 0); // so that a full file system is noticed here and not at closing
    const int result = std::fprintf(stream.get(), "%d", count);
    if (result < 0)
        syslog(LOG_INFO, "%s(): fprintf() failed %d", forcedFunction, result);
    return result >= 0;
}

} // namespace
} // namespace ps::hwapi::common::update

int is_firmware_update_disabled() {
    using namespace ps::hwapi::common::update;
    return isThere(constant::disableMarker) || isThere(disableMarkerOf(unit_type()).data()) ? 1 : 0;
}

int is_firmware_update_forced(const char* componentName) {
    using namespace ps::hwapi::common::update;
    const MarkerPath path = forceMarkerOf(unit_type(), componentName);
    Stream marker = openStream(path.data(), O_RDONLY, "r");
    if (!marker)
        return 0;
    const std::optional<int> left = readCount(marker.get());
    marker.reset();
    if (!left || *left < 1 || !writeCount(path.data(), *left - 1))
        return 0;
    syslog(LOG_INFO, "%s(): yes %s %d", forcedFunction, componentName, *left);
    return 1;
}
