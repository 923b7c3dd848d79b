#include "Extract.hpp"

#include "Consistency.hpp"

#include <algorithm>
#include <array>
#include <iterator>

namespace mox::host {
namespace {

template <class Number>
void read(const JsonValue& object, const char* key, Number& target) {
    if (const JsonValue* value = object.find(key)) {
        target = static_cast<Number>(*value->asNumber());
    }
}

template <class Number>
void read(const JsonValue& object, const char* key, std::optional<Number>& target) {
    if (const JsonValue* value = object.find(key)) {
        target = static_cast<Number>(*value->asNumber());
    }
}

void read(const JsonValue& object, const char* key, std::string& target) {
    if (const JsonValue* value = object.find(key)) {
        target = value->text;
    }
}

void read(const JsonValue& object, const char* key, bool& target) {
    if (const JsonValue* value = object.find(key)) {
        target = value->flag;
    }
}

template <class Number, std::size_t n>
void readChoice(const JsonValue& object, const char* key, const std::array<const char*, n>& names, Number first,
                Number& target) {
    if (const JsonValue* value = object.find(key)) {
        const auto found = std::find(names.begin(), names.end(), value->text);
        target = static_cast<Number>(first + static_cast<Number>(found - names.begin()));
    }
}

template <class Item, class Extract>
void readList(const JsonValue& object, const char* key, std::vector<Item>& target, Extract extract) {
    if (const JsonValue* list = object.find(key)) {
        std::transform(list->items.begin(), list->items.end(), std::back_inserter(target), extract);
    }
}

template <class Object, class Extract>
void readObject(const JsonValue& object, const char* key, std::optional<Object>& target, Extract extract) {
    if (const JsonValue* value = object.find(key)) {
        target = extract(*value);
    }
}

void readUnit(const JsonValue& value, UnitIdentity& unit) {
    read(value, "number", unit.number);
    read(value, "id", unit.id);
    read(value, "hwSwId", unit.hwSwId);
    read(value, "productionCode", unit.productionCode);
    read(value, "serialNumber", unit.serialNumber);
}

UnitIdentity otherUnit(const JsonValue& value) {
    UnitIdentity unit;
    readUnit(value, unit);
    return unit;
}

LocalUnit localUnit(const JsonValue& value) {
    LocalUnit unit;
    readUnit(value, unit);
    read(value, "dieId", unit.dieId);
    read(value, "dieIdQuality", unit.dieIdQuality);
    read(value, "slot", unit.slot);
    read(value, "boardType", unit.boardType);
    return unit;
}

ModuleIdentity module(const JsonValue& value) {
    ModuleIdentity identity;
    read(value, "port", identity.port);
    read(value, "id", identity.id);
    read(value, "productionCode", identity.productionCode);
    read(value, "serialNumber", identity.serialNumber);
    return identity;
}

FlashGeometry geometry(const JsonValue& value) {
    FlashGeometry flash;
    read(value, "areaSize", flash.areaSize);
    flash.blockSize = static_cast<std::uint32_t>(std::min<std::uint64_t>(flash.blockSize, flash.areaSize));
    read(value, "blockSize", flash.blockSize);
    return flash;
}

BootDevice boot(const JsonValue& value) {
    static constexpr std::array locations{"primary", "backup", "ram"};
    BootDevice device;
    readChoice(value, "location", locations, std::uint32_t{0}, device.location);
    read(value, "version", device.version);
    read(value, "linuxActive", device.linuxActive);
    device.geometry = geometry(value);
    return device;
}

FpgaSlot fpgaSlot(const JsonValue& value) {
    FpgaSlot slot;
    read(value, "slot", slot.slot);
    read(value, "version", slot.version);
    return slot;
}

FpgaDevice fpga(const JsonValue& value) {
    FpgaDevice device;
    read(value, "id", device.id);
    read(value, "activeVersion", device.activeVersion);
    readList(value, "slots", device.slots, fpgaSlot);
    device.geometry = geometry(value);
    read(value, "resetControl", device.resetControl);
    return device;
}

FlashFileSystem flash(const JsonValue& value) {
    static constexpr std::array modes{"none", "ro", "rw"};
    FlashFileSystem fileSystem;
    read(value, "id", fileSystem.id);
    read(value, "path", fileSystem.path);
    readChoice(value, "mode", modes, std::uint32_t{0}, fileSystem.mode);
    return fileSystem;
}

RapidIoSwitch rapidIoSwitch(const JsonValue& value) {
    RapidIoSwitch device;
    read(value, "device", device.device);
    read(value, "ports", device.ports);
    return device;
}

RapidIoMemory rapidIoMemory(const JsonValue& value) {
    RapidIoMemory memory;
    read(value, "device", memory.device);
    read(value, "address", memory.address);
    read(value, "size", memory.size);
    return memory;
}

RapidIo rapidIo(const JsonValue& value) {
    RapidIo device;
    read(value, "ownId", device.ownId);
    readList(value, "endpoints", device.endpoints,
             [](const JsonValue& id) { return static_cast<std::uint16_t>(*id.asNumber()); });
    readList(value, "switches", device.switches, rapidIoSwitch);
    readList(value, "memories", device.memories, rapidIoMemory);
    return device;
}

PowerSupply supply(const JsonValue& value) {
    PowerSupply device;
    read(value, "ac", device.ac);
    read(value, "samples", device.samples);
    read(value, "inputVoltageMv", device.inputVoltageMv);
    read(value, "inputCurrentMa", device.inputCurrentMa);
    read(value, "outputVoltageMv", device.outputVoltageMv);
    read(value, "outputCurrentMa", device.outputCurrentMa);
    read(value, "inputPowerMw", device.inputPowerMw);
    return device;
}

PowerFeed feed(const JsonValue& value) {
    PowerFeed device;
    read(value, "number", device.number);
    read(value, "on", device.on);
    return device;
}

MessageRoute route(const JsonValue& value) {
    static constexpr std::array types{"local", "rapidIo", "ethernet", "gateway"};
    MessageRoute entry;
    read(value, "prefix", entry.prefix);
    read(value, "bits", entry.bits);
    readChoice(value, "type", types, std::int32_t{1}, entry.type);
    return entry;
}

SystemInformation systemInformation(const JsonValue& value) {
    SystemInformation entry;
    read(value, "category", entry.category);
    read(value, "key", entry.key);
    read(value, "indexKind", entry.indexKind);
    read(value, "index", entry.index);
    entry.value = *typedValueOf(value, ValueType::u64);
    return entry;
}

void readRadio(const JsonValue& value, RadioLinks& radio) {
    read(value, "cpriModules", radio.cpriModules);
    read(value, "cpriLinks", radio.cpriLinks);
    read(value, "cpriContainers", radio.cpriContainers);
    read(value, "rp3Streams", radio.rp3Streams);
    read(value, "rp3Groups", radio.rp3Groups);
}

void readPowerAndAlarms(const JsonValue& value, Devices& devices) {
    if (const JsonValue* power = value.find("power")) {
        readList(*power, "supplies", devices.supplies, supply);
        readList(*power, "feeds", devices.feeds, feed);
    }
    if (const JsonValue* alarms = value.find("alarms")) {
        read(*alarms, "external", devices.alarms.external);
        read(*alarms, "eac2", devices.alarms.eac2);
        read(*alarms, "outputs", devices.alarms.outputs);
    }
}

void readDevices(const JsonValue& value, Devices& devices) {
    readObject(value, "boot", devices.boot, boot);
    readList(value, "fpgas", devices.fpgas, fpga);
    readList(value, "flash", devices.flash, flash);
    readObject(value, "rapidIo", devices.rapidIo, rapidIo);
    readPowerAndAlarms(value, devices);
    readList(value, "routes", devices.routes, route);
    readList(value, "systemInformation", devices.systemInformation, systemInformation);
    read(value, "bipDomain", devices.bipDomain);
    read(value, "sfpPorts", devices.sfpPorts);
    read(value, "ethernetPorts", devices.ethernetPorts);
    if (const JsonValue* radio = value.find("radio")) {
        readRadio(*radio, devices.radio);
    }
}

ServiceDescription service(const JsonValue& value) {
    ServiceDescription entry;
    read(value, "name", entry.name);
    read(value, "executable", entry.executable);
    readList(value, "arguments", entry.arguments, [](const JsonValue& argument) { return argument.text; });
    read(value, "cpid", entry.cpid);
    return entry;
}

RadValueDescription radValue(const JsonValue& value) {
    RadValueDescription entry;
    read(value, "id", entry.id);
    read(value, "value", entry.value);
    return entry;
}

TagDescription tag(const JsonValue& value) {
    TagDescription entry;
    read(value, "name", entry.name);
    entry.value = *typedValueOf(value, ValueType::u32);
    return entry;
}

} // namespace

NodeDescription extractNode(const JsonValue& node) {
    NodeDescription description;
    read(node, "id", description.id);
    read(node, "name", description.name);
    description.unit = localUnit(*node.find("unit"));
    readList(node, "otherUnits", description.otherUnits, otherUnit);
    readObject(node, "module", description.module, module);
    readList(node, "externalModules", description.externalModules, module);
    if (const JsonValue* devices = node.find("devices")) {
        readDevices(*devices, description.devices);
    }
    readList(node, "services", description.services, service);
    readList(node, "radValues", description.radValues, radValue);
    description.json = node.dump();
    return description;
}

Description extractDescription(const JsonValue& description) {
    Description result;
    read(description, "name", result.name);
    read(description, "engine", result.engine);
    readList(description, "nodes", result.nodes, extractNode);
    readList(description, "tags", result.tags, tag);
    return result;
}

} // namespace mox::host
