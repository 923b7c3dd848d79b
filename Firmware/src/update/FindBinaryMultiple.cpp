#include "update/DdalFailure.hpp"

#include <ddal/ddal_devicetree.h>
#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

#include <dirent.h>
#include <syslog.h>

#include <cstdio>
#include <memory>

namespace ps::hwapi::common::update {
namespace {

constexpr const char* function = "find_binary_multiple";

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

/// The caller's rows.
struct Rows {
    char (*rows)[FIND_BINARY_ROW_SIZE];
    int room;
    int found;

    void add(const char* directory, const char* name) {
        if (found < room)
            store(rows[found], directory, name);
        ++found;
    }

    static void store(char (&row)[FIND_BINARY_ROW_SIZE], const char* directory, const char* name) {
        const int length = std::snprintf(row, sizeof row, "%s/%s", directory, name);
        if (length < 0) {
            row[0] = '\0';
            syslog(LOG_ERR, "%s(): find_binary_multiple snprintf failed: %i", function, length);
        } else if (static_cast<std::size_t>(length) >= sizeof row) {
            syslog(LOG_ERR, "%s(): find_binary_multiple output truncated: %s", function, row);
            syslog(LOG_ERR, "%s(): find_binary_multiple filename: %s", function, name);
        }
    }
};

/// What the two searches log for an entry.
enum class Wording { withBoardType, chipOnly };

void examine(const char* directory, const char* name, const char* search, Wording wording, Rows& rows) {
    if (wording == Wording::withBoardType)
        syslog(LOG_INFO, "%s():   %s", function, name);
    if (!isImageName(name, search))
        return;
    if (wording == Wording::withBoardType)
        syslog(LOG_INFO, "%s(): File '%s' matches to search criteria", function, name);
    else
        syslog(LOG_INFO, "%s(): File '%s' matches", function, name);
    rows.add(directory, name);
}

bool scan(const char* path, const char* search, Wording wording, Rows& rows) {
    const Directory directory(opendir(path));
    if (!directory) {
        syslog(LOG_INFO, "%s(): opendir(%s) failed", function, path);
        return false;
    }
    syslog(LOG_INFO, "%s(): List files in '%s'", function, path);
    while (const dirent* entry = readdir(directory.get()))
        examine(path, entry->d_name, search, wording, rows);
    return true;
}

/// @param[out] unitId  the local unit's
bool readUnitId(char (&unitId)[constant::unitTextSize]) {
    const int result = ddal_devicetree_get_unit_id(0, sizeof unitId - 1, unitId);
    if (result != DDAL_OK)
        logDdalFailure(function, "ddal_devicetree_get_unit_id", result);
    return result == DDAL_OK;
}

} // namespace
} // namespace ps::hwapi::common::update

int find_binary_multiple(const char* directory, const char* boardType, const char* chipIdentifier,
                         char (*rows)[FIND_BINARY_ROW_SIZE], int maxRows) {
    using namespace ps::hwapi::common::update;
    if (directory == nullptr || chipIdentifier == nullptr || rows == nullptr)
        return -911;
    syslog(LOG_DEBUG, "%s(): Search for binary chip identifier '%s'", function, chipIdentifier);
    char unitId[constant::unitTextSize] = "";
    if (boardType == nullptr && !readUnitId(unitId))
        return -1;
    SearchString search{};
    if (const int failure = formSearchString(boardType != nullptr ? boardType : unitId, chipIdentifier, search))
        return failure;
    syslog(LOG_INFO, "%s(): Search string '%s'", function, search.data());
    Rows result{rows, maxRows, 0};
    if (!scan(directory, search.data(), Wording::withBoardType, result))
        return -4;
    if (result.found > 0)
        return result.found;
    syslog(LOG_INFO, "%s(): No board type files, search only chip identifier '%s'", function, chipIdentifier);
    return scan(directory, chipIdentifier, Wording::chipOnly, result) ? result.found : -4;
}
