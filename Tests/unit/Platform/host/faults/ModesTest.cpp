#include "InRun.hpp"

#include <pal/AaFile.h>
#include <pal/AaSem.h>
#include <pal/AaSysTime.h>

#include <cstring>
#include <fstream>

namespace mox::testing {
namespace {

using host::faults::Action;
using host::faults::Rule;

class StuckCall : public InRun {
protected:
    void SetUp() override {
        InRun::SetUp();
        ASSERT_EQ(AaSemCreateC(&semaphore, 3), EAaSemRetVal_NoError);
    }
    void TearDown() override {
        InRun::TearDown();
        AaSemDestroy(semaphore);
    }
    int32_t value() const {
        int32_t value = -77;
        EXPECT_EQ(AaSemGetValue(semaphore, &value), EAaSemRetVal_NoError);
        return value;
    }
    TAaSem semaphore = nullptr;
};

TEST_F(StuckCall, RepeatsTheLastAnswerThatTheProcessWasLetThrough) {
    Rule rule = with(Action::stuck, "AaSemGetValue");
    rule.first = 2;
    const auto id = plan(rule);
    EXPECT_EQ(value(), 3);
    AaSemPost(semaphore);
    EXPECT_EQ(value(), 3);
    EXPECT_EQ(fault(id).fired, 1U);
    faults->clearAll();
    EXPECT_EQ(value(), 4);
}

TEST_F(StuckCall, SucceedsAndLeavesItsOutputsWhenNoAnswerWasSeen) {
    plan(with(Action::stuck, "AaSemGetValue"));
    EXPECT_EQ(value(), -77);
}

TEST_F(StuckCall, ForgetsAnswersFromBeforeItWasPlanned) {
    Rule rule = with(Action::stuck, "AaSemGetValue");
    rule.first = 2;
    plan(rule);
    EXPECT_EQ(value(), 3);
    faults->clearAll();
    plan(with(Action::stuck, "AaSemGetValue"));
    EXPECT_EQ(value(), -77);
}

TEST_F(StuckCall, RepeatsAResultThatIsAValue) {
    Rule rule = with(Action::stuck, "AaTicks64Get");
    rule.first = 2;
    plan(rule);
    const std::uint64_t first = AaTicks64Get();
    EXPECT_EQ(AaTicks64Get(), first);
    faults->clearAll();
    EXPECT_NE(AaTicks64Get(), first);
}

TEST_F(StuckCall, RepeatsAFailureWithoutItsOutputs) {
    Rule rule = with(Action::stuck, "AaSemGetValue");
    rule.first = 2;
    plan(rule);
    int32_t output = 9;
    EXPECT_EQ(AaSemGetValue(nullptr, &output), EAaSemRetVal_InvalidValue);
    int32_t another = 5;
    EXPECT_EQ(AaSemGetValue(semaphore, &another), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(another, 5);
}

TEST_F(StuckCall, IsNotCarriedOut) {
    plan(with(Action::stuck, "AaSemPost"));
    EXPECT_EQ(AaSemPost(semaphore), EAaSemRetVal_NoError);
    EXPECT_EQ(value(), 3);
}

class GarbledCall : public StuckCall {};

TEST_F(GarbledCall, IsCarriedOutAndTellsNonsense) {
    plan(with(Action::garbage, "AaSemGetValue"));
    EXPECT_NE(value(), 3);
}

TEST_F(GarbledCall, LeavesOutputsOfAFailure) {
    plan(with(Action::garbage, "AaSemGetValue"));
    int32_t output = 9;
    EXPECT_EQ(AaSemGetValue(nullptr, &output), EAaSemRetVal_InvalidValue);
    EXPECT_EQ(output, 9);
}

TEST_F(GarbledCall, KeepsItsResultAndTheEndOfATextWithinItsRoom) {
    const std::string path = runPath() + "/text";
    std::ofstream(path) << "abc\nabc\n";
    const TAaFile file = AaFileOpen(path.c_str(), "r");
    ASSERT_NE(file, nullptr);
    plan(with(Action::garbage, "AaFileReadLine"));
    char line[32];
    std::memset(line, 'x', sizeof line);
    EXPECT_EQ(AaFileReadLine(line, 16, file), 4);
    EXPECT_EQ(std::strlen(line), 15U);
    EXPECT_NE(std::string(line, 3), "abc");
    EXPECT_EQ(std::string(line + 16, 16), std::string(16, 'x'));
    plan(with(Action::garbage, "AaFileRead"));
    char bytes[8] = {};
    EXPECT_EQ(AaFileRead(bytes, 1, 4, file), 4U);
    EXPECT_NE(std::string(bytes, 4), "abc\n");
    EXPECT_EQ(std::string(bytes + 4, 4), std::string(4, '\0'));
    AaFileClose(file);
}

} // namespace
} // namespace mox::testing
