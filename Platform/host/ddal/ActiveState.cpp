#include "ActiveState.hpp"

#include "../pal/TypedValue.hpp"
#include "../run/Run.hpp"
#include "FlashRecord.hpp"

#include <ddal/ddal_boot.h>
#include <ddal/ddal_fpga.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>

namespace mox::host {

namespace {

std::string fpgaKey(std::uint16_t node, const FpgaDevice& fpga) {
    char id[16];
    std::snprintf(id, sizeof id, "%" PRIx32, fpga.id);
    return hex4(node) + "/fpga/" + id;
}

std::string bootKey(std::uint16_t node) {
    return hex4(node) + "/boot/running";
}

std::optional<FlashImage> imageIn(const Store::Write& write, std::uint16_t node, const std::string& area) {
    const auto record = write.get(Table::devices, flashRecordKey(node, area));
    return record ? decodeFlashRecord(*record) : std::nullopt;
}

bool hasSlot(const FpgaDevice& fpga, std::uint32_t slot) {
    return std::any_of(fpga.slots.begin(), fpga.slots.end(),
                       [slot](const FpgaSlot& area) { return area.slot == slot; });
}

RunningBoot bootFromFlash(const Store::Write& write, std::uint16_t node) {
    if (const auto primary = imageIn(write, node, ubootPrimaryArea))
        return {DDAL_BOOT_UBOOT_PRIMARY, std::to_string(primary->version)};
    // A unit whose two areas are both broken would not start at all; this one answers, so that it can be repaired.
    const auto backup = imageIn(write, node, ubootBackupArea);
    return {DDAL_BOOT_UBOOT_BACKUP, std::to_string(backup ? backup->version : 0)};
}

} // namespace

std::uint32_t activeVersion(const Store& store, std::uint16_t node, const FpgaDevice& fpga) {
    const auto text = store.get(Table::devices, fpgaKey(node, fpga));
    const auto version = text ? parseNumber(*text) : std::nullopt;
    return version ? static_cast<std::uint32_t>(*version) : fpga.activeVersion;
}

RunningBoot runningBoot(const Store& store, std::uint16_t node, const BootDevice& boot) {
    const auto record = store.get(Table::devices, bootKey(node));
    const auto blank = record ? record->find(' ') : std::string::npos;
    if (blank == std::string::npos)
        return {boot.location, boot.version};
    return {static_cast<std::uint32_t>(parseNumber(record->substr(0, blank)).value_or(0)), record->substr(blank + 1)};
}

std::uint32_t loadFpga(Store::Write& write, std::uint16_t node, const FpgaDevice& fpga) {
    if (fpga.slots.empty())
        return fpga.activeVersion;
    std::uint32_t version = 0;
    for (const std::uint32_t slot : {DDAL_FPGA_SLOT_SECONDARY, DDAL_FPGA_SLOT_PRIMARY})
        if (const auto image = hasSlot(fpga, slot) ? imageIn(write, node, fpgaArea(fpga.id, slot)) : std::nullopt)
            version = image->version;
    write.put(Table::devices, fpgaKey(node, fpga), std::to_string(version));
    return version;
}

RunningBoot startBoot(Store::Write& write, std::uint16_t node, const BootDevice& boot) {
    if (boot.location == DDAL_BOOT_UBOOT_RAM)
        return {boot.location, boot.version};
    RunningBoot running = bootFromFlash(write, node);
    write.put(Table::devices, bootKey(node), std::to_string(running.location) + " " + running.version);
    return running;
}

} // namespace mox::host
