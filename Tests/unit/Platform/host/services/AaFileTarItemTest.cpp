#include "InRun.hpp"

#include <pal/AaFile.h>
#include <pal/AaPro.h>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

/// Archives are looked at with the system's own tar.
class AaFileTarItem : public InRun {
protected:
    void SetUp() override {
        InRun::SetUp();
        std::filesystem::create_directories(path("item/sub"));
        std::ofstream(path("item/a.txt")) << "first";
        std::ofstream(path("item/sub/big.bin")) << std::string(200'000, 'z');
        std::filesystem::create_symlink("a.txt", path("item/link"));
    }
    std::string path(const std::string& name) const { return m_directory / name; }
    int pack(const std::string& item, const std::string& tarName) const {
        return ::AaFileTarItem(path(item).c_str(), path(tarName).c_str());
    }
    static std::string tar(const std::vector<const char*>& arguments) {
        std::vector<const char*> all = {"tar"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        all.push_back(nullptr);
        std::string output(1 << 20, '\0');
        std::int32_t status = -1;
        EXPECT_EQ(AaProCmdExecRaw(all.data(), output.data(), output.size(), &status), 0);
        EXPECT_EQ(status, 0);
        return output.substr(0, output.find('\0'));
    }
    std::vector<std::string> names(const std::string& archive) const {
        std::vector<std::string> found;
        std::istringstream text(tar({"-tf", path(archive).c_str()}));
        for (std::string line; std::getline(text, line);)
            found.push_back(line);
        return found;
    }
    TemporaryDirectory m_directory;
};

TEST_F(AaFileTarItem, PacksADirectoryWithEverythingBelowIt) {
    ASSERT_EQ(pack("item", "out.tar"), 0);
    EXPECT_THAT(names("out.tar"),
                UnorderedElementsAre("item/", "item/a.txt", "item/link", "item/sub/", "item/sub/big.bin"));
    EXPECT_EQ(tar({"-xOf", path("out.tar").c_str(), "item/a.txt"}), "first");
    EXPECT_EQ(tar({"-xOf", path("out.tar").c_str(), "item/sub/big.bin"}) == std::string(200'000, 'z'), true);
}

TEST_F(AaFileTarItem, PacksAFileUnderItsLastComponent) {
    ASSERT_EQ(pack("item/a.txt", "out.tar"), 0);
    EXPECT_THAT(names("out.tar"), ElementsAre("a.txt"));
}

TEST_F(AaFileTarItem, IgnoresSlashesAtTheEnd) {
    ASSERT_EQ(pack("item/sub//", "out.tar"), 0);
    EXPECT_THAT(names("out.tar"), UnorderedElementsAre("sub/", "sub/big.bin"));
}

TEST_F(AaFileTarItem, CompressesByTheArchivesName) {
    for (const char* name : {"out.tar.gz", "out.tgz"}) {
        ASSERT_EQ(pack("item", name), 0);
        EXPECT_EQ(contentOf(path(name)).substr(0, 2), "\x1F\x8B") << name;
        EXPECT_LT(std::filesystem::file_size(path(name)), 10'000U);
        EXPECT_EQ(tar({"-xzOf", path(name).c_str(), "item/a.txt"}), "first");
    }
}

TEST_F(AaFileTarItem, LeavesItselfOut) {
    ASSERT_EQ(pack("item", "item/self.tar"), 0);
    EXPECT_THAT(names("item/self.tar"),
                UnorderedElementsAre("item/", "item/a.txt", "item/link", "item/sub/", "item/sub/big.bin"));
}

TEST_F(AaFileTarItem, ReplacesAnOlderArchive) {
    std::ofstream(path("out.tar")) << std::string(1'000'000, 'x');
    ASSERT_EQ(pack("item/a.txt", "out.tar"), 0);
    EXPECT_LT(std::filesystem::file_size(path("out.tar")), 100'000U);
    EXPECT_THAT(names("out.tar"), ElementsAre("a.txt"));
}

TEST_F(AaFileTarItem, SaysWhyThereIsNoArchive) {
    EXPECT_EQ(pack("none", "out.tar"), EAaFileRetVal_NotFound);
    EXPECT_FALSE(std::filesystem::exists(path("out.tar")));
    EXPECT_EQ(pack("item", "no/out.tar"), EAaFileRetVal_NotFound);
    EXPECT_EQ(::AaFileTarItem(nullptr, "x"), EAaFileRetVal_InvalidValue);
    EXPECT_EQ(::AaFileTarItem("x", nullptr), EAaFileRetVal_InvalidValue);
    EXPECT_EQ(pack("item", "item"), EAaFileRetVal_Error);
}

TEST_F(AaFileTarItem, RemovesAnArchiveThatDoesNotFit) {
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{50'000, 50'000};
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(pack("item", "out.tar"));
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), EAaFileRetVal_OutOfResources);
    EXPECT_FALSE(std::filesystem::exists(path("out.tar")));
}

} // namespace
} // namespace mox::testing
