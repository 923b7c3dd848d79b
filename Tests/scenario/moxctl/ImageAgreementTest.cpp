#include "Moxctl.hpp"
#include "support/Files.hpp"

#include <mox/Firmware.h>

#include <gmock/gmock.h>
#include <host/log/Log.hpp>

#include <array>
#include <map>

namespace mox::testing {
namespace {

constexpr std::uint32_t ownHwSwId = 0x00505000;

std::string golden(const std::string& name) {
    return contentOf(std::string(MOX_TEST_DATA) + "/images/" + name);
}

/// An image cut off at each length, and with each byte changed in several ways.
std::vector<std::string> damaged(const std::string& image) {
    std::vector<std::string> all{image};
    for (std::size_t at = 0; at < image.size(); ++at) {
        all.push_back(image.substr(0, at));
        for (const unsigned bits : {0x01U, 0x20U, 0x80U}) {
            all.push_back(image);
            all.back()[at] = static_cast<char>(static_cast<unsigned char>(image[at]) ^ bits);
        }
    }
    return all;
}

/// What moxctl may call a code of the library.
const std::map<int, std::vector<const char*>>& problemsOfCode() {
    static const std::map<int, std::vector<const char*>> all{
        {IMAGE_OK, {"none"}},
        {IMAGE_ERR_FILE, {"tooShort"}},
        {IMAGE_ERR_TRAILER_LENGTH, {"offsetZero", "offsetOutside", "offsetSwapped"}},
        {IMAGE_ERR_XML, {"notXml", "noTrailer", "offsetSwapped"}},
        {IMAGE_ERR_CRC, {"crc"}},
        {IMAGE_ERR_HWSWID, {"noIdentifiers", "noMatch"}}};
    return all;
}

/// The library's lines about damaged images are no concern of this test.
class Silence {
public:
    Silence() {
        host::log::setCapture([](int, unsigned int, std::string_view) {});
    }
    ~Silence() { host::log::setCapture(nullptr); }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
};

/// Judges all files with one command.
Json verdictsOn(const Words& files, const Words& options) {
    Words words{"--json", "image", "verify"};
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), files.begin(), files.end());
    return Json::parse(moxctlAlone(words).out).at("images");
}

const char* matchOf(const std::string& file) {
    std::uint32_t version = 0;
    if (binary_version(file.c_str(), ownHwSwId, 0, &version) == 0) {
        return "exact";
    }
    return binary_version(file.c_str(), ownHwSwId, 1, &version) == 0 ? "minor" : "none";
}

class VerdictOnDamagedImages : public ::testing::TestWithParam<const char*> {
protected:
    VerdictOnDamagedImages() {
        unsigned number = 0;
        for (const std::string& bytes : damaged(golden(GetParam()))) {
            m_files.push_back(m_directory.write(std::to_string(number++), bytes));
        }
    }

    TemporaryDirectory m_directory;
    Words m_files;
    Silence m_silence;
};

TEST_P(VerdictOnDamagedImages, IsThatOfTheBoardWithTheIdentifier) {
    const Json verdicts = verdictsOn(m_files, {"--hwswid", "0x00505000"});
    ASSERT_EQ(verdicts.size(), m_files.size());
    std::map<int, unsigned> seen;
    for (std::size_t i = 0; i < m_files.size(); ++i) {
        const int code = binary_validate(m_files[i].c_str(), ownHwSwId);
        const Json& verdict = verdicts[i];
        SCOPED_TRACE(verdict.dump());
        ++seen[code];
        EXPECT_EQ(verdict.at("code"), code);
        EXPECT_EQ(verdict.at("result"), code == IMAGE_OK ? "good" : "bad");
        EXPECT_THAT(problemsOfCode().at(code), ::testing::Contains(verdict.at("problem").get<std::string>()));
        if (!verdict.at("image").is_null()) {
            EXPECT_EQ(verdict.at("match"), matchOf(m_files[i]));
        }
    }
    // Each answer that a board can give to a damaged image was compared.
    EXPECT_EQ(seen.size(), problemsOfCode().size());
}

TEST_P(VerdictOnDamagedImages, IsThatOfAnyBoardWithoutAnIdentifier) {
    const Json verdicts = verdictsOn(m_files, {});
    ASSERT_EQ(verdicts.size(), m_files.size());
    for (std::size_t i = 0; i < m_files.size(); ++i) {
        const int code = binary_crc(m_files[i].c_str());
        const Json& verdict = verdicts[i];
        SCOPED_TRACE(verdict.dump());
        const bool hasNoIdentifier = code == IMAGE_OK && verdict.at("image").at("hwSwIds").empty();
        EXPECT_EQ(verdict.at("code"), hasNoIdentifier ? IMAGE_ERR_HWSWID : code);
        std::uint32_t version = 0;
        if (!verdict.at("image").is_null() && binary_version(m_files[i].c_str(), ownHwSwId, 1, &version) == 0) {
            EXPECT_EQ(verdict.at("image").at("swVersionNumber"), version);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Moxctl, VerdictOnDamagedImages,
                         ::testing::Values("plain.bin", "several-identifiers.bin", "minor-match.bin"));

TEST(ExtractedPayload, IsThatOfTheBoard) {
    const Silence silence;
    const TemporaryDirectory directory;
    for (const char* name : {"plain.bin", "odd-length.bin", "several-identifiers.bin"}) {
        const std::string image = directory.write(name, golden(name));
        const std::string mine = image + ".mine";
        const std::string boards = image + ".boards";
        EXPECT_EQ(moxctlAlone({"image", "extract", image, mine}).status, 0);
        EXPECT_EQ(binary_copy_without_trailer(image.c_str(), boards.c_str()), 0);
        EXPECT_EQ(contentOf(mine), contentOf(boards));
        EXPECT_FALSE(contentOf(mine).empty());
    }
}

} // namespace
} // namespace mox::testing
