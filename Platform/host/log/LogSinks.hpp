#pragma once
/// Where lines go: terminal, file, journal. Each begins with a line that says on what platform the process runs.
#include <cstdint>
#include <string>
#include <string_view>

namespace mox::host::log {

struct LogLine;

/// What the environment asks for; read once.
struct SinkSettings {
    /// Lowest severity for the terminal: MOX_LOG = off, error, warning (default), info or debug; 5: off.
    int terminalLevel = 3;
    /// Socket of the journal: MOX_LOG_JOURNAL = 1 (the machine's own), or a path; empty: off.
    std::string journalSocket;
};
const SinkSettings& sinkSettings();

/// Writes to standard error if the severity is asked for.
void toTerminal(const LogLine& line, std::string_view formatted);

/// Writes to `directory`/`line.process`.log, which is opened on the first line and when directory or name change.
/// Beyond 32 MiB the file is renamed to `line.process`.1.log. A file that cannot be written is given up with one line
/// on the terminal and tried again with the next line.
void toFile(const std::string& directory, const LogLine& line, std::string_view formatted);

/// Sends to the journal if it is asked for; a journal that does not listen loses the line.
void toJournal(const LogLine& line);

} // namespace mox::host::log
