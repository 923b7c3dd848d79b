#include "CopyText.hpp"
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
constexpr uint32_t moduleIdSize = 7;
constexpr uint32_t productionCodeSize = 13;
constexpr uint32_t serialNumberSize = 17;
/// Callers know this number, though a module has it too.
constexpr uint32_t notFound = 14;
} // namespace constant
} // namespace

uint32_t ApiGetExtModuleId(uint32_t portId, char* text, uint32_t length) {
    char moduleId[constant::moduleIdSize + 1] = {};
    const int result = ddal_devicetree_get_ext_module_unit_id(portId, constant::moduleIdSize, moduleId);
    if (result != DDAL_OK) {
        AaSysLogPrintE(
            EAaSysLogSeverityLevel_Warning, constant::featureId,
            "ApiGetExtModuleId(): ddal_devicetree_get_ext_module_unit_id(port_id=0x%x) returned '0x%x' (not DDAL_OK)",
            portId, static_cast<unsigned int>(result));
        return 0;
    }
    board::copyText(text, moduleId, length);
    return 1;
}

uint32_t ApiGetExtModuleProductionCode(uint32_t portId, char* text, uint32_t length) {
    char productionCode[constant::productionCodeSize + 1] = {};
    const int result =
        ddal_devicetree_get_ext_module_production_code(portId, constant::productionCodeSize, productionCode);
    if (result != DDAL_OK) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                       "ApiGetExtModuleProductionCode(): "
                       "ddal_devicetree_get_ext_module_production_code(port_id=0x%x) returned '0x%x' (not DDAL_OK)",
                       portId, static_cast<unsigned int>(result));
        return 0;
    }
    board::copyText(text, productionCode, length);
    return 1;
}

uint32_t ApiGetExtModuleSerialNumber(uint32_t portId, char* text, uint32_t length) {
    char serialNumber[constant::serialNumberSize + 1] = {};
    const int result = ddal_devicetree_get_ext_module_serial_number(portId, constant::serialNumberSize, serialNumber);
    if (result != DDAL_OK) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                       "ApiGetExtModuleSerialNumber(): "
                       "ddal_devicetree_get_ext_module_serial_number(port_id=0x%x) returned '0x%x' (not DDAL_OK)",
                       portId, static_cast<unsigned int>(result));
        return 0;
    }
    board::copyText(text, serialNumber, length);
    return 1;
}

uint32_t ApiGetExtModuleVersion(uint32_t portId) {
    char moduleId[constant::moduleIdSize + 1] = {};
    if (ApiGetExtModuleId(portId, moduleId, constant::moduleIdSize) != 0) {
        int index = 0;
        for (const board::ModuleRow& row : board::ModuleList) {
            AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, constant::featureId, "ApiGetExtModuleVersion(%d) '%s' = '%s'",
                           index++, moduleId, row.code);
            if (std::strcmp(moduleId, row.code) == 0) {
                return row.version;
            }
        }
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                   "ApiGetExtModuleVersion(%d): module version not found (name from ddal = %s)",
                   static_cast<int>(portId), moduleId);
    return constant::notFound;
}
