#include <pal/AaShell.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysMb.h>
#include <pal/AaSysTime.h>
#include <pal/AaSysTimer.h>
#include <pal/AaTrbl.h>

#include <gtest/gtest.h>
#include <host/pal/Troubleshooting.hpp>
#include <host/run/Run.hpp>
#include <host/run/RunTable.hpp>

namespace mox::host {
namespace {

TEST(ProcessAlone, BelongsToNoRun) {
    ASSERT_EQ(Run::current(), nullptr);
}

TEST(ProcessAlone, HasTablesOfItsOwn) {
    const RunTable sut(Table::devices);
    sut.put("a/1", "one");
    sut.put("a/2", "two");
    sut.put("b/1", "three");
    sut.put("a/2", "TWO");
    EXPECT_EQ(sut.get("a/1"), "one");
    EXPECT_EQ(sut.get("none"), std::nullopt);
    const std::vector<std::pair<std::string, std::string>> expected = {{"a/1", "one"}, {"a/2", "TWO"}};
    EXPECT_EQ(sut.entries("a/"), expected);
    EXPECT_EQ(RunTable(Table::tags).get("a/1"), std::nullopt);
    EXPECT_TRUE(sut.erase("a/1"));
    EXPECT_FALSE(sut.erase("a/1"));
    EXPECT_EQ(sut.get("a/1"), std::nullopt);
}

TEST(ProcessAlone, SetsATimeOfItsOwn) {
    const SAaTime wanted{2030, 6, 15, 12, 0, 0, 0};
    ASSERT_EQ(AaUtcTimeSet(&wanted), 0);
    SAaTime time{};
    ASSERT_EQ(AaUtcTimeGet(&time), 0);
    EXPECT_EQ(time.year, 2030);
    EXPECT_EQ(time.month, 6);
    EXPECT_EQ(time.day, 15);
    EXPECT_EQ(time.hour, 12);
}

TEST(ProcessAlone, HasNoEnvironmentThatTimersMailboxesOrFilesCouldUse) {
    std::uint32_t id = 0;
    void* message = AaSysComMsgCreate(1, 0, 1);
    EXPECT_EQ(AaSysTimermCreate(&id, 1, 0, message), EAaSysTimerRetVal_NotStarted);
    EXPECT_EQ(AaSysComMsgDestroy(&message), 0);
    EXPECT_EQ(AaSysMbSubscribe(1, 1, 0, 15), EAaSysMbRetVal_NotStarted);
    EXPECT_EQ(AaShellApplicationStartup(), EAaShellRetVal_NotStarted);
    const auto store = [](const char*, const std::uint32_t*, std::uint32_t) { return EAaTrblCbStatus_Ok; };
    EXPECT_EQ(AaTrblFileRegister("x", "/x", EAaTrblFilePriority_High, 0, nullptr, store, nullptr, nullptr),
              EAaTrblRetVal_NotStarted);
}

TEST(ProcessAlone, HasNoPlaceToCollectTo) {
    const Collection result = collectTroubleshooting("");
    EXPECT_TRUE(result.files.empty());
    EXPECT_EQ(result.leftOut.size(), 1U);
}

} // namespace
} // namespace mox::host
