#include "CommandLine.hpp"
#include "Failure.hpp"
#include "LibraryLog.hpp"
#include "Numbers.hpp"
#include "RunView.hpp"

#include <mox/Board.h>
#include <mox/BoardTables.hpp>

#include <host/run/Run.hpp>
#include <host/store/Store.hpp>
#include <nlohmann/json.hpp>

#include <array>
#include <memory>

namespace mox::tools {

namespace {

namespace board = ps::hwapi::board;

const Listing identityListing{"moxctl.identity.1", "fields", {{"FIELD", "field"}, {"VALUE", "value"}}};

/// Room for every text of the identification functions, terminator included.
constexpr std::size_t textRoom = 160;

using TextFunction = std::uint32_t (*)(char*, std::uint32_t);
using PortTextFunction = std::uint32_t (*)(std::uint32_t, char*, std::uint32_t);

/// A text of the library's; null when it has none.
Json textOf(TextFunction function) {
    std::array<char, textRoom> text{};
    return function(text.data(), textRoom) == 1 ? Json(text.data()) : Json();
}

Json textOf(PortTextFunction function, std::uint32_t port) {
    std::array<char, textRoom> text{};
    return function(port, text.data(), textRoom) == 1 ? Json(text.data()) : Json();
}

template <typename Rows>
Json nameOf(const Rows& rows, std::uint32_t value) {
    for (const auto& row : rows) {
        if (row.value == value) {
            return row.name;
        }
    }
    return {};
}

Json displayCodeOf(std::uint32_t version, const Json& code) {
    if (code.is_null()) {
        return {};
    }
    std::array<char, textRoom> text{};
    return ApiGetModuleDisplayProductCodeEx(version, code.get<std::string>().c_str(), text.data(), textRoom);
}

/// The module of the unit; null without one.
Json moduleOfUnit() {
    const Json id = textOf(ApiGetModuleId);
    if (id.is_null()) {
        return {};
    }
    Json json{{"id", id}, {"version", ApiGetModuleVersion()}};
    json["productionCode"] = textOf(ApiGetModuleProductionCode);
    json["displayCode"] = displayCodeOf(ApiGetModuleVersion(), json["productionCode"]);
    json["serialNumber"] = textOf(ApiGetModuleSerialNumber);
    return json;
}

Json externalModules(const host::NodeDescription& node) {
    Json all = Json::array();
    for (const host::ModuleIdentity& module : node.externalModules) {
        const std::uint32_t port = module.port;
        Json json{{"port", port}, {"id", textOf(ApiGetExtModuleId, port)}, {"version", ApiGetExtModuleVersion(port)}};
        json["productionCode"] = textOf(ApiGetExtModuleProductionCode, port);
        json["serialNumber"] = textOf(ApiGetExtModuleSerialNumber, port);
        all.push_back(std::move(json));
    }
    return all;
}

/// What only units of the Wim line have; null for others.
Json wimPart() {
    if (ApiGetLocalUnitType() != EUnitType_Wim) {
        return {};
    }
    static constexpr std::array technologies{"FDD", "TDD", "WCDMA", "unknown"};
    const EWimBoardType type = ApiGetWimBoardType();
    Json json{{"boardType", type}, {"boardTypeName", nameOf(board::wimBoardTypeList, type)}};
    json["moduleVersion"] = ApiGetWimModuleVersion();
    json["radioTechnology"] = technologies[ApiGetLocalWimRatType()];
    return json;
}

Json identityOf(const host::Run& run) {
    const host::NodeDescription node = nodesOf(run, run.node()).front();
    Json json{
        {"schema", identityListing.schema}, {"node", host::hex4(run.node())}, {"unitId", textOf(ApiGetLocalUnitId)}};
    json["hwSwId"] = showHex(ApiGetLocalUnitHwSwId(), 8);
    json["hardwareId"] = showHex(ApiGetLocalUnitHwId(), 4);
    json["unitType"] = ApiGetLocalUnitType();
    json["unitTypeName"] = nameOf(board::UnitTypeList, ApiGetLocalUnitType());
    json["unitVersion"] = ApiGetLocalUnitVersion();
    json["unitVersionName"] = nameOf(board::UnitVersionList, ApiGetLocalUnitVersion());
    json["productionCode"] = textOf(ApiGetLocalUnitProductionCode);
    json["serialNumber"] = textOf(ApiGetLocalUnitSerialNumber);
    json["dieId"] = textOf(ApiGetDieId);
    json["dieIdQuality"] = textOf(ApiGetDieIdQuality);
    json["board"] = ApiGetCurrentBoard();
    json["cpu"] = ApiGetCurrentCpu();
    json["module"] = moduleOfUnit();
    json["externalModules"] = externalModules(node);
    json["wim"] = wimPart();
    return json;
}

void addRow(Json& rows, const std::string& field, const Json& value) {
    rows.push_back({{"field", field}, {"value", value}});
}

/// "9 EUnitType_Kor".
std::string numberAndName(const Json& number, const Json& name) {
    return number.dump() + (name.is_string() ? " " + name.get<std::string>() : " unknown");
}

/// A module's members in one cell.
Json moduleText(const Json& module) {
    Json cell = Json::array();
    for (const auto& [key, value] : module.items()) {
        const bool isEmptyText = value.is_string() && value.get_ref<const std::string&>().empty();
        if (key != "port" && !value.is_null() && !isEmptyText) {
            cell.push_back(key == "version" ? "version " + value.dump() : value.get<std::string>());
        }
    }
    return cell;
}

Json rowsOf(const Json& identity) {
    Json rows = Json::array();
    addRow(rows, "node", identity["node"]);
    addRow(rows, "unit id", identity["unitId"]);
    addRow(rows, "hwswid", identity["hwSwId"]);
    addRow(rows, "hardware id", identity["hardwareId"]);
    addRow(rows, "unit type", numberAndName(identity["unitType"], identity["unitTypeName"]));
    addRow(rows, "unit version", numberAndName(identity["unitVersion"], identity["unitVersionName"]));
    addRow(rows, "production code", identity["productionCode"]);
    addRow(rows, "serial number", identity["serialNumber"]);
    addRow(rows, "die id", identity["dieId"]);
    addRow(rows, "die id quality", identity["dieIdQuality"]);
    addRow(rows, "board", identity["board"]);
    addRow(rows, "cpu", identity["cpu"]);
    addRow(rows, "module", moduleText(identity["module"]));
    for (const Json& module : identity["externalModules"]) {
        addRow(rows, "module on port " + module["port"].dump(), moduleText(module));
    }
    const Json& wim = identity["wim"];
    if (!wim.is_null()) {
        addRow(rows, "board type", numberAndName(wim["boardType"], wim["boardTypeName"]));
        addRow(rows, "module version", wim["moduleVersion"]);
        addRow(rows, "radio technology", wim["radioTechnology"]);
    }
    return rows;
}

void showIdentity(Session& session) {
    const LibraryLog log(session.output());
    session.startPlatform();
    const Json identity = identityOf(session.run());
    session.output().object(identity);
    if (!session.output().isJson()) {
        session.output().list(identityListing, rowsOf(identity));
    }
}

struct SetOptions {
    std::optional<std::string> hwSwId;
    std::optional<std::string> unitId;
    std::optional<std::string> serialNumber;
    std::optional<std::string> productionCode;

    bool isEmpty() const { return !hwSwId && !unitId && !serialNumber && !productionCode; }
};

/// Writes the members that were given into a node's part of the description.
void change(Json& unit, const SetOptions& options) {
    const auto put = [&unit](const char* member, const std::optional<std::string>& value) {
        if (value) {
            unit[member] = *value;
        }
    };
    put("id", options.unitId);
    put("serialNumber", options.serialNumber);
    put("productionCode", options.productionCode);
    if (options.hwSwId) {
        unit["hwSwId"] = showHex(readHwSwId(*options.hwSwId), 8);
    }
}

/// The rules of a description hold for what is stored, too.
void store(const host::Run& run, const SetOptions& options) {
    host::Store::Write write(run.store());
    const std::string key = host::hex4(run.node());
    const auto text = write.get(host::Table::nodes, key);
    if (!text) {
        throw Failure(ExitStatus::notFound, "the run remembers nothing of node " + key);
    }
    Json node = Json::parse(*text);
    change(node["unit"], options);
    host::DescriptionError error;
    if (!host::parseNode(node.dump(-1, ' ', false, Json::error_handler_t::replace), error)) {
        throw Failure(ExitStatus::usage, error.text);
    }
    if (!write.put(host::Table::nodes, key, node.dump()) || !write.commit()) {
        throw Failure(ExitStatus::failed, "the run's store cannot be written");
    }
}

void setIdentity(Session& session, const SetOptions& options) {
    if (options.isEmpty()) {
        throw Failure(ExitStatus::usage, "expected at least one of --hwswid, --unit-id, --serial, --production-code");
    }
    const host::Run& run = session.run();
    store(run, options);
    const host::NodeDescription node = nodesOf(run, run.node()).front();
    session.output().object({{"schema", "moxctl.identity-change.1"},
                             {"node", host::hex4(node.id)},
                             {"unitId", node.unit.id},
                             {"hwSwId", showHex(node.unit.hwSwId, 8)},
                             {"productionCode", node.unit.productionCode},
                             {"serialNumber", node.unit.serialNumber}});
    session.output().note("stored; services that run keep the identity that they have read until they start again");
}

} // namespace

void addIdVerbs(CommandLine& line) {
    CLI::App& group = line.addGroup("id", "Identity of a node's unit and modules");
    line.addVerb(group, "show", "Shows a node's identity as its services see it.", showIdentity);
    addIdDecodeVerb(line, group);
    const auto options = std::make_shared<SetOptions>();
    CLI::App& set = line.addVerb(group, "set",
                                 "Changes the identity that a node's hardware has. Services remember what they have "
                                 "read: they see it after their next start.",
                                 [options](Session& session) { setIdentity(session, *options); });
    set.add_option("--hwswid", options->hwSwId, "Hardware/software identifier, hexadecimal")->type_name("HWSWID");
    set.add_option("--unit-id", options->unitId, "Unit id, such as KORE; at most 7 characters")->type_name("TEXT");
    set.add_option("--serial", options->serialNumber, "Serial number, at most 16 characters")->type_name("TEXT");
    set.add_option("--production-code", options->productionCode, "Production code, at most 12 characters")
        ->type_name("TEXT");
}

} // namespace mox::tools
