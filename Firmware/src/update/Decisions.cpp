#include "update/DdalFailure.hpp"
#include "update/OutText.hpp"

#include <ddal/ddal_boot.h>
#include <ddal/ddal_fpga.h>
#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>
#include <mox/conversion/Unsigned32.hpp>

#include <syslog.h>

namespace ps::hwapi::common::update {
namespace {

struct Image {
    char path[FIND_BINARY_ROW_SIZE] = "";
    std::uint32_t version = 0;
};

/// Where an image is looked for, and for which board.
struct Place {
    const char* directory;
    const char* boardType;       ///< null: the board's
    std::uint32_t ownHwSwId = 0; ///< 0: the device tree's
};

/// @return 0; -7 none, -8 more than one, else what find_binary_compatible answers
int findImage(const Place& place, const char* chipIdentifier, int allowMinorDifference, Image& image) {
    const int found = find_binary_compatible(place.directory, place.boardType, chipIdentifier, place.ownHwSwId,
                                             allowMinorDifference, image.path, sizeof image.path, &image.version);
    if (found == 1)
        return 0;
    if (found == 0)
        return -7;
    return found > 1 ? -8 : found;
}

int answer(const char* function, bool needed) {
    syslog(LOG_INFO, needed ? "%s(): yes" : "%s(): no", function);
    return needed ? 1 : 0;
}

bool isGood(const char* function, const char* call, int result) {
    if (result != DDAL_OK)
        logDdalFailure(function, call, result);
    return result == DDAL_OK;
}

bool readUbootLocation(const char* function, std::uint32_t& location) {
    return isGood(function, "ddal_boot_get_uboot_id", ddal_boot_get_uboot_id(&location));
}

bool readUbootVersion(const char* function, std::uint32_t& version) {
    char text[128] = "";
    if (!isGood(function, "ddal_boot_get_uboot_version", ddal_boot_get_uboot_version(sizeof text, text)))
        return false;
    syslog(LOG_INFO, "%s(): active uboot version '%s'", function, text);
    version = conversion::unsigned32(text, 10);
    return true;
}

bool readFpgaVersion(const char* function, std::uint32_t fpgaId, std::uint32_t& version) {
    return isGood(function, "ddal_fpga_get_active_version", ddal_fpga_get_active_version(fpgaId, &version));
}

int decideUboot(const char* function, const Image& image) {
    std::uint32_t active = 0;
    syslog(LOG_INFO, "%s(): uboot file '%s' version 0x%X (%d)", function, image.path, image.version,
           static_cast<int>(image.version));
    if (!readUbootVersion(function, active))
        return -9;
    const bool isUpdated = isUbootUpdated(image.version, active);
    if (!isUpdated)
        syslog(LOG_INFO, "%s(): uboot binary version is older than active, do not update wrong one!", function);
    return answer(function, isUpdated);
}

using VersionRule = bool (*)(std::uint32_t file, std::uint32_t active);

/// Compares the image found with what a programmable device runs.
int decideDevice(const char* function, const Image& image, const char* shortName, std::uint32_t fpgaId,
                 VersionRule isUpdated) {
    std::uint32_t active = 0;
    syslog(LOG_INFO, "%s(): %s file '%s' version 0x%X (%d)", function, shortName, image.path, image.version,
           static_cast<int>(image.version));
    if (!readFpgaVersion(function, fpgaId, active))
        return -9;
    syslog(LOG_INFO, "%s(): active %s version 0x%X (%d)", function, shortName, active, static_cast<int>(active));
    return answer(function, isUpdated(image.version, active));
}

/// The steps of the two questions about a BMU.
int isBmuNeeded(const char* function, const Place& place, const char* chip, std::uint32_t fpgaId, char* outPath,
                std::size_t outPathSize) {
    Image image;
    if (const int failure = findImage(place, chip, constant::bmuMinorDifference, image)) {
        if (failure == -7)
            syslog(LOG_DEBUG, "%s(): no bmu binary", function);
        return failure;
    }
    const int needed = decideDevice(function, image, "bmu", fpgaId, isBmuUpdated);
    if (needed >= 0)
        copyText(outPath, outPathSize, image.path);
    return needed;
}

} // namespace
} // namespace ps::hwapi::common::update

int is_uboot_booted_from_ram() {
    using namespace ps::hwapi::common::update;
    syslog(LOG_INFO, "%s(): ?", __func__);
    std::uint32_t location = 0;
    if (!readUbootLocation(__func__, location))
        return -1;
    return answer(__func__, location == DDAL_BOOT_UBOOT_RAM);
}

int is_uboot_update_needed(const char* directory, char* outPath, size_t outPathSize, int force) {
    using namespace ps::hwapi::common::update;
    syslog(LOG_INFO, "%s(): ?", __func__);
    std::uint32_t location = 0;
    if (!readUbootLocation(__func__, location))
        return -10;
    syslog(LOG_INFO, "%s(): uboot is started from '%s' (%d)", __func__, ubootLocationName(location),
           static_cast<int>(location));
    if (location != DDAL_BOOT_UBOOT_RAM && force != 1)
        return answer(__func__, false);
    Image image;
    if (const int failure =
            findImage({directory, nullptr}, constant::ubootChip, constant::ubootMinorDifference, image)) {
        if (failure == -7)
            syslog(LOG_INFO, "%s(): no uboot binary", __func__);
        return failure;
    }
    const int needed = decideUboot(__func__, image);
    if (needed >= 0)
        copyText(outPath, outPathSize, image.path);
    return needed;
}

int is_bmu_update_needed(const char* directory, char* outPath, size_t outPathSize) {
    using namespace ps::hwapi::common::update;
    syslog(LOG_INFO, "%s(): ?", __func__);
    clearText(outPath, outPathSize);
    return isBmuNeeded(__func__, {directory, nullptr}, bmuChipOf(unit_version()), constant::bmuFpgaId, outPath,
                       outPathSize);
}

int is_bmu_update_needed_no_mcu(char* outPath, size_t outPathSize, uint32_t ddalBoard, uint32_t ownHwSwId) {
    using namespace ps::hwapi::common::update;
    syslog(LOG_INFO, "%s(): ?", __func__);
    clearText(outPath, outPathSize);
    const std::uint32_t fpgaId = extensionBmuIdOf(ddalBoard);
    if (fpgaId == 0) {
        syslog(LOG_DEBUG, "%s(): no support ddal board 0x%X", __func__, ddalBoard);
        return -10;
    }
    return isBmuNeeded(__func__, {constant::extensionImages, constant::extensionBoardType, ownHwSwId},
                       constant::bmuChip, fpgaId, outPath, outPathSize);
}

int is_fpga_update_needed(const char* directory, char* outPath, size_t outPathSize) {
    using namespace ps::hwapi::common::update;
    syslog(LOG_INFO, "%s(): ?", __func__);
    clearText(outPath, outPathSize);
    const char* shortName = nullptr;
    const char* chip = nullptr;
    std::uint32_t fpgaId = 0;
    if (get_fpga(&shortName, &chip, &fpgaId) != 0) {
        syslog(LOG_DEBUG, "%s(): no fpga specified for unit '%s'", __func__, unit_version());
        return -10;
    }
    Image image;
    if (const int failure = findImage({directory, nullptr}, chip, constant::fpgaMinorDifference, image)) {
        if (failure == -7)
            syslog(LOG_DEBUG, "%s(): no %s binary", __func__, shortName);
        return failure;
    }
    const int needed = decideDevice(__func__, image, shortName, fpgaId, isFpgaUpdated);
    if (needed >= 0)
        copyText(outPath, outPathSize, image.path);
    return needed;
}
