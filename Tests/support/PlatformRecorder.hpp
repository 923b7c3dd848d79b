#pragma once
#include <cstdint>
#include <map>
#include <mutex>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

namespace mox::testing {

/// One call as it reached the platform: every argument as the bits of a 64-bit word.
struct PlatformCall {
    std::string function;
    std::vector<std::uint64_t> arguments;
};

inline bool operator==(const PlatformCall& a, const PlatformCall& b) {
    return a.function == b.function && a.arguments == b.arguments;
}

inline void PrintTo(const PlatformCall& call, std::ostream* out) {
    *out << call.function << '(' << std::hex;
    for (const std::uint64_t argument : call.arguments) {
        *out << " 0x" << argument;
    }
    *out << std::dec << " )";
}

/// The bits of a number, enumeration or pointer, to compare them whatever their type.
template <typename Value>
std::uint64_t bitsOf(Value value) {
    if constexpr (std::is_pointer_v<Value>) {
        return reinterpret_cast<std::uintptr_t>(value);
    } else {
        return static_cast<std::uint64_t>(value);
    }
}

/// The value that has these bits; those that do not fit are dropped.
template <typename Value>
Value fromBits(std::uint64_t bits) {
    if constexpr (std::is_pointer_v<Value>) {
        return reinterpret_cast<Value>(static_cast<std::uintptr_t>(bits));
    } else {
        return static_cast<Value>(bits);
    }
}

/// A platform whose functions only note that they were called, and answer what they were told to, else 0 or null.
/// For tests that pass bits which are no handles: the doubles of Platform/mock watch over handles and are the choice
/// for everything else. Link it instead of a platform; log lines go to LogLines. Calls are noted while one recorder
/// lives, from any thread.
class PlatformRecorder {
public:
    PlatformRecorder();
    ~PlatformRecorder();
    PlatformRecorder(const PlatformRecorder&) = delete;
    PlatformRecorder& operator=(const PlatformRecorder&) = delete;

    /// Sets what a function answers from now on.
    template <typename Result>
    void answer(const std::string& function, Result result) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_answers[function] = bitsOf(result);
    }

    std::vector<PlatformCall> calls() const;

    /// Notes a call.
    /// @return the bits of its answer
    std::uint64_t take(PlatformCall call);

private:
    mutable std::mutex m_mutex;
    std::vector<PlatformCall> m_calls;
    std::map<std::string, std::uint64_t> m_answers;
};

} // namespace mox::testing
