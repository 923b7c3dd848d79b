#include "unit/Board/IdentityPlatform.hpp"

#include "Board/src/Caches.hpp"
#include "mock/AaSysLogText.hpp"

#include <ddal/ddal_devicetree.h>
#include <ddal/ddal_rio.h>
#include <ddal/ddal_sysinfo.h>
#include <ddal/ddal_unit.h>
#include <pal/AaConfig.h>
#include <pal/AaMem.h>
#include <pal/AaSysCom.h>

#include <gmock/gmock.h>

#include <cstring>
#include <sstream>

#define MOX_FAMILY <families/AaConfig.def>
#define MOX_FAMILY_NAME AaConfig
#include "mock/declarePassing.hpp"

#define MOX_FAMILY <families/AaMem.def>
#define MOX_FAMILY_NAME AaMem
#include "mock/declarePassing.hpp"

#define MOX_FAMILY <families/AaSysCom.def>
#define MOX_FAMILY_NAME AaSysCom
#include "mock/declarePassing.hpp"

#define MOX_FAMILY <families/AaSysLog.def>
#define MOX_FAMILY_NAME AaSysLog
#define MOX_FAMILY_TEXT_CALLS MOX_AASYSLOG_TEXT_CALLS
#include "mock/declarePassing.hpp"

#define MOX_FAMILY <families/ddal_devicetree.def>
#define MOX_FAMILY_NAME DdalDevicetree
#include "mock/declarePassing.hpp"

#define MOX_FAMILY <families/ddal_rio.def>
#define MOX_FAMILY_NAME DdalRio
#include "mock/declarePassing.hpp"

#define MOX_FAMILY <families/ddal_sysinfo.def>
#define MOX_FAMILY_NAME DdalSysinfo
#include "mock/declarePassing.hpp"

#define MOX_FAMILY <families/ddal_unit.def>
#define MOX_FAMILY_NAME DdalUnit
#include "mock/declarePassing.hpp"

namespace mox::testing {
namespace {

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

/// One double a family.
class IdentityPlatform::Doubles {
public:
    explicit Doubles(IdentityPlatform& platform)
        : m_config(platform),
          m_mem(platform),
          m_sysCom(platform),
          m_sysLog(platform),
          m_devicetree(platform),
          m_rio(platform),
          m_sysinfo(platform),
          m_unit(platform) {}

private:
    template <typename Passing>
    struct Double : Passing {
        explicit Double(IdentityPlatform& answers) : platform(answers) {}
        IdentityPlatform& platform;
    };

    struct Config : Double<mock::AaConfigPassing> {
        using Double::Double;

        unsigned int AaConfigRadGetValue(unsigned int id) override {
            platform.note("AaConfigRadGetValue(" + hexText(id) + ")");
            return platform.radValue;
        }

        int AaConfigTagGet(const char* tag, void** data, unsigned int* size) override {
            platform.note("AaConfigTagGet(" + std::string(tag) + ")");
            if (!platform.hasTechnologyTag) {
                *data = nullptr;
                *size = 0;
                return EAaConfigRetVal_NotFound;
            }
            const std::string& text = platform.technologyTag;
            *size = static_cast<unsigned int>(text.size());
            *data = mock::real::AaMemMalloc(text.size() + 1);
            std::memcpy(*data, text.c_str(), text.size() + 1);
            return EAaConfigRetVal_NoError;
        }
    };

    struct Mem : Double<mock::AaMemPassing> {
        using Double::Double;

        void AaMemUnRef(void* block) override {
            platform.note("AaMemUnRef()");
            mock::real::AaMemUnRef(block);
        }
    };

    struct SysCom : Double<mock::AaSysComPassing> {
        using Double::Double;

        std::uint16_t AaSysComGetOwnNid() override {
            platform.note("AaSysComGetOwnNid()");
            return platform.ownNid;
        }

        std::uint32_t AaSysComSicadGet(std::uint16_t task, std::uint16_t node) override {
            platform.note("AaSysComSicadGet(" + hexText(task) + ", " + hexText(node) + ")");
            return static_cast<std::uint32_t>(node) << 16 | task;
        }

        std::uint16_t AaSysComNmapGetBoard(std::uint32_t sicad) override {
            platform.note("AaSysComNmapGetBoard(" + hexText(sicad) + ")");
            return platform.board;
        }

        std::uint16_t AaSysComNmapGetCpu(std::uint32_t sicad) override {
            platform.note("AaSysComNmapGetCpu(" + hexText(sicad) + ")");
            return platform.cpu;
        }
    };

    /// Identification logs through one function alone; a line that comes another way is missed by the test.
    struct SysLog : Double<mock::AaSysLogPassing> {
        using Double::Double;

        int AaSysLogPrintE(EAaSysLogSeverityLevel level, unsigned int feature, const std::string& text) override {
            const std::lock_guard<std::mutex> guard(platform.m_mutex);
            platform.m_lines.push_back({level, feature, text});
            return 0;
        }

        int AaSysLogPrint(EAaSysLogSeverityLevel level, const std::string& text) override {
            return mock::real::AaSysLogPrint(level, text);
        }

        int AaSysLogVPrint(EAaSysLogSeverityLevel level, const std::string& text) override {
            return mock::real::AaSysLogVPrint(level, text);
        }

        int AaSysLogVPrintE(EAaSysLogSeverityLevel level, unsigned int feature, const std::string& text) override {
            return mock::real::AaSysLogVPrintE(level, feature, text);
        }
    };

    struct Devicetree : Double<mock::DdalDevicetreePassing> {
        using Double::Double;

#define TEXT(function)                                                                                                 \
    int function(std::uint32_t length, char* destination) override {                                                   \
        return platform.text(#function, number(length), length, destination);                                          \
    }
        TEXT(ddal_devicetree_get_module_unit_id)
        TEXT(ddal_devicetree_get_module_production_code)
        TEXT(ddal_devicetree_get_module_serial_number)
        TEXT(ddal_devicetree_get_die_id)
        TEXT(ddal_devicetree_get_die_id_quality)
#undef TEXT

// The text of a unit or port.
#define TEXT(function)                                                                                                 \
    int function(std::uint32_t of, std::uint32_t length, char* destination) override {                                 \
        return platform.text(#function, number(of) + ", " + number(length), length, destination);                      \
    }
        TEXT(ddal_devicetree_get_unit_id)
        TEXT(ddal_devicetree_get_production_code)
        TEXT(ddal_devicetree_get_serial_number)
        TEXT(ddal_devicetree_get_ext_module_unit_id)
        TEXT(ddal_devicetree_get_ext_module_production_code)
        TEXT(ddal_devicetree_get_ext_module_serial_number)
#undef TEXT

        int ddal_devicetree_get_hw_sw_id(std::uint32_t unitNumber, std::uint32_t* id) override {
            platform.note("ddal_devicetree_get_hw_sw_id(" + number(unitNumber) + ")");
            *id = platform.hwSwId; // also on failure: nobody is to look at it then
            return platform.resultOf("ddal_devicetree_get_hw_sw_id");
        }
    };

    struct Rio : Double<mock::DdalRioPassing> {
        using Double::Double;

        int ddal_rio_get_own_id(std::uint16_t* id) override {
            platform.note("ddal_rio_get_own_id()");
            *id = platform.rioId; // also on failure
            return platform.resultOf("ddal_rio_get_own_id");
        }
    };

    struct Sysinfo : Double<mock::DdalSysinfoPassing> {
        using Double::Double;

        int ddal_sysinfo_get_uint(std::uint32_t category, std::uint32_t key, std::uint32_t indexKind,
                                  const std::uint32_t* index, std::uint64_t* value) override {
            platform.note("ddal_sysinfo_get_uint(" + number(category) + ", " + number(key) + ", " + number(indexKind) +
                          ", " + number(*index) + ")");
            const Card& card = platform.cards[*index];
            if (card.result == DDAL_OK || card.leavesItsKind) {
                *value = card.kind;
            }
            return card.result;
        }
    };

    struct Unit : Double<mock::DdalUnitPassing> {
        using Double::Double;

        int ddal_unit_get_board() override {
            platform.note("ddal_unit_get_board()");
            return platform.boardType;
        }
    };

    Config m_config;
    Mem m_mem;
    SysCom m_sysCom;
    SysLog m_sysLog;
    Devicetree m_devicetree;
    Rio m_rio;
    Sysinfo m_sysinfo;
    Unit m_unit;
};

IdentityPlatform::IdentityPlatform() : m_doubles(std::make_unique<Doubles>(*this)) {}

IdentityPlatform::~IdentityPlatform() = default;

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
    return result == m_results.end() ? int{DDAL_OK} : result->second;
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

Identification::Identification() {
    ps::hwapi::board::caches.forget();
}

Identification::~Identification() {
    EXPECT_THAT(platform.takeLog(), ::testing::IsEmpty()) << "lines that nobody expected";
}

} // namespace mox::testing
