// Device functions of a process that belongs to no board.
#include <ddal/ddal_boot.h>
#include <ddal/ddal_devicetree.h>
#include <ddal/ddal_fpga.h>
#include <ddal/ddal_rio.h>
#include <ddal/ddal_sysinfo.h>
#include <ddal/ddal_unit.h>
#include <ddal/ddal_watchdog.h>

#include <gtest/gtest.h>
#include <host/ddal/Unsupported.hpp>

namespace {

TEST(DevicesOfAProcessWithoutABoard, AreNotSupported) {
    std::uint32_t number = 17;
    std::uint16_t id = 17;
    std::int32_t slot = 17;
    std::uint64_t value = 17;
    char text[8] = "before";
    EXPECT_EQ(ddal_boot_get_uboot_id(&number), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_boot_update_uboot("/tmp/x"), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_boot_set_ZUP_bootimage_inhibit(2, true), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_devicetree_get_unit_id(0, sizeof text, text), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_devicetree_get_hw_sw_id(0, &number), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_fpga_get_active_version(1, &number), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_fpga_update_mod(1, 1, "/tmp/x"), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_rio_get_own_id(&id), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_sysinfo_get_uint(0, 15, 0, nullptr, &value), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_sysinfo_set_uint(0, 14, 0, nullptr, 1), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_unit_get_board(), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_id_get_slot_id(&slot), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(ddal_watchdog_reboot(), DDAL_NOT_SUPPORTED);
    EXPECT_EQ(number + id + static_cast<std::uint32_t>(slot) + value, 4 * 17u);
    EXPECT_STREQ(text, "before");
}

TEST(DevicesOfAProcessWithoutABoard, AreReportedByTheNameOfTheFunction) {
    const auto before = mox::host::unsupportedCalls("ddal_unit_get_board");
    ddal_unit_get_board();
    EXPECT_EQ(mox::host::unsupportedCalls("ddal_unit_get_board"), before + 1);
}

} // namespace
