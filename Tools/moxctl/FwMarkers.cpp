#include "Failure.hpp"
#include "Fw.hpp"
#include "FwComponent.hpp"
#include "LibraryLog.hpp"
#include "NodeProcess.hpp"
#include "Numbers.hpp"
#include "Session.hpp"

#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace mox::tools {

namespace {

namespace fs = std::filesystem;
namespace update = ps::hwapi::common::update;

void writeMarker(const std::string& path, const std::string& content) {
    std::error_code ignored; // then the file cannot be written either
    fs::create_directories(fs::path(path).parent_path(), ignored);
    std::ofstream stream(path, std::ios::trunc);
    stream << content;
    if (!stream.flush()) {
        throw Failure(ExitStatus::failed, path + ": " + std::strerror(errno));
    }
}

void checkUnitType(const std::string& type) {
    const bool isWord = std::all_of(type.begin(), type.end(), [](unsigned char c) { return std::isalnum(c) != 0; });
    if (type.empty() || type.size() > update::constant::unitTypeLength || !isWord) {
        throw Failure(ExitStatus::usage, "unit type: expected 1 to 3 letters and digits, got '" + type + "'");
    }
}

/// "kor" of "KOR", or of the node's own unit.
std::string disableMarker(const FwOptions& options) {
    if (options.unitType.empty()) {
        return update::constant::disableMarker;
    }
    return update::disableMarkerOf(options.unitType.c_str()).data();
}

void report(const Output& output, const std::vector<std::string>& paths) {
    output.object({{"schema", "moxctl.firmware-markers.1"},
                   {"disabled", is_firmware_update_disabled() == 1},
                   {"changed", paths}});
}

std::string forcedText(const FwComponent& component, std::uint64_t count) {
    const std::string name = component.name;
    if (count == 0) {
        return "no update of " + name + " is forced";
    }
    return (count == 1 ? "the next update of " + name + " is"
                       : "the next " + std::to_string(count) + " updates of " + name + " are") +
           " made whatever the versions are";
}

} // namespace

void disableFirmware(Session& session, const FwOptions& options) {
    if (!options.unitType.empty()) {
        checkUnitType(options.unitType);
    }
    continueInNode(session, {});
    const LibraryLog log(session.output());
    session.startPlatform();
    const std::string marker = disableMarker(options);
    writeMarker(marker, "");
    report(session.output(), {marker});
    session.output().note("made " + marker);
    const std::vector<std::string> holding = disablingMarkers();
    if (std::find(holding.begin(), holding.end(), marker) == holding.end()) {
        session.output().note("remark: this board is of type '" + std::string(unit_type()) +
                              "', its updates are not switched off by that");
    }
}

void enableFirmware(Session& session, const FwOptions& /*options*/) {
    continueInNode(session, {});
    const LibraryLog log(session.output());
    session.startPlatform();
    const std::vector<std::string> markers = disablingMarkers();
    for (const std::string& marker : markers) {
        std::error_code failure;
        if (!fs::remove(marker, failure)) {
            throw Failure(ExitStatus::failed, marker + ": " + failure.message());
        }
        session.output().note("removed " + marker);
    }
    report(session.output(), markers);
    if (markers.empty()) {
        session.output().note("nothing to do: updates are not switched off");
    }
}

void forceFirmware(Session& session, const FwOptions& options) {
    const FwComponent& component = fwComponent(options.component);
    const std::uint64_t count = readNumber(options.count, "number of updates", INT32_MAX);
    continueInNode(session, {});
    const LibraryLog log(session.output());
    session.startPlatform();
    if (*unit_type() == '\0') {
        throw Failure(ExitStatus::failed, "the board's unit id cannot be read, and the marker bears it");
    }
    const std::string marker = forceMarker(component);
    writeMarker(marker, std::to_string(count));
    session.output().object(
        {{"schema", "moxctl.firmware-force.1"}, {"component", component.name}, {"marker", marker}, {"left", count}});
    session.output().note("wrote " + marker + ": " + forcedText(component, count));
}

} // namespace mox::tools
