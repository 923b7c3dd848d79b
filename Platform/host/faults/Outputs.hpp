#pragma once
/// Which parameters of a platform function are outputs, told from their types, and by a small table where the types do
/// not tell.
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <vector>

struct SAaFileHandle;
struct SAaSem;
struct SAaSemReMutex;

namespace mox::host::faults {

enum class OutputKind {
    none,     ///< an input
    plain,    ///< one number, enumerator or record
    boolean,  ///< one bool
    text,     ///< characters up to a terminator
    block,    ///< so many bytes
    length,   ///< how much of a block is filled: repeated, never garbled
    handedOut ///< memory or a handle that the caller gives back: must not be handed out twice
};

/// One parameter of a call, as far as its type tells what it is.
struct Argument {
    OutputKind kind = OutputKind::none;
    bool isNumber = false;
    std::size_t number = 0;   ///< of a number
    void* target = nullptr;   ///< of a pointer to something that can be written
    std::size_t itemSize = 0; ///< of what it points to; 1 for void
};

/// What a call writes to.
struct Output {
    OutputKind kind = OutputKind::none;
    unsigned char* data = nullptr; ///< never null
    std::size_t bytes = 0;         ///< room; of a text whose room is not told: unknownRoom
};

constexpr std::size_t unknownRoom = SIZE_MAX;

template <typename Parameter>
constexpr OutputKind kindOfType() {
    using Target = std::remove_pointer_t<Parameter>;
    if constexpr (!std::is_pointer_v<Parameter> || std::is_const_v<Target> || std::is_void_v<Target> ||
                  std::is_function_v<Target>)
        return OutputKind::none;
    else if constexpr (std::is_same_v<Target, SAaFileHandle> || std::is_same_v<Target, SAaSem> ||
                       std::is_same_v<Target, SAaSemReMutex>)
        return OutputKind::none;
    else if constexpr (std::is_pointer_v<Target>)
        return OutputKind::handedOut;
    else if constexpr (std::is_same_v<Target, char>)
        return OutputKind::text;
    else if constexpr (std::is_same_v<Target, bool>)
        return OutputKind::boolean;
    else
        return OutputKind::plain;
}

template <typename Parameter>
Argument describe(const Parameter& argument) {
    Argument result;
    result.kind = kindOfType<Parameter>();
    result.isNumber = std::is_integral_v<Parameter>;
    if constexpr (std::is_integral_v<Parameter>) {
        result.number = static_cast<std::size_t>(argument);
    } else if constexpr (std::is_same_v<Parameter, void*>) {
        result.target = argument;
        result.itemSize = 1;
    } else if constexpr (kindOfType<Parameter>() != OutputKind::none) {
        result.target = argument;
        result.itemSize = sizeof(*argument);
    }
    return result;
}

/// The values of a print function: a type of its own on all processors that we build for.
inline Argument describe(va_list /*values*/) {
    return {};
}

/// What a parameter of a function is, the table included. @param byType  what kindOfType says
OutputKind kindOf(std::string_view function, std::size_t parameter, OutputKind byType);

/// The outputs of a call, without those for which the caller passed null.
std::vector<Output> outputsOf(std::string_view function, const std::vector<Argument>& arguments);

/// What a call has written: enough to write it once more.
using Written = std::vector<std::vector<unsigned char>>;

Written readOutputs(const std::vector<Output>& outputs);
/// Writes into the same outputs as far as there is room.
void writeOutputs(const std::vector<Output>& outputs, const Written& written);
/// Overwrites outputs with pseudo-random bytes; the same seed gives the same bytes.
void garble(const std::vector<Output>& outputs, std::uint64_t seed);

} // namespace mox::host::faults
