#include "sweep/Report.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

namespace mox::sweep {

void report(const std::string& line) {
    std::cout << line << std::endl;
    const char* const path = std::getenv("MOX_SWEEP_REPORT");
    if (path == nullptr || *path == '\0')
        return;
    std::ofstream file(path, std::ios::app);
    file << line + "\n"; // in one piece: sweeps run side by side
    EXPECT_TRUE(file.flush()) << "cannot write " << path;
}

} // namespace mox::sweep
