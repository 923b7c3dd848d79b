#pragma once
#include <string>

namespace mox::sweep {

/// Prints what a sweep has covered, and adds it to the file that MOX_SWEEP_REPORT names, if any: scripts/test.sh shows
/// that file beside ctest's summary.
void report(const std::string& line);

} // namespace mox::sweep
