#include "unit/Firmware/update/UpdateFixture.hpp"

#include <ddal/ddal.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace mox::firmwaretest {

using ::testing::_;

namespace {

const char* nameOf(int level) {
    static const char* const names[] = {"any", "debug", "info", "warning", "error"};
    return names[level];
}

} // namespace

UpdateFixture::UpdateFixture() {
    std::filesystem::create_directories(images);
    std::filesystem::create_directories("/ffs/run/logs");
    ON_CALL(m_devicetree, ddal_devicetree_get_unit_id(0, _, _))
        .WillByDefault([this](uint32_t, uint32_t length, char* text) {
            if (m_unitResult == DDAL_OK)
                std::strncpy(text, m_unitId.c_str(), length);
            return m_unitResult;
        });
    ON_CALL(m_devicetree, ddal_devicetree_get_hw_sw_id(0, _)).WillByDefault([this](uint32_t, uint32_t* id) {
        if (m_hwSwIdResult == DDAL_OK)
            *id = hwSwId;
        return m_hwSwIdResult;
    });
}

std::vector<std::string> UpdateFixture::takeLines(const std::string& function) {
    const std::string prefix = function + "(): ";
    std::vector<std::string> taken;
    const std::vector<testkit::LogLine> lines = log.lines();
    for (std::size_t& next = m_taken[function]; next < lines.size();) {
        const testkit::LogLine& line = lines[next++];
        if (line.feature != 0 || line.text.compare(0, prefix.size(), prefix) != 0)
            continue;
        taken.push_back(nameOf(line.level) + (" " + line.text.substr(prefix.size())));
        log.expect(testkit::line(line.level, 0, line.text)); // it is the caller who compares
    }
    return taken;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return file ? text.str() : "no file " + path;
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

std::ptrdiff_t openDescriptors() {
    std::filesystem::directory_iterator open("/proc/self/fd");
    return std::distance(begin(open), end(open));
}

} // namespace mox::firmwaretest
