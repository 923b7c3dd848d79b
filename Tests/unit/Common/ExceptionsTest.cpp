#include <mox/CHwapiException.hpp>
#include <mox/HwapiAssert.hpp>
#include <mox/InvalidParameterException.hpp>
#include <mox/MsgHandlingException.hpp>

#include <gtest/gtest.h>

#include <exception>
#include <memory>
#include <type_traits>

namespace ps::hwapi::common {
namespace {

constexpr const char* file = "Common/src/Worker";

TEST(CHwapiException, HoldsItsFourItems) {
    const CHwapiException sut("kind", "what happened", file, 4711);
    EXPECT_STREQ(sut.what(), "kind");
    EXPECT_EQ(sut.getDescription(), "what happened");
    EXPECT_EQ(sut.getFile(), file);
    EXPECT_EQ(sut.getLine(), 4711U);
}

TEST(CHwapiException, OwnsItsTexts) {
    char buffer[] = "Common/src/Worker";
    const CHwapiException sut("kind", "description", buffer, 1);
    buffer[0] = 'X';
    EXPECT_EQ(sut.getFile(), file);
}

TEST(CHwapiException, TakesAMissingFileForAnEmptyOne) {
    const CHwapiException sut("kind", "description", nullptr, 1);
    EXPECT_EQ(sut.getFile(), "");
}

TEST(CHwapiException, CopyCarriesAllFourItemsBeyondTheOriginal) {
    auto original = std::make_unique<CHwapiException>("kind", "description", file, 7);
    const CHwapiException sut(*original);
    original.reset();
    EXPECT_STREQ(sut.what(), "kind");
    EXPECT_EQ(sut.getDescription(), "description");
    EXPECT_EQ(sut.getFile(), file);
    EXPECT_EQ(sut.getLine(), 7U);
}

TEST(CHwapiException, IsCaughtAsStandardExceptionWithItsKind) {
    try {
        throw CHwapiException("kind", "description", file, 7);
    } catch (const std::exception& caught) {
        EXPECT_STREQ(caught.what(), "kind");
    }
}

template <typename Exception>
void expectFixedKind(const char* kind) {
    try {
        throw Exception("x", file, 12);
    } catch (const CHwapiException& caught) {
        EXPECT_STREQ(caught.what(), kind);
        EXPECT_EQ(caught.getDescription(), "x");
        EXPECT_EQ(caught.getFile(), file);
        EXPECT_EQ(caught.getLine(), 12U);
    }
}

template <typename Exception>
void expectFurtherTextEmptyAtFirstAndCopied() {
    Exception original("x", file, 12);
    EXPECT_EQ(original.getDetail(), "");
    original.setDetail("id 7");
    const Exception sut(original);
    EXPECT_EQ(sut.getDetail(), "id 7");
    EXPECT_EQ(sut.getDescription(), "x");
    EXPECT_STREQ(sut.what(), original.what());
}

TEST(InvalidParameterException, SuppliesItsKindAndTakesTheRest) {
    expectFixedKind<InvalidParameterException>("Invalid parameter");
}

TEST(InvalidParameterException, HoldsAFurtherTextThatIsEmptyAtFirst) {
    expectFurtherTextEmptyAtFirstAndCopied<InvalidParameterException>();
}

TEST(MsgHandlingException, SuppliesItsKindAndTakesTheRest) {
    expectFixedKind<MsgHandlingException>("Message handling error");
}

TEST(MsgHandlingException, HoldsAFurtherTextThatIsEmptyAtFirst) {
    expectFurtherTextEmptyAtFirstAndCopied<MsgHandlingException>();
}

TEST(AssertionException, StandsOutsideTheFamily) {
    EXPECT_TRUE((std::is_base_of_v<std::exception, AssertionException>));
    EXPECT_FALSE((std::is_base_of_v<CHwapiException, AssertionException>));
}

TEST(AssertionException, HasTheStandardLibrarysText) {
    EXPECT_STREQ(AssertionException().what(), std::exception().what());
}

} // namespace
} // namespace ps::hwapi::common
