#pragma once
/// The tests that a command line selects.
#include <string>
#include <vector>

namespace mox::testkit {

struct SelectedTest {
    std::string suite;
    std::string name;
    std::string full() const { return suite + "." + name; }
};

/// Whether a name matches a GoogleTest filter: patterns with * and ?, separated by colons; those behind the first '-'
/// are left out.
bool matchesFilter(const std::string& name, const std::string& filter);

/// The suites that have been given a board and have no test, because of a misspelling most likely.
std::vector<std::string> boardsWithoutSuite();

/// The registered tests that run under the flags given, in their order.
std::vector<SelectedTest> selectedTests();

} // namespace mox::testkit
