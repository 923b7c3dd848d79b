#include <mox/Board.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

struct Resold {
    uint32_t moduleVersion;
    const char* burntIn; ///< the first characters of the code in the module
    const char* shown;
};

/// Modules that are sold under another code.
constexpr std::array<Resold, 5> resoldModules{{
    {6, "511001A", "611001A"},
    {43, "511002A", "611002A"},
    {43, "511003A", "611002A"},
    {43, "511004A", "611002A"},
    {27, "511005A", "611003A"},
}};

/// Revisions of a module differ behind these characters.
constexpr std::size_t comparedCharacters = 7;

} // namespace

char* ApiGetModuleDisplayProductCodeEx(uint32_t moduleVersion, const char* productionCode, char* text,
                                       uint32_t length) {
    const auto* const resold = std::find_if(resoldModules.begin(), resoldModules.end(), [&](const Resold& candidate) {
        return candidate.moduleVersion == moduleVersion &&
               std::strncmp(productionCode, candidate.burntIn, comparedCharacters) == 0;
    });
    return std::strncpy(text, resold == resoldModules.end() ? productionCode : resold->shown, length);
}
