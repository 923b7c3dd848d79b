#include "support/WordwiseCrc.hpp"
#include "unit/Firmware/image/ImageFixture.hpp"

#include <gmock/gmock.h>

#include <random>

namespace mox::images {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CalculateCrc : public OnImages {
protected:
    struct Crc {
        int result;
        std::uint32_t value;
    };

    static Crc calculate(const std::string& path, std::uint32_t length) {
        std::uint32_t crc = 0xDEADBEEF;
        const int result = calculate_crc(path.c_str(), length, &crc);
        return {result, crc};
    }

    static std::uint32_t wordwise(const std::string& path, std::uint32_t length) {
        std::FILE* const file = std::fopen(path.c_str(), "r");
        const std::uint32_t crc = wordwiseCrc(file, length);
        std::fclose(file);
        return crc;
    }

    static void expectAsWordwise(const std::string& path, std::uint32_t length) {
        const Crc crc = calculate(path, length);
        EXPECT_EQ(crc.result, 0);
        ASSERT_EQ(crc.value, wordwise(path, length)) << "length " << length;
    }
};

TEST_F(CalculateCrc, IsThatOfTheStandardExample) {
    const Crc crc = calculate(write("123456789"), 9);
    EXPECT_EQ(crc.result, 0);
    EXPECT_EQ(crc.value, 0xCBF43926U);
}

TEST_F(CalculateCrc, CountsOnlyTheFirstBytes) {
    EXPECT_EQ(calculate(write("123456789and more"), 9).value, 0xCBF43926U);
}

TEST_F(CalculateCrc, OfNothingIsZero) {
    const Crc crc = calculate(write("123"), 0);
    EXPECT_EQ(crc.result, 0);
    EXPECT_EQ(crc.value, 0U);
    EXPECT_THAT(syslogLines(), ElementsAre("debug: calculate_crc(): CRC32 calculated from file: 0 (0x0)"));
}

TEST_F(CalculateCrc, LogsTheResultOfWholeWords) {
    calculate(write("12345678"), 8);
    EXPECT_THAT(syslogLines(), ElementsAre("debug: calculate_crc(): CRC32 calculated from file: -1696539985 "
                                           "(0x9ae0daaf)"));
}

TEST_F(CalculateCrc, LogsTheBytesBehindTheLastWord) {
    calculate(write("12345678\x80\x02\x03"), 11);
    const std::string crc = std::to_string(static_cast<std::int32_t>(crcOf("12345678\x80\x02\x03")));
    const auto lines = syslogLines();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], "debug: calculate_crc(): bytes remaining: 3 (0x3)");
    EXPECT_EQ(lines[1], "debug: calculate_crc(): remaining data: 197248 (0x30280)");
    EXPECT_THAT(lines[2], ::testing::StartsWith("debug: calculate_crc(): CRC32 calculated from file: " + crc + " (0x"));
}

TEST_F(CalculateCrc, RefusesAFileThatDoesNotOpen) {
    const Crc crc = calculate(in("missing"), 4);
    EXPECT_EQ(crc.result, 70406);
    EXPECT_EQ(crc.value, 0U);
    EXPECT_THAT(syslogLines(), ElementsAre("info: calculate_crc(): Could not open file: " + in("missing")));
}

TEST_F(CalculateCrc, IsThatOfZlibAtEachLength) {
    const std::string bytes = someBytes(300);
    const std::string path = write(bytes);
    for (std::uint32_t length = 0; length <= bytes.size(); ++length) {
        EXPECT_EQ(calculate(path, length).value, crcOf(bytes.substr(0, length))) << length;
    }
}

TEST_F(CalculateCrc, IsThatOfZlibAroundTheBlocksOfReading) {
    const std::string bytes = someBytes(3 * 65536 + 5);
    const std::string path = write(bytes);
    for (const std::uint32_t block : {1024U, 4096U, 16384U, 32768U, 65536U, 131072U, 3U * 65536U}) {
        for (std::uint32_t length = block - 5; length <= block + 5; ++length) {
            EXPECT_EQ(calculate(path, length).value, crcOf(bytes.substr(0, length))) << length;
        }
    }
}

class CalculateCrcOfAShortFile : public CalculateCrc {};

TEST_F(CalculateCrcOfAShortFile, CountsTheLastWordAgain) {
    EXPECT_EQ(calculate(write("abcdefgh"), 16).value, crcOf("abcdefghefghefgh"));
}

TEST_F(CalculateCrcOfAShortFile, CountsABrokenWordOverTheOneBefore) {
    EXPECT_EQ(calculate(write("abcdefghij"), 16).value, crcOf("abcdefghijghijgh"));
    EXPECT_EQ(calculate(write("abcdefghi"), 16).value, crcOf("abcdefghifghifgh"));
    EXPECT_EQ(calculate(write("abcdefghijk"), 16).value, crcOf("abcdefghijkhijkh"));
}

TEST_F(CalculateCrcOfAShortFile, CountsZeroBytesBehindTheLastWord) {
    EXPECT_EQ(calculate(write("abcdefghi"), 14).value, crcOf(std::string("abcdefghifgh\0\0", 14)));
    EXPECT_EQ(calculate(write("abcde"), 7).value, crcOf(std::string("abcde\0\0", 7)));
}

TEST_F(CalculateCrcOfAShortFile, CountsZeroBytesWhereNothingWasReadYet) {
    EXPECT_EQ(calculate(write(""), 10).value, crcOf(std::string(10, '\0')));
    EXPECT_EQ(calculate(write("ab"), 4).value, crcOf(std::string("ab\0\0", 4)));
}

TEST_F(CalculateCrcOfAShortFile, LogsTheZeroBytes) {
    calculate(write("abcd"), 6);
    EXPECT_THAT(syslogLines(), ::testing::Contains("debug: calculate_crc(): remaining data: 0 (0x0)"));
}

TEST_F(CalculateCrcOfAShortFile, IsThatOfAWordwiseReader) {
    for (const std::size_t size : {0U, 1U, 2U, 3U, 4U, 5U, 7U, 1023U, 1024U, 1027U, 65535U, 65536U, 65537U, 65539U}) {
        const std::string path = write(someBytes(size));
        for (const std::uint32_t more : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 1000U, 65536U, 200003U}) {
            expectAsWordwise(path, static_cast<std::uint32_t>(size) + more);
        }
    }
    EXPECT_THAT(platformLines(), IsEmpty());
}

TEST_F(CalculateCrcOfAShortFile, IsThatOfAWordwiseReaderWhateverTheSizes) {
    std::mt19937 random(20240229);
    for (unsigned round = 0; round < 300; ++round) {
        const std::string path = write(someBytes(random() % 70000, round));
        expectAsWordwise(path, static_cast<std::uint32_t>(random() % 140000));
        expectAsWordwise(path, static_cast<std::uint32_t>(random() % 40));
    }
}

// A length that a bad last word gives must not keep anybody busy for long: a reader word by word takes a minute.
TEST_F(CalculateCrcOfAShortFile, IsCalculatedInShortTimeWhateverTheLength) {
    EXPECT_EQ(calculate(write(std::string(4, '\0')), 0x7FFFFFFF).value, 0x00F93446U);
}

} // namespace
} // namespace mox::images
