#include "update/DdalFailure.hpp"
#include "update/OutText.hpp"

#include <ddal/ddal_devicetree.h>
#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

#include <syslog.h>

namespace ps::hwapi::common::update {
namespace {

constexpr const char* function = "find_binary_compatible";

struct Compatible {
    int count = 0;
    const char* path = nullptr; ///< of the latest one
    std::uint32_t version = 0;  ///< of the latest one
};

using Row = char[FIND_BINARY_ROW_SIZE];

Compatible compatibleOf(const Row* rows, int found, std::uint32_t ownHwSwId, int allowMinorDifference) {
    Compatible compatible;
    for (int i = 0; i < found; ++i) {
        std::uint32_t version = 0;
        if (binary_version(rows[i], ownHwSwId, allowMinorDifference, &version) == 0) {
            ++compatible.count;
            compatible.path = rows[i];
            compatible.version = version;
        }
    }
    return compatible;
}

bool readOwnHwSwId(std::uint32_t& ownHwSwId) {
    const int result = ddal_devicetree_get_hw_sw_id(0, &ownHwSwId);
    if (result != DDAL_OK)
        logDdalFailure(function, "ddal_devicetree_get_hw_sw_id", result);
    return result == DDAL_OK;
}

void logAmbiguity(int compatible, int found, const char* chipIdentifier) {
    if (compatible == 0)
        syslog(LOG_INFO, "%s(): There are %d files with chip '%s' identifier, but not compatible with this board",
               function, found, chipIdentifier);
    else
        syslog(LOG_INFO, "%s(): %d compatible files are found, do not know which one to choose!", function, compatible);
}

} // namespace
} // namespace ps::hwapi::common::update

int find_binary_compatible(const char* directory, const char* boardType, const char* chipIdentifier, uint32_t ownHwSwId,
                           int allowMinorDifference, char* outPath, size_t outPathSize, uint32_t* outVersion) {
    using namespace ps::hwapi::common::update;
    Row rows[constant::mostCandidates];
    const int found = find_binary_multiple(directory, boardType, chipIdentifier, rows, constant::mostCandidates);
    if (found < 1)
        return found;
    if (found > constant::mostCandidates) {
        syslog(LOG_DEBUG,
               "%s(): There are too many files (%d) with same chip '%s' identifier, better naming convention for "
               "firmware update filenames are needed!",
               function, found, chipIdentifier);
        return -5;
    }
    if (ownHwSwId == 0 && !readOwnHwSwId(ownHwSwId))
        return -6;
    const Compatible compatible = compatibleOf(rows, found, ownHwSwId, allowMinorDifference);
    if (compatible.count == 1) {
        copyText(outPath, outPathSize, compatible.path);
    } else {
        logAmbiguity(compatible.count, found, chipIdentifier);
        clearText(outPath, outPathSize);
    }
    if (outVersion != nullptr)
        *outVersion = compatible.count == 1 ? compatible.version : 0;
    return compatible.count;
}
