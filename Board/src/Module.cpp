#include "Caches.hpp"
#include "Feature.hpp"

#include <ddal/ddal_devicetree.h>
#include <mox/Board.h>
#include <mox/BoardTables.hpp>
#include <pal/AaSysLog.h>

#include <cstring>

namespace board = ps::hwapi::board;

namespace {
namespace constant {
using board::constant::featureId;
constexpr uint32_t unknownVersion = 64;
} // namespace constant

bool readModuleId(char* text) {
    const int result = ddal_devicetree_get_module_unit_id(board::caches.moduleId.asked, text);
    if (result == DDAL_OK) {
        return true;
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                   "ApiGetModuleId(): ddal_devicetree_get_module_unit_id() returned '0x%x' (not DDAL_OK)",
                   static_cast<unsigned int>(result));
    return false;
}

bool readProductionCode(char* text) {
    const int result = ddal_devicetree_get_module_production_code(board::caches.moduleProductionCode.asked, text);
    if (result == DDAL_OK) {
        return true;
    }
    AaSysLogPrintE(
        EAaSysLogSeverityLevel_Warning, constant::featureId,
        "ApiGetModuleProductionCode(): ddal_devicetree_get_module_production_code() returned '0x%x' (not DDAL_OK)",
        static_cast<unsigned int>(result));
    return false;
}

bool readSerialNumber(char* text) {
    const int result = ddal_devicetree_get_module_serial_number(board::caches.moduleSerialNumber.asked, text);
    if (result == DDAL_OK) {
        return true;
    }
    AaSysLogPrintE(
        EAaSysLogSeverityLevel_Warning, constant::featureId,
        "ApiGetModuleSerialNumber(): ddal_devicetree_get_module_serial_number() returned '0x%x' (not DDAL_OK)",
        static_cast<unsigned int>(result));
    return false;
}

uint32_t readVersion() {
    char moduleId[decltype(board::caches.moduleId)::asked + 1] = {};
    if (ApiGetModuleId(moduleId, board::caches.moduleId.asked) == 0) {
        return constant::unknownVersion;
    }
    int index = 0;
    for (const board::ModuleRow& row : board::ModuleList) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, constant::featureId, "ApiGetModuleVersion(%d) '%s' = '%s'",
                       index++, moduleId, row.code);
        if (std::strcmp(moduleId, row.code) == 0) {
            return row.version;
        }
    }
    return constant::unknownVersion;
}

} // namespace

uint32_t ApiGetModuleId(char* text, uint32_t length) {
    return board::caches.moduleId.copyTo(text, length, readModuleId);
}

uint32_t ApiGetModuleProductionCode(char* text, uint32_t length) {
    return board::caches.moduleProductionCode.copyTo(text, length, readProductionCode);
}

uint32_t ApiGetModuleSerialNumber(char* text, uint32_t length) {
    return board::caches.moduleSerialNumber.copyTo(text, length, readSerialNumber);
}

uint32_t ApiGetModuleVersion() {
    return board::caches.moduleVersion.get(readVersion);
}
