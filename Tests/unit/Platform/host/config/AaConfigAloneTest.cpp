// The configuration of a process that is in no run.
#include "support/TemporaryDirectory.hpp"

#include <gmock/gmock.h>
#include <host/bus/Process.hpp>
#include <host/pal/AaConfig.hpp>
#include <host/pal/AaMem.hpp>
#include <host/run/Lifecycle.hpp>

#include <fstream>
#include <future>
#include <mutex>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
namespace host = mox::host;

std::mutex g_mutex;
std::vector<std::string> g_changes;

void note(const char* which, const char* tag, const void* value, unsigned int length) {
    const std::lock_guard lock(g_mutex);
    g_changes.push_back(std::string(which) + " " + tag + " " + std::string(static_cast<const char*>(value), length));
}

void first(const char* tag, const void* value, unsigned int length) {
    note("first", tag, value, length);
}
void second(const char* tag, const void* value, unsigned int length) {
    note("second", tag, value, length);
}

class TheConfiguration : public testing::Test {
protected:
    TheConfiguration() {
        ::unsetenv("MOX_RUN");
        testing::internal::CaptureStderr();
        EXPECT_EQ(host::AaConfigEarlyStartup(), 0);
        testing::internal::GetCapturedStderr();
        g_changes.clear();
    }
    ~TheConfiguration() override { host::endPlatform(); }

    /// What the call-backs have been told until now.
    static std::vector<std::string> changes() {
        std::promise<void> done;
        host::runOnNoticeThread([&] { done.set_value(); });
        done.get_future().wait();
        const std::lock_guard lock(g_mutex);
        return std::exchange(g_changes, {});
    }

    static std::string textOf(const char* tag) {
        char* text = nullptr;
        unsigned int length = 1;
        const int result = host::AaConfigTagGetString(tag, &text, &length);
        std::string found = result == 0 ? std::string(text, length) : "result " + std::to_string(result);
        EXPECT_EQ(text == nullptr, result != 0);
        host::AaMemUnRef(text);
        return found;
    }

    static int publish(const char* tag, const std::string& value) {
        return host::AaConfigTagPublicSet(tag, value.data(), static_cast<unsigned int>(value.size()));
    }
};

TEST(TheConfigurationBeforeItsStart, IgnoresRadValues) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process of its own, which has not started anything
    EXPECT_EXIT(std::_Exit(host::AaConfigRadSetValue(0x20000, 1) == EAaConfigRetVal_NoError &&
                                   host::AaConfigRadGetValue(0x20000) == 0
                               ? 7
                               : 8),
                testing::ExitedWithCode(7), "");
}

TEST_F(TheConfiguration, StartsTwiceWithoutHarm) {
    EXPECT_EQ(host::AaConfigEarlyStartup(), 0);
}

TEST_F(TheConfiguration, AnswersNotStartedAfterItsEnd) {
    host::endPlatform();
    uint32_t value = 0;
    EXPECT_EQ(host::AaConfigTagGetU32("a", &value), EAaConfigRetVal_NotStarted);
    EXPECT_EQ(host::AaConfigTagSetString("a", "x"), EAaConfigRetVal_NotStarted);
    EXPECT_EQ(publish("a", "x"), EAaConfigRetVal_NotStarted);
    EXPECT_EQ(host::AaConfigTagRegister("a", first), EAaConfigRetVal_NotStarted);
    EXPECT_EQ(host::AaConfigTagReadFile("/nowhere"), EAaConfigRetVal_NotStarted);
    EXPECT_EQ(host::AaConfigTagIsSet("a"), 0);
}

TEST_F(TheConfiguration, BeginsAnewAfterItsEnd) {
    publish("a", "x");
    host::endPlatform();
    testing::internal::CaptureStderr();
    EXPECT_EQ(host::AaConfigEarlyStartup(), 0);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(host::AaConfigTagIsSet("a"), 0);
}

TEST_F(TheConfiguration, GivesATerminatedCopyOfATag) {
    ASSERT_EQ(publish("a", std::string("x\0y", 3)), 0);
    void* data = nullptr;
    unsigned int size = 0;
    ASSERT_EQ(host::AaConfigTagGet("a", &data, &size), 0);
    EXPECT_EQ(std::string(static_cast<char*>(data), size + 1), std::string("x\0y\0", 4));
    host::AaMemUnRef(data);
}

TEST_F(TheConfiguration, GivesTheOwnTagBeforeThePublicOne) {
    publish("a", "public");
    EXPECT_EQ(textOf("a"), "public");
    EXPECT_EQ(host::AaConfigTagSetString("a", "own"), 0);
    EXPECT_EQ(textOf("a"), "own");
}

TEST_F(TheConfiguration, ClearsTheOutputsOfAReadThatFails) {
    void* data = this;
    unsigned int size = 9;
    EXPECT_EQ(host::AaConfigTagGet("unknown", &data, &size), EAaConfigRetVal_NotFound);
    EXPECT_THAT(data, IsNull());
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(textOf("unknown"), "result 1");
}

TEST_F(TheConfiguration, GivesADefaultForATagThatDoesNotExist) {
    const unsigned char board = 16;
    void* data = nullptr;
    unsigned int size = 0;
    ASSERT_EQ(host::AaConfigTagGetDefault("sys.unit.ownboard", &data, &size, &board, 1), 0);
    EXPECT_EQ(size, 1u);
    EXPECT_EQ(*static_cast<unsigned char*>(data), 16);
    host::AaMemUnRef(data);
    publish("sys.unit.ownboard", "\x20");
    ASSERT_EQ(host::AaConfigTagGetDefault("sys.unit.ownboard", &data, &size, &board, 1), 0);
    EXPECT_EQ(*static_cast<unsigned char*>(data), 32);
    host::AaMemUnRef(data);
}

TEST_F(TheConfiguration, ReadsNumbersOfTheirOwnLengthOnly) {
    uint32_t wide = 7;
    uint16_t narrow = 7;
    ASSERT_EQ(host::AaConfigTagPublicSetU32("a", 0x12345678), 0);
    EXPECT_EQ(host::AaConfigTagGetU16("a", &narrow), EAaConfigRetVal_WrongSize);
    EXPECT_EQ(narrow, 7);
    EXPECT_EQ(host::AaConfigTagGetU32("a", &wide), 0);
    EXPECT_EQ(wide, 0x12345678u);
    publish("b", "12");
    EXPECT_EQ(host::AaConfigTagGetU16("b", &narrow), 0);
    EXPECT_EQ(host::AaConfigTagGetU32("b", &wide), EAaConfigRetVal_WrongSize);
    EXPECT_EQ(host::AaConfigTagGetU32("c", &wide), EAaConfigRetVal_NotFound);
    EXPECT_EQ(wide, 0x12345678u);
}

TEST_F(TheConfiguration, RefusesNamesAndPointersThatAreNone) {
    const std::string longest(480, 'n');
    const std::string tooLong(481, 'n');
    void* data = nullptr;
    unsigned int size = 0;
    EXPECT_EQ(publish(longest.c_str(), "x"), 0);
    EXPECT_EQ(publish(tooLong.c_str(), "x"), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(publish("", "x"), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigTagPublicSet(nullptr, "x", 1), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigTagPublicSet("a", nullptr, 1), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigTagPublicSet("a", nullptr, 0), 0);
    EXPECT_EQ(publish("a", std::string(65535, 'x')), 0);
    EXPECT_EQ(publish("a", std::string(65536, 'x')), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigTagGet(nullptr, &data, &size), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigTagGet("a", nullptr, &size), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigTagGet("a", &data, nullptr), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigTagGetU32("a", nullptr), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigTagSetString("a", nullptr), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigTagRegister("a", nullptr), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigSubscribeService("a", static_cast<EAaConfigSvcRegScope>(3), first),
              EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigTagReadFile(nullptr), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigTagIsSet(nullptr), 0);
}

TEST_F(TheConfiguration, TellsEveryPublicationAlsoOfAnUnchangedValue) {
    ASSERT_EQ(host::AaConfigTagRegister("a", first), 0);
    publish("a", "1");
    publish("a", "1");
    publish("b", "1");
    host::AaConfigTagSetString("a", "own");
    publish("a", "2");
    EXPECT_THAT(changes(), ElementsAre("first a 1", "first a 1", "first a 2"));
}

TEST_F(TheConfiguration, TellsCallBacksInTheOrderOfTheirRegistration) {
    host::AaConfigTagRegister("a", second);
    host::AaConfigTagRegister("a", first);
    EXPECT_EQ(host::AaConfigTagRegister("a", second), 0);
    publish("a", "1");
    EXPECT_THAT(changes(), ElementsAre("second a 1", "first a 1"));
}

TEST_F(TheConfiguration, TellsNobodyAfterHeUnregistered) {
    host::AaConfigTagRegister("a", first);
    EXPECT_EQ(host::AaConfigTagUnregister("a", first), 0);
    EXPECT_EQ(host::AaConfigTagUnregister("a", first), EAaConfigRetVal_NotFound);
    publish("a", "1");
    EXPECT_THAT(changes(), IsEmpty());
}

void endsTheOther(const char* tag, const void* value, unsigned int length) {
    host::AaConfigTagUnregister("a", second);
    note("ender", tag, value, length);
}

TEST_F(TheConfiguration, TellsNobodyWhomAnEarlierCallBackHasUnregistered) {
    host::AaConfigTagRegister("a", endsTheOther);
    host::AaConfigTagRegister("a", second);
    publish("a", "1");
    EXPECT_THAT(changes(), ElementsAre("ender a 1"));
}

void publishesOn(const char* tag, const void* value, unsigned int length) {
    note("relay", tag, value, length);
    host::AaConfigTagPublicSet("b", value, length);
}

TEST_F(TheConfiguration, LetsACallBackPublish) {
    host::AaConfigTagRegister("a", publishesOn);
    host::AaConfigTagRegister("b", first);
    publish("a", "1");
    auto told = changes();
    const auto more = changes(); // what was published meanwhile may come after what changes() waits for
    told.insert(told.end(), more.begin(), more.end());
    EXPECT_THAT(told, ElementsAre("relay a 1", "first b 1"));
}

TEST_F(TheConfiguration, TellsAServiceOfItsTagsOnly) {
    ASSERT_EQ(host::AaConfigSubscribeService("app.hwapi", EAaConfigSvcRegScope_System, first), 0);
    publish("app.hwapi", "1");
    publish("app.hwapi.x.y", "2");
    publish("app.hwapis", "3");
    publish("app", "4");
    host::AaConfigTagSetString("app.hwapi.x", "5");
    EXPECT_THAT(changes(), ElementsAre("first app.hwapi 1", "first app.hwapi.x.y 2"));
    EXPECT_EQ(host::AaConfigUnSubscribeService("app.hwapi", EAaConfigSvcRegScope_Node, first),
              EAaConfigRetVal_NotFound);
    EXPECT_EQ(host::AaConfigUnSubscribeService("app.hwapi", EAaConfigSvcRegScope_System, first), 0);
    publish("app.hwapi", "6");
    EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(TheConfiguration, TellsTheScopeOfTheProcessOfOwnTagsToo) {
    ASSERT_EQ(host::AaConfigSubscribeService("app", EAaConfigSvcRegScope_Process, first), 0);
    host::AaConfigTagSetString("app.x", "own");
    publish("app.x", "public");
    EXPECT_THAT(changes(), ElementsAre("first app.x own", "first app.x public"));
}

TEST_F(TheConfiguration, TakesAllTagsOfAFileOrNone) {
    const mox::testing::TemporaryDirectory directory;
    std::ofstream(directory / "good.xml")
        << "<tags><tag name=\"f.size\" type=\"u32\">51200</tag><tag name=\"f.text\">x</tag></tags>";
    std::ofstream(directory / "bad.xml")
        << "<tags><tag name=\"f.text\">y</tag><tag name=\"f.size\" type=\"u8\">999</tag></tags>";
    uint32_t size = 0;
    EXPECT_EQ(host::AaConfigTagReadFile((directory / "good.xml").c_str()), 0);
    EXPECT_EQ(host::AaConfigTagGetU32("f.size", &size), 0);
    EXPECT_EQ(size, 51200u);
    testing::internal::CaptureStderr();
    EXPECT_EQ(host::AaConfigTagReadFile((directory / "bad.xml").c_str()), EAaConfigRetVal_FileError);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("bad.xml:1: f.size: expected"));
    EXPECT_EQ(textOf("f.text"), "x");
    EXPECT_EQ(host::AaConfigTagReadFile((directory / "missing.xml").c_str()), EAaConfigRetVal_FileError);
}

TEST_F(TheConfiguration, AnswersForRadValuesOutOfRange) {
    EXPECT_EQ(host::AaConfigRadSetValue(0x0000FFFF, 1), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigRadSetValue(0x04000000, 1), EAaConfigRetVal_OutOfResources);
    EXPECT_EQ(host::AaConfigRadSetValue(0x00021000, 1), EAaConfigRetVal_OutOfResources);
    EXPECT_EQ(host::AaConfigRadGetValue(0x04000000), 0u);
    EXPECT_EQ(host::AaConfigRadRegisterDomain(0, "x", nullptr), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigRadRegisterDomain(0x10000, "x", nullptr), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigRadRegisterDomain(7, nullptr, nullptr), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigRadRegisterDomain(1024, "x", nullptr), EAaConfigRetVal_OutOfResources);
}

void fillDomain() {
    EXPECT_EQ(host::AaConfigRadSetMaxTagCount(9, 0x90002), 0);
    EXPECT_EQ(host::AaConfigRadSetDefault(0x90000, "ONE", 1), 0);
    EXPECT_EQ(host::AaConfigRadSetDefault(0x90001, "TWO", 2), 0);
    EXPECT_EQ(host::AaConfigRadSetDefault(0x90002, "BEYOND", 3), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigRadSetDefault(0x90001, nullptr, 3), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigRadSetDefault(0xA0001, "OTHER", 3), EAaConfigRetVal_NotFound);
    EXPECT_EQ(host::AaConfigRadSetMaxTagCount(9, 0xA0002), EAaConfigRetVal_InvalidValue);
    EXPECT_EQ(host::AaConfigRadSetMaxTagCount(10, 0xA0002), EAaConfigRetVal_NotFound);
    EXPECT_EQ(host::AaConfigRadSetMaxTagCount(9, 0x91001), EAaConfigRetVal_OutOfResources);
}

TEST_F(TheConfiguration, FillsADomainByItsInitialiser) {
    EXPECT_EQ(host::AaConfigRadSetValue(0x90001, 7), 0);
    EXPECT_EQ(host::AaConfigRadRegisterDomain(9, "NINE", fillDomain), 0);
    EXPECT_EQ(host::AaConfigRadGetValue(0x90000), 1u);
    EXPECT_EQ(host::AaConfigRadGetValue(0x90001), 7u);
    EXPECT_EQ(host::AaConfigRadGetValue(0x90002), 0u);
    EXPECT_EQ(host::AaConfigRadSetValue(0x900EC, 5), 0) << "also what nobody named can be set";
    EXPECT_EQ(host::AaConfigRadGetValue(0x900EC), 5u);
}

} // namespace
