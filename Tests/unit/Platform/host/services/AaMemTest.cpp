#include "InRun.hpp"

#include <pal/AaMem.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <thread>

namespace mox::testing {
namespace {

class AaMem : public InRun {};

TEST_F(AaMem, GivesBlocksThatAreAlignedForEveryType) {
    for (const std::size_t size : {0UL, 1UL, 7UL, 16UL, 4096UL, 5000UL, 3UL << 20}) {
        void* block = AaMemMalloc(size);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U);
        std::memset(block, 0xA5, size);
        AaMemUnRef(block);
    }
    EXPECT_TRUE(lines().empty());
}

TEST_F(AaMem, AnswersNullForMoreThanThereIs) {
    EXPECT_EQ(AaMemMalloc(SIZE_MAX - 8), nullptr);
}

TEST_F(AaMem, ReleasesABlockWithItsLastReference) {
    auto* block = static_cast<char*>(AaMemMalloc(4));
    AaMemRef(block);
    AaMemUnRef(block);
    std::memcpy(block, "abc", 4);
    EXPECT_STREQ(block, "abc");
    AaMemUnRef(block);
    EXPECT_TRUE(lines().empty());
}

TEST_F(AaMem, IgnoresNull) {
    AaMemRef(nullptr);
    AaMemUnRef(nullptr);
    EXPECT_TRUE(lines().empty());
}

TEST_F(AaMem, ReportsASecondReleaseAndGoesOn) {
    for (const std::size_t size : {8UL, 100000UL}) {
        forgetLines();
        void* block = AaMemMalloc(size);
        AaMemUnRef(block);
        AaMemUnRef(block);
        EXPECT_TRUE(logged(4, "AaMemUnRef: block")) << size;
        EXPECT_TRUE(logged(4, "has been released already")) << size;
        AaMemRef(block);
        EXPECT_TRUE(logged(4, "AaMemRef: block")) << size;
    }
}

TEST_F(AaMem, ReportsWhatIsNoBlock) {
    alignas(std::max_align_t) char memory[256] = {};
    AaMemUnRef(memory + 128);
    EXPECT_TRUE(logged(4, "is no block of AaMemMalloc"));
}

TEST_F(AaMem, CountsReferencesOfManyThreads) {
    void* block = AaMemMalloc(16);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([block] {
            for (int i = 0; i < 10000; ++i) {
                AaMemRef(block);
                AaMemUnRef(block);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(lines().empty());
    AaMemUnRef(block);
    AaMemUnRef(block);
    EXPECT_TRUE(logged(4, "has been released already"));
}

} // namespace
} // namespace mox::testing
