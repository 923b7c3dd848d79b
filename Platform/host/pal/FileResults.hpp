#pragma once
/// Results of the file functions.

namespace mox::host {

/// The EAaFileRetVal of an errno value.
int fileResult(int error);

} // namespace mox::host
