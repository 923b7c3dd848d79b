#pragma once
/// One call of a platform function on its way through the doubles: counted, perhaps faulted, offered to the installed
/// mock, carried out.
#include "mock/Slot.hpp"
#include "mock/src/FunctionRecord.hpp"
#include "mock/src/Open.hpp"

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <type_traits>
#include <utility>

namespace mox::mock {

/// A call while it lasts. Calls of one thread nest: a platform function may call back.
class Call {
public:
    /// Counts the call and looks for a fault.
    Call(FunctionRecord& record, std::initializer_list<std::uint64_t> arguments);
    ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    bool faulted() const { return m_fault.has_value(); }
    /// Whether the platform carried the call out.
    bool carriedOut() const { return m_carriedOut; }
    const CallId& id() const { return m_id; }

    template <typename Result>
    Result faultResult() const {
        if constexpr (std::is_pointer_v<Result>)
            return reinterpret_cast<Result>(static_cast<std::uintptr_t>(m_fault->bits));
        else if constexpr (std::is_same_v<Result, bool>)
            return m_fault->bits != 0;
        else
            return static_cast<Result>(m_fault->bits);
    }

    /// Notes that the platform carries out the innermost call of this thread, if that is a call of `function`.
    static void noteCarriedOut(const char* function);
    /// The innermost call of this thread; null outside of calls.
    static const Call* current();

private:
    FunctionRecord& m_record;
    CallId m_id;
    std::optional<FaultValue> m_fault;
    bool m_carriedOut = false;
    Call* m_outer;
};

/// What an argument looks like in the record: a number, an enumerator or a pointer as a word.
template <typename Argument>
std::uint64_t word(const Argument& argument) {
    if constexpr (std::is_pointer_v<Argument>)
        return reinterpret_cast<std::uintptr_t>(argument);
    else if constexpr (std::is_enum_v<Argument>) {
        std::underlying_type_t<Argument> number{}; // a caller may pass what is no enumerator
        std::memcpy(&number, &argument, sizeof number);
        return static_cast<std::uint64_t>(number);
    } else if constexpr (std::is_integral_v<Argument>)
        return static_cast<std::uint64_t>(argument);
    else
        return 0;
}

/// What a call does to the ledger: built before the call, told the result afterwards. Specialised in the families'
/// files with the classes of Effects.hpp.
template <typename Tag>
struct Effect {
    template <typename... Arguments>
    explicit Effect(Call&, const Arguments&...) {}
    template <typename Result>
    void finish(const Result&) {}
};

/// Stands for the result of a function that has none.
struct NoResult {};

/// Takes a call through fault plan, mock and platform.
template <typename Tag, typename Calls, typename Result, typename... Parameters>
Result dispatch(FunctionRecord& record, Result (Calls::*method)(Parameters...), Result (*real)(Parameters...),
                std::common_type_t<Parameters>... arguments) {
    Call call(record, {word(arguments)...});
    Effect<Tag> effect(call, arguments...);
    const auto answer = [&]() -> Result {
        if (call.faulted()) {
            if constexpr (std::is_void_v<Result>)
                return;
            else
                return call.faultResult<Result>();
        }
        typename Slot<Calls>::Visit visit;
        return visit.mock() != nullptr ? (visit.mock()->*method)(arguments...) : real(arguments...);
    };
    if constexpr (std::is_void_v<Result>) {
        answer();
        effect.finish(NoResult{});
    } else {
        const Result result = answer();
        effect.finish(result);
        return result;
    }
}

} // namespace mox::mock
