#include "Caches.hpp"
#include "Feature.hpp"

#include <ddal/ddal_devicetree.h>
#include <mox/Board.h>
#include <pal/AaSysLog.h>

namespace board = ps::hwapi::board;
namespace constant = board::constant;

uint32_t ApiGetUnitId(uint32_t unit, char* text, uint32_t length) {
    const int result = ddal_devicetree_get_unit_id(unit, length, text);
    if (result == DDAL_OK) {
        return 1;
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                   "ApiGetUnitId(): ddal_devicetree_get_unit_id() returned '0x%x' (not DDAL_OK)",
                   static_cast<unsigned int>(result));
    return 0;
}

uint32_t ApiGetUnitProductionCode(uint32_t unit, char* text, uint32_t length) {
    const int result = ddal_devicetree_get_production_code(unit, length, text);
    if (result == DDAL_OK) {
        return 1;
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                   "ApiGetUnitProductionCode(): ddal_devicetree_get_production_code() returned '0x%x' (not DDAL_OK)",
                   static_cast<unsigned int>(result));
    return 0;
}

uint32_t ApiGetUnitSerialNumber(uint32_t unit, char* text, uint32_t length) {
    const int result = ddal_devicetree_get_serial_number(unit, length, text);
    if (result == DDAL_OK) {
        return 1;
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                   "ApiGetUnitSerialNumber(): ddal_devicetree_get_serial_number() returned '0x%x' (not DDAL_OK)",
                   static_cast<unsigned int>(result));
    return 0;
}

uint32_t ApiGetLocalUnitId(char* text, uint32_t length) {
    return board::caches.unitId.copyTo(
        text, length, [](char* room) { return ApiGetUnitId(0, room, board::caches.unitId.asked) != 0; });
}

uint32_t ApiGetLocalUnitProductionCode(char* text, uint32_t length) {
    return board::caches.unitProductionCode.copyTo(text, length, [](char* room) {
        return ApiGetUnitProductionCode(0, room, board::caches.unitProductionCode.asked) != 0;
    });
}

uint32_t ApiGetLocalUnitSerialNumber(char* text, uint32_t length) {
    return board::caches.unitSerialNumber.copyTo(text, length, [](char* room) {
        return ApiGetUnitSerialNumber(0, room, board::caches.unitSerialNumber.asked) != 0;
    });
}

uint32_t ApiGetUnitHwSwId(uint32_t unit) {
    uint32_t hwSwId = 0;
    const int result = ddal_devicetree_get_hw_sw_id(unit, &hwSwId);
    if (result == DDAL_OK) {
        return hwSwId;
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                   "ApiGetUnitHwSwId(): ddal_devicetree_get_hw_sw_id() returned '0x%x' (not DDAL_OK)",
                   static_cast<unsigned int>(result));
    return 0;
}

uint32_t ApiGetLocalUnitHwSwId() {
    return board::caches.unitHwSwId.get([] { return ApiGetUnitHwSwId(0); });
}

uint32_t ApiGetUnitHwId(uint32_t unit) {
    return ApiGetUnitHwSwId(unit) >> 12 & 0xFFFF;
}

uint32_t ApiGetLocalUnitHwId() {
    return board::caches.unitHwId.get([] { return ApiGetUnitHwId(0); });
}
