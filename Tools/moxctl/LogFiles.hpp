#pragma once
/// The log files of a node: reading what they hold, and what is added.
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace mox::tools {

/// Reads a directory of logs. First thread.
///
///     LogFiles files(directory, "Echo");
///     auto lines = files.takeNew();      // all there is
///     waitFor(files.changeFd()); files.clearChanges();
///     lines = files.takeNew();           // what was added
class LogFiles {
public:
    /// @param service  whose file is read; empty: every file of the directory
    /// Throws Failure when the directory cannot be watched.
    LogFiles(std::string directory, std::string service);
    ~LogFiles();
    LogFiles(const LogFiles&) = delete;
    LogFiles& operator=(const LogFiles&) = delete;

    /// Complete lines that no call before has given, those of one file in its order, all by their time. A file that was
    /// renamed, because it had grown too long, is read to its end first.
    std::vector<std::string> takeNew();

    /// Readable when a file may have changed.
    int changeFd() const { return m_changes; }
    void clearChanges() const;

    /// Whether there is any file to read.
    bool any() const;

private:
    class File;
    std::vector<std::string> names() const;

    std::string m_directory;
    std::string m_service;
    int m_changes;
    std::map<std::string, std::unique_ptr<File>> m_files;
};

} // namespace mox::tools
