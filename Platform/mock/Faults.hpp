#pragma once
/// The fault plan: makes calls of platform functions fail instead of being carried out.
///
///     fail("AaSemCreateC").with(EAaSemRetVal_OutOfResources);            // the next call
///     fail("AaMemMalloc").onCall(3).with(nullptr);                       // the third call from now
///     fail("AaSysComMsgSend").onCall(2).times(4).with(EAaSysComRetVal_NoReceiver);
///     fail("AaFileWrite").fromCall(5).with(0);                           // the fifth and all later ones
///     const Fault skipped = fail("AaMemRef").doNothing();                // a function without result
///     EXPECT_EQ(skipped.fired(), 1u);
///
/// A faulted call reaches neither an installed mock nor the platform. Outputs stay as they were. A message whose
/// sending is faulted is destroyed, as the platform does with every message that it cannot send. A handle whose release
/// is faulted stays valid until the test ends and does not count as left open. A registration whose withdrawal is
/// faulted is withdrawn nevertheless.
///
/// Function names and values are checked when the fault is planned: an unknown name, a value of another enumeration or
/// one that does not fit throws std::invalid_argument. All faults end with the test.
/// Any thread. Nothing blocks.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <typeindex>

namespace mox::mock {

struct FaultRule;

/// A planned fault. Copies mean the same one; it goes on when all are gone.
class Fault {
public:
    explicit Fault(std::shared_ptr<FaultRule> rule) : m_rule(std::move(rule)) {}
    /// @return calls that it has failed
    std::uint64_t fired() const;
    /// @return the function whose call it has failed last; empty when it has failed none
    std::string lastFailed() const;
    /// Ends it early.
    void cancel();

private:
    std::shared_ptr<FaultRule> m_rule;
};

/// The result of a faulted call.
struct FaultValue {
    enum class Kind { none, number, boolean, pointer };
    Kind kind = Kind::none;
    std::uint64_t bits = 0;                               ///< numbers with sign extended
    bool negative = false;                                ///< of a number
    std::type_index type = std::type_index(typeid(void)); ///< of an enumeration or a pointer, else void
};

/// Says which calls fail; nothing is planned until with() or doNothing() is called.
class [[nodiscard]] FaultBuilder {
public:
    /// Throws std::invalid_argument for an unknown function.
    explicit FaultBuilder(const std::string& function);

    /// The first call that fails. @param n  1 (as without onCall): the next one
    FaultBuilder& onCall(std::uint64_t n);
    /// How many calls in a row fail. @param count  1 or more; 1 when absent
    FaultBuilder& times(std::uint64_t count);
    /// The n-th call and all later ones fail.
    FaultBuilder& fromCall(std::uint64_t n);

    /// Plans the fault. @param value  what the calls answer: the function's own result type, or a plain number that
    /// fits
    template <typename Value>
    Fault with(Value value) {
        FaultValue result;
        if constexpr (std::is_same_v<Value, bool>) {
            result.kind = FaultValue::Kind::boolean;
            result.bits = value ? 1 : 0;
        } else if constexpr (std::is_null_pointer_v<Value>) {
            result.kind = FaultValue::Kind::pointer;
        } else if constexpr (std::is_pointer_v<Value>) {
            result.kind = FaultValue::Kind::pointer;
            result.bits = reinterpret_cast<std::uintptr_t>(value);
            result.type = typeid(Value);
        } else if constexpr (std::is_enum_v<Value>) {
            result = number(static_cast<std::underlying_type_t<Value>>(value));
            result.type = typeid(Value);
        } else {
            static_assert(std::is_integral_v<Value>, "a result is a number, an enumerator, a bool or a pointer");
            result = number(value);
        }
        return plan(result);
    }

    /// Plans the fault of a function without result: the calls do nothing.
    Fault doNothing();

private:
    template <typename Number>
    static FaultValue number(Number value) {
        FaultValue result;
        result.kind = FaultValue::Kind::number;
        result.bits = static_cast<std::uint64_t>(value);
        if constexpr (std::is_signed_v<Number>)
            result.negative = value < 0;
        return result;
    }
    Fault plan(const FaultValue& value);

    std::string m_function;
    std::uint64_t m_first = 1;
    std::uint64_t m_count = 1;
};

/// Begins a fault of one function.
inline FaultBuilder fail(const std::string& function) {
    return FaultBuilder(function);
}

/// Fails the n-th call from now of any function that can fail, with that function's general failure (null, false, 0
/// from a registration, its family's "out of resources", DDAL_IO_ERROR). A sweep counts n up until nothing fires:
///
///     for (std::uint64_t n = 1;; ++n) {
///         Fault fault = failAny(n);
///         scenario();
///         if (fault.fired() == 0)
///             break;
///     }
/// @param n  1: the next call
Fault failAny(std::uint64_t n);

/// Ends all faults.
void clearFaults();

} // namespace mox::mock
