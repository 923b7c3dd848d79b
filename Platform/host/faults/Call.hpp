#pragma once
/// The way of a call for whose function a fault may be planned. The way of all others is in binding/bind.hpp.
#include "Faults.hpp"
#include "Outputs.hpp"

#include <cstdint>
#include <type_traits>
#include <vector>

namespace mox::host::faults {

/// Whether a fault may be planned for a function. @param Tag  names it
template <typename Tag>
inline bool isPlanned() {
    if constexpr (joinsRun(Tag::name))
        joinRun();
    constexpr std::uint32_t bit = functionBit(Tag::name);
    return mayBePlanned(bit);
}

/// Writes the fault's log line if one is due, and waits as long as the fault delays.
void begin(std::string_view function, const Due& due);

/// Destroys the message that a call which is not carried out was to take: a function that is given a message for
/// sending takes it, whatever it answers.
void discardMessage(std::string_view function, const std::vector<Argument>& arguments);

/// Keeps what a call has answered. @param result  its bits
void remember(std::string_view function, std::uint64_t result, const std::vector<Argument>& arguments);

/// Writes the outputs that were remembered last. @return the result; 0 when nothing was remembered
std::uint64_t repeat(std::string_view function, const std::vector<Argument>& arguments);

/// Overwrites the outputs of a call that was carried out with success.
void spoil(std::string_view function, std::uint64_t result, const Due& due, const std::vector<Argument>& arguments);

template <typename Result>
std::uint64_t bitsOf(const Result& result) {
    if constexpr (std::is_pointer_v<Result>)
        return reinterpret_cast<std::uintptr_t>(result);
    else
        return static_cast<std::uint64_t>(result);
}

template <typename Result>
Result resultOf(std::uint64_t bits) {
    if constexpr (std::is_pointer_v<Result>)
        return reinterpret_cast<Result>(static_cast<std::uintptr_t>(bits));
    else
        return static_cast<Result>(bits);
}

/// Whether a call reaches its function.
inline bool isCarriedOut(const Due& due) {
    return due.action == Action::pass || due.action == Action::garbage;
}

/// What stands for a call that is not carried out. @return bits of the result
inline std::uint64_t standIn(std::string_view function, const Due& due, const std::vector<Argument>& arguments) {
    discardMessage(function, arguments);
    return due.action == Action::stuck ? repeat(function, arguments) : due.result;
}

inline void follow(std::string_view function, std::uint64_t result, const Due& due,
                   const std::vector<Argument>& arguments) {
    if (due.isWatched)
        remember(function, result, arguments);
    if (due.action == Action::garbage)
        spoil(function, result, due, arguments);
}

/// Takes a call past the faults that are planned for its function. @param Tag  names the function
template <typename Tag, typename Result, typename... Parameters>
__attribute__((cold, noinline)) Result call(Result (*function)(Parameters...),
                                            std::common_type_t<Parameters>... arguments) {
    const Due due = look(Tag::name);
    if (due.id == 0 && !due.isWatched)
        return function(arguments...);
    begin(Tag::name, due);
    const std::vector<Argument> all{describe(arguments)...};
    if constexpr (std::is_void_v<Result>) {
        if (isCarriedOut(due)) {
            function(arguments...);
            follow(Tag::name, 0, due, all);
        } else {
            standIn(Tag::name, due, all);
        }
    } else {
        if (!isCarriedOut(due))
            return resultOf<Result>(standIn(Tag::name, due, all));
        const Result result = function(arguments...);
        follow(Tag::name, bitsOf(result), due, all);
        return result;
    }
}

} // namespace mox::host::faults
