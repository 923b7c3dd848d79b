// Calls a fuzz target with each file given and with each file of each directory given, and with what lies next to it:
// its beginnings, and the same bytes but for one.
#include "Fuzz.hpp"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;

/// Of a long input not every place is tried.
constexpr std::size_t mostPlaces = 60;

/// @return how many inputs were tried
std::size_t replay(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(stream), {}};
    fuzz(whole);
    std::size_t tried = 1;
    const std::size_t step = std::max<std::size_t>(1, whole.size() / mostPlaces);
    for (std::size_t at = 0; at < whole.size(); at += step) {
        fuzz(std::string_view(whole).substr(0, at));
        for (const char other : {'\0', '\xFF', '<', '9'}) {
            std::string changed = whole;
            changed[at] = other;
            fuzz(changed);
        }
        tried += 5;
    }
    return tried;
}

} // namespace

int main(int argc, char** argv) {
    std::size_t files = 0;
    std::size_t inputs = 0;
    for (int i = 1; i < argc; ++i) {
        if (!fs::is_directory(argv[i])) {
            inputs += replay(argv[i]);
            ++files;
            continue;
        }
        for (const auto& entry : fs::directory_iterator(argv[i])) {
            inputs += replay(entry.path());
            ++files;
        }
    }
    std::printf("%zu inputs from %zu seeds\n", inputs, files);
    return files > 0 ? 0 : 1;
}
