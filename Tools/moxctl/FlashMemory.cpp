#include "CommandLine.hpp"
#include "Failure.hpp"
#include "Numbers.hpp"
#include "RunView.hpp"

#include <host/ddal/Flash.hpp>
#include <host/ddal/FlashPlan.hpp>
#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>

#include <memory>

namespace mox::tools {

namespace {

const Listing areaListing{"moxctl.flash.1",
                          "areas",
                          {{"NODE", "node"},
                           {"AREA", "area"},
                           {"STATE", "state"},
                           {"VERSION", "version"},
                           {"BYTES", "bytes"},
                           {"CRC32", "crc32"},
                           {"FILE", "file"}}};

/// Every image area that the node's devices have.
std::vector<std::string> areasOf(const host::Devices& devices) {
    std::vector<std::string> areas;
    for (const host::FpgaDevice& fpga : devices.fpgas) {
        for (const host::FpgaSlot& slot : fpga.slots) {
            areas.push_back(host::fpgaArea(fpga.id, slot.slot));
        }
    }
    if (devices.boot) {
        areas.insert(areas.end(), {host::ubootPrimaryArea, host::ubootBackupArea});
    }
    return areas;
}

Json stateOf(const host::Run& run, std::uint16_t node, const std::string& area) {
    constexpr int crcDigits = 8;
    const host::Flash flash(run, node);
    const auto image = flash.image(area);
    Json item{{"node", host::hex4(node)}, {"area", area}, {"state", image ? "whole" : "broken"}};
    item["version"] = image ? Json(image->version) : Json();
    item["bytes"] = image ? Json(image->length) : Json();
    item["crc32"] = image ? Json(showHex(image->crc, crcDigits)) : Json();
    item["file"] = flash.path(area);
    return item;
}

void listAreas(Session& session) {
    const host::Run& run = session.run();
    Json items = Json::array();
    for (const host::NodeDescription& node : nodesOf(run, session.namedNode())) {
        for (const std::string& area : areasOf(node.devices)) {
            items.push_back(stateOf(run, node.id, area));
        }
    }
    session.output().list(areaListing, items);
}

void leavePlan(Session& session, const std::string& text) {
    const auto plan = host::parseFlashPlan(text);
    if (!plan) {
        throw Failure(ExitStatus::usage,
                      "expected cut:N, fail:N or none with an operation N from 1, got '" + text + "'");
    }
    const host::Run& run = session.run();
    if (!host::planFlashOf(run, run.node(), *plan)) {
        throw Failure(ExitStatus::failed, "the plan cannot be stored");
    }
    const std::string node = host::hex4(run.node());
    session.output().object({{"node", node}, {"plan", text}});
    session.output().note(plan->kind == host::FlashPlan::Kind::none
                              ? "the next update on node " + node + " goes as it goes"
                              : "the next update on node " + node + ": " + text);
}

} // namespace

void addFlashVerbs(CommandLine& line) {
    CLI::App& group = line.addGroup("flash", "Flash memory of simulated boards: image areas, and updates that are cut");
    line.addVerb(group, "list", "Lists image areas: whether they are whole, and what lies in them.", listAreas)
        .footer(allNodesFooter);
    const auto plan = std::make_shared<std::string>();
    CLI::App& verb = line.addVerb(group, "plan",
                                  "Breaks the next update on the node at its N-th operation. An image of b blocks "
                                  "takes 2b + 1: erasing each, programming each, and putting the area's record.",
                                  [plan](Session& session) { leavePlan(session, *plan); });
    addArgument(verb, "PLAN", *plan,
                "cut:N kills the updating process as if the power failed, fail:N is an error of the device; none takes "
                "a plan back")
        .required();
}

} // namespace mox::tools
