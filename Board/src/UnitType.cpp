#include "Caches.hpp"
#include "Feature.hpp"

#include <mox/Board.h>
#include <mox/BoardTables.hpp>
#include <pal/AaSysLog.h>

namespace board = ps::hwapi::board;

namespace {
namespace constant {
using board::constant::featureId;
/// A unit version that no table row has.
constexpr int yolmpr = 81;
} // namespace constant
} // namespace

EUnitType ApiGetUnitTypeFromHwSwId(uint32_t hwSwId) {
    const board::UnitTypeRow* const row = board::unitTypeRow(hwSwId);
    if (row == nullptr) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, constant::featureId,
                       "ApiGetUnitType: returning EUnitType_Unknown (hwswid:0x%x)", hwSwId);
        return EUnitType_Unknown;
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, constant::featureId,
                   "ApiGetUnitType: hwswid = 0x%x, unit type = %d (%s)", hwSwId, static_cast<int>(row->value),
                   row->name);
    return static_cast<EUnitType>(row->value);
}

EUnitType ApiGetUnitType(uint32_t unit) {
    return ApiGetUnitTypeFromHwSwId(ApiGetUnitHwSwId(unit));
}

EUnitType ApiGetLocalUnitType() {
    return static_cast<EUnitType>(board::caches.unitType.get([] { return static_cast<int32_t>(ApiGetUnitType(0)); }));
}

EUnitVersion ApiGetUnitVersionFromHwSwId(uint32_t hwSwId) {
    // The log tells the type first.
    ApiGetUnitTypeFromHwSwId(hwSwId);
    const board::UnitVersionRow* const row = board::unitVersionRow(hwSwId);
    if (row == nullptr) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, constant::featureId,
                       "ApiGetUnitVersion: returning EUnitVersion_Unknown (hwswid:0x%x)", hwSwId);
        return EUnitVersion_Unknown;
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, constant::featureId,
                   "ApiGetUnitVersion: hwswid = 0x%x, unit version = %d (%s)", hwSwId, static_cast<int>(row->value),
                   row->name);
    return static_cast<EUnitVersion>(row->value);
}

EUnitVersion ApiGetUnitVersion(uint32_t unit) {
    return ApiGetUnitVersionFromHwSwId(ApiGetUnitHwSwId(unit));
}

EUnitVersion ApiGetLocalUnitVersion() {
    return static_cast<EUnitVersion>(
        board::caches.unitVersion.get([] { return static_cast<int32_t>(ApiGetUnitVersion(0)); }));
}

uint32_t ApiIsYolmpr() {
    return static_cast<int>(ApiGetLocalUnitVersion()) == constant::yolmpr ? 1 : 0;
}
