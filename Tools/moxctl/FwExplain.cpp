#include "FwExplain.hpp"

#include "ImageShow.hpp"
#include "Numbers.hpp"

#include <ddal/ddal_devicetree.h>
#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

#include <dirent.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <memory>

namespace mox::tools {

namespace {

namespace update = ps::hwapi::common::update;

const Listing fileListing{"moxctl.firmware-candidates.1",
                          "files",
                          {{"FILE", "file"},
                           {"NAME", "name"},
                           {"TRAILER", "trailerCode"},
                           {"CRC", "crcCode"},
                           {"IDENTIFIER", "match"},
                           {"VERSION", "version"},
                           {"WHY", "why"}}};

/// What a file's name makes of it.
enum class NameKind { noChip, noSuffix, prefixed, fallback, passedOver };

/// In the order of NameKind.
constexpr std::array nameKinds{"noChip", "noSuffix", "prefixed", "fallback", "passedOver"};

struct Search {
    std::string directory;
    std::string prefixed; ///< search string with the unit type
    std::string chip;
    std::uint32_t ownHwSwId = 0;
    bool allowsMinor = false;
};

/// @return nothing when the directory cannot be read
std::optional<std::vector<std::string>> namesIn(const std::string& directory) {
    struct Close {
        void operator()(DIR* open) const { closedir(open); }
    };
    const std::unique_ptr<DIR, Close> open(opendir(directory.c_str()));
    if (!open) {
        return std::nullopt;
    }
    std::vector<std::string> names;
    while (const dirent* entry = readdir(open.get())) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

NameKind kindOf(const std::string& name, const Search& search, bool isAnyPrefixed) {
    if (update::isImageName(name, search.prefixed)) {
        return NameKind::prefixed;
    }
    if (update::isImageName(name, search.chip)) {
        return isAnyPrefixed ? NameKind::passedOver : NameKind::fallback;
    }
    return name.find(search.chip) == std::string::npos ? NameKind::noChip : NameKind::noSuffix;
}

std::string nameText(NameKind kind, const Search& search) {
    switch (kind) {
    case NameKind::noChip:
        return "the name does not contain " + search.chip;
    case NameKind::noSuffix:
        return "the name's first '.bin' is not its end";
    case NameKind::passedOver:
        return "passed over, for there are names with " + search.prefixed;
    case NameKind::fallback:
        return "no name contains " + search.prefixed + ", so " + search.chip + " is enough";
    default:
        return "the name contains " + search.prefixed;
    }
}

/// What the library says of a file whose name fits, and why.
void addImage(Json& item, const std::string& path, const Search& search) {
    const ImageVerdict verdict = verifyImage(path, std::nullopt);
    std::uint32_t version = 0;
    const int result = binary_version(path.c_str(), search.ownHwSwId, search.allowsMinor ? 1 : 0, &version);
    item["crcCode"] = binary_crc(path.c_str());
    item["versionCode"] = result;
    item["compatible"] = result == 0;
    if (!verdict.image) {
        item["trailerCode"] = verdict.code;
        item["why"] = verdict.message;
        return;
    }
    item["trailerCode"] = IMAGE_OK;
    const TrailerReading reading(path);
    const IdentifierMatch match = matchOf(reading.trailer(), search.ownHwSwId);
    item["match"] = jsonOf(match);
    item["version"] = versionNumber(*verdict.image);
    std::string why = match == IdentifierMatch::exact   ? "lists the board's identifier"
                      : match == IdentifierMatch::minor ? "lists another minor version of the board's identifier"
                                                        : "does not list the board's identifier";
    if (match == IdentifierMatch::minor && !search.allowsMinor) {
        why += ", which this component does not allow";
    }
    if (item["crcCode"] != IMAGE_OK) {
        why += "; the decision does not look at the CRC, an update will fail";
    }
    item["why"] = why;
}

Json candidate(const std::string& name, const Search& search, NameKind kind) {
    // Longer paths are cut for the decision, so they are here.
    const std::string path = (search.directory + "/" + name).substr(0, update::constant::imagePathSize - 1);
    Json item{{"file", name}, {"path", path}, {"name", nameKinds[static_cast<std::size_t>(kind)]}};
    item["considered"] = kind == NameKind::prefixed || kind == NameKind::fallback;
    for (const char* member : {"trailerCode", "crcCode", "versionCode", "match", "version"}) {
        item[member] = nullptr;
    }
    item["compatible"] = false;
    item["why"] = nameText(kind, search);
    if (item["considered"]) {
        try {
            addImage(item, path, search);
        } catch (const std::exception& unreadable) {
            item["versionCode"] = -1;
            item["trailerCode"] = IMAGE_ERR_FILE;
            item["why"] = unreadable.what();
        }
        item["nameRule"] = nameText(kind, search);
    }
    return item;
}

Json candidates(const Search& search) {
    const auto names = namesIn(search.directory);
    if (!names) {
        return {};
    }
    const bool isAnyPrefixed = std::any_of(names->begin(), names->end(), [&search](const std::string& name) {
        return update::isImageName(name, search.prefixed);
    });
    Json items = Json::array();
    for (const std::string& name : *names) {
        items.push_back(candidate(name, search, kindOf(name, search, isAnyPrefixed)));
    }
    return items;
}

Json markersOf(const FwComponent& component) {
    const auto left = forcedLeft(component);
    return {{"disabledBy", disablingMarkers()},
            {"forceMarker", forceMarker(component)},
            {"forcedLeft", left ? Json(*left) : Json()}};
}

/// The compatible file's version; null unless there is exactly one.
Json onlyVersion(const Json& files) {
    Json version;
    unsigned count = 0;
    for (const Json& file : files) {
        if (file.at("compatible") == true) {
            version = file.at("version");
            ++count;
        }
    }
    return count == 1 ? version : Json();
}

} // namespace

Json explanationOf(const FwComponent& component, const std::string& directory) {
    Search search{directory, "", component.chip(), ownHwSwId(), component.allowsMinor};
    update::SearchString text{};
    if (!search.chip.empty() && update::formSearchString(unit_type(), search.chip.c_str(), text) == 0) {
        search.prefixed = text.data();
    }
    const auto active = component.active();
    Json json{{"component", component.name}, {"device", component.device()}, {"unitId", unit_version()}};
    json["hwSwId"] = showHex(search.ownHwSwId, 8);
    json["directory"] = directory;
    json["chip"] = search.chip;
    json["searchString"] = search.prefixed;
    json["minorAllowed"] = search.allowsMinor;
    json["markers"] = markersOf(component);
    json["files"] = search.prefixed.empty() ? Json() : candidates(search);
    json["activeVersion"] = active ? Json(*active) : Json();
    json["bootedFromRam"] = component.needsRam ? Json(is_uboot_booted_from_ram() == 1) : Json();
    json["rule"] = component.rule;
    const Json version = onlyVersion(json["files"]);
    json["fileVersion"] = version;
    json["ruleSays"] = version.is_null() || !active
                           ? Json()
                           : Json(component.isUpdated(version.get<std::uint32_t>(), *active) ? "yes" : "no");
    return json;
}

void printExplanation(const Output& output, const Json& explanation) {
    const auto text = [&explanation](const char* member) { return cellText(explanation.at(member)); };
    output.line("component  " + text("component") + ": " + text("device") + ", active version " +
                text("activeVersion"));
    output.line("board      unit " + text("unitId") + ", hardware/software identifier " + text("hwSwId") + ", minor " +
                (explanation.at("minorAllowed") == true ? "difference allowed" : "difference not allowed"));
    const Json& markers = explanation.at("markers");
    output.line("markers    updates " +
                (markers.at("disabledBy").empty() ? std::string("not switched off")
                                                  : "switched off by " + cellText(markers.at("disabledBy"))) +
                "; forced updates left: " + cellText(markers.at("forcedLeft")));
    output.line("search     '" + text("searchString") + "', or '" + text("chip") +
                "' where no name contains that, in " + text("directory"));
    if (explanation.at("files").is_array() && !explanation.at("files").empty()) {
        output.list(fileListing, explanation.at("files"));
    } else {
        output.line("no files");
    }
    if (explanation.at("bootedFromRam") == false) {
        output.line("start      not from RAM: without force no update is needed, whatever the images are");
    }
    output.line("rule       " + text("rule") + ": file " + text("fileVersion") + ", active " + text("activeVersion") +
                ", so " + text("ruleSays"));
}

} // namespace mox::tools
