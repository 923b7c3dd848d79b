#include "Failure.hpp"
#include "Fw.hpp"
#include "FwExplain.hpp"
#include "Interruption.hpp"
#include "LibraryLog.hpp"
#include "NodeProcess.hpp"
#include "Numbers.hpp"
#include "Session.hpp"

#include <mox/Firmware.h>

#include <nlohmann/json.hpp>

#include <array>

namespace mox::tools {

namespace {

constexpr int needed = 1;
constexpr int notNeeded = 0;
constexpr int noDirectory = -4;
constexpr int tooManyNames = -5;
constexpr int noImage = -7;
constexpr int severalImages = -8;
constexpr int imageCheckFailed = -1;

/// A decision of the library.
struct Decision {
    int result = 0;
    std::string image;
};

Decision decide(const FwComponent& component, const std::string& directory, bool force) {
    std::array<char, FIND_BINARY_ROW_SIZE> path{};
    Decision decision;
    decision.result = component.check(directory.c_str(), path.data(), path.size(), force ? 1 : 0);
    decision.image = path.data();
    return decision;
}

std::string textOf(const FwComponent& component, const Decision& decision, const std::string& place) {
    return std::string(component.name) + ": " + decisionText(component, decision.result) +
           (place.empty() ? "" : ", " + place) + " (" + std::to_string(decision.result) + ")";
}

std::string textOf(const FwComponent& component, const Decision& decision) {
    return textOf(component, decision, decision.image);
}

/// A failed decision is no answer.
void throwUnlessDecided(const FwComponent& component, const Decision& decision, const std::string& directory) {
    if (decision.result >= 0) {
        return;
    }
    const bool isAboutImages = decision.result == noDirectory || decision.result == tooManyNames ||
                               decision.result == noImage || decision.result == severalImages;
    throw Failure(decision.result == noImage ? ExitStatus::notFound : ExitStatus::failed,
                  textOf(component, decision, isAboutImages ? directory : ""));
}

Json jsonOf(const FwComponent& component, const Decision& decision) {
    Json json{{"schema", "moxctl.firmware-check.1"}, {"component", component.name}, {"result", decision.result}};
    json["needed"] = decision.result < 0 ? Json() : Json(decision.result == needed);
    json["text"] = decisionText(component, decision.result);
    json["image"] = decision.image.empty() ? Json() : Json(decision.image);
    return json;
}

/// An update as it was asked for.
class Update {
public:
    Update(const Output& output, const FwComponent& component, const FwOptions& options)
        : m_output(output), m_component(component), m_options(options) {}

    void run();

private:
    void refuseWhenDisabled() const;
    void useFile();
    /// @return whether there is something to do
    bool useDecision();
    bool isForced(const Decision& decision) const;
    void write();
    void report(const char* state, int result, const std::string& text) const;

    const Output& m_output;
    const FwComponent& m_component;
    const FwOptions& m_options;
    std::string m_image;
    bool m_forced = false;
};

void Update::report(const char* state, int result, const std::string& text) const {
    m_output.object({{"schema", "moxctl.firmware-update.1"},
                     {"component", m_component.name},
                     {"state", state},
                     {"result", result},
                     {"text", text},
                     {"image", m_image.empty() ? Json() : Json(m_image)},
                     {"forced", m_forced}});
}

void Update::refuseWhenDisabled() const {
    if (is_firmware_update_disabled() == 1) {
        report("disabled", 0, "updates are switched off");
        throw Failure(ExitStatus::failed, "updates are switched off by " + cellText(disablingMarkers()) +
                                              " ('moxctl fw enable' removes it)");
    }
}

/// A file that was named is taken whatever its version is; that it is for this board is not left to chance.
void Update::useFile() {
    m_image = m_options.file;
    const int result = binary_validate(m_image.c_str(), ownHwSwId());
    if (result == IMAGE_OK || m_options.force) {
        return;
    }
    report("checkFailed", result, "the image is not for this board, or damaged");
    if (result == IMAGE_ERR_FILE) {
        throw Failure(ExitStatus::notFound, m_image + ": no image that can be read (" + std::to_string(result) + ")");
    }
    throw Failure(ExitStatus::verificationFailed, m_image + ": not taken by this board (" + std::to_string(result) +
                                                      "; 'moxctl image verify --hwswid " + showHex(ownHwSwId(), 8) +
                                                      "' says why, --force takes one for other boards)");
}

/// The marker is used up only where it changes something.
bool Update::isForced(const Decision& decision) const {
    return decision.result == notNeeded && (m_options.force || is_firmware_update_forced(m_component.name) == 1);
}

bool Update::useDecision() {
    Decision decision = decide(m_component, m_options.directory, false);
    m_forced = isForced(decision);
    if (m_forced && m_component.needsRam) {
        decision = decide(m_component, m_options.directory, true); // a boot loader never goes back to an older one
    }
    m_image = decision.image;
    if (decision.result < 0) {
        report("checkFailed", decision.result, decisionText(m_component, decision.result));
    }
    throwUnlessDecided(m_component, decision, m_options.directory);
    if (decision.result == notNeeded && (m_component.needsRam || !m_forced)) {
        report("notNeeded", decision.result, decisionText(m_component, decision.result));
        m_output.line(textOf(m_component, decision));
        return false;
    }
    return true;
}

void Update::write() {
    m_output.note("updating " + std::string(m_component.name) + " from " + m_image + (m_forced ? ", forced" : ""));
    const int result = m_component.update(m_image.c_str());
    const std::string text = updateText(m_component, result);
    report(result == 0 ? "updated" : "updateFailed", result, text);
    const std::string line =
        std::string(m_component.name) + ": " + text + ", " + m_image + " (" + std::to_string(result) + ")";
    if (result != 0) {
        throw Failure(result == imageCheckFailed ? ExitStatus::verificationFailed : ExitStatus::failed, line);
    }
    m_output.line(line);
}

void Update::run() {
    refuseWhenDisabled();
    if (m_options.file.empty()) {
        if (!useDecision()) {
            return;
        }
    } else {
        useFile();
    }
    interruption::check();
    write();
}

} // namespace

void checkFirmware(Session& session, const FwOptions& options) {
    const FwComponent& component = fwComponent(options.component);
    continueInNode(session, {options.directory});
    const Output& output = session.output();
    LibraryLog log(output);
    session.startPlatform();
    const Decision decision = decide(component, options.directory, options.force);
    Json json = jsonOf(component, decision);
    if (options.explain) {
        json["log"] = log.lines();
        json["explanation"] = explanationOf(component, options.directory);
    }
    output.object(json);
    if (options.explain && !output.isJson()) {
        printExplanation(output, json["explanation"]);
    }
    throwUnlessDecided(component, decision, options.directory);
    output.line(textOf(component, decision));
    const std::vector<std::string> markers = disablingMarkers();
    if (!markers.empty()) {
        output.note("remark: updates are switched off by " + cellText(markers) + ", so none is made");
    }
}

void updateFirmware(Session& session, const FwOptions& options) {
    const FwComponent& component = fwComponent(options.component);
    continueInNode(session, {options.directory, options.file});
    const LibraryLog log(session.output(), std::string("update_") + component.name + "(): ");
    session.startPlatform();
    Update(session.output(), component, options).run();
}

} // namespace mox::tools
