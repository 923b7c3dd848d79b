#include "support/Files.hpp"
#include "support/TemporaryDirectory.hpp"

#include <gmock/gmock.h>
#include <host/faults/Plan.hpp>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <fstream>
#include <set>
#include <thread>

namespace mox::host::faults {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

Rule ruleFor(const std::string& function) {
    Rule rule;
    rule.function = function;
    return rule;
}

class PlanOfARun : public ::testing::Test {
protected:
    std::unique_ptr<Plan> open() {
        auto plan = Plan::open(directory.path(), why);
        EXPECT_NE(plan, nullptr) << why;
        return plan;
    }
    std::uint32_t add(Plan& plan, const Rule& rule) { return plan.add(rule, why).value_or(0); }

    std::string bytes() const { return mox::testing::contentOf(directory / "faults"); }
    /// The bits of the planned functions, as calls see them.
    std::uint32_t bits() const {
        std::uint32_t word = 0;
        std::memcpy(&word, bytes().data() + 64, sizeof word);
        return word;
    }

    mox::testing::TemporaryDirectory directory;
    std::string why;
};

TEST_F(PlanOfARun, WithdrawsABitWithTheLastFaultThatNeedsIt) {
    const auto plan = open();
    ASSERT_NE(functionBit("AaSemWait"), functionBit("AaSemPost"));
    const auto first = add(*plan, ruleFor("AaSemWait"));
    const auto second = add(*plan, ruleFor("AaSemWait"));
    add(*plan, ruleFor("AaSemPost"));
    EXPECT_EQ(bits(), functionBit("AaSemWait") | functionBit("AaSemPost"));
    plan->clear(first);
    EXPECT_EQ(bits(), functionBit("AaSemWait") | functionBit("AaSemPost"));
    plan->clear(second);
    EXPECT_EQ(bits(), functionBit("AaSemPost"));
    plan->clearAll();
    EXPECT_EQ(bits(), 0U);
}

TEST_F(PlanOfARun, KeepsEverythingThatARuleSays) {
    Rule rule = ruleFor("ddal_fpga_update_mod");
    rule.service = "Firm";
    rule.node = 0x1011;
    rule.action = Action::garbage;
    rule.result = UINT64_MAX - 4;
    rule.delayUs = 250'000;
    rule.first = 3;
    rule.times = 7;
    EXPECT_EQ(add(*open(), rule), 1U);
    const auto list = open()->list();
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].id, 1U);
    EXPECT_EQ(list[0].rule.function, rule.function);
    EXPECT_EQ(list[0].rule.service, rule.service);
    EXPECT_EQ(list[0].rule.node, rule.node);
    EXPECT_EQ(list[0].rule.action, rule.action);
    EXPECT_EQ(list[0].rule.result, rule.result);
    EXPECT_EQ(list[0].rule.delayUs, rule.delayUs);
    EXPECT_EQ(list[0].rule.first, rule.first);
    EXPECT_EQ(list[0].rule.times, rule.times);
    EXPECT_EQ(list[0].seen, 0U);
    EXPECT_EQ(list[0].fired, 0U);
}

TEST_F(PlanOfARun, LiesInTheFileAsItsFormatSays) {
    Rule rule = ruleFor("ddal_fpga_update_mod");
    rule.result = static_cast<std::uint64_t>(std::int64_t{-5});
    add(*open(), rule);
    const std::string file = bytes();
    ASSERT_EQ(file.size(), 36864U);
    EXPECT_EQ(file.substr(0, 8), "MOXFLT1\x01");
    EXPECT_EQ(file.substr(4096, 16), std::string("\x01\0\0\0\0\0\0\0\x01\0\0\0\0\0\0\0", 16));
    EXPECT_EQ(file.substr(4096 + 24, 8), "\xFB\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
    EXPECT_EQ(file.substr(4096 + 72, 21), std::string("ddal_fpga_update_mod\0", 21));
    EXPECT_EQ(bits(), 1U << 29U);
}

TEST_F(PlanOfARun, NeverGivesAnIdTwice) {
    const auto plan = open();
    EXPECT_EQ(add(*plan, ruleFor("a")), 1U);
    EXPECT_EQ(add(*plan, ruleFor("b")), 2U);
    EXPECT_TRUE(plan->clear(1));
    EXPECT_FALSE(plan->clear(1));
    EXPECT_FALSE(plan->clear(0));
    EXPECT_EQ(add(*plan, ruleFor("c")), 3U);
    const auto list = plan->list();
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0].rule.function, "b");
    EXPECT_EQ(list[1].rule.function, "c");
    EXPECT_EQ(plan->clearAll(), 2U);
    EXPECT_EQ(plan->clearAll(), 0U);
    EXPECT_THAT(plan->list(), IsEmpty());
    EXPECT_EQ(add(*plan, ruleFor("d")), 4U);
}

TEST_F(PlanOfARun, RefusesMoreThanItHasRoomFor) {
    const auto plan = open();
    for (std::size_t i = 0; i < slotCount; ++i)
        ASSERT_NE(add(*plan, ruleFor("a")), 0U) << i;
    EXPECT_FALSE(plan->add(ruleFor("a"), why));
    EXPECT_THAT(why, HasSubstr("128 planned faults already"));
    EXPECT_TRUE(plan->clear(5));
    EXPECT_TRUE(plan->add(ruleFor("a"), why));
}

TEST_F(PlanOfARun, RefusesNamesThatItCannotHold) {
    const auto plan = open();
    EXPECT_FALSE(plan->add(ruleFor(""), why));
    EXPECT_FALSE(plan->add(ruleFor(std::string(maxName + 1, 'a')), why));
    EXPECT_FALSE(plan->add(ruleFor(std::string("a\0b", 3)), why));
    EXPECT_TRUE(plan->add(ruleFor(std::string(maxName, 'a')), why));
    EXPECT_EQ(plan->list().at(0).rule.function, std::string(maxName, 'a'));
}

TEST_F(PlanOfARun, RefusesAFileOfAnotherLayout) {
    std::ofstream(directory / "faults") << "MOXFLT2 and so on";
    EXPECT_EQ(Plan::open(directory.path(), why), nullptr);
    EXPECT_THAT(why, HasSubstr("another layout"));
}

TEST_F(PlanOfARun, NamesWhatKeepsItFromBeingOpened) {
    EXPECT_EQ(Plan::open(directory / "none", why), nullptr);
    EXPECT_THAT(why, HasSubstr("/none/faults: No such file"));
}

TEST_F(PlanOfARun, TakesFaultsFromManyAtOnce) {
    constexpr unsigned each = 2000;
    constexpr unsigned kept = 10;
    std::vector<std::thread> threads;
    std::atomic<int> ready{0};
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            std::string reason;
            const auto plan = Plan::open(directory.path(), reason);
            for (++ready; ready < 4;)
                std::this_thread::yield();
            for (unsigned n = 0; n < each; ++n) {
                const auto id = plan->add(ruleFor("a"), reason);
                if (n >= kept && id)
                    plan->clear(*id);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    std::set<std::uint32_t> ids;
    for (const PlannedFault& fault : open()->list())
        ids.insert(fault.id);
    EXPECT_EQ(ids.size(), 4 * kept);
    EXPECT_EQ(add(*open(), ruleFor("b")), 4 * each + 1);
}

TEST_F(PlanOfARun, IsNotHeldByAProcessThatWasKilled) {
    const auto plan = open();
    const pid_t child = fork();
    if (child == 0) {
        std::string reason;
        const auto own = Plan::open(directory.path(), reason);
        for (;;) {
            const auto id = own->add(ruleFor("a"), reason);
            own->clear(id.value_or(0));
        }
    }
    while (plan->list().empty())
        std::this_thread::yield();
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    plan->clearAll();
    EXPECT_NE(add(*plan, ruleFor("b")), 0U);
    ASSERT_EQ(plan->list().size(), 1U);
    EXPECT_EQ(plan->list()[0].rule.function, "b");
}

} // namespace
} // namespace mox::host::faults
