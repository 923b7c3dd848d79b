#pragma once
/// Log lines, and matchers of them: severity, feature and text.
///
///     error(0x20003, "Fan: stopped")               // the very text
///     warning(0x20003, HasSubstr("slow"))          // any matcher of a std::string
///     line(anyLevel, anyFeature, StartsWith("Fan"))
#include <gmock/gmock.h>

#include <ostream>
#include <string>

namespace mox::testkit {

/// As the platform numbers severities; see pal/AaSysLog.h.
constexpr int debugLevel = 1;
constexpr int infoLevel = 2;
constexpr int warningLevel = 3;
constexpr int errorLevel = 4;
constexpr int anyLevel = 0;
/// Matches every feature identifier.
constexpr unsigned int anyFeature = 0xFFFFFFFF;

struct LogLine {
    int level = infoLevel;
    unsigned int feature = 0;
    std::string text;
};

/// "error 0x20003: Fan: stopped"
std::ostream& operator<<(std::ostream& out, const LogLine& line);

class LogMatcher {
public:
    LogMatcher(int level, unsigned int feature, ::testing::Matcher<std::string> text)
        : m_level(level), m_feature(feature), m_text(std::move(text)) {}
    bool matches(const LogLine& line) const;
    /// "error, feature 0x20003, text is equal to ..."
    std::string describe() const;

private:
    int m_level;
    unsigned int m_feature;
    ::testing::Matcher<std::string> m_text;
};

inline LogMatcher line(int level, unsigned int feature, const ::testing::Matcher<std::string>& text) {
    return {level, feature, text};
}
inline LogMatcher error(unsigned int feature, const ::testing::Matcher<std::string>& text) {
    return {errorLevel, feature, text};
}
inline LogMatcher warning(unsigned int feature, const ::testing::Matcher<std::string>& text) {
    return {warningLevel, feature, text};
}
inline LogMatcher info(unsigned int feature, const ::testing::Matcher<std::string>& text) {
    return {infoLevel, feature, text};
}
inline LogMatcher debug(unsigned int feature, const ::testing::Matcher<std::string>& text) {
    return {debugLevel, feature, text};
}

} // namespace mox::testkit
