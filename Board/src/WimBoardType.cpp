#include "Feature.hpp"

#include <ddal/ddal_unit.h>
#include <mox/Board.h>
#include <mox/BoardTables.hpp>
#include <pal/AaConfig.h>
#include <pal/AaSysLog.h>

namespace board = ps::hwapi::board;

namespace {
namespace constant {
using board::constant::featureId;
/// R&D parameter "Allow setting the board type for testing purposes".
constexpr unsigned int boardTypeForTests = 0x20086;
} // namespace constant

uint32_t rawBoardType() {
    const unsigned int forTests = AaConfigRadGetValue(constant::boardTypeForTests);
    return forTests != 0 ? forTests : static_cast<uint32_t>(ddal_unit_get_board());
}

} // namespace

EWimBoardType ApiGetWimBoardType() {
    const uint32_t rawType = rawBoardType();
    const board::WimBoardTypeRow* const row = board::wimBoardTypeRow(rawType);
    if (row == nullptr) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, constant::featureId,
                       "ApiGetWimBoardType: returning EWimBoardType_Unknown (boardType:0x%x)", rawType);
        return EWimBoardType_Unknown;
    }
    AaSysLogPrintE(EAaSysLogSeverityLevel_Debug, constant::featureId,
                   "ApiGetWimBoardType: boardType = 0x%x, wim board type = %d (%s)", rawType,
                   static_cast<int>(row->value), row->name);
    return static_cast<EWimBoardType>(row->value);
}

uint32_t ApiGetWimModuleVersion() {
    switch (ApiGetWimBoardType()) {
    case EWimBoardType_Single:
    case EWimBoardType_Pico:
    case EWimBoardType_Pico_DB:
        return 34;
    case EWimBoardType_Master:
        return 35;
    case EWimBoardType_Slave:
        return 36;
    case EWimBoardType_PLUMB_4x4:
        return 42;
    default:
        return 64;
    }
}
