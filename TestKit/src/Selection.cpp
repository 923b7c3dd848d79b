#include "Selection.hpp"

#include <testkit/Board.hpp>

#include <fnmatch.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace mox::testkit {
namespace {

bool matchesAny(const std::string& name, const std::string& patterns) {
    std::istringstream stream(patterns);
    for (std::string pattern; std::getline(stream, pattern, ':');)
        if (fnmatch(pattern.c_str(), name.c_str(), FNM_NOESCAPE) == 0)
            return true;
    return false;
}

bool isDisabled(const SelectedTest& test) {
    return test.suite.rfind("DISABLED_", 0) == 0 || test.suite.find("/DISABLED_") != std::string::npos ||
           test.name.rfind("DISABLED_", 0) == 0;
}

} // namespace

bool matchesFilter(const std::string& name, const std::string& filter) {
    const auto dash = filter.find('-');
    const std::string positive = filter.substr(0, dash);
    return matchesAny(name, positive.empty() ? "*" : positive) &&
           (dash == std::string::npos || !matchesAny(name, filter.substr(dash + 1)));
}

std::vector<std::string> boardsWithoutSuite() {
    std::vector<std::string> names = BoardOf::suites();
    const ::testing::UnitTest& all = *::testing::UnitTest::GetInstance();
    for (int i = 0; i < all.total_test_suite_count(); ++i)
        names.erase(std::remove(names.begin(), names.end(), all.GetTestSuite(i)->name()), names.end());
    return names;
}

std::vector<SelectedTest> selectedTests() {
    std::vector<SelectedTest> selected;
    const ::testing::UnitTest& all = *::testing::UnitTest::GetInstance();
    for (int i = 0; i < all.total_test_suite_count(); ++i) {
        const ::testing::TestSuite& suite = *all.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j) {
            const SelectedTest test{suite.name(), suite.GetTestInfo(j)->name()};
            if (matchesFilter(test.full(), GTEST_FLAG_GET(filter)) &&
                (!isDisabled(test) || GTEST_FLAG_GET(also_run_disabled_tests)))
                selected.push_back(test);
        }
    }
    return selected;
}

} // namespace mox::testkit
