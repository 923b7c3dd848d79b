#include <mox/Service.hpp>
#include <mox/kit/MemberDelegate.hpp>
#include <pal/AaSysCom.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <vector>

namespace {
/// Allocations of this thread since it began.
thread_local std::uint64_t allocations = 0;
} // namespace

// Not inlined: the compiler would see malloc() in one place and the operator's counterpart in another, and warn.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    void* const memory = std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    ++allocations;
    return std::malloc(size);
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace ps::hwapi::common {
namespace {

constexpr std::uint16_t countMessage = 0x0601;
constexpr std::uint16_t lastMessage = 0x0602;
constexpr unsigned int messages = 1000;

/// Sends itself messages and looks at what the loop allocates from one to the next.
class CountingService : public Service {
public:
    CountingService() : Service("Count", 0, ERadHwapi_LED, ERadHwapiState_LedState) {}

    void Init() override {
        AddMsgDelegate(mox::kit::makeDelegate(countMessage, *this, &CountingService::onCount));
        AddMsgDelegate(mox::kit::makeDelegate(lastMessage, *this, &CountingService::onLast));
        for (unsigned int i = 0; i < messages; ++i) {
            AaSysComMsgSend(AaSysComMsgCreate(countMessage, 16, GetSicad()));
        }
        AaSysComMsgSend(AaSysComMsgCreate(lastMessage, 0, GetSicad()));
    }

    unsigned int handled = 0;
    std::uint64_t allocatedBetween = 0;

private:
    void onCount(void* /*msg*/) {
        // The first pass may still set things up.
        if (handled++ > 0) {
            allocatedBetween += allocations - m_before;
        }
        m_before = allocations;
    }
    void onLast(void* /*msg*/) { Terminate(); }

    std::uint64_t m_before = 0;
};

TEST(ServiceLoop, HandlesMessagesWithoutAnAllocation) {
    CountingService sut;
    char program[] = "MOXCountExe";
    char* argv[] = {program, nullptr};
    ASSERT_TRUE(sut.Startup(1, argv));
    sut.Shutdown();
    EXPECT_EQ(sut.handled, messages);
    EXPECT_EQ(sut.allocatedBetween, 0U);
    const std::uint64_t before = allocations;
    const std::vector<int> counted(1);
    EXPECT_EQ(allocations, before + 1) << "allocations are not counted";
}

} // namespace
} // namespace ps::hwapi::common
