#include "Outputs.hpp"

#include <algorithm>
#include <cstring>
#include <random>

namespace mox::host::faults {
namespace {

constexpr std::size_t noParameter = SIZE_MAX;

/// A parameter whose type does not tell what it is.
struct SpecialParameter {
    std::string_view function;
    std::size_t parameter;
    OutputKind kind;
    std::size_t count = noParameter; ///< of a block: the parameter that holds, or points to, the number of its items
    std::size_t times = noParameter; ///< another number to be multiplied with
};

constexpr SpecialParameter specialParameters[] = {
    {"AaFileFreeListDirArray", 0, OutputKind::none}, // freed by the call
    {"AaFileRead", 0, OutputKind::block, 1, 2},         {"ddal_rio_copy_from", 3, OutputKind::block, 4},
    {"ddal_rio_copy_from_fd", 2, OutputKind::block, 3}, {"ddal_rio_get_node_ids", 0, OutputKind::block, 1},
    {"ddal_rio_get_node_ids", 2, OutputKind::length},   {"ddal_syscom_route_get", 0, OutputKind::block, 1},
    {"ddal_sysinfo_get_data", 4, OutputKind::block, 5}, {"ddal_sysinfo_get_data", 5, OutputKind::length},
};

/// Of a block: more is left as it is.
constexpr std::size_t mostBytes = 65536;

const SpecialParameter* findSpecial(std::string_view function, std::size_t parameter) {
    const auto* const end = std::end(specialParameters);
    const auto* const row = std::find_if(std::begin(specialParameters), end, [&](const SpecialParameter& special) {
        return special.function == function && special.parameter == parameter;
    });
    return row == end ? nullptr : row;
}

std::size_t numberOf(const Argument& argument) {
    std::size_t number = argument.number;
    if (!argument.isNumber && argument.target != nullptr)
        std::memcpy(&number, argument.target, sizeof number);
    return number;
}

std::size_t roomOfBlock(const SpecialParameter& special, const std::vector<Argument>& arguments) {
    std::size_t room = arguments[special.parameter].itemSize;
    for (const std::size_t factor : {special.count, special.times})
        if (factor != noParameter && __builtin_mul_overflow(room, numberOf(arguments[factor]), &room))
            return 0;
    return room;
}

/// A text has the room that the number behind it tells.
std::size_t roomOfText(const std::vector<Argument>& arguments, std::size_t text) {
    const bool isTold = text + 1 < arguments.size() && arguments[text + 1].isNumber;
    return isTold ? arguments[text + 1].number : unknownRoom;
}

std::size_t lengthOf(const Output& text) {
    const char* const characters = reinterpret_cast<const char*>(text.data);
    return text.bytes == unknownRoom ? std::strlen(characters) : strnlen(characters, text.bytes);
}

void writeText(const Output& output, const std::vector<unsigned char>& text) {
    if (output.bytes == 0)
        return;
    const std::size_t length = std::min(text.size(), output.bytes - 1);
    std::copy_n(text.begin(), length, output.data);
    output.data[length] = '\0';
}

void garbleText(const Output& output, std::mt19937_64& random) {
    if (output.bytes == 0)
        return;
    const std::size_t length = output.bytes == unknownRoom ? lengthOf(output) : output.bytes - 1;
    std::generate_n(output.data, length, [&] { return static_cast<unsigned char>(random() % 255 + 1); });
    output.data[length] = '\0';
}

} // namespace

OutputKind kindOf(std::string_view function, std::size_t parameter, OutputKind byType) {
    const SpecialParameter* special = findSpecial(function, parameter);
    return special == nullptr ? byType : special->kind;
}

std::vector<Output> outputsOf(std::string_view function, const std::vector<Argument>& arguments) {
    std::vector<Output> outputs;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        Output output;
        output.kind = kindOf(function, i, arguments[i].kind);
        output.data = static_cast<unsigned char*>(arguments[i].target);
        if (output.kind == OutputKind::none || output.data == nullptr)
            continue;
        output.bytes = arguments[i].itemSize;
        if (output.kind == OutputKind::text)
            output.bytes = roomOfText(arguments, i);
        else if (output.kind == OutputKind::block)
            output.bytes = std::min(roomOfBlock(*findSpecial(function, i), arguments), mostBytes);
        outputs.push_back(output);
    }
    return outputs;
}

Written readOutputs(const std::vector<Output>& outputs) {
    Written written;
    for (const Output& output : outputs) {
        const std::size_t length = output.kind == OutputKind::text ? lengthOf(output) : output.bytes;
        written.emplace_back(output.data, output.data + length);
    }
    return written;
}

void writeOutputs(const std::vector<Output>& outputs, const Written& written) {
    for (std::size_t i = 0; i < std::min(outputs.size(), written.size()); ++i) {
        if (outputs[i].kind == OutputKind::text)
            writeText(outputs[i], written[i]);
        else
            std::copy_n(written[i].begin(), std::min(written[i].size(), outputs[i].bytes), outputs[i].data);
    }
}

void garble(const std::vector<Output>& outputs, std::uint64_t seed) {
    std::mt19937_64 random(seed);
    for (const Output& output : outputs) {
        if (output.kind == OutputKind::text)
            garbleText(output, random);
        else if (output.kind == OutputKind::boolean)
            *output.data = static_cast<unsigned char>(random() & 1U);
        else if (output.kind == OutputKind::plain || output.kind == OutputKind::block)
            std::generate_n(output.data, output.bytes, [&] { return static_cast<unsigned char>(random()); });
    }
}

} // namespace mox::host::faults
