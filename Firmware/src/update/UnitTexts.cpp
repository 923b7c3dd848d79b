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

bool read(Text& unitId) {
    const int result = ddal_devicetree_get_unit_id(0, constant::unitTextSize - 1, unitId.data());
    if (result != DDAL_OK)
        logDdalFailure("unit_init", "ddal_devicetree_get_unit_id", result);
    return result == DDAL_OK;
}

bool isEmpty(const Text& kept) {
    const std::lock_guard<std::mutex> guard(s_mutex);
    return kept[0] == '\0';
}

/// Other threads may do the same: whoever can read the unit fills the texts, and who cannot clears nothing that another
/// one holds. It is always the same buffer, so that who has got an empty text sees the one that a later call reads.
const char* filled(const Text& kept) {
    Text unitId{};
    if (isEmpty(kept) && read(unitId))
        keep(unitId);
    return kept.data();
}

} // namespace
} // namespace ps::hwapi::common::update

int unit_init() {
    using namespace ps::hwapi::common::update;
    Text unitId{};
    const bool isRead = read(unitId);
    keep(isRead ? unitId : Text{});
    return isRead ? 0 : -1;
}

const char* unit_version() {
    using namespace ps::hwapi::common::update;
    return filled(s_version);
}

const char* unit_type() {
    using namespace ps::hwapi::common::update;
    return filled(s_type);
}
