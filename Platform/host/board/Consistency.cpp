#include "Consistency.hpp"

#include "Check.hpp"
#include "Description.hpp"

#include <map>

namespace mox::host {
namespace {

const JsonValue& listIn(const JsonValue* object, std::string_view key) {
    static const JsonValue empty;
    const JsonValue* list = object != nullptr ? object->find(key) : nullptr;
    return list != nullptr ? *list : empty;
}

// Ids count as equal however they are written.
std::string identityOf(const JsonValue& value) {
    const auto number = value.asNumber();
    return number ? std::to_string(*number) : value.show() + value.text;
}

bool expectUnique(const JsonValue& list, const char* key, const std::string& path, JsonError& error) {
    std::map<std::string, unsigned> lines;
    for (std::size_t i = 0; i < list.items.size(); ++i) {
        const JsonValue* value = list.items[i].find(key);
        if (value == nullptr) {
            continue;
        }
        const auto [known, isNew] = lines.emplace(identityOf(*value), value->line);
        if (!isNew) {
            error = {value->line, below(itemOf(path, "", i), key) + ": expected a value of its own, but " +
                                      value->show() + " stands on line " + std::to_string(known->second) + " already"};
            return false;
        }
    }
    return true;
}

bool expectValues(const JsonValue& list, ValueType numberType, const std::string& path, JsonError& error) {
    for (std::size_t i = 0; i < list.items.size(); ++i) {
        const JsonValue& item = list.items[i];
        if (typedValueOf(item, numberType)) {
            continue;
        }
        const JsonValue& value = *item.find("value");
        const JsonValue* type = item.find("type");
        const auto named = type != nullptr ? valueTypeOf(type->text) : std::nullopt;
        const bool isText = value.kind == JsonValue::Kind::text;
        const ValueType wanted = named.value_or(isText ? ValueType::text : numberType);
        error = {value.line,
                 below(itemOf(path, "", i), "value") + ": expected " + expectedText(wanted) + ", got " + value.show()};
        return false;
    }
    return true;
}

bool checkSystemInformation(const JsonValue& list, const std::string& path, JsonError& error) {
    std::map<std::string, unsigned> lines;
    for (std::size_t i = 0; i < list.items.size(); ++i) {
        const JsonValue& item = list.items[i];
        const JsonValue* kind = item.find("indexKind");
        const JsonValue* index = item.find("index");
        if ((kind == nullptr) != (index == nullptr)) {
            error = {item.line,
                     itemOf(path, "", i) + ": expected \"indexKind\" and \"index\" together, got one of them"};
            return false;
        }
        std::string identity = identityOf(*item.find("category")) + "/" + identityOf(*item.find("key"));
        identity += kind != nullptr ? "/" + identityOf(*kind) + "/" + identityOf(*index) : "";
        const auto [known, isNew] = lines.emplace(identity, item.line);
        if (!isNew) {
            error = {item.line, itemOf(path, "", i) +
                                    ": expected a category, key and index of its own, but they stand "
                                    "on line " +
                                    std::to_string(known->second) + " already"};
            return false;
        }
    }
    return expectValues(list, ValueType::u64, path, error);
}

bool checkRoutes(const JsonValue& list, const std::string& path, JsonError& error) {
    for (std::size_t i = 0; i < list.items.size(); ++i) {
        const JsonValue& bits = *list.items[i].find("bits");
        const JsonValue& prefix = *list.items[i].find("prefix");
        const auto count = static_cast<unsigned>(*bits.asNumber());
        if (count % 4 != 0) {
            error = {bits.line,
                     below(itemOf(path, "", i), "bits") + ": expected 0, 4, 8, 12 or 16 bits, got " + bits.show()};
            return false;
        }
        if ((*prefix.asNumber() & (0xFFFFu >> count)) != 0) {
            error = {prefix.line, below(itemOf(path, "", i), "prefix") + ": expected zeros beyond the first " +
                                      std::to_string(count) + " bits, got " + prefix.show()};
            return false;
        }
    }
    return true;
}

bool checkGeometry(const JsonValue* device, const std::string& path, JsonError& error) {
    const JsonValue* block = device != nullptr ? device->find("blockSize") : nullptr;
    if (block == nullptr) {
        return true;
    }
    const JsonValue* area = device->find("areaSize");
    const std::uint64_t most = area != nullptr ? *area->asNumber() : FlashGeometry().areaSize;
    if (*block->asNumber() <= most) {
        return true;
    }
    error = {block->line, below(path, "blockSize") + ": expected at most the image area's " + std::to_string(most) +
                              " bytes, got " + block->show()};
    return false;
}

bool checkResetControl(const JsonValue& fpga, const std::string& path, JsonError& error) {
    constexpr std::uint64_t bmu = 1;
    const JsonValue* control = fpga.find("resetControl");
    if (control == nullptr || !control->flag || fpga.find("id")->asNumber() == bmu) {
        return true;
    }
    error = {control->line, below(path, "resetControl") + ": expected only of the local BMU, which has id 1, got true"};
    return false;
}

bool checkFpgas(const JsonValue& fpgas, const std::string& path, JsonError& error) {
    for (std::size_t i = 0; i < fpgas.items.size(); ++i) {
        const JsonValue& fpga = fpgas.items[i];
        const std::string place = itemOf(path, "", i);
        if (!expectUnique(listIn(&fpga, "slots"), "slot", below(place, "slots"), error) ||
            !checkGeometry(&fpga, place, error) || !checkResetControl(fpga, place, error)) {
            return false;
        }
    }
    return expectUnique(fpgas, "id", path, error);
}

bool checkRadValues(const JsonValue& list, const std::string& path, JsonError& error) {
    for (std::size_t i = 0; i < list.items.size(); ++i) {
        const JsonValue& id = *list.items[i].find("id");
        if ((*id.asNumber() & 0xFFFF) > 0xFFF) {
            error = {id.line, below(itemOf(path, "", i), "id") +
                                  ": expected an index from 0 to 4095 in the lower 16 bits, got " + id.show()};
            return false;
        }
    }
    return expectUnique(list, "id", path, error);
}

bool checkDevices(const JsonValue* devices, const std::string& path, JsonError& error) {
    const auto in = [&](const char* key) { return below(path, key); };
    const JsonValue* power = devices != nullptr ? devices->find("power") : nullptr;
    const JsonValue* rapidIo = devices != nullptr ? devices->find("rapidIo") : nullptr;
    const JsonValue& flash = listIn(devices, "flash");
    const JsonValue* boot = devices != nullptr ? devices->find("boot") : nullptr;
    return checkGeometry(boot, in("boot"), error) && checkFpgas(listIn(devices, "fpgas"), in("fpgas"), error) &&
           expectUnique(flash, "id", in("flash"), error) && expectUnique(flash, "path", in("flash"), error) &&
           expectUnique(listIn(power, "feeds"), "number", in("power.feeds"), error) &&
           expectUnique(listIn(rapidIo, "switches"), "device", in("rapidIo.switches"), error) &&
           checkRoutes(listIn(devices, "routes"), in("routes"), error) &&
           checkSystemInformation(listIn(devices, "systemInformation"), in("systemInformation"), error);
}

} // namespace

std::optional<TypedValue> typedValueOf(const JsonValue& object, ValueType numberType) {
    const JsonValue& value = *object.find("value");
    const JsonValue* type = object.find("type");
    const auto named = type != nullptr ? valueTypeOf(type->text) : std::nullopt;
    if (value.kind == JsonValue::Kind::text) {
        return parseValue(named.value_or(ValueType::text), value.text);
    }
    const ValueType wanted = named.value_or(numberType);
    return widthOf(wanted) != 0 ? parseValue(wanted, std::to_string(value.number)) : std::nullopt;
}

bool checkNode(const JsonValue& node, const std::string& path, JsonError& error) {
    const auto in = [&](const char* key) { return below(path, key); };
    const JsonValue& services = listIn(&node, "services");
    return expectUnique(listIn(&node, "otherUnits"), "number", in("otherUnits"), error) &&
           expectUnique(listIn(&node, "externalModules"), "port", in("externalModules"), error) &&
           checkDevices(node.find("devices"), in("devices"), error) &&
           expectUnique(services, "name", in("services"), error) &&
           expectUnique(services, "cpid", in("services"), error) &&
           checkRadValues(listIn(&node, "radValues"), in("radValues"), error);
}

bool checkDescription(const JsonValue& description, JsonError& error) {
    const JsonValue& nodes = listIn(&description, "nodes");
    const JsonValue& tags = listIn(&description, "tags");
    for (std::size_t i = 0; i < nodes.items.size(); ++i) {
        if (!checkNode(nodes.items[i], itemOf("", "nodes", i), error)) {
            return false;
        }
    }
    return expectUnique(nodes, "id", "nodes", error) && expectUnique(tags, "name", "tags", error) &&
           expectValues(tags, ValueType::u32, "tags", error);
}

} // namespace mox::host
