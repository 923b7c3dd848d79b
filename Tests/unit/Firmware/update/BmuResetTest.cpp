#include "unit/Firmware/update/UpdateFixture.hpp"

#include <ddal/ddal.h>
#include <mox/Firmware.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>

namespace mox::firmwaretest {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* control = "/sys/devices/platform/i2c-octeon.0/i2c-0/0-0031/fpga_reconfig";

class BmuResetOfABoard : public UpdateFixture {
protected:
    BmuResetOfABoard() {
        std::filesystem::create_directories(std::filesystem::path(control).parent_path());
        writeFile(control, "before");
    }
    std::vector<std::string> takeLines() { return UpdateFixture::takeLines("ddal_bmu_reset"); }
};

TEST_F(BmuResetOfABoard, WritesOneCharacterOnTheUnitsThatCan) {
    for (const char* unit : {"ZUPA", "ZUPB", "ZUPM", "ZUPN"}) {
        setUnit(unit);
        writeFile(control, "before");
        EXPECT_EQ(ddal_bmu_reset(), 0) << unit;
        EXPECT_EQ(readFile(control), "1") << unit;
    }
    EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(BmuResetOfABoard, DoesNothingOnOthers) {
    for (const char* unit : {"ZUPC", "ZUPY", "ZUPAA", "ZUP", "zupa", "KORA"}) {
        setUnit(unit);
        EXPECT_EQ(ddal_bmu_reset(), 0) << unit;
        EXPECT_EQ(readFile(control), "before") << unit;
    }
    EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(BmuResetOfABoard, ReadsTheUnitAnewEachTime) {
    setUnit("KORA");
    unit_init();
    setUnit("ZUPA");
    EXPECT_EQ(ddal_bmu_reset(), 0);
    EXPECT_EQ(readFile(control), "1");
    EXPECT_STREQ(unit_version(), "KORA");
}

TEST_F(BmuResetOfABoard, LeavesNothingOpen) {
    setUnit("ZUPA");
    EXPECT_EQ(ddal_bmu_reset(), 0);
    const auto before = openDescriptors();
    EXPECT_EQ(ddal_bmu_reset(), 0);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(BmuResetOfABoard, FailsWhenTheUnitCannotBeRead) {
    failUnit(DDAL_IO_ERROR);
    EXPECT_EQ(ddal_bmu_reset(), -1);
    EXPECT_EQ(readFile(control), "before");
    EXPECT_THAT(takeLines(), ElementsAre(StartsWith("info ddal_devicetree_get_unit_id() failed with error -5 '")));
}

TEST_F(BmuResetOfABoard, SaysThatTheControlFileCannotBeOpened) {
    setUnit("ZUPA");
    std::filesystem::remove(control);
    std::filesystem::create_directory(control);
    EXPECT_EQ(ddal_bmu_reset(), 0);
    EXPECT_THAT(takeLines(),
                ElementsAre("info fopen(/sys/devices/platform/i2c-octeon.0/i2c-0/0-0031/fpga_reconfig, w) failed"));
}

TEST_F(BmuResetOfABoard, SaysThatTheControlFileCannotBeWritten) {
    setUnit("ZUPA");
    ASSERT_NE(signal(SIGXFSZ, SIG_IGN), SIG_ERR);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit none{0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
    const int result = ddal_bmu_reset();
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(result, 0);
    EXPECT_THAT(takeLines(), ElementsAre("info fwrite(1, 1, 1, file) failed with 0"));
}

} // namespace
} // namespace mox::firmwaretest
