#include "CommandLine.hpp"
#include "Numbers.hpp"

#include <mox/Board.h>
#include <mox/BoardTables.hpp>

#include <nlohmann/json.hpp>

#include <memory>

namespace mox::tools {

namespace {

namespace board = ps::hwapi::board;

constexpr std::uint32_t typeMask = 0x0FF00000;
constexpr std::uint32_t versionMask = 0x0FFFF000;
/// Units of the Wim line have one version, whatever their revision.
constexpr std::uint32_t wimVersionMask = 0x00F00000;

const Listing decodedListing{
    "moxctl.hwswid.1",
    "fields",
    {{"FIELD", "field"}, {"MASK", "mask"}, {"KEY", "key"}, {"VALUE", "value"}, {"NAME", "name"}, {"ROW", "row"}}};

/// A look-up as the tables give it; the value is the library's.
template <typename Rows>
Json lookUp(const char* member, const char* shown, const Rows& rows, std::uint32_t mask, std::uint32_t hwSwId,
            std::uint32_t value, const char* unknownName) {
    const std::uint32_t key = hwSwId & mask;
    Json item{{"member", member}, {"field", shown}, {"mask", showHex(mask, 8)}, {"key", showHex(key, 8)}};
    item["value"] = value;
    item["name"] = unknownName;
    item["row"] = nullptr;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].key == key) {
            item["name"] = rows[i].name;
            item["row"] = i;
            break;
        }
    }
    return item;
}

Json decoded(std::uint32_t hwSwId) {
    const EUnitType type = ApiGetUnitTypeFromHwSwId(hwSwId);
    const EUnitVersion version = ApiGetUnitVersionFromHwSwId(hwSwId);
    const std::uint32_t mask = type == EUnitType_Wim ? wimVersionMask : versionMask;
    const std::uint32_t hardwareId = hwSwId >> 12U & 0xFFFFU;
    Json items = Json::array();
    items.push_back(lookUp("unitType", "unit type", board::UnitTypeList, typeMask, hwSwId, type, "EUnitType_Unknown"));
    items.push_back(
        lookUp("unitVersion", "unit version", board::UnitVersionList, mask, hwSwId, version, "EUnitVersion_Unknown"));
    items.push_back({{"member", "hardwareId"},
                     {"field", "hardware id"},
                     {"mask", showHex(versionMask, 8)},
                     {"key", showHex(hwSwId & versionMask, 8)},
                     {"value", showHex(hardwareId, 4)}});
    items.push_back({{"member", "minor"},
                     {"field", "minor version"},
                     {"mask", showHex(0xFF, 8)},
                     {"key", showHex(hwSwId & 0xFFU, 8)},
                     {"value", showHex(hwSwId & 0xFFU, 2)}});
    return items;
}

void decode(Session& session, const std::string& text) {
    const std::uint32_t hwSwId = readHwSwId(text);
    const Json items = decoded(hwSwId);
    Json object{{"schema", decodedListing.schema}, {"hwSwId", showHex(hwSwId, 8)}};
    for (Json item : items) {
        const std::string member = item.at("member");
        item.erase("member");
        item.erase("field");
        object[member] = std::move(item);
    }
    session.output().object(object);
    if (!session.output().isJson()) {
        session.output().list(decodedListing, items);
    }
}

} // namespace

void addIdDecodeVerb(CommandLine& line, CLI::App& group) {
    const auto text = std::make_shared<std::string>();
    CLI::App& verb =
        line.addVerb(group, "decode", "Tells what a hardware/software identifier says: masks, matched rows, names.",
                     [text](Session& session) { decode(session, *text); });
    addArgument(verb, "HWSWID", *text, "1 to 8 hexadecimal digits, with or without 0x").required();
}

} // namespace mox::tools
