#include "CopyText.hpp"
#include "Feature.hpp"

#include <ddal/ddal_devicetree.h>
#include <mox/Board.h>
#include <pal/AaSysLog.h>

namespace board = ps::hwapi::board;

namespace {
namespace constant {
using board::constant::featureId;
constexpr uint32_t dieIdSize = 129;
constexpr uint32_t qualitySize = 9;
} // namespace constant
} // namespace

uint32_t ApiGetDieId(char* text, uint32_t length) {
    char dieId[constant::dieIdSize + 1] = {};
    const int result = ddal_devicetree_get_die_id(constant::dieIdSize, dieId);
    if (result != DDAL_OK) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                       "ApiGetDieId(): ddal_devicetree_get_die_id() returned '0x%x' (not DDAL_OK)",
                       static_cast<unsigned int>(result));
        return 0;
    }
    board::copyText(text, dieId, length);
    return 1;
}

uint32_t ApiGetDieIdQuality(char* text, uint32_t length) {
    char quality[constant::qualitySize + 1] = {};
    const int result = ddal_devicetree_get_die_id_quality(constant::qualitySize, quality);
    if (result != DDAL_OK) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                       "ApiGetDieIdQuality(): ddal_devicetree_get_die_id_quality() returned '0x%x' (not DDAL_OK)",
                       static_cast<unsigned int>(result));
        return 0;
    }
    board::copyText(text, quality, length);
    return 1;
}
