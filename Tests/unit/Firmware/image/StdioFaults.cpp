#include "unit/Firmware/image/StdioFaults.hpp"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>

namespace mox::images {
namespace {

struct Plan {
    std::string function;
    unsigned call = 0;
    unsigned calls = 0;
    std::function<void()> instead;
};
Plan g_plan;

/// Whether this call of the function is one to fail.
bool fails(const char* function, int error) {
    if (g_plan.function != function || ++g_plan.calls < g_plan.call) {
        return false;
    }
    if (!g_plan.instead) {
        errno = error;
        return true;
    }
    if (g_plan.calls == g_plan.call) {
        g_plan.instead();
    }
    return false;
}

} // namespace

StdioFault::StdioFault(const std::string& function, unsigned call, std::function<void()> instead) {
    g_plan = {function, call, 0, std::move(instead)};
}

StdioFault::~StdioFault() {
    g_plan = {};
}

unsigned StdioFault::calls() const { // NOLINT(readability-convert-member-functions-to-static): of this plan
    return g_plan.calls;
}

} // namespace mox::images

using mox::images::fails;

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the linker gives these names
void* __real_malloc(std::size_t size);
std::FILE* __real_fdopen(int descriptor, const char* mode);
int __real_fseek(std::FILE* file, long offset, int origin);
long __real_ftell(std::FILE* file);
std::size_t __real_fread(void* data, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __real_fwrite(const void* data, std::size_t size, std::size_t count, std::FILE* file);
int __real_fclose(std::FILE* file);

void* __wrap_malloc(std::size_t size) {
    void* const memory = fails("malloc", ENOMEM) ? nullptr : __real_malloc(size);
    if (memory != nullptr) {
        std::memset(memory, 0x5A, size); // what nobody has written is not zero
    }
    return memory;
}
std::FILE* __wrap_fdopen(int descriptor, const char* mode) {
    return fails("fdopen", ENOMEM) ? nullptr : __real_fdopen(descriptor, mode);
}
int __wrap_fseek(std::FILE* file, long offset, int origin) {
    return fails("fseek", EIO) ? -1 : __real_fseek(file, offset, origin);
}
long __wrap_ftell(std::FILE* file) {
    return fails("ftell", EIO) ? -1 : __real_ftell(file);
}
std::size_t __wrap_fread(void* data, std::size_t size, std::size_t count, std::FILE* file) {
    return fails("fread", EIO) ? 0 : __real_fread(data, size, count, file);
}
std::size_t __wrap_fwrite(const void* data, std::size_t size, std::size_t count, std::FILE* file) {
    return fails("fwrite", EIO) ? 0 : __real_fwrite(data, size, count, file);
}
int __wrap_fclose(std::FILE* file) {
    const bool lost = fails("fclose", EIO);
    const int result = __real_fclose(file);
    return lost ? EOF : result;
}
// NOLINTEND(bugprone-reserved-identifier)
}
