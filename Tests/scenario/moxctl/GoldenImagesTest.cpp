#include "Moxctl.hpp"
#include "support/Files.hpp"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <ostream>
#include <sstream>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;

constexpr const char* payload = "0123456789abcdefghijklmnopqrstuv";

std::string golden(const std::string& name) {
    return std::string(MOX_TEST_DATA) + "/images/" + name;
}

std::string createdFrom(const std::string& bytes, const Words& options) {
    const TemporaryDirectory directory;
    const std::string image = directory.path() + "/x.bin";
    Words words{"image", "create", directory.write("payload", bytes), image, "--build-time", "2026-01-01T00:00:00Z"};
    words.insert(words.end(), options.begin(), options.end());
    const CommandResult result = moxctlAlone(words);
    EXPECT_EQ(result.status, 0) << result.err;
    return contentOf(image);
}

struct GoodRow {
    const char* name;
    const char* payload;
    Words options;
};

void PrintTo(const GoodRow& row, std::ostream* stream) {
    *stream << row.name;
}

class GoldenImage : public ::testing::TestWithParam<GoodRow> {};

TEST_P(GoldenImage, IsBuiltAgainByteForByte) {
    const std::string image = contentOf(golden(GetParam().name));
    ASSERT_FALSE(image.empty());
    EXPECT_EQ(createdFrom(GetParam().payload, GetParam().options), image);
}

INSTANTIATE_TEST_SUITE_P(
    Moxctl, GoldenImage,
    ::testing::Values(GoodRow{"plain.bin",
                              payload,
                              {"--version", "0x0102", "--hwswid", "0x00505000", "--target-unit", "KOR", "--sw-id",
                               "SW-1"}},
                      GoodRow{"odd-length.bin", "odd", {"--version", "7", "--hwswid", "0x00505000"}},
                      GoodRow{"several-identifiers.bin",
                              payload,
                              {"--version", "258", "--mark", "--hwswid", "0x00505000", "--hwswid", "0x00600010",
                               "--hwswid", "0x0FD01000"}},
                      GoodRow{"minor-match.bin", payload, {"--version", "0x0102", "--hwswid", "0x005050AB"}}));

TEST(DamagedGoldenImages, DifferFromGoodOnesAsTheirListSays) {
    const std::string plain = contentOf(golden("plain.bin"));
    const auto word = plain.size() - 4;
    EXPECT_EQ(contentOf(golden("damaged-crc.bin")), "1" + plain.substr(1));
    EXPECT_EQ(contentOf(golden("byte-swapped-offset.bin")),
              plain.substr(0, word) + std::string(plain.rbegin(), plain.rbegin() + 4));
    EXPECT_EQ(contentOf(golden("no-zero-byte.bin")), plain.substr(0, word - 1) + plain.substr(word));
    const auto line = plain.find("    <HwSwId>");
    EXPECT_EQ(contentOf(golden("empty-list.bin")), plain.substr(0, line) + plain.substr(plain.find("  </HwSwIdList>")));
    std::string sixty;
    for (int i = 0; i < 6; ++i) {
        sixty += "0123456789";
    }
    std::string other = createdFrom(sixty, {"--version", "0x0102", "--hwswid", "0x00505000"});
    EXPECT_EQ(contentOf(golden("no-zero-byte-not-xml.bin")), other.erase(other.size() - 5, 1));
}

struct VerdictRow {
    const char* name;
    int status;
    int code;
    const char* problem;
    const char* match; ///< for the board 0x00505000
    const char* message;
};

void PrintTo(const VerdictRow& row, std::ostream* stream) {
    *stream << row.name;
}

class VerdictOnGoldenImage : public ::testing::TestWithParam<VerdictRow> {};

TEST_P(VerdictOnGoldenImage, SaysWhatIsWrongInOneLine) {
    const std::string file = golden(GetParam().name);
    const CommandResult shown = moxctlAlone({"image", "verify", file, "--hwswid", "0x00505000"});
    EXPECT_EQ(shown.status, GetParam().status);
    EXPECT_EQ(std::count(shown.out.begin(), shown.out.end(), '\n'), 1);
    EXPECT_THAT(shown.out, HasSubstr(GetParam().message));
    const CommandResult forAny = moxctlAlone({"image", "verify", file, "--json"});
    const Json any = Json::parse(forAny.out);
    EXPECT_EQ(any.at("schema"), "moxctl.image-verdicts.1");
    EXPECT_EQ(any.at("images").at(0).at("code"), GetParam().code);
    const Json item = Json::parse(moxctlAlone({"image", "verify", file, "--hwswid", "505000", "--json"}).out);
    EXPECT_EQ(item.at("images").at(0).at("problem"), GetParam().problem);
    const Json match = item.at("images").at(0).at("match");
    EXPECT_EQ(match.is_null() ? "" : match.get<std::string>(), GetParam().match);
}

INSTANTIATE_TEST_SUITE_P(
    Moxctl, VerdictOnGoldenImage,
    ::testing::Values(
        VerdictRow{"plain.bin", 0, 0, "none", "exact",
                   ": good: version 0x0102, CRC-32 0x782BBE53, for 0x00505000; fits 0x00505000\n"},
        VerdictRow{"odd-length.bin", 0, 0, "none", "exact", ": good: version 7, CRC-32 0xF7845EED"},
        VerdictRow{"several-identifiers.bin", 0, 0, "none", "exact", "for 0x00505000, 0x00600010, 0x0FD01000; fits"},
        VerdictRow{"minor-match.bin", 0, 0, "none", "minor", "fits but for the minor version 0x00505000\n"},
        VerdictRow{"damaged-crc.bin", 4, 70413, "crc", "exact",
                   ": bad: CRC-32 differs: the trailer says 0x782BBE53, the payload has 0x89F1BBF9 (70413)\n"},
        VerdictRow{"byte-swapped-offset.bin", 4, 70407, "offsetSwapped", "",
                   ": bad: the offset word looks byte-swapped: 0x20000000 is stored, the trailer begins at 0x00000020"},
        VerdictRow{"empty-list.bin", 4, 70411, "noIdentifiers", "none", ": bad: the list of identifiers is empty"},
        VerdictRow{"no-zero-byte.bin", 0, 0, "none", "exact", ": good: version 0x0102"},
        VerdictRow{"no-zero-byte-not-xml.bin", 4, 70401, "notXml", "",
                   "because no zero byte ends it and the offset word is read as a part of it (70401)"}));

TEST(GoldenImages, AreAllListedAndOnlyThose) {
    const std::string list = contentOf(golden("README.md"));
    unsigned count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(golden(""))) {
        const std::string name = entry.path().filename().string();
        if (name != "README.md") {
            EXPECT_THAT(list, HasSubstr("\n| `" + name + "` |"));
            ++count;
        }
    }
    EXPECT_EQ(count, 9U);
}

/// Bytes of the lines "  0010  61 62 ...  ab" in a text.
std::string bytesOfHexDump(const std::string& text) {
    std::istringstream lines(text);
    std::string bytes;
    for (std::string line; std::getline(lines, line);) {
        const auto begin = line.find("  ", 4);
        if (line.rfind("    0", 0) != 0 || begin != 8) {
            continue;
        }
        std::istringstream cells(line.substr(begin, 2 + 16 * 3));
        for (std::string cell; cells >> cell;) {
            bytes += static_cast<char>(std::stoi(cell, nullptr, 16));
        }
    }
    return bytes;
}

TEST(DescriptionOfImages, ShowsTheBytesOfARealOne) {
    EXPECT_EQ(bytesOfHexDump(contentOf(MOX_FORMATS "/firmware-image.md")), contentOf(golden("odd-length.bin")));
}

} // namespace
} // namespace mox::testing
