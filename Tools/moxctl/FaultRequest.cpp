#include "FaultRequest.hpp"

#include "Failure.hpp"
#include "Numbers.hpp"

#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <cstdlib>

namespace mox::tools {

namespace {

using host::faults::Action;
using host::faults::forEver;
using host::faults::Function;
using host::faults::Rule;

constexpr std::size_t namesShown = 3;
constexpr double longestDelayUs = 3600e6;

struct Unit {
    const char* name;
    std::uint64_t us;
};

/// The greatest first: a duration is shown in the first one that leaves no remainder.
constexpr std::array units{Unit{"min", 60'000'000}, Unit{"s", 1'000'000}, Unit{"ms", 1'000}, Unit{"us", 1}};

[[noreturn]] void refuse(const Function& function, const std::string& why) {
    throw Failure(ExitStatus::usage, std::string(function.name) + " " + why);
}

std::uint64_t readCount(const std::string& text, const char* what) {
    const std::uint64_t count = readNumber(text, what, forEver - 1);
    if (count == 0) {
        throw Failure(ExitStatus::usage, std::string(what) + ": expected a number from 1, got '" + text + "'");
    }
    return count;
}

std::string showDuration(std::uint64_t us) {
    for (const Unit& unit : units) {
        if (us % unit.us == 0) {
            return std::to_string(us / unit.us) + unit.name;
        }
    }
    return "";
}

Action modeOf(const Function& function, const FaultRequest& request) {
    if (!request.result.empty()) {
        throw Failure(ExitStatus::usage, "expected either --return or --mode (see 'moxctl ddal fault add -h')");
    }
    if (request.mode == "stuck") {
        if (function.handsOut) {
            refuse(function, "hands out memory or a handle, which must not be given twice: it cannot be stuck");
        }
        return Action::stuck;
    }
    if (request.mode != "garbage") {
        throw Failure(ExitStatus::usage, "mode: expected stuck or garbage, got '" + request.mode + "'");
    }
    if (!function.canGarble) {
        refuse(function, "has no outputs that can be garbled");
    }
    return Action::garbage;
}

/// What calls answer when nothing else is asked for.
std::uint64_t generalFailure(const Function& function) {
    const auto failure = host::faults::generalFailure(function.name, function.result);
    const bool isSkipped = function.result.kind == host::faults::ResultShape::Kind::none;
    if (!failure && !isSkipped) {
        refuse(function, "has no result that means failure: give --return, --delay or --mode");
    }
    return static_cast<std::uint64_t>(failure.value_or(0));
}

void readAction(Rule& rule, const Function& function, const FaultRequest& request) {
    if (!request.mode.empty()) {
        rule.action = modeOf(function, request);
        return;
    }
    if (request.result.empty()) {
        rule.action = request.delay.empty() ? Action::answer : Action::pass;
        rule.result = rule.action == Action::answer ? generalFailure(function) : 0;
        return;
    }
    std::string why;
    const auto result = host::faults::parseResult(function, request.result, why);
    if (!result) {
        throw Failure(ExitStatus::usage, why);
    }
    rule.action = Action::answer;
    rule.result = *result;
}

void readCalls(Rule& rule, const Function& function, const FaultRequest& request) {
    if (!request.nth.empty()) {
        rule.first = readCount(request.nth, "nth");
        rule.times = 1;
    } else if (rule.action == Action::stuck && host::faults::isReading(function)) {
        rule.first = 2; // the first one tells what is repeated
    }
    if (!request.times.empty()) {
        rule.times = readCount(request.times, "times");
    }
}

const char* nameOf(const Rule& rule, const Function* function) {
    switch (rule.action) {
    case Action::pass:
        return "delay";
    case Action::answer:
        return function != nullptr && function->result.kind == host::faults::ResultShape::Kind::none ? "skip"
                                                                                                     : "return";
    case Action::stuck:
        return "stuck";
    case Action::garbage:
        return "garbage";
    }
    return "";
}

/// Of a fault that returns something, as it was or could have been given.
std::string resultText(const Rule& rule, const Function* function) {
    if (rule.action != Action::answer || function == nullptr) {
        return "";
    }
    return host::faults::showResult(*function, rule.result);
}

} // namespace

const Function& findFunction(const std::string& name) {
    if (const Function* function = host::faults::findFunction(name)) {
        return *function;
    }
    std::string similar;
    for (const std::string& candidate : host::faults::functionsLike(name, namesShown)) {
        similar += (similar.empty() ? "" : ", ") + candidate;
    }
    throw Failure(ExitStatus::notFound, "the platform has no function '" + name + "'; similar: " + similar);
}

Rule ruleOf(const FaultRequest& request) {
    const Function& function = findFunction(request.function);
    Rule rule;
    rule.function = request.function;
    rule.service = request.service;
    rule.delayUs = request.delay.empty() ? 0 : readDuration(request.delay, "delay");
    readAction(rule, function, request);
    readCalls(rule, function, request);
    return rule;
}

std::uint64_t readDuration(const std::string& text, const char* what) {
    char* end = nullptr;
    const bool isDecimal = text.find_first_not_of("0123456789.") == text.find_first_of("ums");
    const double number = isDecimal ? std::strtod(text.c_str(), &end) : 0;
    for (const Unit& unit : units) {
        const double us = std::round(number * static_cast<double>(unit.us));
        if (end != nullptr && end != text.c_str() && std::string(end) == unit.name && us >= 1 && us <= longestDelayUs) {
            return static_cast<std::uint64_t>(us);
        }
    }
    throw Failure(ExitStatus::usage, std::string(what) +
                                         ": expected a time of at most an hour with its unit us, ms, s or min, such as "
                                         "250ms, got '" +
                                         text + "'");
}

std::string showEffect(const Rule& rule) {
    const Function* function = host::faults::findFunction(rule.function);
    std::string text = rule.delayUs == 0 ? "" : "delay " + showDuration(rule.delayUs);
    if (rule.action == Action::pass) {
        return text;
    }
    text.append(text.empty() ? "" : ", ").append(nameOf(rule, function));
    if (const std::string result = resultText(rule, function); !result.empty()) {
        const std::string_view name = host::faults::nameOfResult(*function, rule.result);
        text += " " + result + (name.empty() ? "" : " (" + std::string(name) + ")");
    }
    return text;
}

std::string showCalls(const Rule& rule) {
    std::string first = std::to_string(rule.first);
    if (rule.times == 1) {
        return first;
    }
    if (rule.times > forEver - rule.first) {
        return rule.first == 1 ? "all" : "from " + first;
    }
    return first + " to " + std::to_string(rule.first + rule.times - 1);
}

Json jsonOf(const host::faults::PlannedFault& fault) {
    const Rule& rule = fault.rule;
    const Function* function = host::faults::findFunction(rule.function);
    const std::string result = resultText(rule, function);
    Json json{{"id", fault.id}, {"function", rule.function}, {"what", showEffect(rule)}, {"calls", showCalls(rule)}};
    json["service"] = rule.service.empty() ? Json() : Json(rule.service);
    json["node"] = rule.node == 0 ? Json() : Json(host::hex4(rule.node));
    json["seen"] = fault.seen;
    json["fired"] = fault.fired;
    json["action"] = nameOf(rule, function);
    json["return"] = result.empty() ? Json() : Json(result);
    json["delayUs"] = rule.delayUs;
    json["nth"] = rule.first;
    json["times"] = rule.times == forEver ? Json() : Json(rule.times);
    return json;
}

} // namespace mox::tools
