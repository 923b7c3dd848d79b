#include "Moxctl.hpp"

#include <gmock/gmock.h>
#include <moxctl/Failure.hpp>
#include <moxctl/OutputFile.hpp>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace mox::testing {
namespace {

namespace fs = std::filesystem;
using tools::Failure;
using tools::OutputFile;

class AnOutputFile : public ::testing::Test {
protected:
    std::string content() const {
        std::ifstream stream(m_path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::size_t entries() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(m_directory.path()), {}));
    }

    TemporaryDirectory m_directory;
    std::string m_path = m_directory.path() + "/out";
};

TEST_F(AnOutputFile, HasItsNameOnlyWhenItIsComplete) {
    OutputFile sut(m_path, false, {});
    sut.write("abc", 3);
    EXPECT_FALSE(fs::exists(m_path));
    sut.write("def", 3);
    sut.commit();
    EXPECT_EQ(content(), "abcdef");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(AnOutputFile, LeavesNothingWhenItIsGivenUp) {
    {
        OutputFile sut(m_path, false, {});
        sut.write("abc", 3);
        EXPECT_EQ(entries(), 1U);
    }
    EXPECT_EQ(entries(), 0U);
}

TEST_F(AnOutputFile, ReplacesNoFileThatCameMeanwhile) {
    {
        OutputFile sut(m_path, false, {});
        sut.write("abc", 3);
        m_directory.write("out", "precious");
        EXPECT_THROW(sut.commit(), Failure);
    }
    EXPECT_EQ(content(), "precious");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(AnOutputFile, ReplacesAFileAtOnceIfItMay) {
    m_directory.write("out", "old");
    OutputFile sut(m_path, true, {});
    sut.write("new", 3);
    EXPECT_EQ(content(), "old");
    sut.commit();
    EXPECT_EQ(content(), "new");
}

TEST_F(AnOutputFile, MayBeReadByWhomTheUsersMaskAllows) {
    const mode_t before = umask(027);
    OutputFile sut(m_path, false, {});
    sut.commit();
    umask(before);
    EXPECT_EQ(fs::status(m_path).permissions(), fs::perms(0640));
}

} // namespace
} // namespace mox::testing
