#include "Caches.hpp"
#include "Feature.hpp"

#include <ddal/ddal_rio.h>
#include <mox/Board.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>

namespace board = ps::hwapi::board;

namespace {
namespace constant {
using board::constant::featureId;
constexpr uint32_t shelfMask = 0xF000;
constexpr uint32_t pduInShelf = 0x48;
} // namespace constant

/// @param[out] address  where messages reach the own node; unchanged unless the result is DDAL_OK
/// @return result of ddal_rio_get_own_id; units of the Wim line have no RapidIO and go by their node id
int readOwnAddress(uint32_t& address) {
    uint16_t id = AaSysComGetOwnNid();
    const int result = ApiGetLocalUnitType() == EUnitType_Wim ? int{DDAL_OK} : ddal_rio_get_own_id(&id);
    if (result == DDAL_OK) {
        address = AaSysComSicadGet(0, id);
    }
    return result;
}

uint8_t readBoard() {
    uint32_t address = 0;
    const int result = readOwnAddress(address);
    if (result != DDAL_OK) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                       "ApiGetCurrentBoard(): ddal_rio_get_own_id() returned '0x%x' (not DDAL_OK)",
                       static_cast<unsigned int>(result));
        return 0;
    }
    return static_cast<uint8_t>(AaSysComNmapGetBoard(address));
}

uint8_t readCpu() {
    uint32_t address = 0;
    const int result = readOwnAddress(address);
    if (result != DDAL_OK) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                       "ApiGetCurrentCpu(): ddal_rio_get_own_id() returned '0x%x' (not DDAL_OK)",
                       static_cast<unsigned int>(result));
        return 0;
    }
    return static_cast<uint8_t>(AaSysComNmapGetCpu(address));
}

} // namespace

uint8_t ApiGetCurrentBoard() {
    return board::caches.board.get(readBoard);
}

uint8_t ApiGetCurrentCpu() {
    return board::caches.cpu.get(readCpu);
}

uint32_t ApiGetPduBoardId() {
    const uint32_t boardId = (AaSysComGetOwnNid() & constant::shelfMask) | constant::pduInShelf;
    AaSysLogPrintE(EAaSysLogSeverityLevel_Info, constant::featureId, "%s: PDU device: 0x%X", "ApiGetPduBoardId",
                   boardId);
    return boardId;
}
