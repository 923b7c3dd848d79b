#include <mox/Firmware.h>
#include <mox/ImageTrailer.hpp>
#include <mox/XmlValues.hpp>

#include <syslog.h>

#include <exception>

using namespace ps::hwapi::common;
using image::HwSwIdMatch;

namespace {

constexpr char caller[] = "scan_hwswid";

/// One line for each identifier that is looked at before the walk of the list ends.
void logFound(const std::vector<std::uint32_t>& ids, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        syslog(LOG_DEBUG, "%s(): Found HwSwId: 0x%x", caller, ids[i]);
    }
}

int scan(const AaGpuXmlNode& trailer, std::uint32_t own, bool allowMinor) {
    const auto ids = image::readHwSwIds(trailer);
    if (!ids) {
        return IMAGE_ERR_HWSWID;
    }
    const image::ListedHwSwId listed = image::findHwSwId(*ids, own);
    if (listed.match == HwSwIdMatch::exact) {
        logFound(*ids, listed.index + 1);
        syslog(LOG_DEBUG, "%s(): Matching HwSwId found: 0x%x", caller, own);
        return IMAGE_OK;
    }
    logFound(*ids, ids->size());
    if (!allowMinor) {
        syslog(LOG_DEBUG, "%s(): HwSwId minor difference is not allowed", caller);
        return IMAGE_ERR_HWSWID;
    }
    // The second walk, for one that is only near, shows them again.
    if (listed.match == HwSwIdMatch::none) {
        logFound(*ids, ids->size());
        return IMAGE_ERR_HWSWID;
    }
    logFound(*ids, listed.index + 1);
    syslog(LOG_INFO, "%s(): Found matching HwSwId with minor version difference: 0x%x", caller, (*ids)[listed.index]);
    return IMAGE_OK;
}

} // namespace

int scan_hwswid(const AaGpuXmlNode* trailerNode, std::uint32_t ownHwSwId, int allowMinorDifference) {
    try {
        return scan(*trailerNode, ownHwSwId, allowMinorDifference != 0);
    } catch (const std::exception&) {
        return IMAGE_ERR_HWSWID; // no memory to read them all
    }
}
