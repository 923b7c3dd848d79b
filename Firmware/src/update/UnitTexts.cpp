#include "update/DdalFailure.hpp"
#include "update/OutText.hpp"

#include <ddal/ddal_devicetree.h>
#include <mox/Firmware.h>
#include <mox/UpdateRules.hpp>

#include <array>
#include <cstring>
#include <mutex>

namespace ps::hwapi::common::update {
namespace {

using Text = std::array<char, constant::unitTextSize>;

Text s_version{};
Text s_type{};
std::mutex s_mutex;

/// A text that stays the same is not written again: another thread may just read it.
void replace(Text& kept, const Text& text) {
    if (std::strcmp(kept.data(), text.data()) != 0)
        kept = text;
}

void keep(const Text& unitId) {
    Text type{};
    copyText(type.data(), constant::unitTypeLength + 1, unitId.data());
    const std::lock_guard<std::mutex> guard(s_mutex);
    replace(s_version, unitId);
    replace(s_type, type);
}

const char* filled(const Text& kept) {
    const auto isEmpty = [&kept] {
        const std::lock_guard<std::mutex> guard(s_mutex);
        return kept[0] == '\0';
    };
    if (isEmpty())
        unit_init();
    return kept.data();
}

} // namespace
} // namespace ps::hwapi::common::update

int unit_init() {
    using namespace ps::hwapi::common::update;
    Text unitId{};
    const int result = ddal_devicetree_get_unit_id(0, unitId.size() - 1, unitId.data());
    if (result != DDAL_OK) {
        keep(Text{});
        logDdalFailure("unit_init", "ddal_devicetree_get_unit_id", result);
        return -1;
    }
    keep(unitId);
    return 0;
}

const char* unit_version() {
    using namespace ps::hwapi::common::update;
    return filled(s_version);
}

const char* unit_type() {
    using namespace ps::hwapi::common::update;
    return filled(s_type);
}
