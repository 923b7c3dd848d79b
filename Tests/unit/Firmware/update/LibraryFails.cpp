// The calls come here by the linker (--wrap); those of snprintf in hardened builds under the name that they have there.
#include "unit/Firmware/update/LibraryFails.hpp"

#include <dirent.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

std::atomic<const char*> s_format{nullptr};
std::atomic<int> s_result{0};
std::atomic<int> s_opensLeft{0};

bool isToFail(const char* format) {
    const char* const failing = s_format;
    return failing != nullptr && std::strcmp(format, failing) == 0;
}

} // namespace

namespace mox::firmwaretest {

PrintingFails::PrintingFails(const char* format, int result) {
    s_result = result;
    s_format = format;
}

PrintingFails::~PrintingFails() {
    s_format = nullptr;
}

OpeningDirectoriesFails::OpeningDirectoriesFails(int nth) {
    s_opensLeft = nth;
}

OpeningDirectoriesFails::~OpeningDirectoriesFails() {
    s_opensLeft = 0;
}

} // namespace mox::firmwaretest

extern "C" {

DIR* __real_opendir(const char* path);
DIR* __wrap_opendir(const char* path);

DIR* __wrap_opendir(const char* path) {
    if (s_opensLeft > 0 && --s_opensLeft == 0) {
        errno = EIO;
        return nullptr;
    }
    return __real_opendir(path);
}

int __wrap_snprintf(char* text, std::size_t size, const char* format, ...) __attribute__((format(printf, 3, 4)));
int __wrap___snprintf_chk(char* text, std::size_t size, int flag, std::size_t room, const char* format, ...)
    __attribute__((format(printf, 5, 6)));

int __wrap_snprintf(char* text, std::size_t size, const char* format, ...) {
    if (isToFail(format))
        return s_result;
    va_list args;
    va_start(args, format);
    const int result = std::vsnprintf(text, size, format, args);
    va_end(args);
    return result;
}

int __wrap___snprintf_chk(char* text, std::size_t size, int /*flag*/, std::size_t /*room*/, const char* format, ...) {
    if (isToFail(format))
        return s_result;
    va_list args;
    va_start(args, format);
    const int result = std::vsnprintf(text, size, format, args);
    va_end(args);
    return result;
}
}
