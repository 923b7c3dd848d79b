#pragma once
/// Rows of the tests that call an access object through a slot and look at what reaches the platform.
#include "abi/slots.hpp"
#include "support/PlatformRecorder.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace mox::abi {

/// One operation of an access object.
struct ForwardingRow {
    std::string operation;
    std::function<void(std::size_t slot)> expectForwarded;
    std::size_t slot = 0;
};

inline void PrintTo(const ForwardingRow& row, std::ostream* out) {
    *out << row.operation << " in slot " << row.slot;
}

/// A value that differs from position to position, in every byte, so that a swapped or cut one is seen.
/// @param round  truth values and enumerations, which have two safe values only, change from round to round
template <typename Value>
Value sample(std::size_t position, std::size_t round) {
    if constexpr (std::is_enum_v<Value> || std::is_same_v<Value, bool>) {
        return static_cast<Value>((position + round) % 2);
    } else {
        return testing::fromBits<Value>(0x8182838485868788 + position * 0x0101010101010101);
    }
}

/// Calls an operation by its slot and expects that one call reaches the platform's function, with the arguments that
/// went in, and that its result comes back. The types of both must be the same for this to compile.
template <typename Instance, typename Interface, typename Result, typename... Arguments, std::size_t... positions>
void expectForwarded(std::size_t slot, std::size_t round, Result (Interface::*operation)(Arguments...) const,
                     Result (* /*function*/)(Arguments...), const std::string& name,
                     std::index_sequence<positions...>) {
    testing::PlatformRecorder platform;
    const Instance instance;
    const Interface& sut = instance;
    if constexpr (std::is_void_v<Result>) {
        callSlot(sut, slot, operation, sample<Arguments>(positions, round)...);
    } else {
        const auto result = sample<Result>(sizeof...(Arguments), round);
        platform.answer(name, result);
        EXPECT_EQ(callSlot(sut, slot, operation, sample<Arguments>(positions, round)...), result);
    }
    const testing::PlatformCall expected{name, {testing::bitsOf(sample<Arguments>(positions, round))...}};
    EXPECT_EQ(platform.calls(), std::vector<testing::PlatformCall>{expected});
}

template <typename Instance, typename Interface, typename Result, typename... Arguments>
ForwardingRow forwardingRow(const char* operationName, Result (Interface::*operation)(Arguments...) const,
                            Result (*function)(Arguments...), const char* functionName) {
    return {operationName, [=](std::size_t slot) {
                for (std::size_t round = 0; round < 2; ++round) {
                    expectForwarded<Instance>(slot, round, operation, function, functionName,
                                              std::index_sequence_for<Arguments...>());
                }
            }};
}

/// Numbers rows that stand in the order of the slots.
inline std::vector<ForwardingRow> inSlotOrder(std::vector<ForwardingRow> rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].slot = firstSlotAfterDestructors + i;
    }
    return rows;
}

/// The operation's name as the name of its test.
inline std::string operationOf(const ::testing::TestParamInfo<ForwardingRow>& info) {
    return info.param.operation;
}

} // namespace mox::abi
