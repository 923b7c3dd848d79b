#include "support/TemporaryDirectory.hpp"

#include <gmock/gmock.h>
#include <host/store/Store.hpp>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <thread>

namespace {

using mox::host::Store;
using mox::host::Table;
using testing::ElementsAre;
using testing::HasSubstr;

class AStore : public testing::Test {
protected:
    std::unique_ptr<Store> open(bool create = true) { return Store::open(directory / "store", create, why); }

    std::vector<std::string> keys(const Store& store, std::string_view prefix) const {
        std::vector<std::string> found;
        store.forEach(Table::tags, prefix, [&](std::string_view key, std::string_view) {
            found.emplace_back(key);
            return true;
        });
        return found;
    }

    mox::testing::TemporaryDirectory directory;
    std::string why;
};

/// Runs `body` in a child, which is killed when it has said that it is where it should be.
void killAfter(const std::function<void(int ready)>& body) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        body(ends[1]);
        ::pause();
    }
    char byte = 0;
    EXPECT_EQ(::read(ends[0], &byte, 1), 1);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(ends[0]);
    ::close(ends[1]);
}

void sayReady(int ready) {
    std::ignore = ::write(ready, "r", 1);
}

TEST_F(AStore, GivesBackWhatWasPut) {
    const auto sut = open();
    ASSERT_NE(sut, nullptr) << why;
    const std::string bytes("\0x\xFF", 3);
    EXPECT_TRUE(sut->put(Table::tags, "name", bytes));
    EXPECT_EQ(sut->get(Table::tags, "name"), bytes);
}

TEST_F(AStore, KeepsTablesApart) {
    const auto sut = open();
    ASSERT_TRUE(sut->put(Table::tags, "name", "a"));
    EXPECT_EQ(sut->get(Table::nodes, "name"), std::nullopt);
}

TEST_F(AStore, RemembersAfterItWasClosed) {
    ASSERT_TRUE(open()->put(Table::settings, "engine", "local"));
    const auto sut = open(false);
    ASSERT_NE(sut, nullptr) << why;
    EXPECT_EQ(sut->get(Table::settings, "engine"), "local");
}

TEST_F(AStore, IsNotMadeUnlessAskedTo) {
    EXPECT_EQ(open(false), nullptr);
    EXPECT_THAT(why, HasSubstr(directory / "store"));
}

// Another user's run is not one without a store.
TEST_F(AStore, SaysThatItIsClosed) {
    ASSERT_NE(open(), nullptr);
    ASSERT_EQ(::chmod(directory.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod((directory / "store").c_str(), 0), 0);
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        constexpr uid_t nobody = 65534; // nothing is closed to the superuser
        const bool isPossible = ::getuid() != 0 || ::setuid(nobody) == 0;
        const bool isOpen = isPossible && open(false) != nullptr;
        const std::string said = isOpen ? "open" : why;
        std::ignore = ::write(ends[1], said.data(), said.size());
        ::_exit(isPossible ? 0 : 1);
    }
    ::close(ends[1]);
    std::string said(200, '\0');
    const ssize_t length = ::read(ends[0], said.data(), said.size());
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (status != 0) {
        GTEST_SKIP() << "there is no other user in this namespace";
    }
    ASSERT_GT(length, 0);
    EXPECT_EQ(said.substr(0, static_cast<std::size_t>(length)), "store " + directory / "store" + ": Permission denied");
}

TEST_F(AStore, SaysWhyAFileIsNoStore) {
    ASSERT_NE(open(), nullptr);
    std::FILE* file = std::fopen((directory / "store/data.mdb").c_str(), "w");
    for (int i = 0; i < 10000; ++i) {
        std::fputs("no store", file);
    }
    std::fclose(file);
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(why, HasSubstr("INVALID"));
}

TEST_F(AStore, EraseTellsWhetherThereWasAnEntry) {
    const auto sut = open();
    ASSERT_TRUE(sut->put(Table::tags, "name", "a"));
    EXPECT_TRUE(sut->erase(Table::tags, "name"));
    EXPECT_FALSE(sut->erase(Table::tags, "name"));
    EXPECT_EQ(sut->get(Table::tags, "name"), std::nullopt);
}

TEST_F(AStore, ListsByPrefixInKeyOrder) {
    const auto sut = open();
    for (const char* key : {"b.2", "a", "b.1", "c", "b"}) {
        ASSERT_TRUE(sut->put(Table::tags, key, ""));
    }
    EXPECT_THAT(keys(*sut, "b"), ElementsAre("b", "b.1", "b.2"));
    EXPECT_THAT(keys(*sut, ""), ElementsAre("a", "b", "b.1", "b.2", "c"));
}

TEST_F(AStore, StopsListingWhenTold) {
    const auto sut = open();
    sut->put(Table::tags, "a", "");
    sut->put(Table::tags, "b", "");
    int calls = 0;
    sut->forEach(Table::tags, "", [&](auto, auto) { return ++calls == 0; });
    EXPECT_EQ(calls, 1);
}

TEST_F(AStore, ForgetsATransactionThatWasNotCommitted) {
    const auto sut = open();
    {
        Store::Write write(*sut);
        EXPECT_TRUE(write.put(Table::tags, "name", "a"));
        EXPECT_EQ(write.get(Table::tags, "name"), "a");
    }
    EXPECT_EQ(sut->get(Table::tags, "name"), std::nullopt);
}

TEST_F(AStore, RefusesKeysOfAWrongLengthAndLogsThem) {
    const auto sut = open();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(sut->put(Table::tags, "", "a"));
    EXPECT_FALSE(sut->put(Table::tags, std::string(Store::maxKey + 1, 'k'), "a"));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("store: put failed"));
    EXPECT_TRUE(sut->put(Table::tags, std::string(Store::maxKey, 'k'), "a"));
    EXPECT_EQ(sut->get(Table::tags, ""), std::nullopt);
}

TEST_F(AStore, StoresNothingOfATransactionInWhichOnePutFailed) {
    const auto sut = open();
    testing::internal::CaptureStderr();
    Store::Write write(*sut);
    EXPECT_TRUE(write.put(Table::tags, "good", "a"));
    EXPECT_FALSE(write.put(Table::tags, "", "a"));
    EXPECT_FALSE(write.commit());
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(sut->get(Table::tags, "good"), std::nullopt);
}

/// In a process whose files cannot grow any more.
int writeToAFullDisk(Store& store, std::uintmax_t size) {
    std::signal(SIGXFSZ, SIG_IGN);
    const auto most = static_cast<rlim_t>(size);
    const rlimit limit{most, most};
    const bool limited = ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
    const bool refused = !store.put(Table::tags, "name", std::string(1 << 20, 'x'));
    return limited && refused && store.get(Table::tags, "name") == "before" ? 0 : 1;
}

TEST_F(AStore, KeepsWhatItHeldWhenTheDiskIsFull) {
    ASSERT_TRUE(open()->put(Table::tags, "name", "before"));
    const pid_t child = ::fork();
    if (child == 0) {
        const auto sut = open();
        ::_exit(writeToAFullDisk(*sut, std::filesystem::file_size(directory / "store/data.mdb")));
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    const auto sut = open();
    EXPECT_EQ(sut->get(Table::tags, "name"), "before");
    EXPECT_TRUE(sut->put(Table::tags, "name", "after"));
}

TEST_F(AStore, IsOneEnvironmentForAllWhoOpenItInAProcess) {
    const auto first = open();
    {
        const auto second = open();
        ASSERT_NE(second, nullptr);
        second->put(Table::tags, "name", "a");
    }
    EXPECT_EQ(first->get(Table::tags, "name"), "a");
}

TEST_F(AStore, ServesManyThreadsAtOnce) {
    const auto sut = open();
    constexpr int threads = 8;
    constexpr int rounds = 200;
    std::vector<std::thread> all;
    for (int t = 0; t < threads; ++t) {
        all.emplace_back([&, t] {
            for (int i = 0; i < rounds; ++i) {
                const std::string key = std::to_string(t) + "." + std::to_string(i);
                EXPECT_TRUE(sut->put(Table::tags, key, key));
                EXPECT_EQ(sut->get(Table::tags, key), key);
            }
        });
    }
    for (auto& thread : all) {
        thread.join();
    }
    EXPECT_EQ(keys(*sut, "").size(), std::size_t{threads * rounds});
}

TEST_F(AStore, IsWrittenOnAfterAWriterWasKilled) {
    ASSERT_TRUE(open()->put(Table::tags, "name", "before"));
    killAfter([this](int ready) {
        const auto store = open();
        Store::Write write(*store);
        write.put(Table::tags, "name", "half");
        sayReady(ready);
        ::pause();
    });
    const auto sut = open();
    EXPECT_EQ(sut->get(Table::tags, "name"), "before");
    EXPECT_TRUE(sut->put(Table::tags, "name", "after"));
    EXPECT_EQ(sut->get(Table::tags, "name"), "after");
}

TEST_F(AStore, ReusesThePagesThatAKilledReaderHeldOnceAnotherProcessHasOpenedIt) {
    const std::string big(64 * 1024, 'x');
    // Somebody has it open all the time: the first one to open it would begin with an empty table of readers.
    const auto keeper = open();
    ASSERT_TRUE(keeper->put(Table::tags, "name", big));
    killAfter([this](int ready) {
        const auto store = open();
        store->forEach(Table::tags, "", [&](auto, auto) {
            sayReady(ready);
            ::pause();
            return true;
        });
    });
    killAfter([this](int ready) {
        open();
        sayReady(ready);
    });
    for (int i = 0; i < 200; ++i) {
        EXPECT_TRUE(keeper->put(Table::tags, "name", big));
    }
    EXPECT_LT(std::filesystem::file_size(directory / "store/data.mdb"), 20 * big.size());
}

} // namespace
