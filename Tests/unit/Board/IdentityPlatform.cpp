#include "unit/Board/IdentityPlatform.hpp"

#include "Board/src/Caches.hpp"

#include <cstring>
#include <sstream>

namespace mox::testing {
namespace {

using ::testing::_;

constexpr unsigned int featureId = 0x20063;

std::string number(std::uint64_t value) {
    return std::to_string(value);
}

} // namespace

std::string hexText(std::uint32_t number) {
    std::ostringstream text;
    text << "0x" << std::hex << number;
    return text.str();
}

LogLine debugLine(const std::string& text) {
    return {1, featureId, text};
}

LogLine infoLine(const std::string& text) {
    return {2, featureId, text};
}

LogLine warningLine(const std::string& text) {
    return {3, featureId, text};
}

IdentityPlatform::IdentityPlatform() {
    answerUnit();
    answerModules();
    answerNode();
    answerWim();
    ON_CALL(sysLog, AaSysLogPrintE(_, _, _))
        .WillByDefault([this](EAaSysLogSeverityLevel level, unsigned int feature, const std::string& text) {
            const std::lock_guard<std::mutex> guard(m_mutex);
            m_lines.push_back({level, feature, text});
            return 0;
        });
}

std::vector<std::string> IdentityPlatform::takeCalls() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    std::vector<std::string> calls;
    calls.swap(m_calls);
    return calls;
}

std::vector<LogLine> IdentityPlatform::takeLog() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    std::vector<LogLine> lines;
    lines.swap(m_lines);
    return lines;
}

void IdentityPlatform::note(const std::string& call) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_calls.push_back(call);
}

int IdentityPlatform::resultOf(const std::string& function) const {
    const auto result = m_results.find(function);
    return result == m_results.end() ? DDAL_OK : result->second;
}

int IdentityPlatform::text(const std::string& function, const std::string& arguments, std::uint32_t length,
                           char* destination) {
    note(function + "(" + arguments + ")");
    const int result = resultOf(function);
    const auto answer = m_texts.find(function);
    if (result == DDAL_OK && answer != m_texts.end()) {
        std::strncpy(destination, answer->second.c_str(), length);
    }
    return result;
}

void IdentityPlatform::answerUnit() {
    ON_CALL(devicetree, ddal_devicetree_get_unit_id(_, _, _))
        .WillByDefault([this](std::uint32_t unitNumber, std::uint32_t length, char* destination) {
            return text("ddal_devicetree_get_unit_id", number(unitNumber) + ", " + number(length), length, destination);
        });
    ON_CALL(devicetree, ddal_devicetree_get_production_code(_, _, _))
        .WillByDefault([this](std::uint32_t unitNumber, std::uint32_t length, char* destination) {
            return text("ddal_devicetree_get_production_code", number(unitNumber) + ", " + number(length), length,
                        destination);
        });
    ON_CALL(devicetree, ddal_devicetree_get_serial_number(_, _, _))
        .WillByDefault([this](std::uint32_t unitNumber, std::uint32_t length, char* destination) {
            return text("ddal_devicetree_get_serial_number", number(unitNumber) + ", " + number(length), length,
                        destination);
        });
    ON_CALL(devicetree, ddal_devicetree_get_hw_sw_id(_, _))
        .WillByDefault([this](std::uint32_t unitNumber, std::uint32_t* id) {
            note("ddal_devicetree_get_hw_sw_id(" + number(unitNumber) + ")");
            const int result = resultOf("ddal_devicetree_get_hw_sw_id");
            if (result == DDAL_OK) {
                *id = hwSwId;
            }
            return result;
        });
}

void IdentityPlatform::answerModules() {
#define ANSWER_TEXT(function)                                                                                          \
    ON_CALL(devicetree, function(_, _)).WillByDefault([this](std::uint32_t length, char* destination) {                \
        return text(#function, number(length), length, destination);                                                   \
    })
    ANSWER_TEXT(ddal_devicetree_get_module_unit_id);
    ANSWER_TEXT(ddal_devicetree_get_module_production_code);
    ANSWER_TEXT(ddal_devicetree_get_module_serial_number);
    ANSWER_TEXT(ddal_devicetree_get_die_id);
    ANSWER_TEXT(ddal_devicetree_get_die_id_quality);
#undef ANSWER_TEXT
#define ANSWER_TEXT(function)                                                                                          \
    ON_CALL(devicetree, function(_, _, _))                                                                             \
        .WillByDefault([this](std::uint32_t port, std::uint32_t length, char* destination) {                           \
            return text(#function, number(port) + ", " + number(length), length, destination);                         \
        })
    ANSWER_TEXT(ddal_devicetree_get_ext_module_unit_id);
    ANSWER_TEXT(ddal_devicetree_get_ext_module_production_code);
    ANSWER_TEXT(ddal_devicetree_get_ext_module_serial_number);
#undef ANSWER_TEXT
}

void IdentityPlatform::answerNode() {
    ON_CALL(rio, ddal_rio_get_own_id(_)).WillByDefault([this](std::uint16_t* id) {
        note("ddal_rio_get_own_id()");
        const int result = resultOf("ddal_rio_get_own_id");
        if (result == DDAL_OK) {
            *id = rioId;
        }
        return result;
    });
    ON_CALL(sysCom, AaSysComGetOwnNid()).WillByDefault([this] {
        note("AaSysComGetOwnNid()");
        return ownNid;
    });
    ON_CALL(sysCom, AaSysComSicadGet(_, _)).WillByDefault([this](std::uint16_t task, std::uint16_t node) {
        note("AaSysComSicadGet(" + hexText(task) + ", " + hexText(node) + ")");
        return static_cast<std::uint32_t>(node) << 16 | task;
    });
    ON_CALL(sysCom, AaSysComNmapGetBoard(_)).WillByDefault([this](std::uint32_t sicad) {
        note("AaSysComNmapGetBoard(" + hexText(sicad) + ")");
        return board;
    });
    ON_CALL(sysCom, AaSysComNmapGetCpu(_)).WillByDefault([this](std::uint32_t sicad) {
        note("AaSysComNmapGetCpu(" + hexText(sicad) + ")");
        return cpu;
    });
}

void IdentityPlatform::answerWim() {
    ON_CALL(unit, ddal_unit_get_board()).WillByDefault([this] {
        note("ddal_unit_get_board()");
        return boardType;
    });
    ON_CALL(config, AaConfigRadGetValue(_)).WillByDefault([this](unsigned int id) {
        note("AaConfigRadGetValue(" + hexText(id) + ")");
        return radValue;
    });
    ON_CALL(config, AaConfigTagGet(_, _, _)).WillByDefault([this](const char* tag, void** data, unsigned int* size) {
        note("AaConfigTagGet(" + std::string(tag) + ")");
        if (!hasTechnologyTag) {
            *data = nullptr;
            *size = 0;
            return int{EAaConfigRetVal_NotFound};
        }
        *size = static_cast<unsigned int>(technologyTag.size());
        *data = mock::real::AaMemMalloc(technologyTag.size() + 1);
        std::memcpy(*data, technologyTag.c_str(), technologyTag.size() + 1);
        return int{EAaConfigRetVal_NoError};
    });
    ON_CALL(mem, AaMemUnRef(_)).WillByDefault([this](void* block) {
        note("AaMemUnRef()");
        mock::real::AaMemUnRef(block);
    });
    ON_CALL(sysinfo, ddal_sysinfo_get_uint(_, _, _, _, _))
        .WillByDefault([this](std::uint32_t category, std::uint32_t key, std::uint32_t indexKind,
                              const std::uint32_t* index, std::uint64_t* value) {
            note("ddal_sysinfo_get_uint(" + number(category) + ", " + number(key) + ", " + number(indexKind) + ", " +
                 number(*index) + ")");
            const Card& card = cards[*index];
            if (card.result == DDAL_OK) {
                *value = card.kind;
            }
            return card.result;
        });
}

Identification::Identification() {
    ps::hwapi::board::caches.forget();
}

Identification::~Identification() {
    EXPECT_THAT(platform.takeLog(), ::testing::IsEmpty()) << "lines that nobody expected";
}

} // namespace mox::testing
