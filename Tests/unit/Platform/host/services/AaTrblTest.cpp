#include "InRun.hpp"

#include <pal/AaSysLog.h>
#include <pal/AaTrbl.h>

#include <gmock/gmock.h>
#include <host/bus/Process.hpp>
#include <host/pal/Shell.hpp>
#include <host/pal/Troubleshooting.hpp>

#include <future>
#include <thread>

namespace mox::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string& calls() {
    static std::string text;
    return text;
}

EAaTrblCbStatus prepare(const char*, void*) {
    calls() += "prepare ";
    return EAaTrblCbStatus_Ok;
}

EAaTrblCbStatus store(const char* fileName, const std::uint32_t* opaque, std::uint32_t maxBytes) {
    calls() += "store(" + std::to_string(maxBytes) + ") ";
    std::ofstream(fileName) << "content " << (opaque ? *opaque : 0);
    return EAaTrblCbStatus_Ok;
}

EAaTrblCbStatus discard(const char* fileName, void*, std::uint32_t) {
    calls() += "discard ";
    return std::filesystem::remove(fileName) ? EAaTrblCbStatus_Ok : EAaTrblCbStatus_Failed;
}

EAaTrblCbStatus refusePrepare(const char*, void*) {
    return EAaTrblCbStatus_Failed;
}
EAaTrblCbStatus refuseStore(const char*, const std::uint32_t*, std::uint32_t) {
    return EAaTrblCbStatus_InvalidValue;
}
EAaTrblCbStatus storeNothing(const char*, const std::uint32_t*, std::uint32_t) {
    return EAaTrblCbStatus_Ok;
}
EAaTrblCbStatus refuseDiscard(const char*, void*, std::uint32_t) {
    return EAaTrblCbStatus_Failed;
}

constexpr auto high = EAaTrblFilePriority_High;
constexpr auto normal = EAaTrblFilePriority_Normal;
constexpr auto low = EAaTrblFilePriority_Low;

class AaTrbl : public InRun {
protected:
    void SetUp() override {
        InRun::SetUp();
        calls().clear();
    }
    std::string source(const std::string& name) const { return m_directory / name; }
    int add(const char* name, EAaTrblFilePriority priority = normal, std::uint32_t maxBytes = 0,
            TAaTrblPrepareFileCb prepareCb = prepare, TAaTrblStoreFileCb storeCb = store,
            TAaTrblDeleteFileCb discardCb = discard) {
        return AaTrblFileRegister(name, source(name).c_str(), priority, maxBytes, prepareCb, storeCb, discardCb,
                                  &m_word);
    }
    host::Collection collect() const { return host::collectTroubleshooting(m_directory / "out"); }
    static std::vector<std::string> registered(const host::Collection& collection) {
        std::vector<std::string> names;
        for (const std::string& name : collection.files)
            if (name.rfind("log-", 0) != 0)
                names.push_back(name);
        return names;
    }
    TemporaryDirectory m_directory;
    std::uint32_t m_word = 4711;
};

TEST_F(AaTrbl, PreparesStoresTakesAndDiscardsAFile) {
    ASSERT_EQ(add("state.txt", normal, 100), 0);
    const host::Collection result = collect();
    EXPECT_EQ(result.directory, m_directory / "out");
    EXPECT_THAT(registered(result), ElementsAre("state.txt"));
    EXPECT_THAT(result.leftOut, IsEmpty());
    EXPECT_EQ(contentOf(m_directory / "out/state.txt"), "content 4711");
    EXPECT_FALSE(std::filesystem::exists(source("state.txt")));
    EXPECT_EQ(calls(), "prepare store(100) discard ");
}

TEST_F(AaTrbl, CollectsInTheOrderOfPriorityThenOfRegistration) {
    ASSERT_EQ(add("low", low), 0);
    ASSERT_EQ(add("normal1", normal), 0);
    ASSERT_EQ(add("high", high), 0);
    ASSERT_EQ(add("normal2", normal), 0);
    EXPECT_THAT(registered(collect()), ElementsAre("high", "normal1", "normal2", "low"));
}

TEST_F(AaTrbl, GoesOnPastFilesThatCannotBeTaken) {
    ASSERT_EQ(add("unprepared", high, 0, refusePrepare), 0);
    ASSERT_EQ(add("unstored", high, 0, prepare, refuseStore), 0);
    ASSERT_EQ(add("absent", high, 0, prepare, storeNothing, nullptr), 0);
    ASSERT_EQ(add("toolong", high, 5), 0);
    ASSERT_EQ(add("good", low), 0);
    const host::Collection result = collect();
    EXPECT_THAT(registered(result), ElementsAre("good"));
    EXPECT_THAT(result.leftOut, ElementsAre("unprepared: not prepared", "unstored: not stored",
                                            "absent: No such file or directory", "toolong: longer than 5 bytes"));
    EXPECT_TRUE(logged(3, "troubleshooting file unstored: not stored"));
    EXPECT_FALSE(std::filesystem::exists(m_directory / "out/toolong"));
}

TEST_F(AaTrbl, KeepsAFileThatNobodyDiscardsAndLogsAFailedDiscard) {
    ASSERT_EQ(add("kept", normal, 0, nullptr, store, nullptr), 0);
    ASSERT_EQ(add("stuck", normal, 0, nullptr, store, refuseDiscard), 0);
    EXPECT_THAT(registered(collect()), ElementsAre("kept", "stuck"));
    EXPECT_TRUE(std::filesystem::exists(source("kept")));
    EXPECT_TRUE(logged(3, "stuck was not removed"));
}

TEST_F(AaTrbl, AddsTheBuffersOfTheLogDomains) {
    ASSERT_NE(AaSysLogRegisterDomainBuffer(30, "Trouble", 1000, 1000), EAaSysLogRetVal_InvalidValue);
    ASSERT_EQ(AaSysLogSetLogDomain(30), 0);
    AaSysLogPrintE(EAaSysLogSeverityLevel_Error, 1, "remember me");
    const host::Collection result = collect();
    EXPECT_THAT(result.files, Contains("log-Trouble-startup.log"));
    EXPECT_THAT(contentOf(m_directory / "out/log-Trouble-runtime.log"), HasSubstr("Trouble: remember me\n"));
}

TEST_F(AaTrbl, CollectsForAToolIntoTheRun) {
    ASSERT_EQ(add("a/b"), 0);
    std::filesystem::create_directories(m_directory / "a");
    const auto answer = host::shell::ask(host::ownProcess(), {"@collect"}, 10'000);
    ASSERT_TRUE(answer.has_value());
    EXPECT_EQ(answer->status, 0);
    EXPECT_THAT(answer->text, HasSubstr(nodePath() + "/troubleshooting/"));
    EXPECT_THAT(answer->text, HasSubstr("+ a_b\n"));
    const std::string directory = answer->text.substr(0, answer->text.find('\n'));
    EXPECT_EQ(contentOf(directory + "/a_b"), "content 4711");
}

TEST_F(AaTrbl, TellsAToolWhatIsMissing) {
    ASSERT_EQ(add("gone", normal, 0, prepare, refuseStore), 0);
    const auto answer = host::shell::ask(host::ownProcess(), {"@collect", m_directory / "out"}, 10'000);
    ASSERT_TRUE(answer.has_value());
    EXPECT_EQ(answer->status, 1);
    EXPECT_THAT(answer->text, HasSubstr("- gone: not stored\n"));
}

TEST_F(AaTrbl, SaysWhenTheDirectoryCannotBeMade) {
    std::ofstream(m_directory / "out") << "a file";
    ASSERT_EQ(add("state.txt"), 0);
    const host::Collection result = collect();
    EXPECT_THAT(result.files, IsEmpty());
    EXPECT_EQ(result.leftOut.size(), 1U);
    EXPECT_EQ(calls(), "");
}

TEST_F(AaTrbl, ForgetsAnEndedRegistration) {
    ASSERT_EQ(add("state.txt"), 0);
    EXPECT_EQ(AaTrblFileUnregister("state.txt"), 0);
    EXPECT_EQ(AaTrblFileUnregister("state.txt"), EAaTrblRetVal_NotFound);
    EXPECT_THAT(registered(collect()), IsEmpty());
    EXPECT_EQ(calls(), "");
}

std::promise<void>& begun() {
    static std::promise<void> promise;
    return promise;
}
std::promise<void>& mayReturn() {
    static std::promise<void> promise;
    return promise;
}

TEST_F(AaTrbl, EndsARegistrationOnlyWhenItsCallBackHasReturned) {
    const auto slow = [](const char*, const std::uint32_t*, std::uint32_t) {
        begun().set_value();
        mayReturn().get_future().wait();
        calls() += "returned ";
        return EAaTrblCbStatus_Failed;
    };
    ASSERT_EQ(add("slow", normal, 0, nullptr, slow, nullptr), 0);
    std::thread collector([this] { collect(); });
    begun().get_future().wait();
    std::thread ender([] {
        EXPECT_EQ(AaTrblFileUnregister("slow"), 0);
        EXPECT_EQ(calls(), "returned ");
    });
    mayReturn().set_value();
    ender.join();
    collector.join();
}

TEST_F(AaTrbl, ForgetsAllRegistrationsAtShutDown) {
    ASSERT_EQ(add("state.txt"), 0);
    AaStartupEeShutdown();
    EXPECT_EQ(AaTrblFileUnregister("state.txt"), EAaTrblRetVal_NotFound);
}

TEST_F(AaTrbl, RefusesWhatCannotBeRegistered) {
    const auto tryWith = [](const char* name, const char* file, int priority, TAaTrblStoreFileCb storeCb) {
        return AaTrblFileRegister(name, file, static_cast<EAaTrblFilePriority>(priority), 0, nullptr, storeCb, nullptr,
                                  nullptr);
    };
    EXPECT_EQ(tryWith(nullptr, "/x", 1, store), EAaTrblRetVal_InvalidValue);
    EXPECT_EQ(tryWith("", "/x", 1, store), EAaTrblRetVal_InvalidValue);
    EXPECT_EQ(tryWith("x", nullptr, 1, store), EAaTrblRetVal_InvalidValue);
    EXPECT_EQ(tryWith("x", "/x", 3, store), EAaTrblRetVal_InvalidValue);
    EXPECT_EQ(tryWith("x", "/x", 1, nullptr), EAaTrblRetVal_InvalidValue);
    EXPECT_EQ(tryWith("x", "/x", 1, store), 0);
    EXPECT_EQ(tryWith("x", "/y", 0, store), EAaTrblRetVal_AlreadyExists);
    EXPECT_EQ(AaTrblFileUnregister(nullptr), EAaTrblRetVal_InvalidValue);
    host::setEnvironmentState(host::EnvironmentState::ended);
    EXPECT_EQ(tryWith("z", "/x", 1, store), EAaTrblRetVal_NotStarted);
}

} // namespace
} // namespace mox::testing
