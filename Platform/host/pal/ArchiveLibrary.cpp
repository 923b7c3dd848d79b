#include "ArchiveLibrary.hpp"

#include "../run/PlatformLog.hpp"

#include <dlfcn.h>

#include <type_traits>

namespace mox::host {

namespace {

constexpr const char* libraryName = "libarchive.so.13";

const ArchiveLibrary* load() {
    void* library = dlopen(libraryName, RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        logPlatform(4, "no archives can be made: %s", dlerror());
        return nullptr;
    }
    static ArchiveLibrary functions{};
    bool complete = true;
    const auto find = [&](auto& function, const char* name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(library, name));
        if (!function) {
            logPlatform(4, "no archives can be made: %s has no %s", libraryName, name);
            complete = false;
        }
    };
#define MOX_ARCHIVE_FIND(name) find(functions.name, #name);
    MOX_ARCHIVE_FUNCTIONS(MOX_ARCHIVE_FIND)
#undef MOX_ARCHIVE_FIND
    return complete ? &functions : nullptr;
}

} // namespace

const ArchiveLibrary* archiveLibrary() {
    static const ArchiveLibrary* const library = load();
    return library;
}

} // namespace mox::host
