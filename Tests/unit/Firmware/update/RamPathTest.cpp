#include "mock/Faults.hpp"
#include "mock/FunctionTable.hpp"
#include "unit/Firmware/update/UpdateFixture.hpp"

#include <ddal/ddal.h>
#include <mox/Firmware.h>
#include <pal/AaConfig.h>

namespace mox::firmwaretest {
namespace {

constexpr const char* supervisorTag = "sys.hwapi.supervisor";
constexpr unsigned int enableRp441 = 0x20088;
constexpr unsigned int enableBtsLxc = 0x200ED;

class RamPathOfABoard : public UpdateFixture {
protected:
    RamPathOfABoard() { AaConfigEarlyStartup(); }

    static void setSupervisor(std::uint32_t value) {
        ASSERT_EQ(AaConfigTagPublicSetU32(supervisorTag, value), EAaConfigRetVal_NoError);
    }
};

TEST_F(RamPathOfABoard, IsNotUsedUnlessAskedFor) {
    EXPECT_EQ(is_ram_path_used(), 0);
    setSupervisor(0);
    EXPECT_EQ(is_ram_path_used(), 0);
}

TEST_F(RamPathOfABoard, IsUsedWithASupervisor) {
    setSupervisor(1);
    EXPECT_EQ(is_ram_path_used(), 1);
    setSupervisor(0x80000000);
    EXPECT_EQ(is_ram_path_used(), 1);
}

TEST_F(RamPathOfABoard, IsUsedWithItsParameter) {
    AaConfigRadSetValue(enableRp441, 1);
    EXPECT_EQ(is_ram_path_used(), 1);
}

TEST_F(RamPathOfABoard, IsForbiddenByAParameter) {
    setSupervisor(1);
    AaConfigRadSetValue(enableRp441, 1);
    AaConfigRadSetValue(enableBtsLxc, 1);
    EXPECT_EQ(is_ram_path_used(), 0);
    AaConfigRadSetValue(enableBtsLxc, 0);
    EXPECT_EQ(is_ram_path_used(), 1);
}

TEST_F(RamPathOfABoard, IsNotUsedWhenTheTagIsNoNumber) {
    ASSERT_EQ(AaConfigTagSetString(supervisorTag, "yes, please"), EAaConfigRetVal_NoError);
    EXPECT_EQ(is_ram_path_used(), 0);
}

TEST(RamPathWithoutConfiguration, IsNotUsed) {
    EXPECT_EQ(is_ram_path_used(), 0);
}

class FpgaOfTheBoard : public UpdateFixture {};

TEST_F(FpgaOfTheBoard, IsThatOfItsUnit) {
    const char* name = nullptr;
    const char* chip = nullptr;
    std::uint32_t id = 0;
    setUnit("KORE");
    EXPECT_EQ(get_fpga(&name, &chip, &id), 0);
    EXPECT_STREQ(name, "tirvak");
    EXPECT_STREQ(chip, "TIRVAK-QE");
    EXPECT_EQ(id, 0x10001U);
    EXPECT_EQ(fpga_id_local(), 0x10002U);
    EXPECT_EQ(mock::callCount("ddal_devicetree_get_unit_id"), 1U);
}

TEST_F(FpgaOfTheBoard, IsUnknownForOtherUnits) {
    const char* name = nullptr;
    const char* chip = nullptr;
    std::uint32_t id = 7;
    setUnit("ZUPA");
    EXPECT_EQ(get_fpga(&name, &chip, &id), -1);
    EXPECT_STREQ(name, "unknown");
    EXPECT_STREQ(chip, "unknown");
    EXPECT_EQ(id, 0U);
    EXPECT_EQ(fpga_id_local(), 0U);
}

TEST_F(FpgaOfTheBoard, HasTwoTablesThatDifferForOneUnitType) {
    std::uint32_t id = 0;
    setUnit("VEMA");
    EXPECT_EQ(get_fpga(nullptr, nullptr, &id), 0);
    EXPECT_EQ(id, 0x70001U);
    EXPECT_EQ(fpga_id_local(), 0U);
}

TEST_F(FpgaOfTheBoard, IsNeverThatOfAnotherUnitBecauseOneReadingFailed) {
    setUnit("KORE");
    const char* chip = nullptr;
    const mock::Fault fault = mock::fail("ddal_devicetree_get_unit_id").with(DDAL_IO_ERROR);
    EXPECT_EQ(get_fpga(nullptr, &chip, nullptr), 0);
    EXPECT_STREQ(chip, "TIRVAK-QE");
    EXPECT_EQ(fault.fired(), 1U);
}

TEST_F(FpgaOfTheBoard, IsUnknownWhenTheUnitIs) {
    failUnit(DDAL_IO_ERROR);
    EXPECT_EQ(get_fpga(nullptr, nullptr, nullptr), -1);
    EXPECT_EQ(fpga_id_local(), 0U);
}

} // namespace
} // namespace mox::firmwaretest
