#pragma once
/// Collecting what a process has to say when something went wrong.
#include <string>
#include <vector>

namespace mox::host {

/// What a collection has brought.
struct Collection {
    std::string directory;
    std::vector<std::string> files;   ///< names in the directory
    std::vector<std::string> leftOut; ///< name and reason
};

/// Collects the registered files in the order of their priority, and the buffers of the log domains, into a directory,
/// which is made. Runs on the thread of the process's shell commands. Any thread; blocks until all is collected.
/// @param directory  empty: nodes/<nid>/troubleshooting/<process>.<pid> of the run
/// Tools get it by the command `@collect [directory]`.
Collection collectTroubleshooting(const std::string& directory);

} // namespace mox::host
