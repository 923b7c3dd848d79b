#include <mox/pal/PalUtils.h>
#include <pal/AaSysCom.h>

#include <cstddef>
#include <cstring>

namespace ps::hwapi::common::pal::utils {
namespace {
namespace constant {
/// Message format (MEF) of a message that is followed by a trailer.
constexpr uint32_t formatWithTrailer = 3;
} // namespace constant

// The words are read where the wire format puts them.
static_assert(sizeof(SAaSysComMsgHeader) == 16);
static_assert(offsetof(SAaSysComMsgHeader, id) == 0 && offsetof(SAaSysComMsgHeader, receiver) == 4 &&
              offsetof(SAaSysComMsgHeader, sender) == 8 && offsetof(SAaSysComMsgHeader, flags) == 12 &&
              offsetof(SAaSysComMsgHeader, size) == 14);
static_assert(sizeof(SAaSysComMsgTrailer) == 8);
static_assert(offsetof(SAaSysComMsgTrailer, spare) == 0 && offsetof(SAaSysComMsgTrailer, flags) == 4 &&
              offsetof(SAaSysComMsgTrailer, crc) == 6);
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "messages lie in memory in little-endian byte order");

template <typename Record>
Record copyOf(const void* memory) {
    Record record;
    std::memcpy(&record, memory, sizeof record);
    return record;
}

void printWithTrailer(EAaSysLogSeverityLevel level, unsigned int featureId, const char* text,
                      const SAaSysComMsgHeader& header, const SAaSysComMsgTrailer& trailer) {
    AaSysLogPrintE(level, featureId,
                   "%s Msg header: id 0x%04x, snd 0x%08x, rcv 0x%08x, size %d, flags 0x%04x, "
                   "Trailer: spare 0x%08x, crc 0x%04x, flags 0x%04x",
                   text, static_cast<unsigned int>(header.id), header.sender, header.receiver,
                   static_cast<int>(header.size), static_cast<unsigned int>(header.flags), trailer.spare,
                   static_cast<unsigned int>(trailer.crc), static_cast<unsigned int>(trailer.flags));
}

} // namespace

void printSicMessageHeader(EAaSysLogSeverityLevel level, unsigned int featureId, const char* text, const void* msg) {
    if (msg == nullptr) {
        return;
    }
    const auto header = copyOf<SAaSysComMsgHeader>(msg);
    if (AaSysComMsgGetMef(msg) != constant::formatWithTrailer) {
        AaSysLogPrintE(level, featureId, "%s Msg header: id 0x%04x, snd 0x%08x, rcv 0x%08x, size %d, flags 0x%04x",
                       text, static_cast<unsigned int>(header.id), header.sender, header.receiver,
                       static_cast<int>(header.size), static_cast<unsigned int>(header.flags));
        return;
    }
    const void* trailer = AaSysComMsgGetTrailer(msg);
    if (trailer == nullptr) {
        AaSysLogPrintE(EAaSysLogSeverityLevel_Warning, featureId, "%s: trailer is NULL", "printSicMessageHeader");
        return;
    }
    printWithTrailer(level, featureId, text, header, copyOf<SAaSysComMsgTrailer>(trailer));
}

} // namespace ps::hwapi::common::pal::utils

void palUtilsPrintSicMessageHeader(EAaSysLogSeverityLevel level, unsigned int featureId, const char* text,
                                   const void* msg) {
    ps::hwapi::common::pal::utils::printSicMessageHeader(level, featureId, text, msg);
}
