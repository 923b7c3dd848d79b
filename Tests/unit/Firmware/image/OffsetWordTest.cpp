// The last word of an image at and beside each of its limits, and images that have hardly room for it: what each reader
// answers, and that nothing but the payload is written.
#include "unit/Firmware/image/ImageFixture.hpp"

#include <filesystem>

namespace mox::images {
namespace {

constexpr std::uint32_t size = 100;

struct WordRow {
    const char* name;
    std::uint32_t word;
    int check;   ///< of binary_validate and binary_crc
    int version; ///< of binary_version
    int copy;    ///< of binary_copy_without_trailer
};

void PrintTo(const WordRow& row, std::ostream* out) {
    *out << row.name;
}

class OffsetWord : public OnImages {
protected:
    /// Judges an image and compares all that comes of it.
    void expect(const std::string& bytes, const WordRow& row) {
        const std::string path = write(bytes);
        EXPECT_EQ(binary_validate(path.c_str(), 1), row.check);
        EXPECT_EQ(binary_crc(path.c_str()), row.check);
        std::uint32_t value = 1;
        EXPECT_EQ(binary_version(path.c_str(), 1, 1, &value), row.version);
        EXPECT_EQ(value, 0U);
        EXPECT_EQ(binary_copy_without_trailer(path.c_str(), in("payload").c_str()), row.copy);
        EXPECT_EQ(std::filesystem::exists(in("payload")), row.copy == 0);
        if (row.copy == 0) {
            EXPECT_EQ(contentOf(in("payload")), bytes.substr(0, row.word));
            std::filesystem::remove(in("payload"));
        }
        EXPECT_EQ(contentOf(path), bytes);
        EXPECT_EQ(files(), 1);
    }

private:
    std::ptrdiff_t files() const {
        const std::filesystem::directory_iterator all(in(""));
        return std::distance(begin(all), end(all));
    }
};

class OffsetWordOf100Bytes : public OffsetWord, public ::testing::WithParamInterface<WordRow> {};

TEST_P(OffsetWordOf100Bytes, IsJudgedByEachReader) {
    expect(std::string(size - 4, '<') + offsetWord(GetParam().word), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Words, OffsetWordOf100Bytes,
                         ::testing::Values(WordRow{"None", 0, 70407, -1, 0}, WordRow{"One", 1, 70401, -2, 0},
                                           WordRow{"AByteBeforeTheWord", size - 5, 70401, -2, 0},
                                           WordRow{"TheWordItself", size - 4, 70401, -2, 0},
                                           WordRow{"TheLastByte", size - 1, 70401, -2, 0},
                                           WordRow{"TheEnd", size, 70407, -1, -6},
                                           WordRow{"BehindTheEnd", size + 1, 70407, -1, -6},
                                           WordRow{"ByteSwapped", 0x32000000, 70407, -1, -6},
                                           WordRow{"LargestWithSign", 0x7FFFFFFF, 70407, -1, -6},
                                           WordRow{"SmallestWithSign", 0x80000000, 70407, -1, -6},
                                           WordRow{"AllOnes", 0xFFFFFFFF, 70407, -1, -6}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(OffsetWord, IsJudgedInImagesOfFourToEightBytes) {
    for (std::uint32_t bytes = 4; bytes <= 8; ++bytes) {
        for (std::uint32_t word = 0; word <= bytes + 1; ++word) {
            const bool isTrailer = word > 0 && word < bytes;
            expect(std::string(bytes - 4, '<') + offsetWord(word),
                   {"", word, isTrailer ? 70401 : 70407, isTrailer ? -2 : -1, word < bytes ? 0 : -6});
        }
    }
}

TEST_F(OffsetWord, IsMissingInImagesOfLessThanFourBytes) {
    for (std::size_t bytes = 0; bytes < 4; ++bytes) {
        expect(std::string(bytes, '\1'), {"", 0, 70406, -1, -4});
    }
}

} // namespace
} // namespace mox::images
