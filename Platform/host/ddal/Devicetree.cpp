#include "Ddal.hpp"
#include "SimulatedUnit.hpp"

#include <algorithm>
#include <cstring>

namespace mox::host {

namespace {

/// As the device tree gives a text: without a terminator when it fills the room.
void give(const std::string& value, std::uint32_t length, char* text) {
    const std::size_t size = std::min<std::size_t>(value.size(), length);
    std::memcpy(text, value.data(), size);
    if (size < length)
        text[size] = '\0';
}

template <class Item, class Number>
const Item* numbered(const std::vector<Item>& all, Number Item::*number, std::uint32_t wanted) {
    const auto found = std::find_if(all.begin(), all.end(), [=](const Item& item) { return item.*number == wanted; });
    return found == all.end() ? nullptr : &*found;
}

/// The local unit, another one, or null.
const UnitIdentity* unitOf(const NodeDescription& node, std::uint32_t number) {
    return number == 0 ? &node.unit : numbered(node.otherUnits, &UnitIdentity::number, number);
}

/// Hands a text on that `textOf` takes from the description; it is null when there is nothing to take it from.
template <class TextOf>
int giveText(const char* function, std::uint32_t length, char* text, TextOf textOf) {
    if (text == nullptr || length == 0)
        return DDAL_INVALID_PARAMETER;
    const SimulatedUnit unit(function);
    if (!unit)
        return DDAL_NOT_SUPPORTED;
    const std::string* value = textOf(unit.description());
    if (value == nullptr)
        return DDAL_NOT_FOUND;
    give(*value, length, text);
    return DDAL_OK;
}

int giveUnit(const char* function, std::uint32_t number, std::string UnitIdentity::*member, std::uint32_t length,
             char* text) {
    return giveText(function, length, text, [=](const NodeDescription& node) {
        const UnitIdentity* unit = unitOf(node, number);
        return unit == nullptr ? nullptr : &(unit->*member);
    });
}

int giveModule(const char* function, std::string ModuleIdentity::*member, std::uint32_t length, char* text) {
    return giveText(function, length, text,
                    [=](const NodeDescription& node) { return node.module ? &((*node.module).*member) : nullptr; });
}

int giveExternalModule(const char* function, std::uint32_t port, std::string ModuleIdentity::*member,
                       std::uint32_t length, char* text) {
    return giveText(function, length, text, [=](const NodeDescription& node) {
        const ModuleIdentity* module = numbered(node.externalModules, &ModuleIdentity::port, port);
        return module == nullptr ? nullptr : &(module->*member);
    });
}

} // namespace

int ddal_devicetree_get_unit_id(uint32_t unit, uint32_t length, char* text) {
    return giveUnit(__func__, unit, &UnitIdentity::id, length, text);
}

int ddal_devicetree_get_production_code(uint32_t unit, uint32_t length, char* text) {
    return giveUnit(__func__, unit, &UnitIdentity::productionCode, length, text);
}

int ddal_devicetree_get_serial_number(uint32_t unit, uint32_t length, char* text) {
    return giveUnit(__func__, unit, &UnitIdentity::serialNumber, length, text);
}

int ddal_devicetree_get_hw_sw_id(uint32_t unit, uint32_t* hwSwId) {
    if (hwSwId == nullptr)
        return DDAL_INVALID_PARAMETER;
    const SimulatedUnit simulated(__func__);
    if (!simulated)
        return DDAL_NOT_SUPPORTED;
    const UnitIdentity* identity = unitOf(simulated.description(), unit);
    if (identity == nullptr)
        return DDAL_NOT_FOUND;
    *hwSwId = identity->hwSwId;
    return DDAL_OK;
}

int ddal_devicetree_get_module_unit_id(uint32_t length, char* text) {
    return giveModule(__func__, &ModuleIdentity::id, length, text);
}

int ddal_devicetree_get_module_production_code(uint32_t length, char* text) {
    return giveModule(__func__, &ModuleIdentity::productionCode, length, text);
}

int ddal_devicetree_get_module_serial_number(uint32_t length, char* text) {
    return giveModule(__func__, &ModuleIdentity::serialNumber, length, text);
}

int ddal_devicetree_get_ext_module_unit_id(uint32_t portId, uint32_t length, char* text) {
    return giveExternalModule(__func__, portId, &ModuleIdentity::id, length, text);
}

int ddal_devicetree_get_ext_module_production_code(uint32_t portId, uint32_t length, char* text) {
    return giveExternalModule(__func__, portId, &ModuleIdentity::productionCode, length, text);
}

int ddal_devicetree_get_ext_module_serial_number(uint32_t portId, uint32_t length, char* text) {
    return giveExternalModule(__func__, portId, &ModuleIdentity::serialNumber, length, text);
}

int ddal_devicetree_get_die_id(uint32_t length, char* text) {
    return giveText(__func__, length, text, [](const NodeDescription& node) { return &node.unit.dieId; });
}

int ddal_devicetree_get_die_id_quality(uint32_t length, char* text) {
    return giveText(__func__, length, text, [](const NodeDescription& node) { return &node.unit.dieIdQuality; });
}

} // namespace mox::host
