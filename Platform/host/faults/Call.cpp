#include "Call.hpp"

#include "../pal/AaSysCom.hpp"
#include "../run/PlatformLog.hpp"
#include "Functions.hpp"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <thread>

namespace mox::host::faults {
namespace {

constexpr int warning = 3;

/// Take a message as their first argument, and keep or destroy it.
constexpr std::string_view senders[] = {"AaSysComMsgSend", "AaSysComMsgSendS", "AaSysComMsgForward", "AaSysComMsgRelay",
                                        "AaSysMbPublish"};

struct Answer {
    std::uint64_t result = 0;
    Written outputs;
};

struct Memory {
    std::mutex mutex;
    std::map<std::string_view, Answer> answers; ///< by function; the names are those of functions()
};

Memory& memory() {
    static auto& instance = *new Memory; // calls come until the very end of the process
    return instance;
}

std::string effectOf(const Function& function, const Due& due) {
    switch (due.action) {
    case Action::pass:
        return "";
    case Action::answer:
        return function.result.kind == ResultShape::Kind::none ? "is skipped"
                                                               : "answers " + showResult(function, due.result);
    case Action::stuck:
        return "repeats its last answer";
    case Action::garbage:
        return "gives garbage";
    }
    return "";
}

std::string delayText(std::uint64_t us) {
    return "takes " + (us % 1000 == 0 ? std::to_string(us / 1000) + " ms" : std::to_string(us) + " us") + " longer";
}

void writeLine(const Function& function, const Due& due) {
    const std::string effect = effectOf(function, due);
    std::string text = due.delayUs == 0 ? "" : delayText(due.delayUs);
    text += (text.empty() || effect.empty() ? "" : " and ") + effect;
    logPlatform(warning, "fault: %s %s (fault %u)", function.name.data(), text.c_str(), due.id);
}

} // namespace

void begin(std::string_view name, const Due& due) {
    const Function* function = findFunction(name);
    if (due.forgets) {
        const std::lock_guard<std::mutex> guard(memory().mutex);
        memory().answers.erase(name);
    }
    if (due.isTold && function != nullptr)
        writeLine(*function, due);
    if (due.delayUs != 0)
        std::this_thread::sleep_for(std::chrono::microseconds(due.delayUs));
}

void discardMessage(std::string_view function, const std::vector<Argument>& arguments) {
    if (std::find(std::begin(senders), std::end(senders), function) == std::end(senders))
        return;
    void* message = arguments.front().target;
    host::AaSysComMsgDestroy(&message);
}

void remember(std::string_view name, std::uint64_t result, const std::vector<Argument>& arguments) {
    const Function* function = findFunction(name);
    if (function == nullptr || function->handsOut)
        return;
    Answer answer;
    answer.result = result;
    if (isSuccess(*function, result)) // outputs of a failed call may never have been written
        answer.outputs = readOutputs(outputsOf(name, arguments));
    const std::lock_guard<std::mutex> guard(memory().mutex);
    memory().answers[function->name] = std::move(answer);
}

std::uint64_t repeat(std::string_view name, const std::vector<Argument>& arguments) {
    Answer answer;
    {
        const std::lock_guard<std::mutex> guard(memory().mutex);
        const auto found = memory().answers.find(name);
        if (found == memory().answers.end())
            return 0;
        answer = found->second;
    }
    if (!answer.outputs.empty())
        writeOutputs(outputsOf(name, arguments), answer.outputs);
    return answer.result;
}

void spoil(std::string_view name, std::uint64_t result, const Due& due, const std::vector<Argument>& arguments) {
    const Function* function = findFunction(name);
    if (function != nullptr && isSuccess(*function, result))
        garble(outputsOf(name, arguments), std::uint64_t{due.id} << 32U | due.nth);
}

} // namespace mox::host::faults
