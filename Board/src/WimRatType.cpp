#include "Caches.hpp"
#include "Feature.hpp"

#include <ddal/ddal_sysinfo.h>
#include <mox/Board.h>
#include <pal/AaConfig.h>
#include <pal/AaMem.h>
#include <pal/AaSysLog.h>

#include <cstring>

namespace board = ps::hwapi::board;

namespace {
namespace constant {
using board::constant::featureId;
constexpr uint32_t fdd = 0;
constexpr uint32_t tdd = 1;
constexpr uint32_t wcdma = 2;
constexpr uint32_t notDetermined = 3;
constexpr uint32_t slots = 3;
constexpr const char* technologyTag = "sys.lfs.fpga.technology";
constexpr const char* wcdmaTag = "wcdma";
/// The name in front of each line.
constexpr const char* function = "ApiGetLocalWimRatType";
} // namespace constant

/// What the radio cards say.
struct Technologies {
    bool tdd = false;
    bool fdd = false;
};

bool isWcdma(const void* technology) {
    return technology != nullptr &&
           std::strncmp(static_cast<const char*>(technology), constant::wcdmaTag, std::strlen(constant::wcdmaTag)) == 0;
}

/// @param result  of the reading of the card's kind
/// @param slot    the card's
/// @param kind    what the card says of itself
/// @param[in,out] found  gains the card's technology
void note(int result, int slot, unsigned long long kind, Technologies& found) {
    switch (kind) {
    case 0:
        AaSysLogPrintE(EAaSysLogSeverityLevel_Info, constant::featureId,
                       "%s: ddal_sysinfo_get_uint() returned %d (success); slot %d, value %llu (card not present)",
                       constant::function, result, slot, kind);
        break;
    case 1:
        AaSysLogPrintE(EAaSysLogSeverityLevel_Info, constant::featureId,
                       "%s: ddal_sysinfo_get_uint() returned %d (success); slot %d, value %llu (TDD)",
                       constant::function, result, slot, kind);
        found.tdd = true;
        break;
    case 2:
        AaSysLogPrintE(EAaSysLogSeverityLevel_Info, constant::featureId,
                       "%s: ddal_sysinfo_get_uint() returned %d (success); slot %d, value %llu (FDD)",
                       constant::function, result, slot, kind);
        found.fdd = true;
        break;
    case 3:
    case 4:
    case 7:
        AaSysLogPrintE(EAaSysLogSeverityLevel_Info, constant::featureId,
                       "%s: ddal_sysinfo_get_uint() returned %d (success); slot %d, value %llu (mixed/WiFi/MuLTEFire)",
                       constant::function, result, slot, kind);
        break;
    case 6:
        AaSysLogPrintE(EAaSysLogSeverityLevel_Info, constant::featureId,
                       "%s: ddal_sysinfo_get_uint() returned %d (success); slot %d, value %llu (MBIO2 TDD)",
                       constant::function, result, slot, kind);
        found.tdd = true;
        break;
    default:
        AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                       "%s: ddal_sysinfo_get_uint() returned %d; slot %d, value %llu (unknown type!)",
                       constant::function, result, slot, kind);
        break;
    }
}

void noteCardIn(uint32_t slot, Technologies& found) {
    uint64_t kind = 0;
    const int result = ddal_sysinfo_get_uint(DDAL_SYSINFO_CATEGORY_UNIT, DDAL_SYSINFO_KEY_RADIO_CARD,
                                             DDAL_SYSINFO_INDEX_RADIO_CARD_SLOT, &slot, &kind);
    if (result != DDAL_OK) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                       "%s: ddal_sysinfo_get_uint() returned %d (FAILURE); slot %d, value %llu", constant::function,
                       result, static_cast<int>(slot), static_cast<unsigned long long>(kind));
        // A card that cannot be read counts, and is logged, as one that is not there.
        kind = 0;
    }
    note(result, static_cast<int>(slot), kind, found);
}

uint32_t technologyOfCards() {
    Technologies found;
    for (uint32_t slot = 0; slot < constant::slots; ++slot) {
        noteCardIn(slot, found);
    }
    if (found.tdd && found.fdd) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, constant::featureId,
                       "%s: illegal state - both TDD and FDD cards present!", constant::function);
        return constant::fdd;
    }
    return found.tdd ? constant::tdd : constant::fdd;
}

uint32_t readTechnology() {
    if (ApiGetLocalUnitType() != EUnitType_Wim) {
        return constant::notDetermined;
    }
    void* tag = nullptr;
    unsigned int size = 0;
    const bool isTagged = AaConfigTagGet(constant::technologyTag, &tag, &size) == EAaConfigRetVal_NoError;
    const uint32_t technology = isTagged && isWcdma(tag) ? constant::wcdma : technologyOfCards();
    if (isTagged) {
        AaMemUnRef(tag);
    }
    return technology;
}

} // namespace

uint32_t ApiGetLocalWimRatType() {
    return board::caches.wimRatType.get(readTechnology);
}
