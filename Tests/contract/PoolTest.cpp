#include "EuFixture.hpp"

#include <pal/AaSysCom.h>

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

using mox::testing::create;
using mox::testing::Eu;
using mox::testing::Message;

namespace {

/// So many messages of a size as the process may hold.
std::vector<Message> asManyAsPossible(std::uint32_t size) {
    std::vector<Message> messages;
    for (Message message = create(1, size); message; message = create(1, size))
        messages.push_back(std::move(message));
    return messages;
}

} // namespace

TEST(MemoryForMessages, HasALimit) {
    const std::size_t count = asManyAsPossible(65535).size();
    EXPECT_GT(count, 500U);
    EXPECT_LT(count, 10000U);
}

TEST(MemoryForMessages, ServesEverySizeAfterABurstOfAnother) {
    for (const std::uint32_t burst : {1000U, 65535U, 0U, 4096U}) {
        EXPECT_GT(asManyAsPossible(burst).size(), 500U) << burst;
        for (const std::uint32_t size : {0U, 100U, 350U, 1000U, 4000U, 16000U, 65535U})
            EXPECT_TRUE(create(1, size)) << size << " after " << burst;
    }
}

TEST(MemoryForMessages, IsNotEatenByEusThatComeAndGo) {
    for (int i = 0; i < 3000; ++i)
        Eu([] {
            const Message large = create(1, 65535);
            const Message small = create(1, 10);
            ASSERT_TRUE(large);
            ASSERT_TRUE(small);
        }).join();
}

TEST(MemoryForMessages, ComesBackWhenAnotherThreadDestroys) {
    for (int i = 0; i < 5; ++i) {
        std::vector<Message> messages = asManyAsPossible(16000);
        ASSERT_GT(messages.size(), 1000U) << i;
        Eu([&] { messages.clear(); }).join();
    }
}
