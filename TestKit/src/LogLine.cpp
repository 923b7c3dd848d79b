#include <testkit/LogLine.hpp>

#include <sstream>

namespace mox::testkit {
namespace {

const char* levelName(int level) {
    switch (level) {
    case debugLevel:
        return "debug";
    case infoLevel:
        return "info";
    case warningLevel:
        return "warning";
    case errorLevel:
        return "error";
    default:
        return "any level";
    }
}

std::string hex(unsigned int number) {
    std::ostringstream out;
    out << "0x" << std::hex << std::uppercase << number;
    return out.str();
}

} // namespace

std::ostream& operator<<(std::ostream& out, const LogLine& line) {
    return out << levelName(line.level) << ' ' << hex(line.feature) << ": " << line.text;
}

bool LogMatcher::matches(const LogLine& line) const {
    return (m_level == anyLevel || m_level == line.level) && (m_feature == anyFeature || m_feature == line.feature) &&
           m_text.Matches(line.text);
}

std::string LogMatcher::describe() const {
    std::ostringstream out;
    out << levelName(m_level) << ", " << (m_feature == anyFeature ? "any feature" : "feature " + hex(m_feature))
        << ", text ";
    m_text.DescribeTo(&out);
    return out.str();
}

} // namespace mox::testkit
