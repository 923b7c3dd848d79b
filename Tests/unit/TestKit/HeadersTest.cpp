// A user's namespace may hold a "testing" of its own, also around the kit: the headers mean GoogleTest's all the same.
namespace mox::testing {}
namespace mox::testkit::testing {}
namespace mox::mock::testing {}

#include "mock/AaMemMock.hpp"
#include "mock/AaSysLogMock.hpp"
#include "mock/Faults.hpp"
#include "mock/FunctionTable.hpp"
#include "mock/Ledger.hpp"

#include <pal/AaMem.h>
#include <testkit/Board.hpp>
#include <testkit/BoardTest.hpp>
#include <testkit/CapturedLog.hpp>
#include <testkit/ChildService.hpp>
#include <testkit/InProcessService.hpp>
#include <testkit/LogLine.hpp>
#include <testkit/ManualClock.hpp>
#include <testkit/Messages.hpp>

namespace {

using mox::mock::AaMemMock;
using mox::mock::Use;

static_assert(std::is_base_of_v<::testing::Test, mox::testkit::BoardTest>);
static_assert(
    std::is_same_v<decltype(std::declval<mox::testkit::CapturedLog>().has(std::declval<mox::testkit::LogMatcher>())),
                   ::testing::AssertionResult>);

TEST(HeadersBehindAnotherTestingNamespace, MeanGoogleTest) {
    Use<::testing::StrictMock<AaMemMock>> mem;
    EXPECT_CALL(mem, AaMemMalloc(64)).WillOnce(::testing::Return(nullptr));
    EXPECT_EQ(AaMemMalloc(64), nullptr);
}

} // namespace
