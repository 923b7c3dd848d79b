#include <pal/AaConfig.h>
#include <pal/AaSysCom.h>
#include <testkit/Board.hpp>
#include <testkit/BoardTest.hpp>

#include <filesystem>
#include <fstream>

namespace {

using namespace mox::testkit;

class PlainBoard : public BoardTest {
protected:
    /// Leaves marks that another test on the same run would find.
    void expectFreshAndMark() {
        for (const char* path : {"/ffs/mark", "/ram/mark", "/rpram/mark", "/tmp/mark", "/opt/mox/mark"}) {
            EXPECT_FALSE(std::filesystem::exists(path)) << path;
            std::ofstream(path) << "used";
            EXPECT_TRUE(std::filesystem::exists(path)) << path;
        }
        startPlatform();
        EXPECT_EQ(AaConfigTagIsSet("app.mark"), 0);
        EXPECT_EQ(AaConfigTagPublicSetU32("app.mark", 1), EAaConfigRetVal_NoError);
        EXPECT_EQ(AaConfigTagIsSet("app.mark"), 1);
    }
};

TEST_F(PlainBoard, IsFreshForOneTest) {
    expectFreshAndMark();
}

TEST_F(PlainBoard, IsFreshForTheNextTest) {
    expectFreshAndMark();
}

TEST_F(PlainBoard, HasOneNode) {
    startPlatform();
    EXPECT_EQ(node(), 0x1011);
    EXPECT_EQ(AaSysComGetOwnNid(), 0x1011);
    EXPECT_TRUE(std::filesystem::exists(runPath() + "/nodes/1011"));
}

class SecondOfAPair : public BoardTest {};
const BoardOf s_pair("SecondOfAPair", Board::named("echo-pair").at(0x1021));

TEST_F(SecondOfAPair, IsTheNodeThatTheTestAskedFor) {
    startPlatform();
    EXPECT_EQ(AaSysComGetOwnNid(), 0x1021);
    EXPECT_TRUE(std::filesystem::exists(runPath() + "/nodes/1011"));
}

class DescribedInTheTest : public BoardTest {};
const BoardOf s_described("DescribedInTheTest", Board::text(R"({"name": "t", "nodes": [{"id": "0x2031",
    "unit": {"id": "KORA", "hwSwId": "0x00500000", "serialNumber": "K1"}}]})"));

TEST_F(DescribedInTheTest, HasTheNodeOfTheText) {
    EXPECT_EQ(node(), 0x2031);
}

} // namespace
