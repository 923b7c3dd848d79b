#pragma once
#include "support/LogLines.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace mox::testing {

/// A platform that answers the identification functions as the test wishes, and notes calls and log lines.
class IdentityPlatform {
public:
    IdentityPlatform();
    ~IdentityPlatform();
    IdentityPlatform(const IdentityPlatform&) = delete;
    IdentityPlatform& operator=(const IdentityPlatform&) = delete;

    /// Lets the device tree answer with a result code from now on, until it is DDAL_OK again.
    void failWith(const std::string& function, int result) { m_results[function] = result; }
    /// The text that a function of the device tree answers with.
    void answerText(const std::string& function, const std::string& text) { m_texts[function] = text; }

    /// @return calls since the last time, such as "ddal_rio_get_own_id()" or "ddal_devicetree_get_die_id(129)":
    ///         all arguments but outputs
    std::vector<std::string> takeCalls();
    /// @return lines since the last time
    std::vector<LogLine> takeLog();

    /// A radio card, or what comes of reading it.
    struct Card {
        int result = 0;
        std::uint64_t kind = 0;
        bool leavesItsKind = false; ///< also when reading it fails
    };

    std::uint32_t hwSwId = 0;
    std::uint16_t rioId = 0;
    std::uint16_t ownNid = 0;
    std::uint16_t board = 0;
    std::uint16_t cpu = 0;
    int boardType = 0;
    unsigned int radValue = 0;
    bool hasTechnologyTag = false;
    std::string technologyTag;
    Card cards[3];

private:
    /// What takes the platform's calls.
    class Doubles;

    void note(const std::string& call);
    int text(const std::string& function, const std::string& arguments, std::uint32_t length, char* destination);
    int resultOf(const std::string& function) const;

    std::mutex m_mutex;
    std::map<std::string, int> m_results;
    std::map<std::string, std::string> m_texts;
    std::vector<std::string> m_calls;
    std::vector<LogLine> m_lines;
    std::unique_ptr<Doubles> m_doubles;
};

/// A process that knows nothing yet, on such a platform. A line that the test did not take fails it.
class Identification : public ::testing::Test {
protected:
    Identification();
    ~Identification() override;

    IdentityPlatform platform;
};

/// Lines of the identification functions.
LogLine debugLine(const std::string& text);
LogLine infoLine(const std::string& text);
LogLine warningLine(const std::string& text);

/// @return "0x1f"
std::string hexText(std::uint32_t number);

} // namespace mox::testing
