#pragma once
#include "FirmMessages.hpp"
#include "support/FirmwareImage.hpp"

#include <testkit/BoardTest.hpp>
#include <testkit/ChildService.hpp>
#include <testkit/Messages.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace mox::firm {

constexpr unsigned stateParameter = 0x220032;
constexpr unsigned limitMs = 10'000;
constexpr const char* imageDirectory = "/ffs/run/boot";
constexpr const char* markerDirectory = "/ffs/run/logs";
/// What images hold unless a test says otherwise; its length does not divide by four.
constexpr const char* flashed = "what is flashed";

/// What comes back for an update.
struct UpdateRun {
    std::vector<Step> steps;
    Answer answer;
};

template <typename Record>
testkit::Bytes bytesOf(const Record& record) {
    testkit::Bytes bytes(Record::size);
    kit::PayloadWriter payload(bytes.data(), bytes.size(), kit::ByteOrder::little);
    record.write(payload);
    return bytes;
}

/// A record of FirmMessages.hpp; fails the test and gives an empty one when the message holds none.
template <typename Record>
Record recordOf(const testkit::Message& message) {
    const auto record =
        Record::read(kit::PayloadView(message.bytes.data(), message.bytes.size(), kit::ByteOrder::little));
    EXPECT_TRUE(record) << message;
    return record.value_or(Record{});
}

/// "updated, result 0, /ffs/run/boot/x.bin", for failures.
std::ostream& operator<<(std::ostream& out, const Answer& answer);

/// Matches answers by state, result and path.
testing::Matcher<Answer> answers(State state, std::int32_t result, const std::string& path = "");

/// The service runs on the test's node; images lie in its directory.
class FirmTest : public testkit::BoardTest {
protected:
    static std::uint32_t service() { return serviceOn(node()); }
    static std::uint32_t serviceOn(std::uint16_t node);

    /// An image for the first board of "firm-pair"; without version newer than what its FPGA and BMU run.
    static firmwaretest::FirmwareImage image(const std::string& version = "11");
    /// Writes an image into the service's directory. @return its path
    static std::string put(const firmwaretest::FirmwareImage& image, const std::string& name);

    static Answer check(Component component, std::uint32_t flags = 0);
    static UpdateRun update(Component component, std::uint32_t flags = 0);
    /// Awaits what an update tells.
    static UpdateRun awaitUpdate(testkit::Messages& client, std::uint32_t ticket);

    /// The bytes in the flash areas of the test's node, by name ("fpga-10001-1").
    static std::map<std::string, std::string> areas();
    /// The bytes in one of them; nothing if it was never written.
    static std::optional<std::string> area(const std::string& name);

    static std::optional<std::string> contentOf(const std::string& path);
    static void writeFile(const std::string& path, const std::string& text);
};

} // namespace mox::firm
