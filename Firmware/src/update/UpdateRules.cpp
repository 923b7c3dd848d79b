#include "update/OutText.hpp"

#include <mox/UpdateRules.hpp>

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace ps::hwapi::common::update {
namespace {

constexpr std::string_view imageSuffix = ".bin";

/// A row holds for units of one version or of one type.
struct FpgaRow {
    std::string_view version; ///< empty: any
    std::string_view type;    ///< empty: any
    FpgaOfUnit fpga;
};

// The first row that holds counts: a KORE is a KOR with another FPGA.
constexpr FpgaRow fpgaRows[] = {
    {"KORE", "", {"tirvak", "TIRVAK-QE", 0x10001}},
    {"", "KOR", {"tirvo2", "TIRVO2-QE", 0x10001}},
    {"", "VEL", {"ym4", "YM4-QE", 0x70001}},
    {"", "VEM", {"ym4", "YM4-QE", 0x70001}},
};

struct LocalFpgaRow {
    std::string_view version; ///< empty: any
    std::string_view type;    ///< empty: any
    std::uint32_t id;
};

// In the order of fpgaRows. It has no row for VEM, and another identifier for KORE.
constexpr LocalFpgaRow localFpgaRows[] = {
    {"KORE", "", 0x10002},
    {"", "KOR", 0x10001},
    {"", "VEL", 0x70001},
};

struct ExtensionBmuRow {
    std::uint32_t board;
    std::uint32_t id;
};
constexpr ExtensionBmuRow extensionBmuRows[] = {{2, 0x20001}, {3, 0x30001}, {4, 0x40001}};

constexpr std::string_view resettableUnits[] = {"ZUPA", "ZUPB", "ZUPM", "ZUPN"};

constexpr const char* locationNames[] = {"primary", "backup", "uImage"};

template <typename Row>
bool holds(const Row& row, std::string_view unitVersion, std::string_view unitType) {
    return (row.version.empty() || row.version == unitVersion) && (row.type.empty() || row.type == unitType);
}

using LowerCase = std::array<char, constant::unitTextSize>;

LowerCase lowerCaseOf(const char* unitType) {
    LowerCase lower{};
    copyText(lower.data(), lower.size(), unitType);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return lower;
}

} // namespace

int formSearchString(const char* boardType, const char* chipIdentifier, SearchString& search) {
    const int length = std::snprintf(search.data(), search.size(), "%.*s-%s",
                                     static_cast<int>(constant::unitTypeLength), boardType, chipIdentifier);
    if (length < 0)
        return -2;
    return static_cast<std::size_t>(length) < search.size() ? 0 : -3;
}

bool isImageName(std::string_view name, std::string_view search) {
    return name.find(search) != std::string_view::npos && name.size() >= imageSuffix.size() &&
           name.find(imageSuffix) == name.size() - imageSuffix.size();
}

MarkerPath disableMarkerOf(const char* unitType) {
    MarkerPath path{};
    std::snprintf(path.data(), path.size(), "/ffs/run/logs/disable-firmware-update-%s", lowerCaseOf(unitType).data());
    return path;
}

MarkerPath forceMarkerOf(const char* unitType, const char* componentName) {
    MarkerPath path{};
    std::snprintf(path.data(), path.size(), "/ffs/run/logs/force-firmware-update-%s-%s", lowerCaseOf(unitType).data(),
                  componentName);
    return path;
}

FpgaOfUnit fpgaOf(std::string_view unitVersion, std::string_view unitType) {
    for (const FpgaRow& row : fpgaRows)
        if (holds(row, unitVersion, unitType))
            return row.fpga;
    return {"unknown", "unknown", 0};
}

std::uint32_t localFpgaIdOf(std::string_view unitVersion, std::string_view unitType) {
    for (const LocalFpgaRow& row : localFpgaRows)
        if (holds(row, unitVersion, unitType))
            return row.id;
    return 0;
}

const char* bmuChipOf(std::string_view unitVersion) {
    return unitVersion == "ZUPY" ? "TKVA" : constant::bmuChip;
}

std::uint32_t extensionBmuIdOf(std::uint32_t ddalBoard) {
    for (const ExtensionBmuRow& row : extensionBmuRows)
        if (row.board == ddalBoard)
            return row.id;
    return 0;
}

bool isBmuResettable(std::string_view unitId) {
    return std::find(std::begin(resettableUnits), std::end(resettableUnits), unitId) != std::end(resettableUnits);
}

const char* ubootLocationName(std::uint32_t location) {
    return location < std::size(locationNames) ? locationNames[location] : "unknown";
}

} // namespace ps::hwapi::common::update
