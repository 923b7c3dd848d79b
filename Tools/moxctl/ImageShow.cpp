#include "ImageShow.hpp"

#include "Numbers.hpp"

#include <mox/Firmware.h>

#include <nlohmann/json.hpp>

#include <array>

namespace mox::tools {

namespace {

struct ResultRow {
    int code;
    const char* name;
};

constexpr std::array resultTable{
    ResultRow{IMAGE_OK, "IMAGE_OK"},
    ResultRow{IMAGE_ERR_XML, "IMAGE_ERR_XML"},
    ResultRow{IMAGE_ERR_FILE, "IMAGE_ERR_FILE"},
    ResultRow{IMAGE_ERR_TRAILER_LENGTH, "IMAGE_ERR_TRAILER_LENGTH"},
    ResultRow{IMAGE_ERR_HWSWID, "IMAGE_ERR_HWSWID"},
    ResultRow{IMAGE_ERR_CRC, "IMAGE_ERR_CRC"},
};

/// In the order of ImageProblem.
constexpr std::array problemNames{"none",   "tooShort",  "offsetZero", "offsetOutside", "offsetSwapped",
                                  "notXml", "noTrailer", "crc",        "noIdentifiers", "noMatch"};

Json textOrNull(const std::optional<std::string>& text) {
    return text ? Json(*text) : Json();
}

Json numberOrNull(const std::optional<std::string>& text) {
    return text ? Json(elementNumber(text)) : Json();
}

Json identifiersOf(const Image& image) {
    Json all = Json::array();
    for (const std::uint32_t identifier : image.hwSwIds) {
        all.push_back(showHex(identifier, 8));
    }
    return all;
}

/// The name of each member as a table shows it.
struct FieldRow {
    const char* member;
    const char* shown;
};

constexpr std::array fieldTable{
    FieldRow{"size", "file size"},
    FieldRow{"offset", "trailer offset"},
    FieldRow{"trailerSize", "trailer size"},
    FieldRow{"zeroByte", "zero byte"},
    FieldRow{"formatVersion", "format version"},
    FieldRow{"crc", "CRC-32"},
    FieldRow{"length", "length"},
    FieldRow{"targetUnit", "target unit"},
    FieldRow{"swId", "software id"},
    FieldRow{"swVersion", "software version"},
    FieldRow{"swVersionNumber", "version as number"},
    FieldRow{"buildTime", "build time"},
    FieldRow{"hwSwIds", "identifiers"},
};

} // namespace

const char* resultName(int code) {
    for (const ResultRow& row : resultTable) {
        if (row.code == code) {
            return row.name;
        }
    }
    return "";
}

Json jsonOf(IdentifierMatch match) {
    switch (match) {
    case IdentifierMatch::exact:
        return "exact";
    case IdentifierMatch::minor:
        return "minor";
    case IdentifierMatch::none:
        return "none";
    default:
        return {};
    }
}

Json jsonOf(const Image& image) {
    Json json{{"schema", "moxctl.image.1"}, {"file", image.file}, {"size", image.size}, {"offset", image.offset}};
    json["trailerSize"] = image.size - image.offset;
    json["zeroByte"] = image.hasZeroByte;
    json["formatVersion"] = numberOrNull(image.formatVersion);
    json["crc"] = image.crc ? Json(showHex(elementNumber(image.crc), 8)) : Json();
    json["length"] = numberOrNull(image.length);
    json["targetUnit"] = textOrNull(image.targetUnit);
    json["swId"] = textOrNull(image.swId);
    json["swVersion"] = textOrNull(image.swVersion);
    json["swVersionNumber"] = versionNumber(image);
    json["buildTime"] = textOrNull(image.buildTime);
    json["hwSwIds"] = image.hasList ? identifiersOf(image) : Json();
    return json;
}

Json rowsOf(const Image& image) {
    const Json json = jsonOf(image);
    Json rows = Json::array();
    for (const FieldRow& row : fieldTable) {
        rows.push_back({{"member", row.member}, {"field", row.shown}, {"value", json.at(row.member)}});
    }
    return rows;
}

Json jsonOf(const ImageVerdict& verdict) {
    const bool isGood = verdict.problem == ImageProblem::none;
    Json json{{"file", verdict.file}, {"result", isGood ? "good" : "bad"}, {"code", verdict.code}};
    json["name"] = resultName(verdict.code);
    json["problem"] = problemNames[static_cast<std::size_t>(verdict.problem)];
    json["message"] = verdict.message;
    json["notes"] = verdict.notes;
    json["match"] = jsonOf(verdict.match);
    json["payloadCrc"] = verdict.payloadCrc ? Json(showHex(*verdict.payloadCrc, 8)) : Json();
    json["image"] = verdict.image ? jsonOf(*verdict.image) : Json();
    return json;
}

std::string lineOf(const ImageVerdict& verdict) {
    if (verdict.problem == ImageProblem::none) {
        return verdict.file + ": good: " + verdict.message;
    }
    return verdict.file + ": bad: " + verdict.message + " (" + std::to_string(verdict.code) + ")";
}

} // namespace mox::tools
