#pragma once
#include <chrono>
#include <cstdint>
#include <string>

namespace mox::tools {

class Output;

/// One line on a terminal that tells how far a long work is, and is gone with the object. Nothing is shown where
/// standard error is no terminal, with --quiet, and for work that is over at once.
class Progress {
public:
    /// @param what   such as "writing kor.bin"
    /// @param total  bytes to be done
    Progress(const Output& output, std::string what, std::uint64_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// @param done  bytes; 0: shown without a part, for work that cannot tell how far it is
    void show(std::uint64_t done);

private:
    using Clock = std::chrono::steady_clock;

    std::string m_what;
    std::uint64_t m_total;
    bool m_wanted;
    bool m_shown = false;
    Clock::time_point m_next;
};

} // namespace mox::tools
