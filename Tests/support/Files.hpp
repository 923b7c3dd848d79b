#pragma once
/// What tests look at in the file system.
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace mox::testing {

/// The bytes of a file; none when it cannot be read.
inline std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// How many descriptors this process has open, and one for the look itself.
inline std::size_t openDescriptors() {
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(open), end(open)));
}

} // namespace mox::testing
