#pragma once
#include <algorithm>
#include <chrono>
#include <optional>

namespace mox::tools {

/// A limit of time that a user gave, or none.
class Deadline {
public:
    /// @param seconds  from now; nothing: never
    explicit Deadline(std::optional<double> seconds) {
        if (seconds) {
            m_end = Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(*seconds));
        }
    }

    bool passed() const { return m_end && Clock::now() >= *m_end; }

    /// Milliseconds to wait now: what is left, rounded up, at most `most`.
    int leftMs(int most) const {
        if (!m_end) {
            return most;
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*m_end - Clock::now()).count();
        return static_cast<int>(std::clamp<decltype(left)>(left, 0, most));
    }

private:
    using Clock = std::chrono::steady_clock;
    std::optional<Clock::time_point> m_end;
};

} // namespace mox::tools
