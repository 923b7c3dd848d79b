#pragma once
#include "mock/DdalBootMock.hpp"
#include "mock/DdalFpgaMock.hpp"
#include "unit/Firmware/update/UpdateFixture.hpp"

#include <ddal/ddal.h>

#include <algorithm>

namespace mox::firmwaretest {

/// A board that is asked whether an update is needed; its devices run version 5.
class UpdateDecision : public UpdateFixture {
protected:
    char path[64];
    ::testing::NiceMock<mock::DdalFpgaMock>& fpga() { return m_fpga; }
    ::testing::NiceMock<mock::DdalBootMock>& boot() { return m_boot; }

    UpdateDecision() {
        std::fill(std::begin(path), std::end(path), '#');
        ON_CALL(m_fpga, ddal_fpga_get_active_version).WillByDefault([this](uint32_t, uint32_t* version) {
            *version = m_active;
            return DDAL_OK;
        });
        ON_CALL(m_boot, ddal_boot_get_uboot_id).WillByDefault([this](uint32_t* location) {
            *location = m_location;
            return DDAL_OK;
        });
        ON_CALL(m_boot, ddal_boot_get_uboot_version).WillByDefault([this](uint32_t length, char* text) {
            std::fill(text, text + length, '\0');
            m_activeText.copy(text, length - 1);
            return DDAL_OK;
        });
    }

    void setActive(std::uint32_t version) { m_active = version; }
    void setActive(const std::string& uboot) { m_activeText = uboot; }
    void setLocation(std::uint32_t location) { m_location = location; }

    bool isPathUntouched() const { return bytesOf(path) == std::string(sizeof path, '#'); }
    bool isPathClear() const { return bytesOf(path) == std::string(sizeof path, '\0'); }

    static FirmwareImage foreign() { return FirmwareImage().version("9").listing({0xFFFF0000}); }
    /// An image that lists this board's identifier with another minor version.
    static FirmwareImage minorOther(const std::string& version) {
        return FirmwareImage().version(version).listing({hwSwId ^ 0x0FU});
    }

private:
    mock::Use<mock::DdalFpgaMock> m_fpga;
    mock::Use<mock::DdalBootMock> m_boot;
    std::uint32_t m_active = 5;
    std::string m_activeText = "5";
    std::uint32_t m_location = 2;
};

} // namespace mox::firmwaretest
