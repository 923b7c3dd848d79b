#pragma once

namespace mox::tools {

/// What moxctl ends with. Scripts compare these numbers.
enum class ExitStatus : int {
    done = 0, ///< also when there was nothing to do
    failed = 1,
    usage = 2, ///< wrong command line, or a wrong file given on it
    notFound = 3,
    verificationFailed = 4,
    noRun = 5, ///< no run, or what carries its messages cannot be reached
    timeLimit = 124,
    interrupted = 130,
    readerGone = 141 ///< nobody reads standard output any more; as a shell reports SIGPIPE
};

} // namespace mox::tools
