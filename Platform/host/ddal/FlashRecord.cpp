#include "FlashRecord.hpp"

#include "../board/Description.hpp"
#include "../run/Run.hpp"
#include "VersionMarker.hpp"

#include <ddal/ddal_boot.h>

#include <zlib.h>

#include <cinttypes>
#include <cstdio>
#include <sstream>

namespace mox::host {

namespace {

FactoryImage factoryImage(std::string area, const std::string& version) {
    FactoryImage factory{std::move(area), versionMarker + version, {}};
    VersionMarker marker;
    marker.take(factory.bytes);
    const auto length = static_cast<uInt>(factory.bytes.size());
    factory.image.length = length;
    factory.image.crc =
        static_cast<std::uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(factory.bytes.data()), length));
    factory.image.version = marker.version().value_or(0);
    return factory;
}

/// Decimal digits without those in front that would make the number an octal one.
std::string plainDigits(const std::string& digits) {
    const auto first = digits.find_first_not_of('0');
    return first == std::string::npos ? "0" : digits.substr(first);
}

} // namespace

std::string fpgaArea(std::uint32_t fpgaId, std::uint32_t slot) {
    char name[40];
    std::snprintf(name, sizeof name, "fpga-%" PRIx32 "-%" PRIu32, fpgaId, slot);
    return name;
}

std::string flashRecordKey(std::uint16_t node, const std::string& area) {
    return hex4(node) + "/flash/" + area;
}

std::string encodeFlashRecord(const FlashImage& image) {
    char record[64];
    std::snprintf(record, sizeof record, "%" PRIu64 " %08" PRIx32 " %" PRIu32, image.length, image.crc, image.version);
    return record;
}

std::optional<FlashImage> decodeFlashRecord(std::string_view record) {
    FlashImage image;
    std::istringstream fields{std::string(record)};
    fields >> image.length >> std::hex >> image.crc >> std::dec >> image.version;
    return fields ? std::optional(image) : std::nullopt;
}

std::string flashFile(const std::string& area) {
    return "flash/" + area + ".bin";
}

std::vector<FactoryImage> factoryImages(const NodeDescription& node) {
    std::vector<FactoryImage> images;
    for (const FpgaDevice& fpga : node.devices.fpgas)
        for (const FpgaSlot& slot : fpga.slots)
            if (slot.version)
                images.push_back(factoryImage(fpgaArea(fpga.id, slot.slot), std::to_string(*slot.version)));
    if (const auto& boot = node.devices.boot) {
        if (boot->location != DDAL_BOOT_UBOOT_BACKUP)
            images.push_back(factoryImage(ubootPrimaryArea, plainDigits(boot->version)));
        images.push_back(factoryImage(ubootBackupArea, plainDigits(boot->version)));
    }
    return images;
}

} // namespace mox::host
