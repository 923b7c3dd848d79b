#include "Verdict.hpp"

#include <mox/Firmware.h>

namespace mox::firm {

namespace {

Verdict check(const ComponentFunctions& component, const std::string& directory, bool force) {
    char path[Answer::pathSize] = "";
    Verdict verdict;
    verdict.result = component.check(directory.c_str(), path, force);
    verdict.state = verdict.result < 0 ? State::checkFailed : verdict.result == 0 ? State::notNeeded : State::needed;
    verdict.path = path;
    return verdict;
}

/// The marker comes last, and only where it matters: it counts the updates that would not happen without it.
bool isForced(const ComponentFunctions& component, const Request& request, Force force) {
    return request.isForced() || (force == Force::byMarker && is_firmware_update_forced(component.name) == 1);
}

} // namespace

Verdict decide(const ComponentFunctions& component, const Request& request, const std::string& directory, Force force) {
    if (is_firmware_update_disabled() == 1) {
        Verdict verdict;
        verdict.state = State::disabled;
        return verdict;
    }
    Verdict verdict = check(component, directory, false);
    if (verdict.state == State::notNeeded && isForced(component, request, force)) {
        verdict = check(component, directory, true);
        verdict.forced = verdict.state == State::needed;
    }
    return verdict;
}

} // namespace mox::firm
