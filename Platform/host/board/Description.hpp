#pragma once
/// The board description: what a run is made from. JSON with comments; docs/formats/board-description.md explains it,
/// board.schema.json describes it to editors.
#include "../pal/TypedValue.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mox::host {

/// Identity of a unit as its device tree gives it.
struct UnitIdentity {
    std::uint32_t number = 0; ///< 0 is the local unit
    std::string id;           ///< such as "KORA", at most 7 characters
    std::uint32_t hwSwId = 0;
    std::string productionCode;
    std::string serialNumber;
};

/// The unit that a node's processor sits on.
struct LocalUnit : UnitIdentity {
    std::string dieId;
    std::string dieIdQuality;
    std::int32_t slot = 0;                  ///< of the shelf, 0 to 7
    std::optional<std::uint32_t> boardType; ///< raw board type; only units of the Wim line have one
};

/// A module, plugged into the unit or into an external port.
struct ModuleIdentity {
    std::uint32_t port = 0; ///< external port; 0 for the unit's own module
    std::string id;
    std::string productionCode;
    std::string serialNumber;
};

/// Size of a flash device's image areas, and of the blocks in which they are erased and programmed, in bytes.
struct FlashGeometry {
    std::uint64_t areaSize = 32U << 20U;
    std::uint32_t blockSize = 64U << 10U;
};

struct BootDevice {
    std::uint32_t location = 0;     ///< 0 primary, 1 backup, 2 RAM, others unknown to the boot services
    std::string version;            ///< decimal digits
    std::uint32_t linuxActive = 53; ///< flash file system that Linux was started from
    FlashGeometry geometry;
};

struct FpgaSlot {
    std::uint32_t slot = 1;               ///< 1 primary, 2 secondary
    std::optional<std::uint32_t> version; ///< absent: the area is blank
};

struct FpgaDevice {
    std::uint32_t id = 0;            ///< 1 is the local BMU
    std::uint32_t activeVersion = 0; ///< what runs now
    std::vector<FpgaSlot> slots;     ///< what lies in the image areas
    FlashGeometry geometry;
    bool resetControl = false; ///< only of the BMU: there is a control file that makes it load its image anew
};

struct FlashFileSystem {
    std::uint32_t id = 0;   ///< 53 and 54 are the two software file systems
    std::string path;       ///< below "/ffs"
    std::uint32_t mode = 1; ///< 0 not mounted, 1 read-only, 2 read-write
};

struct RapidIoMemory {
    std::uint16_t device = 0;
    std::uint64_t address = 0;
    std::uint64_t size = 0;
};

struct RapidIoSwitch {
    std::uint16_t device = 0;
    std::uint32_t ports = 0;
};

struct RapidIo {
    std::uint16_t ownId = 0;
    std::vector<std::uint16_t> endpoints; ///< beside the own node
    std::vector<RapidIoSwitch> switches;
    std::vector<RapidIoMemory> memories; ///< what can be copied to and from
};

struct PowerSupply {
    bool ac = false;
    std::uint32_t samples = 1;
    std::uint32_t inputVoltageMv = 0;
    std::uint32_t inputCurrentMa = 0;
    std::uint32_t outputVoltageMv = 0;
    std::uint32_t outputCurrentMa = 0;
    std::uint32_t inputPowerMw = 0;
};

struct PowerFeed {
    std::uint32_t number = 0;
    bool on = true;
};

struct AlarmInputs {
    std::optional<std::uint32_t> external; ///< mask of active inputs; absent: the unit has none
    std::optional<std::uint32_t> eac2;     ///< those of the second input module; absent: not plugged in
    std::uint32_t outputs = 0;             ///< number of control outputs
};

struct MessageRoute {
    std::uint16_t prefix = 0; ///< in host byte order
    std::uint8_t bits = 16;   ///< 0, 4, 8, 12 or 16
    std::int32_t type = 1;    ///< 1 local, 2 RapidIO, 3 Ethernet, 4 gateway
};

/// One value of the system information.
struct SystemInformation {
    std::uint32_t category = 0;
    std::uint32_t key = 0;
    std::uint32_t indexKind = 0; ///< 0: the key has one value
    std::optional<std::uint32_t> index;
    TypedValue value; ///< of type u64, text or bytes
};

/// Links and places for antenna carriers; what is absent does not exist.
struct RadioLinks {
    std::uint32_t cpriModules = 0;
    std::uint32_t cpriLinks = 0;      ///< of each module
    std::uint32_t cpriContainers = 0; ///< of each link and direction
    std::uint32_t rp3Streams = 0;
    std::uint32_t rp3Groups = 0;
};

struct Devices {
    std::optional<BootDevice> boot;
    std::vector<FpgaDevice> fpgas;
    std::vector<FlashFileSystem> flash;
    std::optional<RapidIo> rapidIo;
    std::vector<PowerSupply> supplies; ///< numbered from 0
    std::vector<PowerFeed> feeds;
    AlarmInputs alarms;
    std::vector<MessageRoute> routes;
    std::vector<SystemInformation> systemInformation;
    std::optional<std::uint32_t> bipDomain;
    std::uint32_t sfpPorts = 0;
    std::uint32_t ethernetPorts = 0;
    RadioLinks radio;
};

/// A service that the run starts on a node.
struct ServiceDescription {
    std::string name;       ///< unique on its node
    std::string executable; ///< file name, found by whoever starts the run, or absolute path
    std::vector<std::string> arguments;
    std::optional<std::uint16_t> cpid; ///< what the service registers; absent: the platform chooses one
};

/// A public tag that is set before anything starts.
struct TagDescription {
    std::string name;
    TypedValue value;
};

/// An R&D value that counts as set by an operator.
struct RadValueDescription {
    std::uint32_t id = 0;
    std::uint32_t value = 0;
};

struct NodeDescription {
    std::uint16_t id = 0;
    std::string name;
    LocalUnit unit;
    std::vector<UnitIdentity> otherUnits;
    std::optional<ModuleIdentity> module;
    std::vector<ModuleIdentity> externalModules;
    Devices devices;
    std::vector<ServiceDescription> services;
    std::vector<RadValueDescription> radValues;
    std::string json; ///< this node's part of the description, without comments
};

struct Description {
    std::string name;
    std::string engine = "local"; ///< "local", or "nats://host:port"
    std::vector<NodeDescription> nodes;
    std::vector<TagDescription> tags;
};

/// What is wrong with a description.
struct DescriptionError {
    std::string file;
    unsigned line = 0; ///< from 1
    std::string text;  ///< where, what was expected, what was found
    /// "board.json:17: nodes[0].id: expected a node id from 0x0001 to 0xFFFF, got \"x\""
    std::string message() const;
};

/// Largest description, in bytes.
constexpr std::size_t maxDescription = 1024 * 1024;

/// Reads a description.
/// @param text      the description
/// @param fileName  for the messages; the file itself is not touched
/// @param[out] error  set when the result is empty
/// @return the description, complete and consistent, or nothing
std::optional<Description> parseDescription(std::string_view text, const std::string& fileName,
                                            DescriptionError& error);

/// Reads one node's part, as NodeDescription::json holds it. `error` is set when the result is empty.
std::optional<NodeDescription> parseNode(std::string_view json, DescriptionError& error);

} // namespace mox::host
