#include "mock/FunctionTable.hpp"
#include "unit/Firmware/update/UpdateDecision.hpp"

#include <mox/Firmware.h>
#include <pal/AaConfig.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>

namespace mox::firmwaretest {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::InSequence;
using ::testing::IsEmpty;
using ::testing::Return;
using ::testing::StartsWith;
using ::testing::StrEq;

constexpr const char* source = "/ffs/run/boot/KOR.bin";

class Update : public UpdateDecision {
protected:
    Update() {
        AaConfigEarlyStartup();
        ON_CALL(boot(), ddal_boot_update_uboot).WillByDefault([this](const char* payload) { return flash(payload); });
        ON_CALL(fpga(), ddal_fpga_update_mod).WillByDefault([this](uint32_t, uint32_t, const char* payload) {
            return flash(payload);
        });
        image().payload("the payload").writeTo(source);
    }

    /// What the devices were given.
    std::vector<std::string> flashed;

    static void useRam() { ASSERT_EQ(AaConfigTagPublicSetU32("sys.hwapi.supervisor", 1), EAaConfigRetVal_NoError); }
    static bool exists(const std::string& path) { return std::filesystem::exists(path); }
    std::uint64_t ddalUpdates() const {
        return mock::callCount("ddal_boot_update_uboot") + mock::callCount("ddal_fpga_update_mod");
    }

private:
    int flash(const char* payload) {
        flashed.push_back(readFile(payload));
        return DDAL_OK;
    }
};

/// What the three updates have in common.
struct UpdateRow {
    const char* function;
    int (*update)(const char* imagePath);
    const char* start;
    const char* inTmp;
    const char* inRam;
};

void PrintTo(const UpdateRow& row, std::ostream* out) {
    *out << row.function;
}

int updateLocalBmu(const char* path) {
    return update_bmu(path, 0);
}

class AnyUpdate : public Update, public ::testing::WithParamInterface<UpdateRow> {
protected:
    std::vector<std::string> takeLines() { return UpdateFixture::takeLines(GetParam().function); }
};

TEST_P(AnyUpdate, FlashesThePayloadAndRemovesTheTemporaryFile) {
    EXPECT_EQ(GetParam().update(source), 0);
    EXPECT_THAT(flashed, ::testing::AllOf(::testing::Not(IsEmpty()), ::testing::Each("the payload")));
    EXPECT_FALSE(exists(GetParam().inTmp));
    EXPECT_FALSE(exists(GetParam().inRam));
    EXPECT_TRUE(exists(source));
}

TEST_P(AnyUpdate, RefusesAnImageWhoseCrcIsWrong) {
    image().crc(1).writeTo(source);
    EXPECT_EQ(GetParam().update(source), -1);
    EXPECT_THAT(takeLines(), ElementsAre(GetParam().start, "info binary_crc() failed 70413"));
    EXPECT_EQ(ddalUpdates(), 0U);
    EXPECT_FALSE(exists(GetParam().inTmp));
}

TEST_P(AnyUpdate, RefusesAnImageThatIsNotThere) {
    EXPECT_EQ(GetParam().update("/ffs/nothing"), -1);
    EXPECT_THAT(takeLines(), ElementsAre(GetParam().start, "info binary_crc() failed 70406"));
}

TEST_P(AnyUpdate, StopsWhenThePayloadCannotBeCopied) {
    std::filesystem::create_directory(GetParam().inTmp);
    EXPECT_EQ(GetParam().update(source), -2);
    EXPECT_THAT(takeLines(), ElementsAre(GetParam().start, "info binary '/ffs/run/boot/KOR.bin' is ok",
                                         "info binary_copy_without_trailer() failed -8"));
    EXPECT_EQ(ddalUpdates(), 0U);
    EXPECT_TRUE(exists(GetParam().inTmp)); // what lies there stays
}

TEST_P(AnyUpdate, TakesNoLinkForATemporaryFile) {
    writeFile("/tmp/somebody's", "precious");
    std::filesystem::create_symlink("/tmp/somebody's", GetParam().inTmp);
    EXPECT_EQ(GetParam().update(source), -2);
    EXPECT_EQ(readFile("/tmp/somebody's"), "precious");
    EXPECT_TRUE(std::filesystem::is_symlink(GetParam().inTmp));
}

TEST_P(AnyUpdate, ReplacesATemporaryFileThatWasLeftBehind) {
    writeFile(GetParam().inTmp, "a longer payload of an update before");
    EXPECT_EQ(GetParam().update(source), 0);
    EXPECT_THAT(flashed, ::testing::Each("the payload"));
    EXPECT_FALSE(exists(GetParam().inTmp));
}

TEST_P(AnyUpdate, UsesTheRamPathWhenTold) {
    useRam();
    std::filesystem::create_directory(GetParam().inRam);
    EXPECT_EQ(GetParam().update(source), -2);
    std::filesystem::remove(GetParam().inRam);
    EXPECT_EQ(GetParam().update(source), 0);
    EXPECT_FALSE(exists(GetParam().inRam));
}

TEST_P(AnyUpdate, StopsWhenTheRamFileSystemIsFull) {
    useRam();
    ASSERT_NE(signal(SIGXFSZ, SIG_IGN), SIG_ERR);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit none{0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
    const int result = GetParam().update(source);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(result, -2);
    EXPECT_EQ(takeLines().back(), "info binary_copy_without_trailer() failed -10");
    EXPECT_EQ(ddalUpdates(), 0U);
    EXPECT_EQ(readFile(GetParam().inRam), ""); // what was written of it stays
}

TEST_P(AnyUpdate, SaysThatTheTemporaryFileCannotBeRemovedAndSucceedsAllTheSame) {
    ON_CALL(boot(), ddal_boot_update_uboot).WillByDefault([](const char* payload) {
        std::filesystem::remove(payload);
        return DDAL_OK;
    });
    ON_CALL(fpga(), ddal_fpga_update_mod).WillByDefault([](uint32_t, uint32_t, const char* payload) {
        std::filesystem::remove(payload);
        return DDAL_OK;
    });
    EXPECT_EQ(GetParam().update(source), 0);
    EXPECT_EQ(takeLines().back(),
              std::string("info remove '") + GetParam().inTmp + "' failed " + std::to_string(ENOENT));
}

INSTANTIATE_TEST_SUITE_P(Rows, AnyUpdate,
                         ::testing::Values(UpdateRow{"update_uboot", &update_uboot, "info start uboot update",
                                                     "/tmp/u-boot.uim", "/ram/u-boot.uim"},
                                           UpdateRow{"update_bmu", &updateLocalBmu, "info start bmu update",
                                                     "/tmp/bmufile", "/ram/bmufile"},
                                           UpdateRow{"update_fpga", &update_fpga, "info start fpga update",
                                                     "/tmp/fpgafile", "/ram/fpgafile"}));

class UbootUpdate : public Update {};

TEST_F(UbootUpdate, HandsTheTemporaryFileToTheDevice) {
    EXPECT_CALL(boot(), ddal_boot_update_uboot(StrEq("/tmp/u-boot.uim")));
    EXPECT_EQ(update_uboot(source), 0);
    EXPECT_THAT(
        takeLines("update_uboot"),
        ElementsAre("info start uboot update", "info binary '/ffs/run/boot/KOR.bin' is ok", "info uboot update is ok"));
}

TEST_F(UbootUpdate, HandsTheFileInRamToTheDevice) {
    useRam();
    EXPECT_CALL(boot(), ddal_boot_update_uboot(StrEq("/ram/u-boot.uim")));
    EXPECT_EQ(update_uboot(source), 0);
}

TEST_F(UbootUpdate, ReportsTheDevicesFailureAndRemovesTheTemporaryFile) {
    EXPECT_CALL(boot(), ddal_boot_update_uboot).WillOnce(Return(DDAL_IO_ERROR));
    EXPECT_EQ(update_uboot(source), -3);
    EXPECT_THAT(takeLines("update_uboot"),
                ElementsAre("info start uboot update", "info binary '/ffs/run/boot/KOR.bin' is ok",
                            StartsWith("info ddal_boot_update_uboot() failed with error -5 '")));
    EXPECT_FALSE(exists("/tmp/u-boot.uim"));
}

class BmuUpdate : public Update {};

TEST_F(BmuUpdate, IsThatOfTheLocalBmuWhenNoneIsNamed) {
    EXPECT_CALL(fpga(), ddal_fpga_update_mod(1, 1, StrEq("/tmp/bmufile")));
    EXPECT_EQ(update_bmu(source, 0), 0);
    EXPECT_THAT(takeLines("update_bmu"),
                ElementsAre("info start bmu update", "info binary '/ffs/run/boot/KOR.bin' is ok",
                            "info call ddal_fpga_update_mod(0x1, 0x1, /tmp/bmufile)", "info bmu update is ok"));
}

TEST_F(BmuUpdate, IsThatOfAnExtensionBoardWhenItIsNamed) {
    useRam();
    EXPECT_CALL(fpga(), ddal_fpga_update_mod(0x20001, 1, StrEq("/ram/bmufile")));
    EXPECT_EQ(update_bmu(source, 0x20001), 0);
    EXPECT_TRUE(log.has(testkit::info(0, "update_bmu(): call ddal_fpga_update_mod(0x20001, 0x1, /ram/bmufile)")));
}

TEST_F(BmuUpdate, ReportsTheDevicesFailureAndRemovesTheTemporaryFile) {
    EXPECT_CALL(fpga(), ddal_fpga_update_mod).WillOnce(Return(DDAL_BUSY));
    EXPECT_EQ(update_bmu(source, 0), -3);
    EXPECT_THAT(takeLines("update_bmu"),
                ElementsAre("info start bmu update", "info binary '/ffs/run/boot/KOR.bin' is ok",
                            "info call ddal_fpga_update_mod(0x1, 0x1, /tmp/bmufile)",
                            StartsWith("info ddal_fpga_update_mod() failed with error -16 '")));
    EXPECT_FALSE(exists("/tmp/bmufile"));
}

class FpgaUpdate : public Update {};

TEST_F(FpgaUpdate, WritesThePrimarySlotAndThenTheSecondaryOne) {
    const InSequence order;
    EXPECT_CALL(fpga(), ddal_fpga_update_mod(0x10001, 1, StrEq("/tmp/fpgafile")));
    EXPECT_CALL(fpga(), ddal_fpga_update_mod(0x10001, 2, StrEq("/tmp/fpgafile")));
    EXPECT_EQ(update_fpga(source), 0);
    EXPECT_THAT(takeLines("update_fpga"),
                ElementsAre("info start fpga update", "info binary '/ffs/run/boot/KOR.bin' is ok",
                            "info tirvo2 primary slot update is ok", "info tirvo2 secondary slot update is ok"));
    EXPECT_THAT(flashed, ElementsAre("the payload", "the payload"));
}

TEST_F(FpgaUpdate, IsThatOfTheUnitsOwnFpga) {
    useRam();
    setUnit("VEMA");
    EXPECT_CALL(fpga(), ddal_fpga_update_mod(0x70001, 1, StrEq("/ram/fpgafile")));
    EXPECT_CALL(fpga(), ddal_fpga_update_mod(0x70001, 2, StrEq("/ram/fpgafile")));
    EXPECT_EQ(update_fpga(source), 0);
    EXPECT_TRUE(log.has(testkit::info(0, "update_fpga(): ym4 secondary slot update is ok")));
}

TEST_F(FpgaUpdate, LeavesTheSecondarySlotAloneWhenThePrimaryOneFails) {
    EXPECT_CALL(fpga(), ddal_fpga_update_mod(_, 1, _)).WillOnce(Return(DDAL_IO_ERROR));
    EXPECT_CALL(fpga(), ddal_fpga_update_mod(_, 2, _)).Times(0);
    EXPECT_EQ(update_fpga(source), -3);
    EXPECT_THAT(takeLines("update_fpga"),
                ElementsAre("info start fpga update", "info binary '/ffs/run/boot/KOR.bin' is ok",
                            StartsWith("info ddal_fpga_update_mod() failed with error -5 '")));
    EXPECT_FALSE(exists("/tmp/fpgafile"));
}

TEST_F(FpgaUpdate, ReportsThatTheSecondarySlotFailed) {
    EXPECT_CALL(fpga(), ddal_fpga_update_mod(_, 1, _)).WillOnce(Return(DDAL_OK));
    EXPECT_CALL(fpga(), ddal_fpga_update_mod(_, 2, _)).WillOnce(Return(DDAL_NO_SPACE));
    EXPECT_EQ(update_fpga(source), -4);
    EXPECT_THAT(takeLines("update_fpga"),
                ElementsAre("info start fpga update", "info binary '/ffs/run/boot/KOR.bin' is ok",
                            "info tirvo2 primary slot update is ok",
                            StartsWith("info ddal_fpga_update_mod() failed with error -28 '")));
    EXPECT_FALSE(exists("/tmp/fpgafile"));
}

TEST_F(FpgaUpdate, IsRefusedOnAUnitWithoutFpga) {
    setUnit("ZUPA");
    EXPECT_EQ(update_fpga(source), -10);
    EXPECT_THAT(takeLines("update_fpga"),
                ElementsAre("info start fpga update", "debug no fpga specified for unit 'ZUPA'"));
    EXPECT_THAT(takeLines("binary_crc"), IsEmpty());
    EXPECT_EQ(ddalUpdates(), 0U);
}

} // namespace
} // namespace mox::firmwaretest
