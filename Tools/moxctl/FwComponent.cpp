#include "FwComponent.hpp"

#include "Failure.hpp"
#include "Numbers.hpp"

#include <ddal/ddal_boot.h>
#include <ddal/ddal_devicetree.h>
#include <ddal/ddal_fpga.h>
#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>
#include <mox/conversion/Unsigned32.hpp>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>

namespace mox::tools {

namespace {

namespace update = ps::hwapi::common::update;

struct TextRow {
    int result;
    const char* text;
};

constexpr std::array decisionTable{
    TextRow{1, "update needed"},
    TextRow{0, "no update needed"},
    TextRow{-1, "the board's unit id cannot be read"},
    TextRow{-2, "no search string can be formed for the names of images"},
    TextRow{-3, "the search string for the names of images is too long"},
    TextRow{-4, "the directory cannot be read"},
    TextRow{-5, "more than 10 files have names of images for this chip"},
    TextRow{-6, "the board's hardware/software identifier cannot be read"},
    TextRow{-7, "no image for this board"},
    TextRow{-8, "more than one image for this board, and nothing says which one to take"},
    TextRow{-9, "the active version cannot be read"},
};

std::string ubootChip() {
    return update::constant::ubootChip;
}

std::string bmuChip() {
    return update::bmuChipOf(unit_version());
}

update::FpgaOfUnit boardsFpga() {
    update::FpgaOfUnit fpga{};
    get_fpga(&fpga.shortName, &fpga.chipIdentifier, &fpga.id);
    return fpga;
}

std::string fpgaChip() {
    const update::FpgaOfUnit fpga = boardsFpga();
    return fpga.id != 0 ? fpga.chipIdentifier : "";
}

std::string ubootDevice() {
    std::uint32_t location = 0;
    const bool isKnown = ddal_boot_get_uboot_id(&location) == 0;
    return std::string("boot loader, started from ") + (isKnown ? update::ubootLocationName(location) : "?");
}

std::string bmuDevice() {
    return "BMU " + showHex(update::constant::bmuFpgaId, 1);
}

std::string fpgaDevice() {
    const update::FpgaOfUnit fpga = boardsFpga();
    return std::string("FPGA ") + fpga.shortName + " " + showHex(fpga.id, 1);
}

std::optional<std::uint32_t> ubootActive() {
    std::array<char, 128> text{};
    if (ddal_boot_get_uboot_version(text.size(), text.data()) != 0) {
        return std::nullopt;
    }
    return ps::hwapi::common::conversion::unsigned32(text.data(), 10);
}

std::optional<std::uint32_t> activeOf(std::uint32_t id) {
    std::uint32_t version = 0;
    return ddal_fpga_get_active_version(id, &version) == 0 ? std::optional(version) : std::nullopt;
}

std::optional<std::uint32_t> bmuActive() {
    return activeOf(update::constant::bmuFpgaId);
}

std::optional<std::uint32_t> fpgaActive() {
    return activeOf(boardsFpga().id);
}

int checkBmu(const char* directory, char* path, std::size_t size, int /*force*/) {
    return is_bmu_update_needed(directory, path, size);
}

int checkFpga(const char* directory, char* path, std::size_t size, int /*force*/) {
    return is_fpga_update_needed(directory, path, size);
}

int updateLocalBmu(const char* image) {
    return update_bmu(image, 0);
}

std::vector<FwComponent> makeComponents() {
    return {{"uboot", "updated when the file's version is not lower than the active one",
             update::constant::ubootMinorDifference != 0, update::ubootTemporary.inRam,
             update::ubootTemporary.byDefault, ubootChip, ubootDevice, ubootActive, update::isUbootUpdated,
             is_uboot_update_needed, update_uboot, true},
            {"bmu", "updated when the file's version is higher than the active one",
             update::constant::bmuMinorDifference != 0, update::bmuTemporary.inRam, update::bmuTemporary.byDefault,
             bmuChip, bmuDevice, bmuActive, update::isBmuUpdated, checkBmu, updateLocalBmu, false},
            {"fpga", "updated when the file's version differs from the active one",
             update::constant::fpgaMinorDifference != 0, update::fpgaTemporary.inRam, update::fpgaTemporary.byDefault,
             fpgaChip, fpgaDevice, fpgaActive, update::isFpgaUpdated, checkFpga, update_fpga, false}};
}

bool isThere(const std::string& path) {
    return access(path.c_str(), R_OK) == 0;
}

} // namespace

const std::vector<FwComponent>& fwComponents() {
    static const std::vector<FwComponent> all = makeComponents();
    return all;
}

const FwComponent& fwComponent(const std::string& name) {
    const auto& all = fwComponents();
    const auto found =
        std::find_if(all.begin(), all.end(), [&name](const FwComponent& one) { return name == one.name; });
    if (found == all.end()) {
        throw Failure(ExitStatus::usage, "component: expected uboot, bmu or fpga, got '" + name + "'");
    }
    return *found;
}

std::string decisionText(const FwComponent& component, int result) {
    if (result == -10) {
        return component.needsRam ? "where the boot loader was started from cannot be read"
                                  : "this board has no such device";
    }
    for (const TextRow& row : decisionTable) {
        if (row.result == result) {
            return row.text;
        }
    }
    return "unknown result";
}

std::string updateText(const FwComponent& component, int result) {
    const bool hasSlots = std::string(component.name) == "fpga";
    switch (result) {
    case 0:
        return "written; it runs after the next reset";
    case -1:
        return "the image failed its check, nothing was written";
    case -2:
        return "the payload could not be copied to a temporary file, nothing was written";
    case -3:
        return hasSlots ? "the primary slot could not be written, the secondary one was not touched"
                        : "the device could not be written";
    case -4:
        return "the primary slot was written, the secondary one could not be";
    case -10:
        return "this board has no such device";
    default:
        return "unknown result";
    }
}

std::string forceMarker(const FwComponent& component) {
    return update::forceMarkerOf(unit_type(), component.name).data();
}

std::optional<int> forcedLeft(const FwComponent& component) {
    std::ifstream stream(forceMarker(component));
    int left = 0;
    return stream >> left ? std::optional(left) : std::nullopt;
}

std::uint32_t ownHwSwId() {
    std::uint32_t hwSwId = 0;
    return ddal_devicetree_get_hw_sw_id(0, &hwSwId) == 0 ? hwSwId : 0;
}

std::vector<std::string> disablingMarkers() {
    std::vector<std::string> all;
    for (const std::string& path :
         {std::string(update::constant::disableMarker), std::string(update::disableMarkerOf(unit_type()).data())}) {
        if (isThere(path)) {
            all.push_back(path);
        }
    }
    return all;
}

} // namespace mox::tools
