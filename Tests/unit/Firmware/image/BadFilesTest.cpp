// What lies in a directory under the name of an image and is none. Nothing of it may hold a caller up.
#include "unit/Firmware/image/ImageFixture.hpp"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace mox::images {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

class BadFile : public OnImages {
protected:
    /// All functions say of it that it does not open.
    void expectThatItDoesNotOpen(const std::string& path) {
        expectNoTrailer(path);
        expectNoVersion(path);
        std::uint32_t crc = 1;
        EXPECT_EQ(calculate_crc(path.c_str(), 4, &crc), 70406);
        EXPECT_EQ(crc, 0U);
        EXPECT_THAT(syslogLines(), ElementsAre("info: calculate_crc(): Could not open file: " + path));
        EXPECT_EQ(binary_crc(path.c_str()), 70406);
        EXPECT_THAT(syslogLines(),
                    ElementsAre("info: get_trailer(): Could not open file: " + path,
                                "info: binary_crc(): File '" + path + "' trailer read failed 70406 (0x11306)"));
        EXPECT_EQ(binary_validate(path.c_str(), 1), 70406);
        EXPECT_THAT(syslogLines(), ElementsAre("info: get_trailer(): Could not open file: " + path));
        EXPECT_THAT(platformLines(),
                    ElementsAre("4 0x20003: Reading the file trailer failed, errorCode: 70406 (0x11306)"));
        EXPECT_EQ(binary_copy_without_trailer(path.c_str(), in("payload").c_str()), -1);
        EXPECT_FALSE(std::filesystem::exists(in("payload")));
    }

private:
    void expectNoTrailer(const std::string& path) {
        char dirt = 'x';
        char* text = &dirt;
        std::uint32_t offset = 0;
        EXPECT_EQ(get_trailer(path.c_str(), &offset, &text), 70406);
        EXPECT_EQ(text, nullptr);
        EXPECT_THAT(syslogLines(), ElementsAre("info: get_trailer(): Could not open file: " + path));
    }
    void expectNoVersion(const std::string& path) {
        std::uint32_t version = 1;
        EXPECT_EQ(binary_version(path.c_str(), 1, 1, &version), -1);
        EXPECT_EQ(version, 0U);
        EXPECT_THAT(syslogLines(), ElementsAre("info: binary_version(): Reading file '" + path + "' trailer",
                                               "info: get_trailer(): Could not open file: " + path,
                                               "info: binary_version(): Trailer read failed 70406 (0x11306)"));
    }
};

TEST_F(BadFile, IsNotThere) {
    expectThatItDoesNotOpen(in("missing.bin"));
    expectThatItDoesNotOpen("");
    expectThatItDoesNotOpen(in(std::string(300, 'x')));
}

TEST_F(BadFile, IsADirectory) {
    std::filesystem::create_directory(in("image.bin"));
    expectThatItDoesNotOpen(in("image.bin"));
}

TEST_F(BadFile, IsAFifoWithoutWriter) {
    ASSERT_EQ(mkfifo(in("image.bin").c_str(), 0600), 0);
    expectThatItDoesNotOpen(in("image.bin"));
}

TEST_F(BadFile, IsADevice) {
    for (const char* const device : {"/dev/null", "/dev/zero", "/dev/full", "/dev/tty", "/dev/ptmx"}) {
        expectThatItDoesNotOpen(device);
    }
}

TEST_F(BadFile, IsASocket) {
    const int endpoint = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(in("image.bin").size(), sizeof(address.sun_path));
    std::memcpy(address.sun_path, in("image.bin").c_str(), in("image.bin").size());
    ASSERT_EQ(bind(endpoint, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    expectThatItDoesNotOpen(in("image.bin"));
    close(endpoint);
}

TEST_F(BadFile, IsALinkToNothing) {
    std::filesystem::create_symlink(in("missing"), in("image.bin"));
    expectThatItDoesNotOpen(in("image.bin"));
}

TEST_F(BadFile, IsALinkToItself) {
    std::filesystem::create_symlink(in("image.bin"), in("image.bin"));
    expectThatItDoesNotOpen(in("image.bin"));
}

TEST_F(BadFile, IsALinkToAFifo) {
    ASSERT_EQ(mkfifo(in("fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink(in("fifo"), in("image.bin"));
    expectThatItDoesNotOpen(in("image.bin"));
}

TEST_F(BadFile, MayNotBeRead) {
    const std::string path = write(imageOf("payload", trailerFor("payload")));
    std::filesystem::permissions(path, std::filesystem::perms::none);
    std::filesystem::permissions(in(""), std::filesystem::perms(0777));
    // Nothing is closed to the superuser.
    if (geteuid() == 0 && seteuid(65534) != 0) {
        GTEST_SKIP() << "there is no other user in this namespace";
    }
    expectThatItDoesNotOpen(path);
    if (getuid() == 0) {
        ASSERT_EQ(seteuid(0), 0);
    }
}

TEST_F(BadFile, IsFoundBehindALinkWhenItIsAnImage) {
    const std::string path = write(imageOf("payload", trailerFor("payload")), "elsewhere");
    std::filesystem::create_symlink(path, in("image.bin"));
    EXPECT_EQ(binary_validate(in("image.bin").c_str(), 0x12345678), 0);
    EXPECT_EQ(binary_copy_without_trailer(in("image.bin").c_str(), in("payload").c_str()), 0);
}

// The memory of a process counts as a regular file and cannot be read at its beginning: a true input/output error.
TEST_F(BadFile, CannotBeRead) {
    const char* const memory = "/proc/self/mem";
    std::uint32_t crc = 1;
    EXPECT_EQ(calculate_crc(memory, 10, &crc), 0);
    EXPECT_EQ(crc, crcOf(std::string(10, '\0')));
    char* text = nullptr;
    std::uint32_t offset = 0;
    EXPECT_EQ(get_trailer(memory, &offset, &text), 70406);
    EXPECT_EQ(text, nullptr);
    EXPECT_THAT(syslogLines(), Contains("info: get_trailer(): Could not read file: /proc/self/mem"));
    EXPECT_EQ(binary_copy_without_trailer(memory, in("payload").c_str()), -4);
}

} // namespace
} // namespace mox::images
