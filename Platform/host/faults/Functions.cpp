#include "Functions.hpp"

#include "../ddal/Ddal.hpp"
#include "Outputs.hpp"

#include <pal/AaConfig.h>
#include <pal/AaCpuBit.h>
#include <pal/AaError.h>
#include <pal/AaFile.h>
#include <pal/AaMem.h>
#include <pal/AaPro.h>
#include <pal/AaSem.h>
#include <pal/AaShell.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>
#include <pal/AaSysMb.h>
#include <pal/AaSysTime.h>
#include <pal/AaSysTimer.h>
#include <pal/AaTrbl.h>

#include <algorithm>
#include <numeric>

namespace mox::host::faults {
namespace {

using Table = std::map<std::string_view, Function>;

/// Answer a value as int, where others of their families answer success or failure.
constexpr std::string_view intValues[] = {"AaConfigTagIsSet",    "AaFileDirExists",
                                          "AaFileExists",        "ddal_hotplug_get_event_open",
                                          "ddal_unit_get_board", "ddal_rp3_str_open_event_file"};

template <typename Result, typename... Parameters>
void add(Table& table, std::string_view name, std::string_view resultType) {
    Function& function = table[name];
    function.name = name;
    function.result = shapeOf<Result>();
    function.resultType = resultType;
    const std::vector<OutputKind> byType{kindOfType<Parameters>()...};
    bool pointsToPointer = false;
    bool isWritten = false;
    for (std::size_t i = 0; i < byType.size(); ++i) {
        const OutputKind kind = kindOf(name, i, byType[i]);
        pointsToPointer = pointsToPointer || kind == OutputKind::handedOut;
        function.hasOutputs = function.hasOutputs || kind != OutputKind::none;
        isWritten = isWritten || (kind != OutputKind::none && kind != OutputKind::length);
    }
    function.handsOut = std::is_pointer_v<Result> || pointsToPointer;
    // Nothing is known of what such a function points to.
    function.canGarble = isWritten && !pointsToPointer;
}

Table makeTable() {
    Table table;
#define MOX_FUNCTION(result, name, types) add<result, MOX_TYPES(types)>(table, #name, #result);
#define MOX_FUNCTION0(result, name) add<result>(table, #name, #result);
#define MOX_PROCEDURE(name, types) add<void, MOX_TYPES(types)>(table, #name, "void");
#define MOX_PROCEDURE0(name) add<void>(table, #name, "void");
#include <families/ddal.def>
#include <families/pal.def>
    add<int>(table, "AaSysLogPrint", "int");
    add<int>(table, "AaSysLogPrintE", "int");
    return table;
}

} // namespace

const Table& functions() {
    static const Table& table = *new Table(makeTable()); // execution units may call to the very end
    return table;
}

const Function* findFunction(std::string_view name) {
    const auto found = functions().find(name);
    return found == functions().end() ? nullptr : &found->second;
}

std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, change});
        }
    }
    return row[b.size()];
}

std::vector<std::string> functionsLike(const std::string& name, std::size_t most) {
    std::vector<std::pair<std::size_t, std::string>> all;
    for (const auto& [candidate, function] : functions()) {
        const bool isPart = name.size() > 2 && candidate.find(name) != std::string_view::npos;
        all.emplace_back(isPart ? 0 : editDistance(name, candidate), candidate);
    }
    std::sort(all.begin(), all.end());
    std::vector<std::string> nearest;
    for (const auto& [distance, candidate] : all)
        if (nearest.size() < most && (distance <= candidate.size() / 3 || nearest.empty()))
            nearest.push_back(candidate);
    return nearest;
}

bool isReading(const Function& function) {
    const bool isStatus = function.result.isEnum || function.resultType == "int" || function.resultType == "void";
    return function.hasOutputs || !isStatus ||
           std::find(std::begin(intValues), std::end(intValues), function.name) != std::end(intValues);
}

bool isSuccess(const Function& function, std::uint64_t bits) {
    const auto number = static_cast<std::int64_t>(bits);
    switch (function.result.kind) {
    case ResultShape::Kind::none:
        return true;
    case ResultShape::Kind::boolean:
    case ResultShape::Kind::pointer:
        return bits != 0;
    case ResultShape::Kind::number:
        break;
    }
    // Statuses are either positive numbers of failures, or counts with negative ones.
    const auto failure = generalFailure(function.name, function.result);
    return number == 0 || (number > 0 && (!failure || *failure <= 0));
}

} // namespace mox::host::faults
