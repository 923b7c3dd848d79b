#pragma once
/// Commands that look at a node's own files go on in a moxctl of the node's sandbox, where /ffs, /ram, /tmp and the
/// others are the node's.
///
///     void checkFirmware(Session& session, const Options& options) {
///         continueInNode(session, {options.directory});
///         look(options.directory); // from here on this process is in the sandbox
///     }
#include <string>
#include <vector>

namespace mox::tools {

class Session;

/// Ends a command whose work another moxctl has done, which has printed everything.
struct DoneElsewhere {
    int status;
};

/// Returns at once in a process that is in the sandbox of the node already, and makes it a part of the node. Otherwise
/// runs the same command line there, waits for it (signals are handed on), and throws DoneElsewhere with its status.
/// @param paths  files and directories of the command line. One that the node has under that name is the node's;
///               otherwise the workstation's is shown to it, read-only
/// Throws Failure: as Session::run, or when the sandbox cannot be started or its process was killed.
void continueInNode(Session& session, const std::vector<std::string>& paths);

} // namespace mox::tools
