#include "CommandLine.hpp"
#include "Failure.hpp"
#include "Numbers.hpp"
#include "RadAccess.hpp"

#include <fnmatch.h>
#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>

namespace mox::tools {

namespace {

const Listing radListing{
    "moxctl.rad.1",
    "parameters",
    {{"ID", "id"}, {"VALUE", "value"}, {"DEFAULT", "default"}, {"STATE", "state"}, {"NAME", "name"}}};

struct RadOptions {
    std::string pattern;
    std::string parameter;
    std::string value;
    bool toDefault = false;
};

const char* stateName(host::rad::State state) {
    switch (state) {
    case host::rad::State::set:
        return "set";
    case host::rad::State::byDefault:
        return "default";
    default:
        return "unset";
    }
}

Json jsonOf(const host::RadParameter& parameter) {
    Json json{{"id", showHex(parameter.id, 1)}, {"name", parameter.name}, {"value", parameter.value}};
    json["default"] = parameter.defaultValue ? Json(*parameter.defaultValue) : Json();
    json["state"] = stateName(parameter.state);
    return json;
}

/// A pattern without wildcards is a part of the name.
bool matches(const std::string& name, const std::string& pattern) {
    const bool hasWildcard = pattern.find_first_of("*?[") != std::string::npos;
    const std::string whole = hasWildcard ? pattern : "*" + pattern + "*";
    return fnmatch(whole.c_str(), name.c_str(), FNM_CASEFOLD) == 0;
}

void listParameters(Session& session, const RadOptions& options) {
    const host::Run& run = session.run();
    Json items = Json::array();
    for (const host::RadParameter& parameter : openRad(run, run.node())->list()) {
        if (options.pattern.empty() || matches(parameter.name, options.pattern)) {
            items.push_back(jsonOf(parameter));
        }
    }
    session.output().list(radListing, items);
}

void getParameter(Session& session, const RadOptions& options) {
    const host::Run& run = session.run();
    const host::RadParameter parameter = findParameter(*openRad(run, run.node()), options.parameter);
    session.output().object(jsonOf(parameter));
    session.output().line(std::to_string(parameter.value));
}

void setParameter(Session& session, const RadOptions& options) {
    if (options.toDefault == !options.value.empty()) {
        throw Failure(ExitStatus::usage, "expected either a VALUE or --default (see 'moxctl rad set -h')");
    }
    const auto value =
        options.toDefault ? 0 : static_cast<std::uint32_t>(readNumber(options.value, "value", UINT32_MAX));
    const host::Run& run = session.run();
    const auto rad = openRad(run, run.node());
    const std::uint32_t id = findParameter(*rad, options.parameter).id;
    const bool done = options.toDefault ? rad->reset(id) : rad->set(id, value);
    const auto now = rad->get(id);
    if (!done || !now) {
        throw Failure(ExitStatus::failed, "parameter " + showHex(id, 1) + " cannot be set");
    }
    session.output().object(jsonOf(*now));
    session.output().detail(showHex(id, 1) + " = " + std::to_string(now->value));
}

} // namespace

void addRadVerbs(CommandLine& line) {
    const auto options = std::make_shared<RadOptions>();
    const char* const parameterText = "Number (decimal or 0x...) or name";
    CLI::App& group = line.addGroup("rad", "R&D parameters of a node");
    CLI::App& list = line.addVerb(group, "list", "Lists what has a name or was set.",
                                  [options](Session& session) { listParameters(session, *options); });
    addArgument(list, "PATTERN", options->pattern, "Part of the name, or a pattern with * and ?; case does not matter");
    CLI::App& get = line.addVerb(group, "get", "Prints a parameter's value.",
                                 [options](Session& session) { getParameter(session, *options); });
    addArgument(get, "PARAMETER", options->parameter, parameterText).required();
    CLI::App& set = line.addVerb(group, "set", "Sets a parameter; all processes of the node read it at once.",
                                 [options](Session& session) { setParameter(session, *options); });
    addArgument(set, "PARAMETER", options->parameter, parameterText).required();
    addArgument(set, "VALUE", options->value, "Number, decimal or 0x...");
    set.add_flag("--default", options->toDefault, "Forget what was set");
}

} // namespace mox::tools
