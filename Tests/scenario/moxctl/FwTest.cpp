#include "Moxctl.hpp"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>

namespace mox::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A board with all three kinds of firmware; its boot loader was started from RAM.
std::string boardOf(const std::string& unit, const std::string& location = "ram") {
    return R"({"nodes": [{"id": "0x1011", "unit": {"id": ")" + unit + R"(", "hwSwId": "0x00505000"},
      "devices": {"boot": {"location": ")" +
           location + R"(", "version": "20"},
        "fpgas": [{"id": 1, "activeVersion": 7, "slots": [{"slot": 1, "version": 7}]},
                  {"id": "0x10001", "activeVersion": 10, "slots": [{"slot": 1, "version": 10}, {"slot": 2, "version": 9}]}],
        "flash": [{"id": 53, "path": "/ffs/fs1", "mode": "rw"}]}}]})";
}

std::string contentOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A run whose node has images in /ffs/run/boot.
class Fw : public ::testing::Test {
protected:
    explicit Fw(const std::string& unit = "KORA", const std::string& location = "ram")
        : m_run(boardOf(unit, location)) {
        fs::create_directories(node("/ffs/run/boot"));
    }

    /// Where the node's file lies on the workstation.
    std::string node(const std::string& path) const { return m_run.path() + "/nodes/1011/fs" + path; }

    void makeImage(const std::string& path, const std::string& version, const Words& hwSwIds = {"00505000"}) const {
        Words words{"image",   "create",    m_run.directory().write("payload", "bits of " + version),
                    path,      "--version", version,
                    "--force", "--mark"};
        for (const std::string& id : hwSwIds) {
            words.insert(words.end(), {"--hwswid", id});
        }
        ASSERT_EQ(moxctlAlone(words).status, 0);
    }
    void placeImage(const std::string& name, const std::string& version, const Words& hwSwIds = {"00505000"}) const {
        makeImage(node("/ffs/run/boot/" + name), version, hwSwIds);
    }
    void damage(const std::string& name) const {
        const std::string path = node("/ffs/run/boot/" + name);
        std::string bytes = contentOf(path);
        bytes[0] = '?';
        std::ofstream(path, std::ios::binary) << bytes;
    }

    CommandResult fw(Words words) const {
        words.insert(words.begin(), "fw");
        return m_run.moxctl(words);
    }
    /// The object on standard output, whatever the status is.
    Json object(Words words) const {
        words.emplace_back("--json");
        return Json::parse(fw(words).out);
    }
    Json explained(const char* component) const { return object({"check", component, "--explain"}).at("explanation"); }
    /// The explanation of one file.
    Json fileOf(const char* component, const std::string& name) const {
        const Json explanation = explained(component);
        for (const Json& file : explanation.at("files")) {
            if (file.at("file") == name) {
                return file;
            }
        }
        throw std::runtime_error("no file " + name);
    }
    /// An area of a device, by 'fw status'.
    Json areaOf(const std::string& name) const {
        const Json status = object({"status"});
        for (const Json& device : status.at("devices")) {
            for (const Json& area : device.at("areas")) {
                if (area.at("area") == name) {
                    return area;
                }
            }
        }
        throw std::runtime_error("no area " + name);
    }

    SimulatedRun m_run;
};

TEST_F(Fw, ChecksByTheRuleOfEachComponent) {
    const auto resultWith = [this](const char* component, const char* name, const char* version) {
        placeImage(name, version);
        return object({"check", component}).at("result").get<int>();
    };
    EXPECT_EQ(resultWith("uboot", "KOR-RN-QE.bin", "19"), 0);
    EXPECT_EQ(resultWith("uboot", "KOR-RN-QE.bin", "20"), 1);
    EXPECT_EQ(resultWith("bmu", "KOR-BMU.bin", "7"), 0);
    EXPECT_EQ(resultWith("bmu", "KOR-BMU.bin", "8"), 1);
    EXPECT_EQ(resultWith("fpga", "KOR-TIRVO2-QE.bin", "10"), 0);
    EXPECT_EQ(resultWith("fpga", "KOR-TIRVO2-QE.bin", "9"), 1);
}

TEST_F(Fw, CheckAnswersOnStandardOutput) {
    placeImage("KOR-TIRVO2-QE.bin", "11");
    const CommandResult needed = fw({"check", "fpga"});
    EXPECT_EQ(needed.status, 0) << needed.err;
    EXPECT_EQ(needed.out, "fpga: update needed, /ffs/run/boot/KOR-TIRVO2-QE.bin (1)\n");
    EXPECT_THAT(needed.err, IsEmpty());
    const Json json = object({"check", "fpga"});
    EXPECT_EQ(json.at("schema"), "moxctl.firmware-check.1");
    EXPECT_EQ(json.at("needed"), true);
    EXPECT_EQ(json.at("image"), "/ffs/run/boot/KOR-TIRVO2-QE.bin");
}

TEST_F(Fw, CheckFailsWhereTheLibraryHasNoAnswer) {
    const CommandResult none = fw({"check", "fpga"});
    EXPECT_EQ(none.status, 3);
    EXPECT_EQ(none.err, "moxctl: fpga: no image for this board, /ffs/run/boot (-7)\n");
    placeImage("KOR-TIRVO2-QE-a.bin", "11");
    placeImage("KOR-TIRVO2-QE-b.bin", "12");
    const CommandResult two = fw({"check", "fpga"});
    EXPECT_EQ(two.status, 1);
    EXPECT_THAT(
        two.err,
        HasSubstr("more than one image for this board, and nothing says which one to take, /ffs/run/boot (-8)"));
    const CommandResult nowhere = fw({"check", "fpga", "--dir", "/ffs/no/such"});
    EXPECT_EQ(nowhere.status, 1);
    EXPECT_THAT(nowhere.err, HasSubstr("the directory cannot be read, /ffs/no/such (-4)"));
    for (int i = 0; i < 9; ++i) {
        placeImage("KOR-TIRVO2-QE-" + std::to_string(i) + ".bin", "1");
    }
    EXPECT_THAT(fw({"check", "fpga"}).err,
                HasSubstr("more than 10 files have names of images for this chip, /ffs/run/boot (-5)"));
}

TEST_F(Fw, RefusesComponentsThatNoBoardHas) {
    const CommandResult wrong = fw({"check", "cpld"});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_THAT(wrong.err, HasSubstr("component: expected uboot, bmu or fpga, got 'cpld'"));
    EXPECT_EQ(moxctlAlone({"fw", "check", "fpga"}).status, 5);
    EXPECT_EQ(fw({"status", "--node", "1021"}).status, 3);
}

TEST_F(Fw, ExplainsEveryFileOfTheDirectory) {
    placeImage("KOR-TIRVO2-QE-exact.bin", "0x0B");
    placeImage("KOR-TIRVO2-QE-minor.bin", "12", {"00505077"});
    placeImage("KOR-TIRVO2-QE-other.bin", "13", {"00600000"});
    placeImage("KOR-TIRVO2-QE-crc.bin", "14");
    damage("KOR-TIRVO2-QE-crc.bin");
    placeImage("TIRVO2-QE.bin", "15");
    std::ofstream(node("/ffs/run/boot/KOR-TIRVO2-QE-none.bin")) << "no image at all";
    std::ofstream(node("/ffs/run/boot/KOR-TIRVO2-QE.bin.bak")) << "x";
    std::ofstream(node("/ffs/run/boot/readme.txt")) << "x";
    const auto expectFile = [this](const char* name, const char* kind, const Json& code, const Json& match,
                                   bool compatible, const char* why) {
        const Json file = fileOf("fpga", name);
        SCOPED_TRACE(file.dump());
        EXPECT_EQ(file.at("name"), kind);
        EXPECT_EQ(file.at("versionCode"), code);
        EXPECT_EQ(file.at("match"), match);
        EXPECT_EQ(file.at("compatible"), compatible);
        EXPECT_THAT(file.at("why").get<std::string>(), HasSubstr(why));
    };
    expectFile("KOR-TIRVO2-QE-exact.bin", "prefixed", 0, "exact", true, "lists the board's identifier");
    expectFile("KOR-TIRVO2-QE-minor.bin", "prefixed", 0, "minor", true, "lists another minor version");
    expectFile("KOR-TIRVO2-QE-other.bin", "prefixed", 1, "none", false, "does not list the board's identifier");
    expectFile("KOR-TIRVO2-QE-crc.bin", "prefixed", 0, "exact", true, "the decision does not look at the CRC");
    expectFile("KOR-TIRVO2-QE-none.bin", "prefixed", -1, nullptr, false, "points outside of the file");
    expectFile("TIRVO2-QE.bin", "passedOver", nullptr, nullptr, false, "there are names with KOR-TIRVO2-QE");
    expectFile("KOR-TIRVO2-QE.bin.bak", "noSuffix", nullptr, nullptr, false, "first '.bin' is not its end");
    expectFile("readme.txt", "noChip", nullptr, nullptr, false, "does not contain TIRVO2-QE");
    EXPECT_EQ(fileOf("fpga", "KOR-TIRVO2-QE-crc.bin").at("crcCode"), 70413);
    EXPECT_EQ(fileOf("fpga", "KOR-TIRVO2-QE-none.bin").at("trailerCode"), 70407);
    EXPECT_EQ(fileOf("fpga", "KOR-TIRVO2-QE-exact.bin").at("version"), 11);
}

TEST_F(Fw, ExplainsTheFallbackAndTheRuleOfVersions) {
    placeImage("TIRVO2-QE.bin", "9");
    const Json explanation = explained("fpga");
    EXPECT_EQ(explanation.at("searchString"), "KOR-TIRVO2-QE");
    EXPECT_EQ(explanation.at("minorAllowed"), true);
    EXPECT_EQ(explanation.at("activeVersion"), 10);
    EXPECT_EQ(explanation.at("fileVersion"), 9);
    EXPECT_EQ(explanation.at("ruleSays"), "yes");
    EXPECT_EQ(explanation.at("files").at(0).at("name"), "fallback");
    EXPECT_THAT(object({"check", "fpga", "--explain"}).at("log"),
                Contains("find_binary_multiple(): No board type files, search only chip identifier 'TIRVO2-QE'"));
    const CommandResult shown = fw({"check", "fpga", "--explain"});
    for (const char* text :
         {"component  fpga: FPGA tirvo2 0x10001, active version 10\n",
          "board      unit KORA, hardware/software identifier 0x00505000, minor difference allowed\n",
          "search     'KOR-TIRVO2-QE', or 'TIRVO2-QE' where no name contains that, in /ffs/run/boot\n",
          "TIRVO2-QE.bin  fallback  0        0    exact       9",
          "rule       updated when the file's version differs from the active one: file 9, active 10, so yes\n"}) {
        EXPECT_THAT(shown.out, HasSubstr(text));
    }
}

TEST_F(Fw, ExplainsThatMinorDifferencesAreNotAllowedForABmu) {
    placeImage("KOR-BMU.bin", "8", {"00505001"});
    const Json file = fileOf("bmu", "KOR-BMU.bin");
    EXPECT_EQ(file.at("match"), "minor");
    EXPECT_EQ(file.at("versionCode"), 1);
    EXPECT_EQ(file.at("compatible"), false);
    EXPECT_THAT(file.at("why").get<std::string>(), HasSubstr("which this component does not allow"));
    EXPECT_EQ(object({"check", "bmu"}).at("result"), -7);
}

TEST_F(Fw, UpdatesBothSlotsAndTellsTheSteps) {
    placeImage("KOR-TIRVO2-QE.bin", "11");
    const CommandResult result = fw({"update", "fpga"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "fpga: written; it runs after the next reset, /ffs/run/boot/KOR-TIRVO2-QE.bin (0)\n");
    EXPECT_EQ(result.err, "updating fpga from /ffs/run/boot/KOR-TIRVO2-QE.bin\n"
                          "  start fpga update\n"
                          "  binary '/ffs/run/boot/KOR-TIRVO2-QE.bin' is ok\n"
                          "  tirvo2 primary slot update is ok\n"
                          "  tirvo2 secondary slot update is ok\n");
    for (const char* area : {"fpga-10001-1", "fpga-10001-2"}) {
        EXPECT_EQ(areaOf(area).at("version"), 11);
        EXPECT_EQ(areaOf(area).at("whole"), true);
    }
    EXPECT_FALSE(fs::exists(node("/tmp/fpgafile")));
    EXPECT_EQ(object({"check", "fpga"}).at("result"), 1); // nothing was reset
    EXPECT_EQ(m_run.moxctl({"sim", "reset"}).status, 0);
    const Json again = object({"update", "fpga"});
    EXPECT_EQ(again.at("schema"), "moxctl.firmware-update.1");
    EXPECT_EQ(again.at("state"), "notNeeded");
    EXPECT_EQ(fw({"update", "fpga"}).status, 0);
}

TEST_F(Fw, UpdatesBootLoaderAndBmu) {
    placeImage("KOR-RN-QE.bin", "21");
    placeImage("KOR-BMU.bin", "8");
    EXPECT_EQ(object({"update", "uboot"}).at("state"), "updated");
    EXPECT_EQ(object({"update", "bmu"}).at("state"), "updated");
    EXPECT_EQ(areaOf("uboot-primary").at("version"), 21);
    EXPECT_EQ(areaOf("uboot-backup").at("version"), 20);
    EXPECT_EQ(areaOf("fpga-1-1").at("version"), 8);
}

TEST_F(Fw, TellsWhichStepFailed) {
    placeImage("KOR-TIRVO2-QE.bin", "11");
    const auto outcome = [this](const Words& fault) {
        Words words{"ddal", "fault", "add"};
        words.insert(words.end(), fault.begin(), fault.end());
        EXPECT_EQ(m_run.moxctl(words).status, 0);
        const CommandResult result = fw({"update", "fpga"});
        EXPECT_EQ(m_run.moxctl({"ddal", "fault", "clear", "--all"}).status, 0);
        return std::to_string(result.status) + " " + result.err;
    };
    EXPECT_THAT(outcome({"ddal_fpga_update_mod", "--nth", "1"}),
                HasSubstr("moxctl: fpga: the primary slot could not be written, the secondary one was not touched, "
                          "/ffs/run/boot/KOR-TIRVO2-QE.bin (-3)\n"));
    EXPECT_THAT(outcome({"ddal_fpga_update_mod", "--nth", "2"}),
                HasSubstr("moxctl: fpga: the primary slot was written, the secondary one could not be"));
    fs::create_directory(node("/tmp/fpgafile"));
    EXPECT_THAT(fw({"update", "fpga"}).err, HasSubstr("the payload could not be copied to a temporary file"));
    damage("KOR-TIRVO2-QE.bin");
    const CommandResult damaged = fw({"update", "fpga"});
    EXPECT_EQ(damaged.status, 4);
    EXPECT_THAT(damaged.err, HasSubstr("the image failed its check, nothing was written"));
    EXPECT_THAT(damaged.err, HasSubstr("  binary_crc() failed 70413\n"));
    EXPECT_EQ(object({"update", "fpga"}).at("result"), -1);
}

TEST_F(Fw, WritesTheFileThatIsNamedWhateverItsVersionIs) {
    const std::string mine = m_run.directory().path() + "/mine.bin";
    makeImage(mine, "3");
    const CommandResult result = fw({"update", "fpga", mine});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(areaOf("fpga-10001-1").at("version"), 3);
    EXPECT_EQ(fw({"update", "fpga", mine}).status, 0); // the node's directories hold nothing of the first time
    EXPECT_FALSE(fs::exists(node(mine)));
    EXPECT_TRUE(fs::exists(mine));
}

TEST_F(Fw, TakesAnImageForAnotherBoardOnlyByForce) {
    const std::string other = m_run.directory().path() + "/other.bin";
    makeImage(other, "3", {"00600000"});
    const CommandResult refused = fw({"update", "fpga", other});
    EXPECT_EQ(refused.status, 4);
    EXPECT_THAT(refused.err, HasSubstr("not taken by this board (70411; 'moxctl image verify --hwswid 0x00505000' "));
    EXPECT_EQ(areaOf("fpga-10001-1").at("version"), 10);
    EXPECT_EQ(fw({"update", "fpga", other, "--force"}).status, 0);
    EXPECT_EQ(areaOf("fpga-10001-1").at("version"), 3);
    const CommandResult missing = fw({"update", "fpga", m_run.directory().path() + "/missing.bin"});
    EXPECT_EQ(missing.status, 3);
    EXPECT_THAT(missing.err, HasSubstr("/missing.bin: no image that can be read (70406)\n"));
}

TEST_F(Fw, TakesTheNodesFileBeforeTheWorkstations) {
    const std::string name = m_run.directory().path() + "/same.bin"; // below /tmp, which nodes have of their own
    makeImage(name, "3");
    fs::create_directories(fs::path(node(name)).parent_path());
    makeImage(node(name), "4");
    EXPECT_EQ(fw({"update", "fpga", name}).status, 0);
    EXPECT_EQ(areaOf("fpga-10001-1").at("version"), 4);
    EXPECT_TRUE(fs::exists(node(name)));
}

TEST_F(Fw, TakesAnEmptyFileForOneThatAKilledProcessHasLeft) {
    const std::string mine = m_run.directory().path() + "/mine.bin";
    makeImage(mine, "3");
    fs::create_directories(fs::path(node(mine)).parent_path());
    std::ofstream(node(mine)).close();
    EXPECT_EQ(fw({"update", "fpga", mine}).status, 0);
    EXPECT_EQ(areaOf("fpga-10001-1").at("version"), 3);
}

TEST_F(Fw, LooksIntoADirectoryOfTheWorkstation) {
    const std::string directory = m_run.directory().path() + "/images";
    fs::create_directory(directory);
    makeImage(directory + "/KOR-TIRVO2-QE.bin", "11");
    EXPECT_EQ(object({"check", "fpga", "--dir", directory}).at("image"), directory + "/KOR-TIRVO2-QE.bin");
    EXPECT_FALSE(fs::exists(node(directory)));
}

TEST_F(Fw, SaysThatAnUpdateWasCut) {
    placeImage("KOR-TIRVO2-QE.bin", "11");
    ASSERT_EQ(m_run.moxctl({"flash", "plan", "cut:1"}).status, 0);
    const CommandResult cut = fw({"update", "fpga"});
    EXPECT_EQ(cut.status, 1);
    EXPECT_THAT(cut.err, HasSubstr("moxctl: the command was ended by SIGKILL on node 1011"));
    EXPECT_EQ(areaOf("fpga-10001-1").at("whole"), false);
}

TEST_F(Fw, RemarksOnACheckThatNoUpdateIsMadeWhileTheyAreSwitchedOff) {
    placeImage("KOR-TIRVO2-QE.bin", "11");
    ASSERT_EQ(fw({"disable"}).status, 0);
    const CommandResult check = fw({"check", "fpga"});
    EXPECT_EQ(check.status, 0);
    EXPECT_THAT(check.out, HasSubstr("update needed"));
    EXPECT_EQ(check.err,
              "remark: updates are switched off by /ffs/run/logs/disable-firmware-update, so none is made\n");
}

TEST_F(Fw, IsSwitchedOffAndOnByMarkers) {
    placeImage("KOR-TIRVO2-QE.bin", "11");
    EXPECT_EQ(fw({"disable"}).status, 0);
    EXPECT_TRUE(fs::exists(node("/ffs/run/logs/disable-firmware-update")));
    const CommandResult refused = fw({"update", "fpga", "--force"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("switched off by /ffs/run/logs/disable-firmware-update"));
    EXPECT_EQ(object({"update", "fpga"}).at("state"), "disabled");
    EXPECT_EQ(fw({"disable", "--unit-type", "KOR"}).status, 0);
    EXPECT_TRUE(fs::exists(node("/ffs/run/logs/disable-firmware-update-kor")));
    EXPECT_EQ(object({"status"}).at("disabledBy"),
              Json({"/ffs/run/logs/disable-firmware-update", "/ffs/run/logs/disable-firmware-update-kor"}));
    EXPECT_THAT(fw({"disable", "--unit-type", "ZUP"}).err, HasSubstr("this board is of type 'KOR'"));
    const Json enabled = object({"enable"});
    EXPECT_EQ(enabled.at("disabled"), false);
    EXPECT_EQ(enabled.at("changed").size(), 2U);
    EXPECT_TRUE(fs::exists(node("/ffs/run/logs/disable-firmware-update-zup")));
    const CommandResult nothing = fw({"enable"});
    EXPECT_EQ(nothing.status, 0);
    EXPECT_THAT(nothing.err, HasSubstr("nothing to do"));
    EXPECT_EQ(fw({"update", "fpga"}).status, 0);
    EXPECT_EQ(fw({"disable", "--unit-type", "KORA"}).status, 2);
}

TEST_F(Fw, ForcesTheNextUpdatesByAMarkerThatIsUsedUp) {
    placeImage("KOR-TIRVO2-QE.bin", "10");
    EXPECT_EQ(object({"update", "fpga"}).at("state"), "notNeeded");
    EXPECT_THAT(fw({"force", "fpga", "0"}).err, HasSubstr(": no update of fpga is forced\n"));
    EXPECT_THAT(fw({"force", "fpga", "1"}).err, HasSubstr(": the next update of fpga is made whatever"));
    const CommandResult twice = fw({"force", "fpga", "2"});
    EXPECT_EQ(twice.status, 0);
    EXPECT_THAT(twice.err, HasSubstr(": the next 2 updates of fpga are made whatever"));
    EXPECT_EQ(contentOf(node("/ffs/run/logs/force-firmware-update-kor-fpga")), "2");
    fw({"check", "fpga", "--explain"});
    EXPECT_EQ(object({"status"}).at("forcedLeft").at("fpga"), 2);
    const Json forced = object({"update", "fpga"});
    EXPECT_EQ(forced.at("state"), "updated");
    EXPECT_EQ(forced.at("forced"), true);
    EXPECT_EQ(object({"status"}).at("forcedLeft").at("fpga"), 1);
    EXPECT_EQ(explained("fpga").at("markers").at("forcedLeft"), 1);
    EXPECT_EQ(fw({"force", "fpga", "-1"}).status, 2);
    EXPECT_THAT(fw({"force", "fpga", "many"}).err, HasSubstr("number of updates: expected a decimal"));
}

TEST_F(Fw, ShowsVersionsAreasMarkersAndTemporaryFiles) {
    const Json status = object({"status"});
    EXPECT_EQ(status.at("schema"), "moxctl.firmware.1");
    EXPECT_EQ(status.at("unitId"), "KORA");
    EXPECT_EQ(status.at("devices").at(0).at("startedFrom"), "uImage");
    EXPECT_EQ(status.at("devices").at(0).at("active"), "20");
    EXPECT_EQ(status.at("devices").at(1).at("component"), "bmu");
    EXPECT_EQ(status.at("devices").at(2).at("component"), "fpga");
    EXPECT_EQ(status.at("devices").at(2).at("active"), 10);
    EXPECT_EQ(status.at("forcedLeft"), Json({{"uboot", nullptr}, {"bmu", nullptr}, {"fpga", nullptr}}));
    EXPECT_EQ(status.at("temporary").at("uboot"), "/tmp/u-boot.uim");
    m_run.moxctl({"tag", "set", "sys.hwapi.supervisor", "1", "--type", "u32"});
    EXPECT_EQ(object({"status"}).at("temporary").at("uboot"), "/ram/u-boot.uim");
    const CommandResult shown = fw({"status"});
    EXPECT_THAT(shown.out, HasSubstr("DEVICE   COMPONENT  ACTIVE  AREA           WHOLE  VERSION"));
    EXPECT_THAT(shown.out, HasSubstr("0x10001  fpga       10      fpga-10001-2   yes    9"));
    EXPECT_THAT(shown.out, HasSubstr("boot loader started from: uImage\nupdates: not switched off\n"));
}

TEST_F(Fw, ShowsAnAreaThatIsHalfWritten) {
    placeImage("KOR-TIRVO2-QE.bin", "11");
    CommandSetting setting = m_run.setting();
    setting.environment.emplace_back("MOX_FLASH_PLAN", "fail:2");
    EXPECT_EQ(runCommand(moxctlWords({"fw", "update", "fpga"}), setting).status, 1);
    EXPECT_EQ(areaOf("fpga-10001-1").at("whole"), false);
    EXPECT_EQ(areaOf("fpga-10001-1").at("version"), Json());
    EXPECT_EQ(areaOf("fpga-10001-2").at("whole"), true);
}

TEST_F(Fw, LetsAnUpdateThatHasBegunComeToItsEnd) {
    placeImage("KOR-TIRVO2-QE.bin", "11");
    EXPECT_EQ(m_run.moxctl({"ddal", "fault", "add", "ddal_fpga_update_mod", "--delay", "300ms"}).status, 0);
    RunningCommand sut(moxctlWords({"fw", "update", "fpga"}), m_run.setting());
    sut.waitForErr("is ok\n");
    sut.signal(SIGINT);
    const CommandResult result = sut.finish();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(areaOf("fpga-10001-2").at("version"), 11);
}

class FwOnAnotherUnit : public Fw {
protected:
    FwOnAnotherUnit() : Fw("JEPA", "primary") {}
};

TEST_F(FwOnAnotherUnit, SaysThatThereIsNoFpga) {
    EXPECT_THAT(fw({"check", "fpga"}).err, HasSubstr("fpga: this board has no such device (-10)"));
    EXPECT_EQ(explained("fpga").at("files"), Json());
    EXPECT_THAT(fw({"check", "fpga", "--explain"}).out, HasSubstr("no files\n"));
}

TEST_F(FwOnAnotherUnit, AsksForABootLoaderFromFlashOnlyByForce) {
    placeImage("JEP-RN-QE.bin", "20");
    EXPECT_EQ(object({"check", "uboot"}).at("result"), 0);
    EXPECT_THAT(fw({"check", "uboot", "--explain"}).out, HasSubstr("start      not from RAM: without force no update"));
    EXPECT_EQ(object({"check", "uboot", "--force"}).at("result"), 1);
    EXPECT_EQ(object({"update", "uboot"}).at("state"), "notNeeded");
    EXPECT_EQ(object({"update", "uboot", "--force"}).at("state"), "updated");
    placeImage("JEP-RN-QE.bin", "19");
    EXPECT_EQ(object({"update", "uboot", "--force"}).at("state"), "notNeeded");
}

} // namespace
} // namespace mox::testing
