#include "CommandLine.hpp"
#include "Failure.hpp"
#include "FaultRequest.hpp"
#include "Numbers.hpp"
#include "RunView.hpp"

#include <host/faults/Plan.hpp>
#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <set>
#include <vector>

namespace mox::tools {

namespace {

using host::faults::Plan;
using host::faults::PlannedFault;

const Listing faultListing{"moxctl.faults.1",
                           "faults",
                           {{"ID", "id"},
                            {"FUNCTION", "function"},
                            {"WHAT", "what"},
                            {"CALLS", "calls"},
                            {"SERVICE", "service"},
                            {"NODE", "node"},
                            {"SEEN", "seen"},
                            {"FIRED", "fired"}}};

constexpr const char* addFooter =
    "Takes effect at once, also in services that run, for calls that begin from now on. Calls are counted in each\n"
    "process from the planning, or from its start.\n\n"
    "Without --return, --delay and --mode the call is not carried out and answers the function's general failure; a\n"
    "function without result does nothing. A message whose sending is faulted is destroyed, as always when it cannot\n"
    "be sent; what a faulted call should have released stays.\n\n"
    "stuck: the call is not carried out. Result and outputs are those of the last call that the process was let\n"
    "through since the planning; before there is one, the result 0 and outputs as they were. Without --nth, a\n"
    "function that reads is therefore let through once. Not for functions that hand out memory or handles.\n"
    "garbage: the call is carried out; if it succeeds, numbers, records, bytes and texts that it has written are\n"
    "overwritten with pseudo-random ones. Its result, lengths and the ends of texts stay.\n\n"
    "Global options: see 'moxctl -h'.";

struct ClearOptions {
    std::vector<std::string> ids;
    bool all = false;
};

std::unique_ptr<Plan> openPlan(Session& session) {
    std::string why;
    auto plan = Plan::open(session.run().path(), why);
    if (!plan) {
        throw Failure(ExitStatus::failed, why);
    }
    return plan;
}

/// A name that no service has would never fire.
void checkService(const host::Run& run, std::optional<std::uint16_t> node, const std::string& name) {
    std::set<std::string> names;
    for (const host::NodeDescription& description : nodesOf(run, node)) {
        for (const host::ServiceDescription& service : description.services) {
            names.insert(service.name);
        }
    }
    if (name.empty() || names.count(name) != 0) {
        return;
    }
    std::string all;
    for (const std::string& each : names) {
        all += (all.empty() ? "" : ", ") + each;
    }
    throw Failure(ExitStatus::notFound, "no service '" + name + "'; expected " + (all.empty() ? "none" : all));
}

void addFault(Session& session, const FaultRequest& request) {
    host::faults::Rule rule = ruleOf(request);
    const auto node = session.namedNode();
    checkService(session.run(), node, request.service);
    rule.node = node.value_or(0);
    std::string why;
    const auto id = openPlan(session)->add(rule, why);
    if (!id) {
        throw Failure(ExitStatus::failed, why);
    }
    PlannedFault fault;
    fault.id = *id;
    fault.rule = rule;
    session.output().object(jsonOf(fault));
    session.output().line(std::to_string(*id));
    session.output().note("fault " + std::to_string(*id) + ": " + rule.function + ", " + showEffect(rule) +
                          ", calls: " + showCalls(rule));
}

void listFaults(Session& session) {
    const auto node = session.namedNode();
    Json items = Json::array();
    for (const PlannedFault& fault : openPlan(session)->list()) {
        if (!node || fault.rule.node == 0 || fault.rule.node == *node) {
            items.push_back(jsonOf(fault));
        }
    }
    session.output().list(faultListing, items);
}

/// Read and found all before the first one is cleared.
std::vector<std::uint32_t> idsOf(const Plan& plan, const std::vector<std::string>& texts) {
    const std::vector<PlannedFault> planned = plan.list();
    std::vector<std::uint32_t> ids;
    for (const std::string& text : texts) {
        const auto id = static_cast<std::uint32_t>(readNumber(text, "fault", UINT32_MAX));
        if (std::none_of(planned.begin(), planned.end(), [id](const auto& fault) { return fault.id == id; })) {
            throw Failure(ExitStatus::notFound, "no fault " + text + " (see 'moxctl ddal fault list')");
        }
        ids.push_back(id);
    }
    return ids;
}

void clearFaults(Session& session, const ClearOptions& options) {
    if (options.all == !options.ids.empty()) {
        throw Failure(ExitStatus::usage, "expected either IDs or --all (see 'moxctl ddal fault clear -h')");
    }
    const auto plan = openPlan(session);
    unsigned count = 0;
    if (options.all) {
        count = plan->clearAll();
    }
    for (const std::uint32_t id : idsOf(*plan, options.ids)) {
        count += plan->clear(id) ? 1U : 0U;
    }
    session.output().object({{"cleared", count}});
    session.output().note("cleared " + std::to_string(count) + (count == 1 ? " fault" : " faults"));
}

void addAdd(CommandLine& line, CLI::App& group) {
    const auto request = std::make_shared<FaultRequest>();
    CLI::App& add = line.addVerb(group, "add", "Makes calls of a function fail, in every process of the run.",
                                 [request](Session& session) { addFault(session, *request); });
    addArgument(add, placeholder::function, request->function, "Function of the DDAL or the PAL").required();
    add.add_option("--return", request->result, "What calls answer: a number, a result's name, null, true or false")
        ->type_name("CODE");
    add.add_option("--nth", request->nth, "The first call that is faulted (default: the next)")->type_name("N");
    add.add_option("--times", request->times, "How many in a row (default: once with --nth, else for ever)")
        ->type_name("N");
    add.add_option("--delay", request->delay, "Calls take so much longer: 250ms, 2s; units us, ms, s, min")
        ->type_name("T");
    add.add_option("--mode", request->mode, "stuck: the device stands still; garbage: outputs are overwritten")
        ->type_name("MODE");
    add.add_option("--service", request->service, "Only in processes of this service (default: in all)")
        ->type_name(placeholder::service);
    add.footer(addFooter);
}

void addClear(CommandLine& line, CLI::App& group) {
    const auto options = std::make_shared<ClearOptions>();
    CLI::App& clear = line.addVerb(group, "clear", "Ends faults at once.",
                                   [options](Session& session) { clearFaults(session, *options); });
    clear.add_option(placeholder::fault, options->ids, "Ids, as 'list' shows them")->type_name("");
    clear.add_flag("--all", options->all, "All faults of the run");
}

} // namespace

void addDdalVerbs(CommandLine& line) {
    CLI::App& group = line.addGroup("ddal", "The platform below the services");
    CLI::App& fault = line.addGroup(group, "fault", "Faults of platform functions, planned for running services");
    addAdd(line, fault);
    line.addVerb(fault, "list", "Lists faults: calls seen, and how often each has fired, in all processes.",
                 listFaults);
    addClear(line, fault);
}

} // namespace mox::tools
