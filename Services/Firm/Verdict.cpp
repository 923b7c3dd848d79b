#include "Verdict.hpp"

#include <mox/Firmware.h>

#include <utility>

namespace mox::firm {

namespace {

namespace constant {
constexpr int needed = 1;
constexpr int notNeeded = 0;
} // namespace constant

void setResult(Verdict& verdict, int result) {
    verdict.result = result;
    verdict.state = result == constant::needed      ? State::needed
                    : result == constant::notNeeded ? State::notNeeded
                                                    : State::checkFailed;
}

using Check = int (*)(const char* directory, char* path, std::size_t size);

Verdict ask(Check check, const std::string& directory) {
    char path[Answer::pathSize] = "";
    Verdict verdict;
    setResult(verdict, check(directory.c_str(), path, sizeof path));
    verdict.path = path;
    return verdict;
}

Verdict askForced(const ComponentFunctions& component, const std::string& directory, Verdict unforced) {
    Verdict verdict = std::move(unforced);
    if (component.checkForced != nullptr) {
        verdict = ask(component.checkForced, directory);
    } else {
        setResult(verdict, constant::needed);
    }
    verdict.forced = verdict.state == State::needed;
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
    Verdict verdict = ask(component.check, directory);
    if (verdict.state == State::notNeeded && isForced(component, request, force)) {
        return askForced(component, directory, std::move(verdict));
    }
    return verdict;
}

} // namespace mox::firm
