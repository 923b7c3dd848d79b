#include "Moxctl.hpp"

#include <gmock/gmock.h>

#include <ostream>

namespace mox::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* boardWithModules = R"({"nodes": [{"id": "0x1011",
  "unit": {"id": "ZUPK", "hwSwId": "0x00216003", "productionCode": "471200A.101", "serialNumber": "K1",
           "dieId": "DIE1", "dieIdQuality": "GOOD"},
  "module": {"id": "MDAAV", "productionCode": "511003A.102", "serialNumber": "M1"},
  "externalModules": [{"port": 3, "id": "MDAJ", "productionCode": "C", "serialNumber": "E3"}]}]})";

TEST(IdShow, TellsWhatServicesSeeOfUnitAndModules) {
    const SimulatedRun run(boardWithModules);
    const Json id = run.json({"id", "show"});
    EXPECT_EQ(id.at("schema"), "moxctl.identity.1");
    EXPECT_EQ(id.at("node"), "1011");
    EXPECT_EQ(id.at("unitId"), "ZUPK");
    EXPECT_EQ(id.at("hwSwId"), "0x00216003");
    EXPECT_EQ(id.at("hardwareId"), "0x0216");
    EXPECT_EQ(id.at("unitType"), 6);
    EXPECT_EQ(id.at("unitTypeName"), "EUnitType_Zup");
    EXPECT_EQ(id.at("unitVersion"), 61);
    EXPECT_EQ(id.at("unitVersionName"), "EUnitVersion_Zupk");
    EXPECT_EQ(id.at("productionCode"), "471200A.101");
    EXPECT_EQ(id.at("serialNumber"), "K1");
    EXPECT_EQ(id.at("dieId"), "DIE1");
    EXPECT_EQ(id.at("dieIdQuality"), "GOOD");
    EXPECT_EQ(id.at("wim"), Json());
    // Modules of this code are sold under another one.
    EXPECT_EQ(id.at("module"), Json({{"id", "MDAAV"},
                                     {"version", 43},
                                     {"productionCode", "511003A.102"},
                                     {"displayCode", "611002A"},
                                     {"serialNumber", "M1"}}));
    EXPECT_EQ(
        id.at("externalModules"),
        Json::array({{{"port", 3}, {"id", "MDAJ"}, {"version", 14}, {"productionCode", "C"}, {"serialNumber", "E3"}}}));
}

TEST(IdShow, IsATableForPeople) {
    const SimulatedRun run(boardWithModules);
    const CommandResult result = run.moxctl({"id", "show"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, IsEmpty());
    for (const char* line :
         {"FIELD             VALUE\n", "unit version      61 EUnitVersion_Zupk\n",
          "module            MDAAV,version 43,511003A.102,611002A,M1\n", "module on port 3  MDAJ,version 14,C,E3\n"}) {
        EXPECT_THAT(result.out, HasSubstr(line));
    }
}

TEST(IdShow, TellsWhatOnlyUnitsOfTheWimLineHave) {
    const SimulatedRun run(R"({"nodes": [{"id": "0x1011",
        "unit": {"id": "WIMA", "hwSwId": "0x00A12345", "boardType": 5}}]})");
    const Json id = run.json({"id", "show"});
    EXPECT_EQ(id.at("unitVersionName"), "EUnitVersion_Wim");
    EXPECT_EQ(id.at("wim"), Json({{"boardType", 4},
                                  {"boardTypeName", "EWimBoardType_PLUMB_4x4"},
                                  {"moduleVersion", 42},
                                  {"radioTechnology", "FDD"}}));
    EXPECT_THAT(run.moxctl({"id", "show"}).out, HasSubstr("board type        4 EWimBoardType_PLUMB_4x4\n"));
}

TEST(IdShow, TakesTheNodeThatIsNamed) {
    const SimulatedRun run;
    EXPECT_EQ(run.json({"id", "show", "--node", "1021"}).at("node"), "1021");
    EXPECT_EQ(run.moxctl({"id", "show", "--node", "1031"}).status, 3);
    EXPECT_EQ(moxctlAlone({"id", "show"}).status, 5);
}

struct DecodeRow {
    const char* text;
    const char* typeKey;
    int type;
    const char* typeName;
    Json typeRow;
    const char* versionMask;
    int version;
    const char* versionName;
    Json versionRow;
    const char* hardwareId;
};

void PrintTo(const DecodeRow& row, std::ostream* stream) {
    *stream << row.text;
}

class DecodedHwSwId : public ::testing::TestWithParam<DecodeRow> {};

TEST_P(DecodedHwSwId, NamesMasksAndMatchedRows) {
    const Json id = Json::parse(moxctlAlone({"id", "decode", GetParam().text, "--json"}).out);
    EXPECT_EQ(id.at("schema"), "moxctl.hwswid.1");
    EXPECT_EQ(id.at("unitType"), Json({{"mask", "0x0FF00000"},
                                       {"key", GetParam().typeKey},
                                       {"value", GetParam().type},
                                       {"name", GetParam().typeName},
                                       {"row", GetParam().typeRow}}));
    EXPECT_EQ(id.at("unitVersion").at("mask"), GetParam().versionMask);
    EXPECT_EQ(id.at("unitVersion").at("value"), GetParam().version);
    EXPECT_EQ(id.at("unitVersion").at("name"), GetParam().versionName);
    EXPECT_EQ(id.at("unitVersion").at("row"), GetParam().versionRow);
    EXPECT_EQ(id.at("hardwareId").at("value"), GetParam().hardwareId);
}

INSTANTIATE_TEST_SUITE_P(Moxctl, DecodedHwSwId,
                         ::testing::Values(DecodeRow{"0", "0x00000000", 26, "EUnitType_Unknown", nullptr, "0x0FFFF000",
                                                     80, "EUnitVersion_Unknown", nullptr, "0x0000"},
                                           DecodeRow{"00A1F3FF", "0x00A00000", 19, "EUnitType_Wim", 3, "0x00F00000", 51,
                                                     "EUnitVersion_Wim", 27, "0x0A1F"},
                                           DecodeRow{"0x00216000", "0x00200000", 6, "EUnitType_Zup", 0, "0x0FFFF000",
                                                     61, "EUnitVersion_Zupk", 10, "0x0216"},
                                           DecodeRow{"fe02001", "0x0FE00000", 23, "EUnitType_Lom", 5, "0x0FFFF000", 69,
                                                     "EUnitVersion_Lomb", 31, "0xFE02"},
                                           DecodeRow{"0x0050F000", "0x00500000", 9, "EUnitType_Kor", 1, "0x0FFFF000",
                                                     80, "EUnitVersion_Unknown", nullptr, "0x050F"}));

TEST(IdDecode, IsATableForPeople) {
    const CommandResult result = moxctlAlone({"id", "decode", "00505001"});
    EXPECT_EQ(result.out, "FIELD          MASK        KEY         VALUE   NAME               ROW\n"
                          "unit type      0x0FF00000  0x00500000  9       EUnitType_Kor      1\n"
                          "unit version   0x0FFFF000  0x00505000  41      EUnitVersion_Kore  18\n"
                          "hardware id    0x0FFFF000  0x00505000  0x0505  -                  -\n"
                          "minor version  0x000000FF  0x00000001  0x01    -                  -\n");
}

TEST(IdDecode, RefusesWhatIsNoIdentifier) {
    for (const char* text : {"KORE", "0x", "123456789", "-1"}) {
        const CommandResult result = moxctlAlone({"id", "decode", "--", text});
        EXPECT_EQ(result.status, 2) << text;
        EXPECT_THAT(result.err, HasSubstr(std::string("got '") + text + "'"));
    }
}

TEST(IdSet, ChangesWhatIsReadFromThenOn) {
    const SimulatedRun run(boardWithModules);
    const Words words{"id",       "set", "--unit-id",         "KORE", "--hwswid", "505001",
                      "--serial", "S",   "--production-code", "P"};
    const CommandResult result = run.moxctl(words);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.err,
                HasSubstr("services that run keep the identity that they have read until they start again"));
    const Json id = run.json({"id", "show"});
    EXPECT_EQ(id.at("unitId"), "KORE");
    EXPECT_EQ(id.at("unitVersion"), 41);
    EXPECT_EQ(id.at("serialNumber"), "S");
    EXPECT_EQ(id.at("productionCode"), "P");
    EXPECT_EQ(id.at("dieId"), "DIE1");
    const Json changed = run.json({"id", "set", "--serial", ""});
    EXPECT_EQ(changed.at("schema"), "moxctl.identity-change.1");
    EXPECT_EQ(changed.at("serialNumber"), "");
    EXPECT_EQ(changed.at("hwSwId"), "0x00505001");
}

TEST(IdSet, ChangesOneNodeOnly) {
    const SimulatedRun run;
    const std::string before = run.json({"id", "show", "--node", "1011"}).dump();
    EXPECT_EQ(run.moxctl({"id", "set", "--node", "1021", "--unit-id", "ZUPA"}).status, 0);
    EXPECT_EQ(run.json({"id", "show", "--node", "1011"}).dump(), before);
    EXPECT_EQ(run.json({"id", "show", "--node", "1021"}).at("unitId"), "ZUPA");
}

TEST(IdSet, RefusesWhatADescriptionMayNotHold) {
    const SimulatedRun run;
    const std::string before = run.json({"id", "show"}).dump();
    const auto expectRefused = [&run](const Words& options, const char* text) {
        Words words{"id", "set"};
        words.insert(words.end(), options.begin(), options.end());
        const CommandResult result = run.moxctl(words);
        EXPECT_EQ(result.status, 2) << text;
        EXPECT_THAT(result.err, HasSubstr(text));
    };
    expectRefused({}, "expected at least one of --hwswid, --unit-id, --serial, --production-code");
    expectRefused({"--unit-id", "KOREKORE"}, "unit.id: expected an id of 1 to 7 letters and digits, got \"KOREKORE\"");
    expectRefused({"--unit-id", ""}, "unit.id: expected an id of 1 to 7 letters and digits");
    expectRefused({"--serial", "12345678901234567"}, "a serial number of at most 16 characters");
    expectRefused({"--production-code", "1234567890123"}, "a production code of at most 12 characters");
    expectRefused({"--hwswid", "x"}, "expected a hexadecimal number of 32 bits, with or without 0x, got 'x'");
    expectRefused({"--serial", "ok", "--hwswid", "100000000"}, "got '100000000'");
    EXPECT_EQ(run.json({"id", "show"}).dump(), before);
}

} // namespace
} // namespace mox::testing
