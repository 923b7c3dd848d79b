// A device that gives up while an image is read or its payload written, and a file that changes meanwhile.
#include "unit/Firmware/image/ImageFixture.hpp"
#include "unit/Firmware/image/StdioFaults.hpp"

#include <fcntl.h>

#include <cstdlib>
#include <filesystem>

namespace mox::images {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WithFaults : public OnImages {
protected:
    /// What the library reads at once.
    static constexpr std::size_t block = 65536;

    WithFaults() : m_path(write(imageOf(m_payload, trailerFor(m_payload)))) {}

    int getTrailer() {
        char dirt = 'x';
        char* text = &dirt;
        std::uint32_t offset = 0;
        const int result = get_trailer(m_path.c_str(), &offset, &text);
        EXPECT_EQ(text == nullptr, result != 0);
        std::free(text);
        return result;
    }

    int copy() { return binary_copy_without_trailer(m_path.c_str(), in("payload").c_str()); }

    /// The newest line of syslog.
    std::string lastLine() {
        const auto lines = syslogLines();
        return lines.empty() ? "" : lines.back();
    }

    std::string couldNotRead() const { return "info: get_trailer(): Could not read file: " + m_path; }
    std::string errorInReading() const { return "info: get_trailer(): Error in reading file: " + m_path; }

    const std::string m_payload = someBytes(200001);
    const std::string m_path;
};

class GetTrailerWithFaults : public WithFaults {};

TEST_F(GetTrailerWithFaults, DoesNotOpenWithoutMemoryForAStream) {
    const StdioFault fault("fdopen", 1);
    EXPECT_EQ(getTrailer(), 70406);
    EXPECT_EQ(lastLine(), "info: get_trailer(): Could not open file: " + m_path);
}

TEST_F(GetTrailerWithFaults, KnowsNoSizeWhenTheEndIsNotReached) {
    // Size: to the end and back. Word. Text.
    const StdioFault fault("fseek", 1);
    EXPECT_EQ(getTrailer(), 70406);
    EXPECT_THAT(syslogLines(), ElementsAre("debug: get_trailer(): File '" + m_path + "' opened",
                                           "debug: get_trailer(): FileSize: -1, 0xffffffff", couldNotRead()));
}

TEST_F(GetTrailerWithFaults, KnowsNoSizeWhenThePositionIsUnknown) {
    for (const unsigned call : {1U, 2U}) {
        const StdioFault fault("ftell", call);
        EXPECT_EQ(getTrailer(), 70407);
        EXPECT_THAT(syslogLines(), ElementsAre("debug: get_trailer(): File '" + m_path + "' opened",
                                               "debug: get_trailer(): FileSize: -1, 0xffffffff",
                                               "info: get_trailer(): Invalid File length '" + m_path +
                                                   "': trailer length does not match"));
    }
}

TEST_F(GetTrailerWithFaults, KnowsNoSizeWhenThePositionIsNotRestored) {
    const StdioFault fault("fseek", 2);
    EXPECT_EQ(getTrailer(), 70406);
    EXPECT_THAT(syslogLines(), ElementsAre("debug: get_trailer(): File '" + m_path + "' opened",
                                           "debug: get_trailer(): FileSize: -1, 0xffffffff", couldNotRead()));
}

TEST_F(GetTrailerWithFaults, FailsWhereTheWordIsNotReached) {
    const StdioFault fault("fseek", 3);
    EXPECT_EQ(getTrailer(), 70406);
    EXPECT_EQ(lastLine(), couldNotRead());
}

TEST_F(GetTrailerWithFaults, FailsWhereTheWordIsNotRead) {
    const StdioFault fault("fread", 1);
    EXPECT_EQ(getTrailer(), 70406);
    EXPECT_EQ(lastLine(), errorInReading());
}

TEST_F(GetTrailerWithFaults, FailsWhereTheTextIsNotReached) {
    const StdioFault fault("fseek", 4);
    EXPECT_EQ(getTrailer(), 70406);
    EXPECT_EQ(lastLine(), couldNotRead());
}

TEST_F(GetTrailerWithFaults, FailsWithoutALineWhereThereIsNoMemory) {
    const StdioFault fault("malloc", 1);
    EXPECT_EQ(getTrailer(), 70406);
    EXPECT_THAT(lastLine(), ::testing::StartsWith("debug: get_trailer(): Trailer length: "));
}

TEST_F(GetTrailerWithFaults, EndsTheTextInMemoryThatWasUsedBefore) {
    std::uint32_t offset = 0;
    char* text = nullptr;
    ASSERT_EQ(get_trailer(m_path.c_str(), &offset, &text), 0);
    EXPECT_EQ(text[std::filesystem::file_size(m_path) - offset], '\0');
    std::free(text);
}

TEST_F(GetTrailerWithFaults, FailsWhereTheTextIsNotRead) {
    const StdioFault fault("fread", 2);
    EXPECT_EQ(getTrailer(), 70406);
    EXPECT_EQ(lastLine(), errorInReading());
}

TEST_F(GetTrailerWithFaults, HasNoFurtherCallThatCouldFail) {
    const unsigned limits[] = {1, 4, 2, 2, 1};
    const char* const functions[] = {"fdopen", "fseek", "ftell", "fread", "malloc"};
    for (std::size_t i = 0; i < 5; ++i) {
        const StdioFault fault(functions[i], 100);
        EXPECT_EQ(getTrailer(), 0);
        EXPECT_EQ(fault.calls(), limits[i]) << functions[i];
    }
}

TEST_F(GetTrailerWithFaults, FailsWhenTheFileShrinksMeanwhile) {
    const StdioFault fault("fread", 2, [this] { std::filesystem::resize_file(m_path, m_payload.size()); });
    EXPECT_EQ(getTrailer(), 70406);
    EXPECT_EQ(lastLine(), errorInReading());
}

TEST_F(GetTrailerWithFaults, FailsWhenTheFileLosesItsLastByteMeanwhile) {
    const StdioFault fault("fread", 2,
                           [this] { std::filesystem::resize_file(m_path, std::filesystem::file_size(m_path) - 1); });
    EXPECT_EQ(getTrailer(), 70406);
    EXPECT_EQ(lastLine(), errorInReading());
}

/// Whether this process has a file open, and keeps it from the programs that it becomes.
::testing::AssertionResult isOpenAndClosesOnExec(const std::string& path) {
    std::size_t open = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        if (std::filesystem::read_symlink(entry, gone) != path) {
            continue;
        }
        ++open;
        if ((fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC) == 0) {
            return ::testing::AssertionFailure() << path << " is inherited";
        }
    }
    return open == 1 ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << path << " is not open";
}

TEST_F(WithFaults, NoProgramInheritsAnOpenFile) {
    {
        const StdioFault before("fread", 1, [this] { EXPECT_TRUE(isOpenAndClosesOnExec(m_path)); });
        EXPECT_EQ(getTrailer(), 0);
    }
    {
        const StdioFault before("fread", 1, [this] { EXPECT_TRUE(isOpenAndClosesOnExec(m_path)); });
        std::uint32_t crc = 0;
        EXPECT_EQ(calculate_crc(m_path.c_str(), 100, &crc), 0);
    }
    const StdioFault before("fwrite", 1, [this] {
        EXPECT_TRUE(isOpenAndClosesOnExec(m_path));
        EXPECT_TRUE(isOpenAndClosesOnExec(in("payload")));
    });
    EXPECT_EQ(copy(), 0);
    EXPECT_GT(before.calls(), 0U);
}

class CalculateCrcWithFaults : public WithFaults {};

TEST_F(CalculateCrcWithFaults, FailsWhereTheBeginIsNotReached) {
    const StdioFault fault("fseek", 1);
    std::uint32_t crc = 1;
    EXPECT_EQ(calculate_crc(m_path.c_str(), 8, &crc), 70406);
    EXPECT_EQ(crc, 0U);
    EXPECT_THAT(syslogLines(), ElementsAre("info: calculate_crc(): Could not set file ptr position in file"));
}

TEST_F(CalculateCrcWithFaults, CountsTheLastWordAgainWhereNothingMoreIsRead) {
    const StdioFault fault("fread", 2);
    std::uint32_t crc = 1;
    EXPECT_EQ(calculate_crc(m_path.c_str(), static_cast<std::uint32_t>(block + 9), &crc), 0);
    const std::string last = m_payload.substr(block - 4, 4);
    EXPECT_EQ(crc, crcOf(m_payload.substr(0, block) + last + last + std::string(1, '\0')));
}

TEST_F(CalculateCrcWithFaults, IsReportedAsAnotherCrc) {
    const StdioFault fault("fread", 4); // word, text, a block of the payload
    EXPECT_EQ(binary_validate(m_path.c_str(), 0x12345678), 70413);
    EXPECT_THAT(platformLines().back(), ::testing::StartsWith("4 0x20003: CRC check failed: " + m_path));
}

TEST_F(CalculateCrcWithFaults, IsReportedAsAnotherCrcWhenItFails) {
    const auto assumed = std::to_string(static_cast<std::int32_t>(crcOf(m_payload)));
    const std::string text = "CRC check failed: " + m_path + ". Calculated CRC32: 0, Assumed: " + assumed;
    {
        const StdioFault fault("fdopen", 2);
        EXPECT_EQ(binary_validate(m_path.c_str(), 0x12345678), 70413);
        EXPECT_EQ(platformLines().back(), "4 0x20003: " + text);
    }
    const StdioFault fault("fdopen", 2);
    EXPECT_EQ(binary_crc(m_path.c_str()), 70413);
    EXPECT_EQ(lastLine(), "info: binary_crc(): " + text);
}

// The CRC-32 that could not be calculated is 0; a trailer that says 0 is not right by that.
TEST_F(CalculateCrcWithFaults, IsReportedAsAnotherCrcWhereTheTrailerSaysZero) {
    const std::string path = write(imageOf(m_payload, "<trailer/>"));
    {
        const StdioFault fault("fdopen", 2);
        EXPECT_EQ(binary_validate(path.c_str(), 0x12345678), 70413);
        EXPECT_EQ(platformLines().back(), "4 0x20003: CRC check failed: " + path + ". Calculated CRC32: 0, Assumed: 0");
    }
    const StdioFault fault("fdopen", 2);
    EXPECT_EQ(binary_crc(path.c_str()), 70413);
    EXPECT_EQ(lastLine(), "info: binary_crc(): CRC check failed: " + path + ". Calculated CRC32: 0, Assumed: 0");
}

class CopyWithFaults : public WithFaults {
protected:
    void expect(const std::string& function, unsigned call, int result) {
        const StdioFault fault(function, call);
        EXPECT_EQ(copy(), result) << function << " " << call;
    }
};

TEST_F(CopyWithFaults, NamesTheStepThatFailed) {
    expect("fdopen", 1, -1);
    expect("fseek", 1, -2);
    expect("ftell", 1, -3);
    expect("fseek", 2, -4);
    expect("fread", 1, -5);
    expect("fseek", 3, -7);
    expect("fdopen", 2, -8);
    expect("fread", 2, -9);
    expect("fwrite", 1, -10);
    EXPECT_THAT(syslogLines(), IsEmpty());
}

TEST_F(CopyWithFaults, DoesNotCreateADestinationBeforeTheSourceIsKnownToBeGood) {
    expect("fseek", 3, -7);
    EXPECT_FALSE(std::filesystem::exists(in("payload")));
}

TEST_F(CopyWithFaults, KeepsWhatIsWritten) {
    expect("fread", 3, -9);
    EXPECT_EQ(contentOf(in("payload")), m_payload.substr(0, block));
    expect("fwrite", 3, -10);
    EXPECT_EQ(contentOf(in("payload")), m_payload.substr(0, 2 * block));
}

TEST_F(CopyWithFaults, SeesThatAFileSystemIsFullWhenTheFileIsClosed) {
    expect("fclose", 1, -10);
}

TEST_F(CopyWithFaults, EndsWhereTheSourceShrinksMeanwhile) {
    const StdioFault fault("fread", 3, [this] { std::filesystem::resize_file(m_path, block + 10000); });
    EXPECT_EQ(copy(), -9);
    EXPECT_EQ(contentOf(in("payload")), m_payload.substr(0, block + 10000));
}

TEST_F(CopyWithFaults, EndsWhereTheSourceHasShrunkSinceItWasChecked) {
    EXPECT_EQ(binary_crc(m_path.c_str()), 0);
    const StdioFault fault("fread", 2, [this] { std::filesystem::resize_file(m_path, 0); });
    EXPECT_EQ(copy(), -9);
    EXPECT_EQ(contentOf(in("payload")), "");
}

TEST_F(CopyWithFaults, HasNoFurtherCallThatCouldFail) {
    const unsigned limits[] = {2, 3, 1, 5, 4};
    const char* const functions[] = {"fdopen", "fseek", "ftell", "fread", "fwrite"};
    for (std::size_t i = 0; i < 5; ++i) {
        const StdioFault fault(functions[i], 100);
        EXPECT_EQ(copy(), 0);
        EXPECT_EQ(fault.calls(), limits[i]) << functions[i];
    }
}

} // namespace
} // namespace mox::images
