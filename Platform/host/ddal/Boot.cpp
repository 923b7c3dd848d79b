#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "ActiveState.hpp"
#include "BootImageInhibit.hpp"
#include "Ddal.hpp"
#include "Flash.hpp"
#include "SimulatedUnit.hpp"

#include <algorithm>
#include <cstring>

namespace mox::host {

namespace {

/// Hands the boot device on, if the unit has one.
template <class Use>
int withBoot(const char* function, Use use) {
    const SimulatedUnit unit(function);
    if (!unit)
        return DDAL_NOT_SUPPORTED;
    return unit.devices().boot ? static_cast<int>(use(unit, *unit.devices().boot)) : static_cast<int>(DDAL_NO_DEVICE);
}

RunningBoot runningOn(const SimulatedUnit& unit, const BootDevice& boot) {
    return runningBoot(unit.run().store(), unit.node(), boot);
}

} // namespace

int ddal_boot_get_uboot_id(uint32_t* location) {
    if (location == nullptr)
        return DDAL_INVALID_PARAMETER;
    return withBoot(__func__, [location](const SimulatedUnit& unit, const BootDevice& boot) {
        *location = runningOn(unit, boot).location;
        return DDAL_OK;
    });
}

int ddal_boot_get_uboot_version(uint32_t length, char* version) {
    if (version == nullptr)
        return DDAL_INVALID_PARAMETER;
    return withBoot(__func__, [length, version](const SimulatedUnit& unit, const BootDevice& boot) {
        const std::string text = runningOn(unit, boot).version;
        if (text.size() >= length)
            return DDAL_NO_SPACE;
        std::memcpy(version, text.c_str(), text.size() + 1);
        return DDAL_OK;
    });
}

int ddal_boot_update_uboot(const char* path) {
    if (path == nullptr)
        return DDAL_INVALID_PARAMETER;
    return withBoot(__func__, [path](const SimulatedUnit& unit, const BootDevice& boot) {
        // The backup area is what a broken update is survived with, so it is never written.
        const FlashArea primary{"uboot", ubootPrimaryArea, boot.geometry.areaSize, boot.geometry.blockSize};
        return Flash(unit.run(), unit.node()).write(primary, path);
    });
}

int ddal_boot_get_linux_active(uint32_t* fsId) {
    if (fsId == nullptr)
        return DDAL_INVALID_PARAMETER;
    return withBoot(__func__, [fsId](const SimulatedUnit& unit, const BootDevice& boot) {
        const auto& flash = unit.devices().flash;
        const bool isThere = std::any_of(flash.begin(), flash.end(), [&boot](const FlashFileSystem& fileSystem) {
            return fileSystem.id == boot.linuxActive;
        });
        if (!isThere)
            return DDAL_NOT_FOUND;
        *fsId = boot.linuxActive;
        return DDAL_OK;
    });
}

int ddal_boot_set_ZUP_bootimage_inhibit(uint32_t board, bool inhibit) {
    if (board < firstExtensionBoard || board > lastExtensionBoard)
        return DDAL_INVALID_PARAMETER;
    const SimulatedUnit unit(__func__);
    if (!unit)
        return DDAL_NOT_SUPPORTED;
    const std::string key = bootImageInhibitKey(unit.node(), board);
    Store::Write write(unit.run().store());
    if (inhibit)
        write.put(Table::devices, key, "");
    else
        write.erase(Table::devices, key);
    return write.commit() ? DDAL_OK : DDAL_IO_ERROR;
}

} // namespace mox::host
