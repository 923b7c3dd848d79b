#include "abi/slots.hpp"

#include <mox/ArgParser.hpp>
#include <mox/CHwapiException.hpp>
#include <mox/InvalidParameterException.hpp>
#include <mox/MsgHandlingException.hpp>
#include <mox/pal/SysLog.hpp>

#include <gtest/gtest.h>

#include <cstdarg>
#include <string>
#include <type_traits>

namespace ps::hwapi::common {
namespace {

using mox::abi::callSlot;
using mox::abi::firstSlotAfterDestructors;

static_assert(std::has_virtual_destructor_v<ArgParserBase> && std::is_abstract_v<ArgParserBase>);
static_assert(std::has_virtual_destructor_v<pal::AbstractSysLog> && std::is_abstract_v<pal::AbstractSysLog>);
static_assert(std::is_convertible_v<pal::SysLog*, pal::AbstractSysLog*>, "a public base");
static_assert(sizeof(pal::SysLog) == sizeof(void*), "no data");

/// Answers each operation with its name.
class NamingParser : public ArgParserBase {
public:
    void SetArgumentInfo(const std::string& info) override { called = "SetArgumentInfo " + info; }
    std::string Parse(int argc, char**) override { return "Parse " + std::to_string(argc); }
    std::string ReadArgument(const std::string& name) override { return "ReadArgument " + name; }
    std::string GetHelp() override { return "GetHelp"; }

    std::string called;
};

TEST(ArgParserBaseSlots, StandInTheDeclaredOrder) {
    NamingParser sut;
    ArgParserBase& base = sut;
    callSlot(base, firstSlotAfterDestructors, &ArgParserBase::SetArgumentInfo, std::string("info"));
    EXPECT_EQ(sut.called, "SetArgumentInfo info");
    EXPECT_EQ(callSlot(base, firstSlotAfterDestructors + 1, &ArgParserBase::Parse, 3, nullptr), "Parse 3");
    EXPECT_EQ(callSlot(base, firstSlotAfterDestructors + 2, &ArgParserBase::ReadArgument, std::string("h")),
              "ReadArgument h");
    EXPECT_EQ(callSlot(base, firstSlotAfterDestructors + 3, &ArgParserBase::GetHelp), "GetHelp");
}

TEST(ArgParserSlots, AreThoseOfTheInterface) {
    ArgParser sut;
    char name[] = "name";
    char word[] = "-v";
    char* argv[] = {name, word, nullptr};
    callSlot(sut, firstSlotAfterDestructors, &ArgParserBase::SetArgumentInfo, std::string("-v\n"));
    EXPECT_EQ(callSlot(sut, firstSlotAfterDestructors + 1, &ArgParserBase::Parse, 2, argv), "");
    EXPECT_EQ(callSlot(sut, firstSlotAfterDestructors + 2, &ArgParserBase::ReadArgument, std::string("v")), "arg on");
    EXPECT_EQ(callSlot(sut, firstSlotAfterDestructors + 3, &ArgParserBase::GetHelp), sut.GetHelp());
}

TEST(CHwapiExceptionSlots, HoldWhatBehindTheDestructors) {
    const CHwapiException root("kind", "description", "file", 1);
    const InvalidParameterException parameter("description", "file", 1);
    const MsgHandlingException handling("description", "file", 1);
    EXPECT_STREQ(callSlot(root, firstSlotAfterDestructors, &CHwapiException::what), "kind");
    EXPECT_STREQ(callSlot(parameter, firstSlotAfterDestructors, &CHwapiException::what), "Invalid parameter");
    EXPECT_STREQ(callSlot(handling, firstSlotAfterDestructors, &CHwapiException::what), "Message handling error");
}

class CountingDestruction : public CHwapiException {
public:
    explicit CountingDestruction(int& count) : CHwapiException("kind", "description", "file", 1), m_count(count) {}
    CountingDestruction(const CountingDestruction&) = default;
    ~CountingDestruction() override { ++m_count; }

private:
    int& m_count;
};

TEST(CHwapiExceptionSlots, BeginWithCompleteAndDeletingDestructor) {
    int destroyed = 0;
    alignas(CountingDestruction) unsigned char room[sizeof(CountingDestruction)];
    CHwapiException& placed = *new (room) CountingDestruction(destroyed);
    // Only the type of the signature counts: nothing in, nothing out, like a destructor.
    struct Nothing {
        void operation() {}
    };
    const auto signature = reinterpret_cast<void (CHwapiException::*)()>(&Nothing::operation);
    callSlot(placed, 0, signature);
    EXPECT_EQ(destroyed, 1);
    CHwapiException* allocated = new CountingDestruction(destroyed);
    callSlot(*allocated, 1, signature);
    EXPECT_EQ(destroyed, 2);
}

class NamingSysLog : public pal::AbstractSysLog {
public:
    int vPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, va_list) const override
        __attribute__((format(printf, 4, 0))) {
        return std::string(format) == "vPrintE" ? static_cast<int>(level) + static_cast<int>(featureId) : -1;
    }
};

int callFirstSlot(const pal::AbstractSysLog* sut, ...) {
    va_list args;
    va_start(args, sut);
    const int result = callSlot(*sut, firstSlotAfterDestructors, &pal::AbstractSysLog::vPrintE,
                                EAaSysLogSeverityLevel_Warning, 100U, "vPrintE", args);
    va_end(args);
    return result;
}

TEST(AbstractSysLogSlots, HoldVPrintEBehindTheDestructors) {
    const NamingSysLog sut;
    EXPECT_EQ(callFirstSlot(&sut), 103);
}

} // namespace
} // namespace ps::hwapi::common
