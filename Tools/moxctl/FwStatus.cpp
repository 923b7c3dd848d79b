#include "Failure.hpp"
#include "Fw.hpp"
#include "FwComponent.hpp"
#include "LibraryLog.hpp"
#include "NodeProcess.hpp"
#include "Numbers.hpp"
#include "Output.hpp"
#include "RunView.hpp"
#include "Session.hpp"

#include <ddal/ddal_boot.h>
#include <ddal/ddal_fpga.h>
#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

#include <host/ddal/Flash.hpp>
#include <host/run/Run.hpp>
#include <nlohmann/json.hpp>

#include <array>

namespace mox::tools {

namespace {

namespace update = ps::hwapi::common::update;

const Listing areaListing{"moxctl.firmware.1",
                          "areas",
                          {{"DEVICE", "device"},
                           {"COMPONENT", "component"},
                           {"ACTIVE", "active"},
                           {"AREA", "area"},
                           {"WHOLE", "whole"},
                           {"VERSION", "version"},
                           {"BYTES", "length"},
                           {"CRC-32", "crc"}}};

Json areaOf(const host::Flash& flash, const std::string& area) {
    const auto image = flash.image(area);
    Json json{{"area", area}, {"whole", image.has_value()}};
    json["version"] = image ? Json(image->version) : Json();
    json["length"] = image ? Json(image->length) : Json();
    json["crc"] = image ? Json(showHex(image->crc, 8)) : Json();
    return json;
}

Json ubootOf(const host::Flash& flash) {
    std::array<char, 128> version{};
    std::uint32_t location = 0;
    const bool isRead = ddal_boot_get_uboot_version(version.size(), version.data()) == 0;
    const bool isLocated = ddal_boot_get_uboot_id(&location) == 0;
    Json json{{"device", "uboot"}, {"component", "uboot"}, {"active", isRead ? Json(version.data()) : Json()}};
    json["startedFrom"] = isLocated ? Json(update::ubootLocationName(location)) : Json();
    json["areas"] = Json::array({areaOf(flash, host::ubootPrimaryArea), areaOf(flash, host::ubootBackupArea)});
    return json;
}

/// What a programmable device is to the library: "bmu", "fpga", or nothing that it updates.
Json componentOf(std::uint32_t id) {
    const char* name = nullptr;
    const char* chip = nullptr;
    std::uint32_t fpga = 0;
    if (id == update::constant::bmuFpgaId) {
        return "bmu";
    }
    return get_fpga(&name, &chip, &fpga) == 0 && fpga == id ? Json("fpga") : Json();
}

Json fpgaOf(const host::Flash& flash, const host::FpgaDevice& fpga) {
    std::uint32_t active = 0;
    const bool isRead = ddal_fpga_get_active_version(fpga.id, &active) == 0;
    Json json{{"device", showHex(fpga.id, 1)}, {"component", componentOf(fpga.id)}};
    json["active"] = isRead ? Json(active) : Json();
    json["areas"] = Json::array();
    for (const host::FpgaSlot& slot : fpga.slots) {
        json["areas"].push_back(areaOf(flash, host::fpgaArea(fpga.id, slot.slot)));
    }
    return json;
}

Json devicesOf(const host::Run& run) {
    const host::Flash flash(run, run.node());
    const host::NodeDescription node = nodesOf(run, run.node()).front();
    Json devices = Json::array();
    if (node.devices.boot) {
        devices.push_back(ubootOf(flash));
    }
    for (const host::FpgaDevice& fpga : node.devices.fpgas) {
        devices.push_back(fpgaOf(flash, fpga));
    }
    return devices;
}

Json statusOf(const host::Run& run) {
    const bool inRam = is_ram_path_used() == 1;
    Json json{{"schema", areaListing.schema}, {"node", host::hex4(run.node())}, {"unitId", unit_version()}};
    json["devices"] = devicesOf(run);
    json["disabledBy"] = disablingMarkers();
    json["forcedLeft"] = Json::object();
    json["temporary"] = Json::object();
    for (const FwComponent& component : fwComponents()) {
        const auto left = forcedLeft(component);
        json["forcedLeft"][component.name] = left ? Json(*left) : Json();
        json["temporary"][component.name] = inRam ? component.ramTemporary : component.diskTemporary;
    }
    return json;
}

/// One row an area; a device without areas has one, too.
Json rowsOf(const Json& devices) {
    Json rows = Json::array();
    for (const Json& device : devices) {
        const Json areas = device.at("areas").empty() ? Json::array({Json::object()}) : device.at("areas");
        for (Json row : areas) {
            for (const char* member : {"device", "component", "active"}) {
                row[member] = device.at(member);
            }
            if (row.contains("whole")) {
                row["whole"] = row["whole"] == true ? "yes" : "no";
            }
            rows.push_back(std::move(row));
        }
    }
    return rows;
}

void print(const Output& output, const Json& status) {
    output.line("node " + cellText(status["node"]) + ", unit " + cellText(status["unitId"]));
    output.list(areaListing, rowsOf(status["devices"]));
    for (const Json& device : status["devices"]) {
        if (device.contains("startedFrom")) {
            output.line("boot loader started from: " + cellText(device["startedFrom"]));
        }
    }
    output.line("updates: " + (status["disabledBy"].empty() ? "not switched off"
                                                            : "switched off by " + cellText(status["disabledBy"])));
    for (const auto& [component, path] : status["temporary"].items()) {
        output.line(component + ": forced updates left " + cellText(status["forcedLeft"][component]) +
                    ", temporary file " + cellText(path));
    }
}

} // namespace

void showFirmware(Session& session) {
    continueInNode(session, {});
    const LibraryLog log(session.output());
    session.startPlatform();
    const Json status = statusOf(session.run());
    session.output().object(status);
    if (!session.output().isJson()) {
        print(session.output(), status);
    }
}

} // namespace mox::tools
