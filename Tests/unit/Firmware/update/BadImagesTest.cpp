// Updates from files that are no images: nothing is flashed, nothing is written, nothing stays open.
#include "mock/FunctionTable.hpp"
#include "unit/Firmware/update/UpdateDecision.hpp"

#include <mox/Firmware.h>
#include <pal/AaConfig.h>

#include <sys/stat.h>

#include <filesystem>
#include <set>

namespace mox::firmwaretest {
namespace {

using ::testing::ElementsAre;

constexpr const char* source = "/ffs/run/boot/KOR.bin";

struct UpdateRow {
    const char* function;
    int (*update)(const char* imagePath);
    const char* start;
};

void PrintTo(const UpdateRow& row, std::ostream* out) {
    *out << row.function;
}

int updateLocalBmu(const char* path) {
    return update_bmu(path, 0);
}

std::string littleEndian(std::uint32_t word) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>((word >> shift) & 0xFFU);
    return bytes;
}

class UpdateFromABadImage : public UpdateDecision, public ::testing::WithParamInterface<UpdateRow> {
protected:
    UpdateFromABadImage() {
        AaConfigEarlyStartup();
        unit_init();
        update(); // what is opened once and kept is open then
        takeLines(GetParam().function);
    }

    /// @param reason  of binary_crc
    void expectRefusal(int reason) {
        const auto files = written();
        const auto descriptors = openDescriptors();
        EXPECT_EQ(update(), -1);
        EXPECT_THAT(takeLines(GetParam().function), ElementsAre(std::string("info ") + GetParam().start,
                                                                "info binary_crc() failed " + std::to_string(reason)));
        EXPECT_EQ(mock::callCount("ddal_boot_update_uboot") + mock::callCount("ddal_fpga_update_mod"), 0U);
        EXPECT_EQ(written(), files);
        EXPECT_EQ(openDescriptors(), descriptors);
    }
    void expectRefusalOf(const std::string& bytes, int reason) {
        writeFile(source, bytes);
        expectRefusal(reason);
        EXPECT_EQ(readFile(source), bytes);
    }

private:
    static int update() { return GetParam().update(source); }

    /// What lies where an update may write. A tree below /tmp is visible there, and is none of that.
    static std::set<std::string> written() {
        const std::string program = std::filesystem::read_symlink("/proc/self/exe");
        std::set<std::string> files;
        for (const char* directory : {"/tmp", "/ram", "/ffs/run"}) {
            std::filesystem::recursive_directory_iterator entry(directory);
            for (; entry != end(entry); ++entry) {
                files.insert(entry->path());
                if (program.rfind(entry->path().string() + "/", 0) == 0)
                    entry.disable_recursion_pending();
            }
        }
        return files;
    }
};

TEST_P(UpdateFromABadImage, OfHardlyAnyBytesIsRefused) {
    for (std::size_t size = 0; size < 4; ++size)
        expectRefusalOf(std::string(size, '\1'), IMAGE_ERR_FILE);
    for (std::size_t size = 4; size <= 8; ++size)
        expectRefusalOf(std::string(size, '\0'), IMAGE_ERR_TRAILER_LENGTH);
}

TEST_P(UpdateFromABadImage, WithAWordThatIsNoOffsetIsRefused) {
    const std::string whole = image().bytes();
    const std::string trailer = whole.substr(0, whole.size() - 4);
    const auto size = static_cast<std::uint32_t>(whole.size());
    for (const std::uint32_t word : {0U, size, size + 1, 0x07000000U, 0xFFFFFFFFU})
        expectRefusalOf(trailer + littleEndian(word), IMAGE_ERR_TRAILER_LENGTH);
    for (const std::uint32_t word : {size - 5, size - 4, size - 1})
        expectRefusalOf(trailer + littleEndian(word), IMAGE_ERR_XML);
}

TEST_P(UpdateFromABadImage, ThatIsNoFileIsRefused) {
    std::filesystem::create_directory(source);
    expectRefusal(IMAGE_ERR_FILE);
    std::filesystem::remove(source);
    ASSERT_EQ(mkfifo(source, 0600), 0);
    expectRefusal(IMAGE_ERR_FILE);
    for (const char* target : {"/dev/zero", "nothing", "KOR.bin"}) {
        std::filesystem::remove(source);
        std::filesystem::create_symlink(target, source);
        expectRefusal(IMAGE_ERR_FILE);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, UpdateFromABadImage,
                         ::testing::Values(UpdateRow{"update_uboot", &update_uboot, "start uboot update"},
                                           UpdateRow{"update_bmu", &updateLocalBmu, "start bmu update"},
                                           UpdateRow{"update_fpga", &update_fpga, "start fpga update"}));

} // namespace
} // namespace mox::firmwaretest
