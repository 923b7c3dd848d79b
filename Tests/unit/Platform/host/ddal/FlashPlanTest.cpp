#include "host/ddal/FlashPlan.hpp"

#include "host/ddal/FlashOperations.hpp"
#include "host/ddal/FlashRecord.hpp"

#include <gtest/gtest.h>
#include <host/board/Description.hpp>

#include <csignal>

namespace {

using namespace mox::host;
using Kind = FlashPlan::Kind;

TEST(FlashPlanText, NamesAKindAndAnOperation) {
    const auto cut = parseFlashPlan("cut:17");
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->kind, Kind::cut);
    EXPECT_EQ(cut->operation, 17u);
    const auto fail = parseFlashPlan("fail:0x10");
    ASSERT_TRUE(fail);
    EXPECT_EQ(fail->kind, Kind::fail);
    EXPECT_EQ(fail->operation, 16u);
    ASSERT_TRUE(parseFlashPlan("none"));
    EXPECT_EQ(parseFlashPlan("none")->kind, Kind::none);
}

TEST(FlashPlanText, IsRefusedInAnyOtherForm) {
    for (const char* text : {"", "cut", "cut:", "cut:0", "cut:-1", "cut:x", "cut: 1", "Cut:1", "fail:1 ", "17", "nonee",
                             "cut:99999999999999999999"})
        EXPECT_FALSE(parseFlashPlan(text)) << text;
}

TEST(FlashOperations, AreCountedFromThePlan) {
    planFlash({Kind::fail, 2});
    EXPECT_EQ(beginFlashOperation(), Kind::none);
    EXPECT_EQ(beginFlashOperation(), Kind::fail);
    EXPECT_EQ(beginFlashOperation(), Kind::none) << "only that one";
    EXPECT_EQ(flashOperations(), 3u);
    planFlash({});
    EXPECT_EQ(flashOperations(), 0u);
    EXPECT_EQ(beginFlashOperation(), Kind::none);
}

TEST(FlashOperations, EndWellUnlessPlannedOtherwise) {
    EXPECT_TRUE(endFlashOperation(Kind::none));
    EXPECT_FALSE(endFlashOperation(Kind::fail));
    EXPECT_EXIT(endFlashOperation(Kind::cut), testing::KilledBySignal(SIGKILL), "");
}

TEST(FlashRecord, IsReadAsItWasWritten) {
    const std::string record = encodeFlashRecord({5000000000, 0x00ABCDEF, 258});
    EXPECT_EQ(record, "5000000000 00abcdef 258");
    const auto image = decodeFlashRecord(record);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->length, 5000000000u);
    EXPECT_EQ(image->crc, 0x00ABCDEFu);
    EXPECT_EQ(image->version, 258u);
    EXPECT_FALSE(decodeFlashRecord(""));
    EXPECT_FALSE(decodeFlashRecord("5 6"));
}

TEST(FactoryImages, AreOneForEachAreaThatIsNotBlank) {
    NodeDescription node;
    node.devices.fpgas = {{0x10001, 7, {{1, 7}, {2, std::nullopt}}, {}, false}};
    node.devices.boot = BootDevice();
    node.devices.boot->version = "0017";
    const auto images = factoryImages(node);
    ASSERT_EQ(images.size(), 3u);
    EXPECT_EQ(images[0].area, "fpga-10001-1");
    EXPECT_EQ(images[0].bytes, "MOX-SW-VERSION:7");
    EXPECT_EQ(images[0].image.version, 7u);
    EXPECT_EQ(images[0].image.length, 16u);
    EXPECT_EQ(images[1].area, "uboot-primary");
    EXPECT_EQ(images[1].image.version, 17u) << "not an octal number";
    EXPECT_EQ(images[2].area, "uboot-backup");
}

} // namespace
