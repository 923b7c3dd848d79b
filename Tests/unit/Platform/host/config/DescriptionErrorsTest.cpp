// Every way to be wrong, with the line and the text that a person gets.
#include <gmock/gmock.h>
#include <host/board/Description.hpp>

#include <ostream>
#include <random>

namespace {

using namespace mox::host;
using testing::HasSubstr;
using testing::StartsWith;

struct Wrong {
    const char* name;
    const char* text;
    unsigned line;
    const char* message;
};

std::ostream& operator<<(std::ostream& out, const Wrong& wrong) {
    return out << wrong.name;
}

// A node in one line: what follows begins on the line below it.
#define NODE(rest) "{\"nodes\": [{\"id\": 1, \"unit\": {\"id\": \"X\", \"hwSwId\": 0}\n" rest "}]}"
#define DEVICES(rest) NODE(", \"devices\": {\n" rest "}")
#define TAGS(rest) "{\"tags\": [\n" rest "], \"nodes\": [{\"id\": 1, \"unit\": {\"id\": \"X\", \"hwSwId\": 0}}]}"

const Wrong wrongDescriptions[] = {
    {"Empty", "", 1,
     "expected well-formed JSON: while parsing value - unexpected end of input; expected '[', '{', or a literal"},
    {"OnlyAComment", "// nothing\n\n", 2,
     "expected well-formed JSON: while parsing value - unexpected end of input; expected '[', '{', or a literal"},
    {"MissingComma", "{\n\"nodes\": []\n\"tags\": []}", 3,
     "expected well-formed JSON: while parsing object - unexpected string literal; expected '}'"},
    {"TextOverTheLineEnd", "{\n\"name\": \"a\nb\"}", 2,
     "expected well-formed JSON: while parsing value - invalid string: control character U+000A (LF) must be escaped "
     "to "
     "\\u000A or \\n"},
    {"MoreBehindTheEnd", "{\"nodes\": []}\n{}", 2,
     "expected well-formed JSON: while parsing value - unexpected '{'; expected end of input"},
    {"NestedTooDeeply", "[[[[[[[[\n[[[[[[[[\n[", 3, "expected at most 16 levels of nesting"},
    {"AList", "\n[]", 2, "description: expected an object, got a list"},
    {"NoNodes", "{\n}", 1, "description: expected a key \"nodes\" with a list of 1 to 256 nodes"},
    {"EmptyNodes", "{\n\"nodes\": []}", 2, "nodes: expected a list of 1 to 256 nodes, got a list"},
    {"NodesIsAnObject", "{\n\"nodes\":\n{}}", 3, "nodes: expected a list of 1 to 256 nodes, got an object"},
    {"UnknownKey", "{\n\"node\": []}", 2, "unknown key \"node\", did you mean \"nodes\"?"},
    {"UnknownKeyFarFromAny", "{\n\"processors\": []}", 2,
     "unknown key \"processors\", known keys: $schema, name, engine, nodes, tags"},
    {"KeyTwice", "{\n\"name\": \"a\",\n\"name\": \"b\"}", 3, "name: expected once, but it stands on line 2 already"},
    {"NodeIsAText", "{\"nodes\": [\n\"x\"]}", 2, "nodes[0]: expected an object, got \"x\""},
    {"NodeWithoutId", "{\"nodes\": [\n{}]}", 2, "nodes[0]: expected a key \"id\" with a node id from 0x0001 to 0xFFFF"},
    {"NodeIdIsNoNumber", "{\"nodes\": [{\n\"id\": \"x\"}]}", 2,
     "nodes[0].id: expected a node id from 0x0001 to 0xFFFF, got \"x\""},
    {"NodeIdIsZero", "{\"nodes\": [{\n\"id\": 0}]}", 2, "nodes[0].id: expected a node id from 0x0001 to 0xFFFF, got 0"},
    {"NodeIdIsTooLarge", "{\"nodes\": [{\n\"id\": \"0x10000\"}]}", 2,
     "nodes[0].id: expected a node id from 0x0001 to 0xFFFF, got \"0x10000\""},
    {"NodeIdIsNegative", "{\"nodes\": [{\n\"id\": -1}]}", 2,
     "nodes[0].id: expected a node id from 0x0001 to 0xFFFF, got -1"},
    {"NodeIdIsAFraction", "{\"nodes\": [{\n\"id\": 1.5\n}]}", 2,
     "nodes[0].id: expected a node id from 0x0001 to 0xFFFF, got 1.5"},
    {"NodeIdEndsTheLine", "{\"nodes\": [{\"id\":\n70000\n}]}", 2,
     "nodes[0].id: expected a node id from 0x0001 to 0xFFFF, got 70000"},
    {"NodeIdTwice",
     "{\"nodes\": [{\"id\": 17, \"unit\": {\"id\": \"X\", \"hwSwId\": 0}},\n"
     "{\"id\": \"0x11\", \"unit\": {\"id\": \"X\", \"hwSwId\": 0}}]}",
     2, "nodes[1].id: expected a value of its own, but \"0x11\" stands on line 1 already"},
    {"UnitIdTooLong", "{\"nodes\": [{\"id\": 1, \"unit\": {\n\"id\": \"ABCDEFGH\"}}]}", 2,
     "nodes[0].unit.id: expected an id of 1 to 7 letters and digits, got \"ABCDEFGH\""},
    {"UnitWithoutHwSwId", "{\"nodes\": [{\"id\": 1, \"unit\":\n{\"id\": \"X\"}}]}", 2,
     "nodes[0].unit: expected a key \"hwSwId\" with a hardware/software identifier of 32 bits"},
    {"SerialNumberTooLong", "{\"nodes\": [{\"id\": 1, \"unit\": {\n\"serialNumber\": \"12345678901234567\"}}]}", 2,
     "nodes[0].unit.serialNumber: expected a serial number of at most 16 characters, got \"12345678901234567\""},
    {"SlotBeyondTheShelf", "{\"nodes\": [{\"id\": 1, \"unit\": {\n\"slot\": 8}}]}", 2,
     "nodes[0].unit.slot: expected a slot of the shelf from 0 to 7, got 8"},
    {"OtherUnitTwice",
     NODE(", \"otherUnits\": [{\"number\": 1, \"id\": \"Y\", \"hwSwId\": 0},\n"
          "{\"number\": 1, \"id\": \"Z\", \"hwSwId\": 0}]"),
     3, "nodes[0].otherUnits[1].number: expected a value of its own, but 1 stands on line 2 already"},
    {"UnknownKeyOfADevice", DEVICES("\"fpga\": []"), 3,
     "nodes[0].devices: unknown key \"fpga\", did you mean \"fpgas\"?"},
    {"BootLocation", DEVICES("\"boot\": {\n\"location\": \"flash\"}"), 4,
     "nodes[0].devices.boot.location: expected \"primary\", \"backup\" or \"ram\", got \"flash\""},
    {"BootVersion", DEVICES("\"boot\": {\"version\": \"1.2\"}"), 3,
     "nodes[0].devices.boot.version: expected a version of 1 to 127 decimal digits, got \"1.2\""},
    {"FpgaSlotTwice",
     DEVICES("\"fpgas\": [{\"id\": 1, \"activeVersion\": 0, \"slots\": [{\"slot\": 1, \"version\": 1},\n"
             "{\"slot\": 1, \"version\": 2}]}]"),
     4, "nodes[0].devices.fpgas[0].slots[1].slot: expected a value of its own, but 1 stands on line 3 already"},
    {"FpgaSlotVersion",
     DEVICES("\"fpgas\": [{\"id\": 1, \"activeVersion\": 0, \"slots\": [{\"slot\": 1, \"version\": -1}]}]"), 3,
     "nodes[0].devices.fpgas[0].slots[0].version: expected a version of 32 bits, got -1"},
    {"FpgaAreaSizeIsZero", DEVICES("\"fpgas\": [{\"id\": 1, \"activeVersion\": 0,\n\"areaSize\": 0}]"), 4,
     "nodes[0].devices.fpgas[0].areaSize: expected a size of an image area from 1 byte to 1 GiB, got 0"},
    {"FpgaAreaSizeIsTooLarge", DEVICES("\"fpgas\": [{\"id\": 1, \"activeVersion\": 0,\n\"areaSize\": \"0x40000001\"}]"),
     4,
     "nodes[0].devices.fpgas[0].areaSize: expected a size of an image area from 1 byte to 1 GiB, got \"0x40000001\""},
    {"FpgaBlockSizeIsZero", DEVICES("\"fpgas\": [{\"id\": 1, \"activeVersion\": 0,\n\"blockSize\": 0}]"), 4,
     "nodes[0].devices.fpgas[0].blockSize: expected a size of a flash block from 1 byte to 16 MiB, got 0"},
    {"FpgaBlockLargerThanItsArea",
     DEVICES("\"fpgas\": [{\"id\": 1, \"activeVersion\": 0, \"areaSize\": 100,\n\"blockSize\": 101}]"), 4,
     "nodes[0].devices.fpgas[0].blockSize: expected at most the image area's 100 bytes, got 101"},
    {"ResetControlOfAnotherDevice",
     DEVICES("\"fpgas\": [{\"id\": \"0x10001\", \"activeVersion\": 0,\n\"resetControl\": true}]"), 4,
     "nodes[0].devices.fpgas[0].resetControl: expected only of the local BMU, which has id 1, got true"},
    {"ResetControlIsANumber", DEVICES("\"fpgas\": [{\"id\": 1, \"activeVersion\": 0,\n\"resetControl\": 1}]"), 4,
     "nodes[0].devices.fpgas[0].resetControl: expected true or false, got 1"},
    {"BootAreaSize", DEVICES("\"boot\": {\"version\": \"1\",\n\"areaSize\": \"large\"}"), 4,
     "nodes[0].devices.boot.areaSize: expected a size of an image area from 1 byte to 1 GiB, got \"large\""},
    {"BootBlockLargerThanItsArea",
     DEVICES("\"boot\": {\"version\": \"1\", \"areaSize\": 16,\n\"blockSize\": \"0x11\"}"), 4,
     "nodes[0].devices.boot.blockSize: expected at most the image area's 16 bytes, got \"0x11\""},
    {"FlashPathOutside", DEVICES("\"flash\": [{\"id\": 53, \"path\": \"/ffs/../etc\"}]"), 3,
     "nodes[0].devices.flash[0].path: expected a directory right below /ffs, such as \"/ffs/fs1\", got "
     "\"/ffs/../etc\""},
    {"FlashPathTwice",
     DEVICES("\"flash\": [{\"id\": 53, \"path\": \"/ffs/fs1\"},\n{\"id\": 54, \"path\": \"/ffs/fs1\"}]"), 4,
     "nodes[0].devices.flash[1].path: expected a value of its own, but \"/ffs/fs1\" stands on line 3 already"},
    {"FlagIsANumber", DEVICES("\"power\": {\"feeds\": [{\"number\": 1,\n\"on\": 1}]}"), 4,
     "nodes[0].devices.power.feeds[0].on: expected true or false, got 1"},
    {"EndpointTooLarge", DEVICES("\"rapidIo\": {\"ownId\": 1, \"endpoints\": [1,\n65536]}"), 3,
     "nodes[0].devices.rapidIo.endpoints: expected a list of RapidIO device ids of 16 bits, got a list"},
    {"RouteBits", DEVICES("\"routes\": [{\"prefix\": 0, \"bits\": 7}]"), 3,
     "nodes[0].devices.routes[0].bits: expected 0, 4, 8, 12 or 16 bits, got 7"},
    {"RoutePrefix", DEVICES("\"routes\": [{\"prefix\": \"0x1234\", \"bits\": 8}]"), 3,
     "nodes[0].devices.routes[0].prefix: expected zeros beyond the first 8 bits, got \"0x1234\""},
    {"IndexWithoutKind",
     DEVICES("\"systemInformation\": [\n{\"category\": 0, \"key\": 1, \"index\": 0, \"value\": 1}]"), 4,
     "nodes[0].devices.systemInformation[0]: expected \"indexKind\" and \"index\" together, got one of them"},
    {"SystemInformationTwice",
     DEVICES("\"systemInformation\": [{\"category\": 0, \"key\": 1, \"value\": 1},\n"
             "{\"category\": 0, \"key\": \"0x1\", \"value\": 2}]"),
     4,
     "nodes[0].devices.systemInformation[1]: expected a category, key and index of its own, but they stand on line 3 "
     "already"},
    {"ServiceName", NODE(", \"services\": [{\"name\": \"a/b\"}]"), 2,
     "nodes[0].services[0].name: expected a name of 1 to 32 letters, digits, '.', '_' and '-', got \"a/b\""},
    {"ServiceArguments", NODE(", \"services\": [{\"name\": \"a\", \"executable\": \"a\", \"arguments\": [1]}]"), 2,
     "nodes[0].services[0].arguments: expected a list of at most 64 texts, got a list"},
    {"ServiceTwice",
     NODE(", \"services\": [{\"name\": \"a\", \"executable\": \"a\"},\n"
          "{\"name\": \"a\", \"executable\": \"b\"}]"),
     3, "nodes[0].services[1].name: expected a value of its own, but \"a\" stands on line 2 already"},
    {"CpidTwice",
     NODE(", \"services\": [{\"name\": \"a\", \"executable\": \"a\", \"cpid\": 16},\n"
          "{\"name\": \"b\", \"executable\": \"b\", \"cpid\": \"0x10\"}]"),
     3, "nodes[0].services[1].cpid: expected a value of its own, but \"0x10\" stands on line 2 already"},
    {"RadIdOutsideItsDomain", NODE(", \"radValues\": [{\"id\": \"0x21000\", \"value\": 1}]"), 2,
     "nodes[0].radValues[0].id: expected an index from 0 to 4095 in the lower 16 bits, got \"0x21000\""},
    {"RadIdWithoutDomain", NODE(", \"radValues\": [{\"id\": 6, \"value\": 1}]"), 2,
     "nodes[0].radValues[0].id: expected an R&D parameter id: domain 1 to 1023 in the upper 16 bits, index 0 to 4095, "
     "got 6"},
    {"TagNameWithABlank", TAGS("{\"name\": \"a b\", \"value\": 1}"), 2,
     "tags[0].name: expected a tag name of 1 to 480 characters without blanks, got \"a b\""},
    {"TagTwice", TAGS("{\"name\": \"a\", \"value\": 1},\n{\"name\": \"a\", \"value\": 2}"), 3,
     "tags[1].name: expected a value of its own, but \"a\" stands on line 2 already"},
    {"TagType", TAGS("{\"name\": \"a\", \"type\": \"int\", \"value\": 1}"), 2,
     "tags[0].type: expected \"bytes\", \"text\", \"u8\", \"u16\", \"u32\" or \"u64\", got \"int\""},
    {"TagValueTooLarge", TAGS("{\"name\": \"a\", \"type\": \"u8\",\n\"value\": 256}"), 3,
     "tags[0].value: expected a decimal or 0x... hexadecimal number of 8 bits, got 256"},
    {"TagBytes", TAGS("{\"name\": \"a\", \"type\": \"bytes\", \"value\": \"0\"}"), 2,
     "tags[0].value: expected pairs of hexadecimal digits, at most 65535 of them, got \"0\""},
    {"TagTextIsANumber", TAGS("{\"name\": \"a\", \"type\": \"text\", \"value\": 5}"), 2,
     "tags[0].value: expected a text of at most 65535 bytes, got 5"},
    {"TagValueIsAList", TAGS("{\"name\": \"a\", \"value\": []}"), 2,
     "tags[0].value: expected a number or a text, got a list"},
    {"Engine", "{\n\"engine\": \"redis://x:1\"}", 2,
     "engine: expected \"local\" or \"nats://host:port\", got \"redis://x:1\""},
};

class AWrongDescription : public testing::TestWithParam<Wrong> {};

TEST_P(AWrongDescription, IsRefusedWithItsLineAndWhatWasExpected) {
    DescriptionError error;
    EXPECT_FALSE(parseDescription(GetParam().text, "board.json", error));
    EXPECT_EQ(error.message(), "board.json:" + std::to_string(GetParam().line) + ": " + GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(Board, AWrongDescription, testing::ValuesIn(wrongDescriptions),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(FourMebibytes, AreRefusedAtOnceWhateverTheyHold) {
    DescriptionError error;
    for (const char filler : {' ', '[', '"', '{', '\0', '\xFF'}) {
        EXPECT_FALSE(parseDescription(std::string(4 << 20, filler), "board.json", error));
        EXPECT_EQ(error.message(), "board.json:1: expected at most 1048576 bytes, got 4194304");
    }
}

TEST(GarbageOfTheLargestSize, IsRefusedWithALine) {
    std::mt19937 random(1);
    std::string text(maxDescription, '\0');
    for (char& c : text) {
        c = static_cast<char>(random());
    }
    DescriptionError error;
    EXPECT_FALSE(parseDescription(text, "board.json", error));
    EXPECT_GE(error.line, 1u);
    EXPECT_THAT(error.text, StartsWith("expected "));
}

TEST(ALongText, IsCutInTheMessage) {
    DescriptionError error;
    const std::string text = "{\"engine\": \"" + std::string(5000, 'x') + "\"}";
    EXPECT_FALSE(parseDescription(text, "board.json", error));
    EXPECT_LT(error.text.size(), 200u);
    EXPECT_THAT(error.text, HasSubstr("xxx...\""));
}

TEST(AWrongText, BringsNoControlCharacterIntoTheMessage) {
    DescriptionError error;
    EXPECT_FALSE(parseDescription("{\"\\u001b[31m\": 1}", "board.json", error));
    EXPECT_EQ(error.text.find('\x1B'), std::string::npos);
    EXPECT_FALSE(parseDescription("{\"a\": \x1B[31m}", "board.json", error));
    EXPECT_EQ(error.text.find('\x1B'), std::string::npos);
}

} // namespace
