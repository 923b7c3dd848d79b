#pragma once
#include <mutex>
#include <string>
#include <vector>

namespace mox::tools {

class Output;

/// Takes the log lines that library functions write to the terminal while the object lives: moxctl says itself what
/// came out. With --verbose they are shown as remarks. One at a time.
class LibraryLog {
public:
    /// @param progress  beginning of lines that are shown in any case, without it; empty: none
    explicit LibraryLog(const Output& output, const std::string& progress = "");
    ~LibraryLog();
    LibraryLog(const LibraryLog&) = delete;
    LibraryLog& operator=(const LibraryLog&) = delete;

    /// What was logged so far.
    std::vector<std::string> lines() const;

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

} // namespace mox::tools
