#include "unit/Firmware/image/ImageFixture.hpp"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

namespace mox::images {
namespace {

using ::testing::ElementsAre;

class GetTrailer : public OnImages {
protected:
    struct Read {
        int result;
        std::uint32_t offset;
        bool hasText;
        std::string text; ///< up to the first zero byte
    };

    Read read(const std::string& path) {
        char dirt = 'x';
        char* text = &dirt;
        std::uint32_t offset = unset;
        const int result = get_trailer(path.c_str(), &offset, &text);
        EXPECT_NE(text, &dirt);
        Read answer{result, offset, text != nullptr, text == nullptr ? "" : text};
        std::free(text);
        return answer;
    }

    /// An image whose last word is this.
    Read readWithWord(std::uint32_t word) {
        const std::string path = write(std::string(96, 'p') + offsetWord(word));
        const Read answer = read(path);
        return answer;
    }

    static constexpr std::uint32_t unset = 0x5A5A5A5A;
};

TEST_F(GetTrailer, GivesOffsetAndText) {
    const std::string path = write(imageOf("payload", "<trailer/>"));
    const Read answer = read(path);
    EXPECT_EQ(answer.result, IMAGE_OK);
    EXPECT_EQ(answer.offset, 7U);
    EXPECT_EQ(answer.text, "<trailer/>");
    EXPECT_THAT(syslogLines(), ElementsAre("debug: get_trailer(): File '" + path + "' opened",
                                           "debug: get_trailer(): FileSize: 22, 0x16",
                                           "debug: get_trailer(): Trailer begins from offset: 7, 0x7",
                                           "debug: get_trailer(): Trailer length: 15, 0xf"));
}

TEST_F(GetTrailer, GivesTheWholeRegionAndAZeroByte) {
    const std::string region = "te" + std::string(1, '\0') + std::string(53, 'x') + offsetWord(0x7F7F7F);
    const std::string path = write(std::string(0x7F7F7F, 'p') + region);
    std::uint32_t offset = 0;
    char* text = nullptr;
    ASSERT_EQ(get_trailer(path.c_str(), &offset, &text), IMAGE_OK);
    EXPECT_EQ(std::string(text, region.size() + 1), region + '\0');
    std::free(text);
}

TEST_F(GetTrailer, LeavesTheWordInATextWithoutZeroByte) {
    const Read answer = read(write("pay<trailer/>" + offsetWord(3)));
    EXPECT_EQ(answer.result, IMAGE_OK);
    EXPECT_EQ(answer.text, "<trailer/>\x03");
}

TEST_F(GetTrailer, TakesARegionThatOverlapsTheWord) {
    const Read answer = readWithWord(99);
    EXPECT_EQ(answer.result, IMAGE_OK);
    EXPECT_EQ(answer.offset, 99U);
    EXPECT_EQ(answer.text, "");
}

TEST_F(GetTrailer, TakesATrailerOfOneByteBeforeTheWord) {
    const Read answer = readWithWord(95);
    EXPECT_EQ(answer.result, IMAGE_OK);
    EXPECT_EQ(answer.text, "p\x5F");
}

TEST_F(GetTrailer, TakesATrailerBehindAPayloadOfOneByte) {
    const Read answer = readWithWord(1);
    EXPECT_EQ(answer.result, IMAGE_OK);
    EXPECT_EQ(answer.text, std::string(95, 'p') + "\x01");
}

TEST_F(GetTrailer, RefusesAFileThatDoesNotOpen) {
    const std::string path = in("missing.bin");
    const Read answer = read(path);
    EXPECT_EQ(answer.result, 70406);
    EXPECT_EQ(answer.offset, unset);
    EXPECT_FALSE(answer.hasText);
    EXPECT_THAT(syslogLines(), ElementsAre("info: get_trailer(): Could not open file: " + path));
}

TEST_F(GetTrailer, RefusesAFileOfLessThanFourBytes) {
    for (const std::size_t size : {0U, 1U, 2U, 3U}) {
        const std::string path = write(std::string(size, '\1'));
        const Read answer = read(path);
        EXPECT_EQ(answer.result, 70406);
        EXPECT_FALSE(answer.hasText);
        const std::string number = std::to_string(size);
        EXPECT_THAT(syslogLines(), ElementsAre("debug: get_trailer(): File '" + path + "' opened",
                                               "debug: get_trailer(): FileSize: " + number + ", 0x" + number,
                                               "info: get_trailer(): Could not read file: " + path));
    }
}

TEST_F(GetTrailer, RefusesAWordOutsideOfTheFile) {
    for (const std::uint32_t word : {0U, 100U, 101U, 0x64000000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        const Read answer = readWithWord(word);
        EXPECT_EQ(answer.result, 70407) << word;
        EXPECT_EQ(answer.offset, unset);
        EXPECT_FALSE(answer.hasText);
        EXPECT_THAT(syslogLines(), ElementsAre("debug: get_trailer(): File '" + in("image.bin") + "' opened",
                                               "debug: get_trailer(): FileSize: 100, 0x64",
                                               "info: get_trailer(): Invalid File length '" + in("image.bin") +
                                                   "': trailer length does not match"));
    }
}

TEST_F(GetTrailer, ReadsFilesOfFourToEightBytes) {
    for (std::uint32_t size = 4; size <= 8; ++size) {
        for (std::uint32_t word = 0; word <= size + 1; ++word) {
            const Read answer = read(write(std::string(size - 4, 'p') + offsetWord(word)));
            EXPECT_EQ(answer.result, word > 0 && word < size ? 0 : 70407) << size << " " << word;
        }
    }
}

// A size beyond what the 32-bit board can tell is none.
TEST_F(GetTrailer, RefusesAFileOfTwoGibibytes) {
    const std::string path = write("");
    std::filesystem::resize_file(path, 0x7FFFFFFC);
    { std::ofstream(path, std::ios::app) << offsetWord(0x7FFFFFFF); }
    EXPECT_EQ(read(path).result, 70407);
    EXPECT_THAT(syslogLines(), ::testing::Contains("debug: get_trailer(): FileSize: -1, 0xffffffff"));
}

TEST_F(GetTrailer, ReadsTheEndOfTheLargestFile) {
    const std::string path = write("");
    std::filesystem::resize_file(path, 0x7FFFFFFF - 4);
    { std::ofstream(path, std::ios::app) << offsetWord(0x7FFFFFF0); }
    const Read answer = read(path);
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(answer.offset, 0x7FFFFFF0U);
}

} // namespace
} // namespace mox::images
