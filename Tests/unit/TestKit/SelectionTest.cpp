#include "Selection.hpp"

#include <gtest/gtest.h>

namespace {

using mox::testkit::matchesFilter;

struct Row {
    const char* name;
    const char* filter;
    bool matches;
};

TEST(Filter, SelectsAsTheTestFrameworkDoes) {
    const Row rows[] = {
        {"A.B", "*", true},        {"A.B", "A.B", true},     {"A.B", "A.?", true},      {"A.B", "A", false},
        {"A.B", "X.*:A.*", true},  {"A.B", "X.*", false},    {"A.B", "-A.B", false},    {"A.B", "-A.C", true},
        {"A.B", "A.*-A.B", false}, {"A.B", "A.*-A.C", true}, {"A.B", "*-X:A.B", false}, {"P/S.T/0", "P/S.*/0", true},
        {"A.B", "", true},
    };
    for (const Row& row : rows)
        EXPECT_EQ(matchesFilter(row.name, row.filter), row.matches) << row.name << " under " << row.filter;
}

} // namespace
