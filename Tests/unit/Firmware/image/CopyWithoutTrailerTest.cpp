#include "unit/Firmware/image/ImageFixture.hpp"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

namespace mox::images {
namespace {

using ::testing::IsEmpty;

class CopyWithoutTrailer : public OnImages {
protected:
    int copy(const std::string& bytes) { return copyTo(write(bytes), in("payload")); }
    static int copyTo(const std::string& source, const std::string& destination) {
        return binary_copy_without_trailer(source.c_str(), destination.c_str());
    }
    bool isCopied() const { return std::filesystem::exists(in("payload")); }
};

TEST_F(CopyWithoutTrailer, WritesThePayloadAndNothingElse) {
    for (const std::size_t size :
         {1U, 2U, 1023U, 1024U, 1025U, 65535U, 65536U, 65537U, 262143U, 262144U, 262145U, 600001U}) {
        const std::string payload = someBytes(size);
        EXPECT_EQ(copy(imageOf(payload, trailerFor(payload))), 0) << size;
        EXPECT_EQ(contentOf(in("payload")), payload) << size;
    }
    EXPECT_THAT(syslogLines(), IsEmpty());
    EXPECT_THAT(platformLines(), IsEmpty());
}

TEST_F(CopyWithoutTrailer, NeedsNoTrailerThatParses) {
    EXPECT_EQ(copy("payload" + offsetWord(7)), 0);
    EXPECT_EQ(contentOf(in("payload")), "payload");
}

TEST_F(CopyWithoutTrailer, TakesAWordOfZeroForAnEmptyPayload) {
    EXPECT_EQ(copy("payload" + offsetWord(0)), 0);
    EXPECT_TRUE(isCopied());
    EXPECT_EQ(contentOf(in("payload")), "");
}

TEST_F(CopyWithoutTrailer, TakesTheLastBytesOfTheFileWhenTheWordSaysSo) {
    EXPECT_EQ(copy("payload" + offsetWord(10)), 0);
    EXPECT_EQ(contentOf(in("payload")), std::string("payload\x0A\0\0", 10));
}

TEST_F(CopyWithoutTrailer, ReplacesAnOlderFile) {
    write(std::string(5000, 'x'), "payload");
    EXPECT_EQ(copy(imageOf("new", "<trailer/>")), 0);
    EXPECT_EQ(contentOf(in("payload")), "new");
}

TEST_F(CopyWithoutTrailer, CreatesAFileForItsOwnerOnly) {
    const mode_t mask = umask(0);
    EXPECT_EQ(copy(imageOf("new", "<trailer/>")), 0);
    umask(mask);
    struct stat status = {};
    ASSERT_EQ(stat(in("payload").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(CopyWithoutTrailer, RefusesASourceThatDoesNotOpen) {
    EXPECT_EQ(copyTo(in("missing"), in("payload")), -1);
    EXPECT_FALSE(isCopied());
}

TEST_F(CopyWithoutTrailer, RefusesASourceOfLessThanFourBytes) {
    for (const std::size_t size : {0U, 1U, 2U, 3U}) {
        EXPECT_EQ(copy(std::string(size, '\1')), -4) << size;
    }
    EXPECT_FALSE(isCopied());
}

TEST_F(CopyWithoutTrailer, RefusesAWordOutsideOfTheFile) {
    for (const std::uint32_t word : {11U, 12U, 0x0A000000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(copy("payload" + offsetWord(word)), -6) << word;
    }
    EXPECT_FALSE(isCopied());
}

TEST_F(CopyWithoutTrailer, RefusesASizeBeyondThatOfTheBoard) {
    const std::string path = write("");
    std::filesystem::resize_file(path, 0x80000000);
    EXPECT_EQ(copyTo(path, in("payload")), -3);
}

class DestinationOfAPayload : public CopyWithoutTrailer {
protected:
    DestinationOfAPayload() : m_source(write(imageOf(someBytes(100000), "<trailer/>"))) {}
    int copyHere(const std::string& destination) const { return copyTo(m_source, destination); }

    const std::string m_source;
};

TEST_F(DestinationOfAPayload, LiesInAnExistingDirectory) {
    EXPECT_EQ(copyHere(in("missing/payload")), -8);
    EXPECT_EQ(copyHere(""), -8);
}

TEST_F(DestinationOfAPayload, IsNoDirectory) {
    EXPECT_EQ(copyHere(in("")), -8);
    EXPECT_EQ(copyHere("/"), -8);
}

TEST_F(DestinationOfAPayload, IsNoLink) {
    const std::string other = write("precious", "other");
    std::filesystem::create_symlink(other, in("payload"));
    EXPECT_EQ(copyHere(in("payload")), -8);
    EXPECT_EQ(contentOf(other), "precious");
}

TEST_F(DestinationOfAPayload, IsNoLinkToNothing) {
    std::filesystem::create_symlink(in("elsewhere"), in("payload"));
    EXPECT_EQ(copyHere(in("payload")), -8);
    EXPECT_FALSE(std::filesystem::exists(in("elsewhere")));
}

TEST_F(DestinationOfAPayload, HasNoSecondName) {
    const std::string other = write("precious", "other");
    std::filesystem::create_hard_link(other, in("payload"));
    EXPECT_EQ(copyHere(in("payload")), -8);
    EXPECT_EQ(contentOf(other), "precious");
}

TEST_F(DestinationOfAPayload, IsNotTheSource) {
    const std::string before = contentOf(m_source);
    EXPECT_EQ(copyHere(m_source), -8);
    EXPECT_EQ(contentOf(m_source), before);
}

TEST_F(DestinationOfAPayload, IsNoFifo) {
    ASSERT_EQ(mkfifo(in("payload").c_str(), 0600), 0);
    EXPECT_EQ(copyHere(in("payload")), -8);
    std::fstream reader(in("payload"), std::ios::in | std::ios::out); // now it would open
    EXPECT_EQ(copyHere(in("payload")), -8);
}

TEST_F(DestinationOfAPayload, IsNoDevice) {
    EXPECT_EQ(copyHere("/dev/null"), -8);
    EXPECT_EQ(copyHere("/dev/full"), -8);
}

TEST_F(DestinationOfAPayload, LiesWhereOneMayWrite) {
    const std::string closed = in("closed");
    std::filesystem::create_directory(closed);
    std::filesystem::permissions(in(""), std::filesystem::perms(0755));
    std::filesystem::permissions(closed, std::filesystem::perms(0555));
    const uid_t user = geteuid();
    // Nothing is closed to the superuser.
    if (user == 0 && seteuid(65534) != 0) {
        GTEST_SKIP() << "there is no other user in this namespace";
    }
    const int result = copyHere(closed + "/payload");
    if (user == 0) {
        ASSERT_EQ(seteuid(0), 0);
    }
    EXPECT_EQ(result, -8);
    EXPECT_FALSE(std::filesystem::exists(closed + "/payload"));
}

/// While it lives, files end at some size, as on a full file system.
class FullAt {
public:
    explicit FullAt(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullAt() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FullAt(const FullAt&) = delete;
    FullAt& operator=(const FullAt&) = delete;

private:
    rlimit m_before{};
    void (*m_handler)(int);
};

TEST_F(DestinationOfAPayload, KeepsWhatThereWasRoomFor) {
    for (const std::size_t room : {0U, 1U, 1000U, 65536U, 70000U, 99999U}) {
        int result = 0;
        {
            const FullAt full(room);
            result = copyHere(in("payload"));
        }
        EXPECT_EQ(result, -10) << room;
        EXPECT_EQ(contentOf(in("payload")), someBytes(100000).substr(0, room)) << room;
    }
}

TEST_F(DestinationOfAPayload, MayBeExactlyFull) {
    int result = -1;
    {
        const FullAt full(100000);
        result = copyHere(in("payload"));
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(contentOf(in("payload")), someBytes(100000));
}

} // namespace
} // namespace mox::images
