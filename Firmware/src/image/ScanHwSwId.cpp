#include <mox/Firmware.h>
#include <mox/ImageNumbers.hpp>
#include <mox/XmlValues.hpp>

#include <syslog.h>

#include <exception>

using namespace ps::hwapi::common;

namespace {

constexpr char caller[] = "scan_hwswid";

/// Walks the identifiers of a list in document order.
/// @param isWanted  tells of an identifier whether the walk ends with it
/// @return whether it did
template <typename Predicate>
bool walk(const AaGpuXmlNode& list, const Predicate& isWanted) {
    if (!list.AaGpuXmlHasChildren()) {
        return false;
    }
    for (const AaGpuXmlNode* child = list.AaGpuXmlGetFirstChildren(); child != nullptr;
         child = child->AaGpuXmlGetNext()) {
        if (child->AaGpuXmlGetName() != "HwSwId") {
            continue;
        }
        const std::uint32_t listed = image::hwSwIdNumber(child->AaGpuXmlGetValue());
        syslog(LOG_DEBUG, "%s(): Found HwSwId: 0x%x", caller, listed);
        if (isWanted(listed)) {
            return true;
        }
    }
    return false;
}

bool listsExactly(const AaGpuXmlNode& list, std::uint32_t own) {
    return walk(list, [own](std::uint32_t listed) {
        if (listed == own) {
            syslog(LOG_DEBUG, "%s(): Matching HwSwId found: 0x%x", caller, listed);
        }
        return listed == own;
    });
}

bool listsButForMinor(const AaGpuXmlNode& list, std::uint32_t own) {
    return walk(list, [own](std::uint32_t listed) {
        const bool same = image::isSameButForMinor(listed, own);
        if (same) {
            syslog(LOG_INFO, "%s(): Found matching HwSwId with minor version difference: 0x%x", caller, listed);
        }
        return same;
    });
}

int scan(const AaGpuXmlNode& trailer, std::uint32_t own, bool allowMinor) {
    const AaGpuXmlNode* const list = FindXmlTag(&trailer, "HwSwIdList");
    if (list == nullptr) {
        return IMAGE_ERR_HWSWID;
    }
    if (listsExactly(*list, own)) {
        return IMAGE_OK;
    }
    if (!allowMinor) {
        syslog(LOG_DEBUG, "%s(): HwSwId minor difference is not allowed", caller);
        return IMAGE_ERR_HWSWID;
    }
    return listsButForMinor(*list, own) ? IMAGE_OK : IMAGE_ERR_HWSWID;
}

} // namespace

int scan_hwswid(const AaGpuXmlNode* trailerNode, std::uint32_t ownHwSwId, int allowMinorDifference) {
    try {
        return scan(*trailerNode, ownHwSwId, allowMinorDifference != 0);
    } catch (const std::exception&) {
        // An identifier that there was no memory to read is none.
        return IMAGE_ERR_HWSWID;
    }
}
