#include "support/LogLines.hpp"

#include <mox/CHwapiException.hpp>
#include <mox/HwapiAssert.hpp>

#include <boost/assert.hpp>
#include <gtest/gtest.h>

#include <string>

#ifndef BOOST_ENABLE_ASSERT_HANDLER
#error "whoever links the library must have boost's assertions routed into it"
#endif

namespace ps::hwapi::common {
namespace {

using mox::testing::LogLine;
using mox::testing::LogLines;
using ::testing::ElementsAre;

TEST(HwapiAssertFail, LogsOneErrorLineAndThrows) {
    LogLines lines;
    EXPECT_THROW(hwapiAssertFail("a == b", "Common/src/Worker", 42, "void f()"), AssertionException);
    EXPECT_THAT(lines.taken(),
                ElementsAre(LogLine{
                    4, 131302, "[assertion error] Assertion \"a == b\" failed in void f() (Common/src/Worker:42)"}));
    EXPECT_THAT(lines.formats(), ElementsAre("[assertion error] Assertion \"%s\" failed in %s (%s:%u)"));
}

TEST(HwapiAssertFail, PrintsTheLineWithoutSign) {
    LogLines lines;
    EXPECT_THROW(hwapiAssertFail("e", "f", 0xFFFFFFFFU, "g"), AssertionException);
    EXPECT_THAT(lines.texts(), ElementsAre("[assertion error] Assertion \"e\" failed in g (f:4294967295)"));
}

TEST(HwapiAssertFail, IsNotCaughtAsAFailureOfTheFamily) {
    LogLines lines;
    const auto caughtAsFamily = [] {
        try {
            hwapiAssertFail("e", "f", 1, "g");
        } catch (const CHwapiException&) {
            return true;
        } catch (const std::exception&) {
            return false;
        }
    };
    EXPECT_FALSE(caughtAsFamily());
}

TEST(BoostAssertionFailed, EndsInTheSameLineAndException) {
    LogLines lines;
    EXPECT_THROW(boost::assertion_failed("p != 0", "void g()", "ptr.hpp", 7), AssertionException);
    EXPECT_THAT(
        lines.taken(),
        ElementsAre(LogLine{4, 131302, "[assertion error] Assertion \"p != 0\" failed in void g() (ptr.hpp:7)"}));
}

TEST(BoostAssertionFailedMsg, DropsTheMessage) {
    LogLines lines;
    EXPECT_THROW(boost::assertion_failed_msg("p != 0", "must not be null", "void g()", "ptr.hpp", 7),
                 AssertionException);
    EXPECT_THAT(
        lines.taken(),
        ElementsAre(LogLine{4, 131302, "[assertion error] Assertion \"p != 0\" failed in void g() (ptr.hpp:7)"}));
}

TEST(BoostAssertMacro, EndsInTheLibrary) {
    LogLines lines;
    const bool holds = false;
    EXPECT_THROW(BOOST_ASSERT(holds), AssertionException);
    EXPECT_THROW(BOOST_ASSERT_MSG(holds, "text"), AssertionException);
    ASSERT_EQ(lines.taken().size(), 2U);
    EXPECT_THAT(lines.texts(),
                ::testing::Each(::testing::StartsWith("[assertion error] Assertion \"holds\" failed in ")));
    EXPECT_THAT(lines.texts(), ::testing::Each(::testing::Not(::testing::HasSubstr("text"))));
}

} // namespace
} // namespace ps::hwapi::common
