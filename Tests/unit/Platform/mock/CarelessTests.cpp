#include "mock/Faults.hpp"

#include <pal/AaMem.h>
#include <pal/AaPro.h>
#include <pal/AaSem.h>

#include <gtest/gtest.h>

#include <future>

namespace {

TEST(Careless, KeepsASemaphore) {
    TAaSem sem = nullptr;
    ASSERT_EQ(AaSemCreateC(&sem, 1), EAaSemRetVal_NoError);
}

TEST(Careless, KeepsAMemoryBlock) {
    ASSERT_NE(AaMemMalloc(8), nullptr);
}

TEST(Careless, KeepsAnExecutionUnit) {
    static std::promise<void> never;
    const auto wait = [](void*) -> void* {
        never.get_future().wait();
        return nullptr;
    };
    ASSERT_EQ(AaProEuCreateAndStartJoinable(nullptr, "Endless", wait, 4096, 5, nullptr, 0, 0), EAaProEuRetVal_NoError);
}

TEST(Careless, PlansAFaultForLater) {
    mox::mock::fail("AaSemCreateC").fromCall(1).with(EAaSemRetVal_OutOfResources);
}

TEST(CarelessNoMore, HasNoFaultOfTheTestBefore) {
    TAaSem sem = nullptr;
    EXPECT_EQ(AaSemCreateC(&sem, 1), EAaSemRetVal_NoError);
    EXPECT_EQ(AaSemDestroy(sem), EAaSemRetVal_NoError);
}

} // namespace
