#include "Rules.hpp"

#include "../pal/TypedValue.hpp"
#include "TextForms.hpp"

namespace mox::host {
namespace {

constexpr bool required = true;
constexpr bool optional = false;
constexpr std::uint64_t u8 = 0xFF;
constexpr std::uint64_t u16 = 0xFFFF;
constexpr std::uint64_t u32 = 0xFFFFFFFF;
constexpr std::uint64_t u64 = ~std::uint64_t{0};
constexpr std::uint64_t manyItems = 1024;
constexpr const char* word = "a number of 32 bits";

FieldRule text(const char* key, bool need, std::uint64_t least, std::uint64_t most, const TextForm& form,
               const char* expected) {
    return {key, FieldKind::text, need, expected, least, most, &form};
}

FieldRule number(const char* key, bool need, std::uint64_t least, std::uint64_t most, const char* expected) {
    return {key, FieldKind::number, need, expected, least, most};
}

FieldRule flag(const char* key) {
    return {key, FieldKind::flag, optional, "true or false"};
}

FieldRule choice(const char* key, const char* expected, std::vector<const char*> choices) {
    return {key, FieldKind::choice, optional, expected, 0, 0, nullptr, std::move(choices)};
}

FieldRule object(const char* key, bool need, const ObjectRule& rule, const char* expected) {
    return {key, FieldKind::object, need, expected, 0, 0, nullptr, {}, &rule};
}

FieldRule list(const char* key, const ObjectRule& rule, const char* expected, std::uint64_t most = manyItems) {
    return {key, FieldKind::list, optional, expected, 0, most, nullptr, {}, &rule};
}

std::vector<FieldRule> identityFields() {
    return {text("id", required, 1, 7, form::identifier, "an id of 1 to 7 letters and digits"),
            text("productionCode", optional, 0, 12, form::printable, "a production code of at most 12 characters"),
            text("serialNumber", optional, 0, 16, form::printable, "a serial number of at most 16 characters")};
}

ObjectRule withIdentity(const char* name, std::vector<FieldRule> more) {
    ObjectRule rule{name, identityFields()};
    rule.fields.insert(rule.fields.end(), more.begin(), more.end());
    return rule;
}

FieldRule hwSwId() {
    return number("hwSwId", required, 0, u32, "a hardware/software identifier of 32 bits");
}

const ObjectRule& unitRule() {
    static const ObjectRule rule = withIdentity(
        "unit", {hwSwId(), text("dieId", optional, 0, 128, form::printable, "a die id of at most 128 characters"),
                 text("dieIdQuality", optional, 0, 8, form::printable, "a quality of at most 8 characters"),
                 number("slot", optional, 0, 7, "a slot of the shelf from 0 to 7"),
                 number("boardType", optional, 0, 0x7FFFFFFF, "a raw board type from 0 to 0x7FFFFFFF")});
    return rule;
}

const ObjectRule& otherUnitRule() {
    static const ObjectRule rule = withIdentity(
        "otherUnit", {hwSwId(), number("number", required, 1, u32, "a unit number from 1 (0 is the local unit)")});
    return rule;
}

const ObjectRule& moduleRule() {
    static const ObjectRule rule = withIdentity("module", {});
    return rule;
}

const ObjectRule& externalModuleRule() {
    static const ObjectRule rule =
        withIdentity("externalModule", {number("port", required, 0, u32, "an external port of 32 bits")});
    return rule;
}

FieldRule areaSize() {
    return number("areaSize", optional, 1, 1U << 30U, "a size of an image area from 1 byte to 1 GiB");
}

FieldRule blockSize() {
    return number("blockSize", optional, 1, 16U << 20U, "a size of a flash block from 1 byte to 16 MiB");
}

const ObjectRule& bootRule() {
    static const ObjectRule rule{
        "boot",
        {choice("location", "\"primary\", \"backup\" or \"ram\"", {"primary", "backup", "ram"}),
         text("version", required, 1, 127, form::digits, "a version of 1 to 127 decimal digits"),
         number("linuxActive", optional, 0, u32, "a file system id of 32 bits"), areaSize(), blockSize()}};
    return rule;
}

const ObjectRule& fpgaSlotRule() {
    static const ObjectRule rule{"fpgaSlot",
                                 {number("slot", required, 1, 2, "slot 1 (primary) or 2 (secondary)"),
                                  number("version", optional, 0, u32, "a version of 32 bits")}};
    return rule;
}

const ObjectRule& fpgaRule() {
    static const ObjectRule rule{"fpga",
                                 {number("id", required, 1, u32, "a device id from 1 (the local BMU)"),
                                  number("activeVersion", required, 0, u32, "a version of 32 bits"),
                                  list("slots", fpgaSlotRule(), "at most 2 image areas", 2), areaSize(), blockSize(),
                                  flag("resetControl")}};
    return rule;
}

const ObjectRule& flashRule() {
    static const ObjectRule rule{
        "flash",
        {number("id", required, 1, u32, "a file system id from 1"),
         text("path", required, 6, 64, form::flashPath, "a directory right below /ffs, such as \"/ffs/fs1\""),
         choice("mode", "\"none\", \"ro\" or \"rw\"", {"none", "ro", "rw"})}};
    return rule;
}

const ObjectRule& rapidIoSwitchRule() {
    static const ObjectRule rule{"rapidIoSwitch",
                                 {number("device", required, 0, u16, "a RapidIO device id of 16 bits"),
                                  number("ports", required, 1, u8, "a number of ports from 1 to 255")}};
    return rule;
}

const ObjectRule& rapidIoMemoryRule() {
    static const ObjectRule rule{"rapidIoMemory",
                                 {number("device", required, 0, u16, "a RapidIO device id of 16 bits"),
                                  number("address", required, 0, u64, "an address of 64 bits"),
                                  number("size", required, 1, 1u << 30, "a size from 1 byte to 1 GiB")}};
    return rule;
}

const ObjectRule& rapidIoRule() {
    static const ObjectRule rule{
        "rapidIo",
        {number("ownId", required, 0, u16, "a RapidIO device id of 16 bits"),
         {"endpoints", FieldKind::numbers, optional, "a list of RapidIO device ids of 16 bits", 0, u16},
         list("switches", rapidIoSwitchRule(), "a list of RapidIO switches"),
         list("memories", rapidIoMemoryRule(), "a list of memories reached over RapidIO")}};
    return rule;
}

const ObjectRule& supplyRule() {
    static const ObjectRule rule{"powerSupply",
                                 {flag("ac"), number("samples", optional, 1, u16, "a number from 1 to 65535"),
                                  number("inputVoltageMv", optional, 0, u32, "millivolts"),
                                  number("inputCurrentMa", optional, 0, u32, "milliamperes"),
                                  number("outputVoltageMv", optional, 0, u32, "millivolts"),
                                  number("outputCurrentMa", optional, 0, u32, "milliamperes"),
                                  number("inputPowerMw", optional, 0, u32, "milliwatts")}};
    return rule;
}

const ObjectRule& feedRule() {
    static const ObjectRule rule{"powerFeed",
                                 {number("number", required, 0, u32, "a feed number of 32 bits"), flag("on")}};
    return rule;
}

const ObjectRule& powerRule() {
    static const ObjectRule rule{"power",
                                 {list("supplies", supplyRule(), "a list of supply units"),
                                  list("feeds", feedRule(), "a list of switched feeds")}};
    return rule;
}

const ObjectRule& alarmsRule() {
    static const ObjectRule rule{"alarms",
                                 {number("external", optional, 0, u32, "a mask of 32 active inputs"),
                                  number("eac2", optional, 0, u32, "a mask of 32 active inputs"),
                                  number("outputs", optional, 0, 32, "a number of outputs from 0 to 32")}};
    return rule;
}

const ObjectRule& routeRule() {
    static const ObjectRule rule{"route",
                                 {number("prefix", required, 0, u16, "a node id prefix of 16 bits"),
                                  number("bits", required, 0, 16, "0, 4, 8, 12 or 16 bits"),
                                  choice("type", "\"local\", \"rapidIo\", \"ethernet\" or \"gateway\"",
                                         {"local", "rapidIo", "ethernet", "gateway"})}};
    return rule;
}

const ObjectRule& systemInformationRule() {
    static const ObjectRule rule{"systemInformation",
                                 {number("category", required, 0, u32, word),
                                  number("key", required, 0, u32, word),
                                  number("indexKind", optional, 1, u32, "what the index counts, from 1"),
                                  number("index", optional, 0, u32, word),
                                  choice("type", "\"u64\", \"text\" or \"bytes\"", {"u64", "text", "bytes"}),
                                  {"value", FieldKind::scalar, required, "a number or a text", 0, 0}}};
    return rule;
}

const ObjectRule& radioRule() {
    static const ObjectRule rule{"radio",
                                 {number("cpriModules", optional, 0, 16, "a number of modules from 0 to 16"),
                                  number("cpriLinks", optional, 0, 16, "a number of links from 0 to 16"),
                                  number("cpriContainers", optional, 0, 256, "a number of containers from 0 to 256"),
                                  number("rp3Streams", optional, 0, 4096, "a number of streams from 0 to 4096"),
                                  number("rp3Groups", optional, 0, 256, "a number of rule groups from 0 to 256")}};
    return rule;
}

const ObjectRule& devicesRule() {
    static const ObjectRule rule{
        "devices",
        {object("boot", optional, bootRule(), "the boot loader's object"),
         list("fpgas", fpgaRule(), "a list of FPGAs and BMUs"),
         list("flash", flashRule(), "a list of flash file systems"),
         object("rapidIo", optional, rapidIoRule(), "the RapidIO object"),
         object("power", optional, powerRule(), "an object with supplies and feeds"),
         object("alarms", optional, alarmsRule(), "an object with alarm inputs and outputs"),
         list("routes", routeRule(), "a list of at most 600 message routes", 600),
         list("systemInformation", systemInformationRule(), "a list of system information values"),
         number("bipDomain", optional, 0, u8, "a domain from 0 to 255"),
         number("sfpPorts", optional, 0, 64, "a number of ports from 0 to 64"),
         number("ethernetPorts", optional, 0, 64, "a number of ports from 0 to 64"),
         object("radio", optional, radioRule(), "an object with radio links")}};
    return rule;
}

const ObjectRule& serviceRule() {
    static const ObjectRule rule{
        "service",
        {text("name", required, 1, 32, form::identifier, "a name of 1 to 32 letters, digits, '.', '_' and '-'"),
         text("executable", required, 1, 255, form::printable, "a file name or absolute path"),
         {"arguments", FieldKind::texts, optional, "a list of at most 64 texts", 0, 64},
         number("cpid", optional, 1, u16, "a CPID from 0x0001 to 0xFFFF")}};
    return rule;
}

const ObjectRule& radValueRule() {
    static const ObjectRule rule{"radValue",
                                 {number("id", required, 0x10000, 0x03FF0FFF,
                                         "an R&D parameter id: domain 1 to 1023 in the upper 16 bits, index 0 to 4095"),
                                  number("value", required, 0, u32, word)}};
    return rule;
}

const ObjectRule& tagRule() {
    static const ObjectRule rule{
        "tag",
        {text("name", required, 1, maxTagName, form::tagName, "a tag name of 1 to 480 characters without blanks"),
         choice("type", "\"bytes\", \"text\", \"u8\", \"u16\", \"u32\" or \"u64\"",
                {"bytes", "text", "u8", "u16", "u32", "u64"}),
         {"value", FieldKind::scalar, required, "a number or a text", 0, 0}}};
    return rule;
}

} // namespace

const ObjectRule& nodeRule() {
    static const ObjectRule rule{"node",
                                 {number("id", required, 1, u16, "a node id from 0x0001 to 0xFFFF"),
                                  text("name", optional, 0, 64, form::printable, "a name of at most 64 characters"),
                                  object("unit", required, unitRule(), "the local unit's object"),
                                  list("otherUnits", otherUnitRule(), "a list of units with numbers from 1"),
                                  object("module", optional, moduleRule(), "the plug-in module's object"),
                                  list("externalModules", externalModuleRule(), "a list of modules on external ports"),
                                  object("devices", optional, devicesRule(), "the devices' object"),
                                  list("services", serviceRule(), "a list of services to start"),
                                  list("radValues", radValueRule(), "a list of R&D values")}};
    return rule;
}

const ObjectRule& descriptionRule() {
    static const ObjectRule rule{
        "description",
        {text("$schema", optional, 0, 255, form::printable, "the address of the schema"),
         text("name", optional, 0, 64, form::printable, "a name of at most 64 characters"),
         text("engine", optional, 5, 128, form::engine, "\"local\" or \"nats://host:port\""),
         {"nodes", FieldKind::list, required, "a list of 1 to 256 nodes", 1, 256, nullptr, {}, &nodeRule()},
         list("tags", tagRule(), "a list of public tags")}};
    return rule;
}

} // namespace mox::host
