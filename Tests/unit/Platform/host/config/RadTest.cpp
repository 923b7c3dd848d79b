#include "support/TemporaryDirectory.hpp"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <host/pal/Rad.hpp>
#include <host/pal/RadNames.hpp>
#include <host/store/Store.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <thread>

namespace {

using namespace mox::host;
using rad::State;
using rad::Words;
using testing::ElementsAre;
using testing::HasSubstr;

class RadWords : public testing::Test {
protected:
    std::unique_ptr<Words> open() {
        const int fd = ::open(directory.path().c_str(), O_PATH | O_DIRECTORY);
        auto words = Words::open(fd, why);
        ::close(fd);
        return words;
    }

    mox::testing::TemporaryDirectory directory;
    std::string why;
};

TEST_F(RadWords, AreUnsetAtFirst) {
    const auto sut = open();
    ASSERT_NE(sut, nullptr) << why;
    EXPECT_EQ(sut->read(0x20006).value, 0u);
    EXPECT_EQ(sut->read(0x20006).state, State::unset);
}

TEST_F(RadWords, TakeADefaultAndTheNextDefaultToo) {
    const auto sut = open();
    EXPECT_TRUE(sut->setDefault(0x20006, 7));
    EXPECT_TRUE(sut->setDefault(0x20006, 8));
    EXPECT_EQ(sut->read(0x20006).value, 8u);
    EXPECT_EQ(sut->read(0x20006).state, State::byDefault);
}

TEST_F(RadWords, KeepWhatWasSetAgainstADefault) {
    open()->set(0x20006, 1);
    const auto sut = open();
    sut->setDefault(0x20006, 0);
    EXPECT_EQ(sut->read(0x20006).value, 1u);
    EXPECT_EQ(sut->read(0x20006).state, State::set);
}

TEST_F(RadWords, KeepAZeroThatWasSetAgainstADefault) {
    const auto sut = open();
    sut->set(0x20006, 0);
    sut->setDefault(0x20006, 9);
    EXPECT_EQ(sut->read(0x20006).value, 0u);
    EXPECT_EQ(sut->read(0x20006).state, State::set);
}

TEST_F(RadWords, HaveTheirDefaultAgainAfterAReset) {
    const auto sut = open();
    sut->set(0x20006, 5);
    EXPECT_TRUE(sut->reset(0x20006, 3));
    EXPECT_EQ(sut->read(0x20006).value, 3u);
    sut->setDefault(0x20006, 4);
    EXPECT_EQ(sut->read(0x20006).value, 4u);
}

TEST_F(RadWords, AreSharedByAllWhoMapThem) {
    const auto one = open();
    const auto other = open();
    one->set(0x3FF0FFF, 0xFFFFFFFF);
    EXPECT_EQ(other->read(0x3FF0FFF).value, 0xFFFFFFFFu);
}

class IdsOutOfRange : public RadWords, public testing::WithParamInterface<std::uint32_t> {};

TEST_P(IdsOutOfRange, AreRefused) {
    const auto sut = open();
    EXPECT_FALSE(sut->set(GetParam(), 1));
    EXPECT_FALSE(sut->setDefault(GetParam(), 1));
    EXPECT_FALSE(sut->reset(GetParam(), 1));
    EXPECT_EQ(sut->read(GetParam()).value, 0u);
}

INSTANTIATE_TEST_SUITE_P(Rad, IdsOutOfRange, testing::Values(0, 1, 0xFFFF, 0x21000, 0x2FFFF, 0x4000000, 0xFFFFFFFF));

TEST_F(RadWords, OccupyLittleOfTheDisk) {
    open()->set(0x20006, 1);
    struct stat status {};
    ASSERT_EQ(::stat((directory / "rad").c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 32 << 20);
    EXPECT_LT(status.st_blocks * 512, 1 << 20);
}

TEST_F(RadWords, ListThoseThatWereTouchedByNumber) {
    const auto sut = open();
    sut->set(0x220000, 1);
    sut->setDefault(0x20006, 0);
    sut->set(0x3FF0FFF, 0);
    std::vector<std::uint32_t> ids;
    sut->forEachTouched([&](std::uint32_t id) { ids.push_back(id); });
    EXPECT_THAT(ids, ElementsAre(0x20006u, 0x220000u, 0x3FF0FFFu));
}

TEST_F(RadWords, ThatNobodySharesListTheirsToo) {
    const auto sut = Words::alone(why);
    sut->set(0x20006, 1);
    std::vector<std::uint32_t> ids;
    sut->forEachTouched([&](std::uint32_t id) { ids.push_back(id); });
    EXPECT_THAT(ids, ElementsAre(0x20006u));
}

TEST_F(RadWords, AreNotMappedFromAFileOfAnotherKind) {
    std::ofstream(directory / "rad") << "something else";
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(why, HasSubstr("another layout"));
}

TEST_F(RadWords, KeepASetValueWhileDefaultsComeFromAnotherThread) {
    const auto sut = open();
    for (std::uint32_t round = 1; round < 2000; ++round) {
        std::thread setter([&] { sut->set(0x20000 + round, round); });
        sut->setDefault(0x20000 + round, 0);
        setter.join();
        ASSERT_EQ(sut->read(0x20000 + round).value, round);
    }
}

class RadNames : public testing::Test {
protected:
    RadNames() { store = Store::open(directory / "store", true, why); }
    mox::testing::TemporaryDirectory directory;
    std::string why;
    std::unique_ptr<Store> store;
    const rad::Domain domain{"HWA", 262, {{0x20038, {0, "EAC"}}, {0x200B0, {1, "EAC"}}, {0x20086, {0, "Allow it"}}}};
};

TEST_F(RadNames, AreRememberedByNode) {
    ASSERT_TRUE(rad::rememberDomain(*store, 0x1011, 2, domain));
    const auto found = rad::rememberedDomains(*store, 0x1011);
    ASSERT_EQ(found.count(2), 1u);
    EXPECT_EQ(found.at(2).name, "HWA");
    EXPECT_EQ(found.at(2).room, 262u);
    ASSERT_EQ(found.at(2).parameters.size(), 3u);
    EXPECT_EQ(found.at(2).parameters.at(0x200B0).name, "EAC");
    EXPECT_EQ(found.at(2).parameters.at(0x200B0).defaultValue, 1u);
    EXPECT_TRUE(rad::rememberedDomains(*store, 0x1021).empty());
}

TEST_F(RadNames, AreNotWrittenAgainWhenTheStoreHoldsThem) {
    ASSERT_TRUE(rad::rememberDomain(*store, 0x1011, 2, domain));
    // Were it to write, it would wait for this transaction for ever.
    Store::Write busy(*store);
    std::thread again([&] { EXPECT_TRUE(rad::rememberDomain(*store, 0x1011, 2, domain)); });
    again.join();
}

TEST_F(RadNames, FollowANewBuild) {
    ASSERT_TRUE(rad::rememberDomain(*store, 0x1011, 2, domain));
    ASSERT_TRUE(rad::rememberDomain(*store, 0x1011, 2, {"HWA", 300, {{0x20038, {4, "EAC2"}}}}));
    const auto found = rad::rememberedDomains(*store, 0x1011).at(2);
    EXPECT_EQ(found.room, 300u);
    EXPECT_EQ(found.parameters.at(0x20038).name, "EAC2");
    EXPECT_EQ(found.parameters.at(0x20086).name, "Allow it");
}

} // namespace
