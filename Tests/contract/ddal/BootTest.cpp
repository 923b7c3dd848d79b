#include "UnitFixture.hpp"

#include <ddal/ddal_boot.h>

#include <host/ddal/Reset.hpp>

namespace mox::testing {
namespace {

class BootLoader : public OnUnit {
protected:
    static std::uint32_t location() {
        std::uint32_t where = 0xDEAD;
        EXPECT_EQ(ddal_boot_get_uboot_id(&where), DDAL_OK);
        return where;
    }
    static std::string version() {
        char text[128] = "";
        EXPECT_EQ(ddal_boot_get_uboot_version(sizeof text, text), DDAL_OK);
        return text;
    }
    static void reset() { ASSERT_TRUE(host::resetNode(run(), firstNode)); }
};
const testkit::BoardOf s_board("BootLoader", testkit::Board::text(unitBoard));

TEST_F(BootLoader, RunsTheDescribedVersionFromThePrimaryArea) {
    EXPECT_EQ(location(), DDAL_BOOT_UBOOT_PRIMARY);
    EXPECT_EQ(version(), "20160115");
    reset();
    EXPECT_EQ(location(), DDAL_BOOT_UBOOT_PRIMARY);
    EXPECT_EQ(version(), "20160115");
}

TEST_F(BootLoader, RunsAnImageFromTheNextResetOn) {
    ASSERT_EQ(ddal_boot_update_uboot(image(20170102, 700).c_str()), DDAL_OK);
    EXPECT_EQ(version(), "20160115");
    reset();
    EXPECT_EQ(version(), "20170102");
    EXPECT_EQ(location(), DDAL_BOOT_UBOOT_PRIMARY);
    EXPECT_EQ(runPeer({"uboot-version"}).out, "0 20170102");
}

TEST_F(BootLoader, ShowsAHexadecimalVersionInDecimalDigits) {
    ASSERT_EQ(ddal_boot_update_uboot(file("MOX-SW-VERSION:0x0102").c_str()), DDAL_OK);
    reset();
    EXPECT_EQ(version(), "258");
}

TEST_F(BootLoader, IsUpdatedInItsPrimaryAreaOnly) {
    const std::string before = contentOf(flash().path(host::ubootBackupArea));
    const std::string path = image(3, 700);
    ASSERT_EQ(ddal_boot_update_uboot(path.c_str()), DDAL_OK);
    EXPECT_EQ(contentOf(flash().path(host::ubootPrimaryArea)), contentOf(path));
    EXPECT_EQ(contentOf(flash().path(host::ubootBackupArea)), before);
}

TEST_F(BootLoader, RefusesWhatDoesNotFit) {
    EXPECT_EQ(ddal_boot_update_uboot(image(3, areaSize + 1).c_str()), DDAL_NO_SPACE);
    EXPECT_EQ(ddal_boot_update_uboot("/tmp/none"), DDAL_NOT_FOUND);
    EXPECT_EQ(ddal_boot_update_uboot(nullptr), DDAL_INVALID_PARAMETER);
    EXPECT_TRUE(flash().isWhole(host::ubootPrimaryArea));
}

TEST_F(BootLoader, GivesItsVersionOnlyWhereItFits) {
    char text[10] = "before";
    EXPECT_EQ(ddal_boot_get_uboot_version(8, text), DDAL_NO_SPACE);
    EXPECT_EQ(ddal_boot_get_uboot_version(0, text), DDAL_NO_SPACE);
    EXPECT_STREQ(text, "before");
    EXPECT_EQ(ddal_boot_get_uboot_version(9, text), DDAL_OK);
    EXPECT_STREQ(text, "20160115");
}

TEST_F(BootLoader, RefusesNullPointers) {
    EXPECT_EQ(ddal_boot_get_uboot_id(nullptr), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_boot_get_uboot_version(10, nullptr), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_boot_get_linux_active(nullptr), DDAL_INVALID_PARAMETER);
}

TEST_F(BootLoader, KnowsWhereLinuxWasStartedFrom) {
    std::uint32_t fileSystem = 0;
    EXPECT_EQ(ddal_boot_get_linux_active(&fileSystem), DDAL_OK);
    EXPECT_EQ(fileSystem, 54u);
}

TEST_F(BootLoader, InhibitsExtensionBoardsUntilTheReset) {
    const auto isInhibited = [](const char* board) {
        return run().store().get(host::Table::devices, std::string("1011/boot/inhibit/") + board).has_value();
    };
    EXPECT_EQ(ddal_boot_set_ZUP_bootimage_inhibit(1, true), DDAL_INVALID_PARAMETER);
    EXPECT_EQ(ddal_boot_set_ZUP_bootimage_inhibit(5, true), DDAL_INVALID_PARAMETER);
    for (const std::uint32_t board : {2U, 3U, 4U})
        EXPECT_EQ(ddal_boot_set_ZUP_bootimage_inhibit(board, true), DDAL_OK);
    EXPECT_EQ(ddal_boot_set_ZUP_bootimage_inhibit(3, false), DDAL_OK);
    EXPECT_EQ(ddal_boot_set_ZUP_bootimage_inhibit(3, false), DDAL_OK) << "again";
    EXPECT_TRUE(isInhibited("2"));
    EXPECT_FALSE(isInhibited("3"));
    EXPECT_TRUE(isInhibited("4"));
    reset();
    EXPECT_FALSE(isInhibited("2"));
    EXPECT_FALSE(isInhibited("4"));
}

TEST_F(BootLoader, SaysWhenWhatItInhibitsCannotBeKept) {
    ASSERT_EQ(ddal_boot_set_ZUP_bootimage_inhibit(2, true), DDAL_OK);
    int inhibited = DDAL_OK;
    int allowed = DDAL_OK;
    {
        const FullDisk full;
        inhibited = ddal_boot_set_ZUP_bootimage_inhibit(3, true);
        allowed = ddal_boot_set_ZUP_bootimage_inhibit(2, false);
    }
    EXPECT_EQ(inhibited, DDAL_IO_ERROR);
    EXPECT_EQ(allowed, DDAL_IO_ERROR);
    EXPECT_TRUE(log.hasInOrder({testkit::error(0, FullDisk::line), testkit::error(0, FullDisk::line)}));
    EXPECT_EQ(ddal_boot_set_ZUP_bootimage_inhibit(2, false), DDAL_OK);
}

constexpr const char* fromBackup = R"({"nodes": [{ "id": "0x1011", "unit": { "id": "WIMA", "hwSwId": 0 }, "devices": {
  "boot": { "location": "backup", "version": "0017" } } }]})";

class BootLoaderInTheBackupArea : public BootLoader {};
const testkit::BoardOf s_backup("BootLoaderInTheBackupArea", testkit::Board::text(fromBackup));

TEST_F(BootLoaderInTheBackupArea, HasABlankPrimaryArea) {
    EXPECT_EQ(location(), DDAL_BOOT_UBOOT_BACKUP);
    EXPECT_EQ(version(), "0017");
    EXPECT_FALSE(flash().isWhole(host::ubootPrimaryArea));
    reset();
    EXPECT_EQ(location(), DDAL_BOOT_UBOOT_BACKUP);
    EXPECT_EQ(version(), "17");
}

TEST_F(BootLoaderInTheBackupArea, ReturnsToThePrimaryOneWithAnUpdate) {
    ASSERT_EQ(ddal_boot_update_uboot(image(18, 700).c_str()), DDAL_OK);
    EXPECT_EQ(location(), DDAL_BOOT_UBOOT_BACKUP);
    reset();
    EXPECT_EQ(location(), DDAL_BOOT_UBOOT_PRIMARY);
    EXPECT_EQ(version(), "18");
}

TEST_F(BootLoaderInTheBackupArea, FindsNoFileSystemOfLinuxThatIsNotDescribed) {
    std::uint32_t fileSystem = 17;
    EXPECT_EQ(ddal_boot_get_linux_active(&fileSystem), DDAL_NOT_FOUND);
    EXPECT_EQ(fileSystem, 17u);
}

constexpr const char* fromRam = R"({"nodes": [{ "id": "0x1011", "unit": { "id": "KORA", "hwSwId": 0 }, "devices": {
  "boot": { "location": "ram", "version": "17" } } }]})";

class BootLoaderInRam : public BootLoader {};
const testkit::BoardOf s_ram("BootLoaderInRam", testkit::Board::text(fromRam));

TEST_F(BootLoaderInRam, IsLoadedAgainWhateverLiesInFlash) {
    ASSERT_EQ(ddal_boot_update_uboot(image(18, 700).c_str()), DDAL_OK);
    reset();
    EXPECT_EQ(location(), DDAL_BOOT_UBOOT_RAM);
    EXPECT_EQ(version(), "17");
    EXPECT_EQ(flash().image(host::ubootPrimaryArea)->version, 18u);
}

class UnitWithoutABootLoader : public OnUnit {};
const testkit::BoardOf s_without("UnitWithoutABootLoader", testkit::Board::text(unitBoard).at(secondNode));

TEST_F(UnitWithoutABootLoader, SaysSo) {
    std::uint32_t value = 17;
    char text[128] = "before";
    EXPECT_EQ(ddal_boot_get_uboot_id(&value), DDAL_NO_DEVICE);
    EXPECT_EQ(ddal_boot_get_uboot_version(sizeof text, text), DDAL_NO_DEVICE);
    EXPECT_EQ(ddal_boot_update_uboot(image(1, 10).c_str()), DDAL_NO_DEVICE);
    EXPECT_EQ(ddal_boot_get_linux_active(&value), DDAL_NO_DEVICE);
    EXPECT_EQ(value, 17u);
    EXPECT_STREQ(text, "before");
}

} // namespace
} // namespace mox::testing
