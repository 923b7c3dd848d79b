#include "Moxctl.hpp"
#include "support/Files.hpp"

#include <gmock/gmock.h>
#include <zlib.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <ostream>

namespace mox::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

std::vector<std::string> namesIn(const std::string& directory) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// moxctl in a directory of a test's own, with a payload of 24 bytes in it.
class MoxctlImage : public ::testing::Test {
protected:
    CommandResult create(const std::string& image, Words more = {}) const {
        Words words{"image", "create", m_payload, at(image)};
        for (const char* word : {"--version", "0x0102", "--hwswid", "00505000"}) {
            words.emplace_back(word);
        }
        words.insert(words.end(), more.begin(), more.end());
        return moxctlAlone(words);
    }
    std::string at(const std::string& name) const { return m_directory.path() + "/" + name; }
    CommandResult verify(const std::string& bytes) const {
        return moxctlAlone({"image", "verify", m_directory.write("x.bin", bytes)});
    }

    TemporaryDirectory m_directory;
    std::string m_payload = m_directory.write("payload", "payload of an odd length");
};

TEST_F(MoxctlImage, IsCreatedFromAPayloadThatStaysAsItIs) {
    const CommandResult result = create("a.bin", {"--target-unit", "KOR & <co>", "--sw-id", "id"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_EQ(contentOf(m_payload), "payload of an odd length");
    EXPECT_THAT(contentOf(at("a.bin")), StartsWith("payload of an odd length<?xml version=\"1.0\"?>\n<trailer>\n"));
    EXPECT_THAT(contentOf(at("a.bin")), EndsWith(std::string("</trailer>\n\0\x18\0\0\0", 16)));
    EXPECT_THAT(namesIn(m_directory.path()), ElementsAre("a.bin", "payload"));
    const Json info = Json::parse(moxctlAlone({"image", "info", at("a.bin"), "--json"}).out);
    EXPECT_EQ(info.at("schema"), "moxctl.image.1");
    EXPECT_EQ(info.at("targetUnit"), "KOR & <co>");
    EXPECT_EQ(info.at("swId"), "id");
    EXPECT_EQ(info.at("swVersion"), "0x0102");
    EXPECT_EQ(info.at("swVersionNumber"), 258);
    EXPECT_EQ(info.at("hwSwIds"), Json({"0x00505000"}));
    EXPECT_EQ(info.at("offset"), 24);
    EXPECT_EQ(info.at("length"), 24);
    EXPECT_EQ(info.at("formatVersion"), 1);
    EXPECT_EQ(info.at("zeroByte"), true);
    EXPECT_EQ(info.at("size"), fs::file_size(at("a.bin")));
    EXPECT_EQ(info.at("trailerSize"), fs::file_size(at("a.bin")) - 24);
    const auto* payload = reinterpret_cast<const Bytef*>("payload of an odd length");
    char crc[16];
    std::snprintf(crc, sizeof crc, "0x%08lX", crc32(0, payload, 24));
    EXPECT_EQ(info.at("crc"), crc);
}

TEST_F(MoxctlImage, GetsTheTimeOfItsBuild) {
    create("a.bin");
    const auto timeIn = [this](const char* name) {
        return Json::parse(moxctlAlone({"image", "info", at(name), "--json"}).out).at("buildTime").get<std::string>();
    };
    EXPECT_THAT(timeIn("a.bin"), ::testing::MatchesRegex("20[0-9-]{8}T[0-9:]{8}Z"));
    create("b.bin", {"--build-time", "on a Monday"});
    EXPECT_EQ(timeIn("b.bin"), "on a Monday");
    const Words words{"image", "create", m_payload, at("c.bin"), "--version", "1", "--hwswid", "1"};
    runCommand(moxctlWords(words), settingFor({{"SOURCE_DATE_EPOCH", "1767225600"}}));
    EXPECT_EQ(timeIn("c.bin"), "2026-01-01T00:00:00Z");
}

TEST_F(MoxctlImage, CarriesTheMarkOfItsVersionBehindThePayload) {
    EXPECT_EQ(create("a.bin", {"--mark"}).status, 0);
    EXPECT_EQ(moxctlAlone({"image", "extract", at("a.bin"), at("out")}).status, 0);
    EXPECT_EQ(contentOf(at("out")), "payload of an odd lengthMOX-SW-VERSION:0x102");
    EXPECT_EQ(contentOf(m_payload), "payload of an odd length");
    const Words words{"image", "create", m_payload, at("b.bin"), "--version", "007", "--hwswid", "1", "--mark"};
    EXPECT_EQ(moxctlAlone(words).status, 0);
    EXPECT_EQ(moxctlAlone({"image", "extract", at("b.bin"), at("out"), "--force"}).status, 0);
    EXPECT_THAT(contentOf(at("out")), EndsWith("MOX-SW-VERSION:7"));
    const CommandResult second =
        moxctlAlone({"image", "create", at("out"), at("c.bin"), "--version", "8", "--hwswid", "1", "--mark"});
    EXPECT_EQ(second.status, 2);
    EXPECT_THAT(second.err, HasSubstr("expected no 'MOX-SW-VERSION:' in a payload that gets one"));
    EXPECT_FALSE(fs::exists(at("c.bin")));
}

TEST_F(MoxctlImage, ReplacesNothingWithoutForce) {
    const std::string present = m_directory.write("a.bin", "precious");
    const CommandResult refused = create("a.bin");
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.err, "moxctl: " + present + ": exists already (--force replaces it)\n");
    EXPECT_EQ(contentOf(present), "precious");
    EXPECT_EQ(create("a.bin", {"--force"}).status, 0);
    EXPECT_THAT(contentOf(present), StartsWith("payload"));
    EXPECT_THAT(namesIn(m_directory.path()), ElementsAre("a.bin", "payload"));
}

TEST_F(MoxctlImage, IsNeverWrittenOverItsPayloadUnderWhateverName) {
    fs::create_symlink(m_payload, at("symlink"));
    fs::create_hard_link(m_payload, at("hardlink"));
    for (const char* name : {"payload", "symlink", "hardlink", "./payload"}) {
        const CommandResult result = create(name, {"--force"});
        EXPECT_EQ(result.status, 2) << name;
        EXPECT_THAT(result.err, HasSubstr("expected another file than " + m_payload)) << name;
        EXPECT_EQ(contentOf(m_payload), "payload of an odd length");
    }
}

TEST_F(MoxctlImage, IsWrittenToARegularFileOnly) {
    fs::create_directory(at("directory"));
    fs::create_symlink(m_directory.write("target", "precious"), at("link"));
    for (const char* name : {"directory", "link"}) {
        const CommandResult result = create(name, {"--force"});
        EXPECT_EQ(result.status, 2) << name;
        EXPECT_THAT(result.err, HasSubstr("expected a new name or a regular file")) << name;
    }
    EXPECT_EQ(contentOf(at("target")), "precious");
    const CommandResult nowhere = create("no/such/place.bin");
    EXPECT_EQ(nowhere.status, 1);
    EXPECT_THAT(nowhere.err, HasSubstr("No such file or directory"));
}

struct WrongRow {
    const char* name;
    Words options;
    const char* expected;
};

void PrintTo(const WrongRow& row, std::ostream* stream) {
    *stream << row.name;
}

class WrongOptionOfImageCreate : public MoxctlImage, public ::testing::WithParamInterface<WrongRow> {};

TEST_P(WrongOptionOfImageCreate, IsRefusedBeforeAnythingIsWritten) {
    Words words{"image", "create", m_payload, at("a.bin")};
    words.insert(words.end(), GetParam().options.begin(), GetParam().options.end());
    const CommandResult result = moxctlAlone(words);
    EXPECT_EQ(result.status, 2) << result.err;
    EXPECT_THAT(result.err, HasSubstr(GetParam().expected));
    EXPECT_THAT(namesIn(m_directory.path()), ElementsAre("payload"));
}

INSTANTIATE_TEST_SUITE_P(
    Moxctl, WrongOptionOfImageCreate,
    ::testing::Values(
        WrongRow{"none", {}, "--version is required"}, WrongRow{"noId", {"--version", "1"}, "--hwswid is required"},
        WrongRow{"capitalX", {"--version", "0X1", "--hwswid", "1"}, "(with a small x) of 32 bits, got '0X1'"},
        WrongRow{"tooLarge", {"--version", "4294967296", "--hwswid", "1"}, "of 32 bits, got '4294967296'"},
        WrongRow{"noNumber", {"--version", "1.2", "--hwswid", "1"}, "got '1.2'"},
        WrongRow{"negative", {"--version=-1", "--hwswid", "1"}, "got '-1'"},
        WrongRow{"emptyHex", {"--version", "0x", "--hwswid", "1"}, "got '0x'"},
        WrongRow{"longId", {"--version", "1", "--hwswid", "123456789"}, "expected a hexadecimal number of 32 bits"},
        WrongRow{"wordId", {"--version", "1", "--hwswid", "KORE"}, "got 'KORE'"},
        WrongRow{"twice", {"--version", "1", "--hwswid", "1", "--hwswid", "0x01"}, "expected each identifier once"},
        WrongRow{"feed", {"--version", "1", "--hwswid", "1", "--sw-id", "a\nb"}, "--sw-id: expected printable ASCII"},
        WrongRow{"blank", {"--version", "1", "--hwswid", "1", "--target-unit", "a "}, "without blanks at the ends"}));

TEST_F(MoxctlImage, NeedsAPayloadOfAtLeastAByteInARegularFile) {
    const auto from = [this](const std::string& payload) {
        return moxctlAlone({"image", "create", payload, at("a.bin"), "--version", "1", "--hwswid", "1"});
    };
    EXPECT_EQ(from(m_directory.write("empty", "")).status, 2);
    EXPECT_THAT(from(at("empty")).err, HasSubstr("expected at least one byte"));
    EXPECT_EQ(from(at("missing")).status, 3);
    EXPECT_EQ(from(m_directory.path()).status, 2);
    EXPECT_THAT(from(m_directory.path()).err, HasSubstr("expected a regular file"));
    EXPECT_THAT(namesIn(m_directory.path()), ElementsAre("empty", "payload"));
}

TEST_F(MoxctlImage, IsRemarkedUponWhenItsNameKeepsBoardsFromFindingIt) {
    EXPECT_THAT(create("image").err, HasSubstr("boards find only images whose name ends in its first '.bin'"));
    EXPECT_THAT(create("a.bin.bin").err, HasSubstr("unlike 'a.bin.bin'"));
    EXPECT_THAT(create("other", {"--quiet"}).err, IsEmpty());
}

TEST_F(MoxctlImage, IsDescribedAfterItWasCreated) {
    const CommandResult result = create("a.bin", {"--json"});
    EXPECT_EQ(Json::parse(result.out), Json::parse(moxctlAlone({"image", "info", at("a.bin"), "--json"}).out));
}

TEST_F(MoxctlImage, ShowsItsFieldsInATable) {
    create("a.bin", {"--build-time", "t", "--hwswid", "0x1"});
    const std::string out = moxctlAlone({"image", "info", at("a.bin")}).out;
    for (const char* line : {"FIELD              VALUE\n", "trailer offset     24\n", "version as number  258\n",
                             "target unit        -\n", "identifiers        0x00505000,0x00000001\n"}) {
        EXPECT_THAT(out, HasSubstr(line));
    }
}

TEST_F(MoxctlImage, ThatIsDamagedHasNoInformation) {
    const CommandResult result = moxctlAlone({"image", "info", m_payload});
    EXPECT_EQ(result.status, 4);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr("points outside of the file"));
    EXPECT_EQ(moxctlAlone({"image", "info", at("missing")}).status, 3);
}

TEST_F(MoxctlImage, IsTakenApartIntoPayloadAndTrailer) {
    create("a.bin");
    EXPECT_EQ(moxctlAlone({"image", "extract", at("a.bin"), at("out")}).status, 0);
    EXPECT_EQ(contentOf(at("out")), "payload of an odd length");
    const CommandResult shown = moxctlAlone({"image", "extract", at("a.bin"), "--trailer"});
    EXPECT_THAT(shown.out, StartsWith("<?xml"));
    EXPECT_THAT(shown.out, EndsWith("</trailer>\n"));
    const Json json = Json::parse(moxctlAlone({"image", "extract", at("a.bin"), at("xml"), "--trailer", "--json"}).out);
    EXPECT_EQ(contentOf(at("xml")), shown.out);
    EXPECT_EQ(json.at("part"), "trailer");
    EXPECT_EQ(json.at("size"), shown.out.size());
}

TEST_F(MoxctlImage, IsNotTakenApartOverItselfOrOtherFiles) {
    create("a.bin");
    const CommandResult over = moxctlAlone({"image", "extract", at("a.bin"), at("a.bin"), "--force"});
    EXPECT_EQ(over.status, 2);
    EXPECT_THAT(over.err, HasSubstr("expected another file than"));
    EXPECT_EQ(moxctlAlone({"image", "extract", at("a.bin"), m_payload}).status, 2);
    const CommandResult nowhere = moxctlAlone({"image", "extract", at("a.bin")});
    EXPECT_EQ(nowhere.status, 2);
    EXPECT_THAT(nowhere.err, HasSubstr("expected the file OUT"));
}

TEST_F(MoxctlImage, DiffersFieldByFieldAndInThePayload) {
    create("a.bin", {"--build-time", "t"});
    create("b.bin", {"--build-time", "t"});
    const CommandResult equal = moxctlAlone({"image", "diff", at("a.bin"), at("b.bin")});
    EXPECT_EQ(equal.status, 0);
    EXPECT_EQ(equal.out, "no difference\n");
    m_directory.write("payload", "payload of an odd Length");
    create("c.bin", {"--build-time", "u"});
    const CommandResult different = moxctlAlone({"image", "diff", at("a.bin"), at("c.bin")});
    EXPECT_EQ(different.status, 4);
    EXPECT_THAT(different.out, HasSubstr("build time                  t           u\n"));
    EXPECT_THAT(different.out, HasSubstr("payload from 0x00000012 on  24 bytes    24 bytes\n"));
    EXPECT_THAT(different.out, Not(HasSubstr("identifiers")));
    EXPECT_THAT(different.err, HasSubstr("differ\n"));
}

TEST_F(MoxctlImage, DiffersInThePayloadsLengthAndInTheFormOfTheText) {
    create("a.bin", {"--build-time", "t"});
    m_directory.write("payload", "payload of an odd length, and more");
    create("b.bin", {"--build-time", "t"});
    const Json longer = Json::parse(moxctlAlone({"image", "diff", at("a.bin"), at("b.bin"), "--json"}).out);
    EXPECT_EQ(longer.at("schema"), "moxctl.image-differences.1");
    EXPECT_EQ(longer.at("equal"), false);
    EXPECT_EQ(longer.at("payloadDiffersFrom"), 24);
    EXPECT_EQ(longer.at("first").at("offset"), 24);
    std::string bytes = contentOf(at("a.bin"));
    bytes.replace(bytes.find("\n  <Crc32>"), 3, " \n ");
    const Json spaced =
        Json::parse(moxctlAlone({"image", "diff", at("a.bin"), m_directory.write("c.bin", bytes), "--json"}).out);
    EXPECT_EQ(spaced.at("payloadEqual"), true);
    ASSERT_EQ(spaced.at("differences").size(), 1U);
    EXPECT_EQ(spaced.at("differences").at(0).at("member"), "text");
}

TEST_F(MoxctlImage, IsVerifiedBesideOthers) {
    create("a.bin");
    const CommandResult result = moxctlAlone({"image", "verify", at("a.bin"), m_payload, at("a.bin")});
    EXPECT_EQ(result.status, 4);
    EXPECT_THAT(result.out, StartsWith(at("a.bin") + ": good: version 0x0102, CRC-32 0x"));
    EXPECT_THAT(result.out, HasSubstr(m_payload + ": bad: the offset word 0x"));
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 3);
    EXPECT_EQ(result.err, "moxctl: 1 of 3 images failed verification\n");
    const CommandResult missing = moxctlAlone({"image", "verify", at("a.bin"), at("missing")});
    EXPECT_EQ(missing.status, 3);
    EXPECT_THAT(missing.out, IsEmpty());
}

TEST_F(MoxctlImage, IsVerifiedForABoard) {
    create("a.bin", {"--hwswid", "0x00600010"});
    const auto matchOf = [this](const char* id) {
        const CommandResult result = moxctlAlone({"image", "verify", at("a.bin"), "--hwswid", id, "--json"});
        const Json item = Json::parse(result.out).at("images").at(0);
        return item.at("match").get<std::string>() + "/" + item.at("name").get<std::string>() + "/" +
               std::to_string(result.status);
    };
    EXPECT_EQ(matchOf("0x00505000"), "exact/IMAGE_OK/0");
    EXPECT_EQ(matchOf("600010"), "exact/IMAGE_OK/0");
    EXPECT_EQ(matchOf("005050FF"), "minor/IMAGE_OK/0");
    EXPECT_EQ(matchOf("00505100"), "none/IMAGE_ERR_HWSWID/4");
    const CommandResult wrong = moxctlAlone({"image", "verify", at("a.bin"), "--hwswid", "KORE"});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_THAT(wrong.err, HasSubstr("expected a hexadecimal number of 32 bits"));
}

TEST_F(MoxctlImage, IsNotedUponWhereSomethingIsOddAndDoesNoHarm) {
    create("a.bin");
    std::string bytes = contentOf(at("a.bin"));
    bytes.replace(bytes.find("<Length>24"), 10, "<Length>25");
    bytes.replace(bytes.find("0x0102"), 6, "0X0102");
    const CommandResult result = verify(bytes);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, HasSubstr("note: element 'Length' says 25, the payload has 24 bytes"));
    EXPECT_THAT(result.err, HasSubstr("note: boards read the software version '0X0102' as 0\n"));
}

TEST_F(MoxctlImage, ShowsHowFarItsMakingIsOnATerminal) {
    fs::resize_file(m_payload, 20 * 1024 * 1024);
    const std::string command =
        std::string(MOXCTL_PATH) + " image create " + m_payload + " " + at("a.bin") + " --version 1 --hwswid 1";
    const CommandResult shown = runCommand({"script", "-qec", command, "/dev/null"}, settingFor({}));
    EXPECT_EQ(shown.status, 0);
    EXPECT_THAT(shown.out, HasSubstr("\rwriting " + at("a.bin") + ": "));
    EXPECT_THAT(shown.out, HasSubstr(" % of 20 MiB\033[K"));
    EXPECT_THAT(create("b.bin").err, IsEmpty());
}

} // namespace
} // namespace mox::testing
