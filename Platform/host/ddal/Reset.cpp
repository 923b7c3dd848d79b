#include "Reset.hpp"

#include "../pal/Tags.hpp"
#include "../run/PlatformLog.hpp"
#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "ActiveState.hpp"
#include "BmuReset.hpp"
#include "BootImageInhibit.hpp"
#include "SimulatedUnit.hpp"
#include "SystemInformation.hpp"

#include <algorithm>
#include <cinttypes>
#include <optional>
#include <vector>

namespace mox::host {

namespace {

constexpr int information = 2;

void countReset(Store::Write& write, const NodeDescription& node) {
    const SystemInformation* counter = resetCounter(node.devices);
    if (counter == nullptr)
        return;
    const std::string key = systemInformationKey(node.id, *counter);
    const TypedValue before = systemInformationValue(write.get(Table::devices, key), *counter);
    const std::uint64_t resets = numberIn(before.bytes).value_or(0) + 1;
    write.put(Table::devices, key, tags::encode(numberValue(ValueType::u64, resets)));
}

void logLoaded(std::uint16_t node, const FpgaDevice& fpga, std::uint32_t version) {
    logPlatform(information, "node %04x: FPGA 0x%" PRIX32 " runs version 0x%" PRIX32 " (%" PRIu32 ")", node, fpga.id,
                version, version);
}

void logStarted(std::uint16_t node, const RunningBoot& boot) {
    logPlatform(information, "node %04x: boot loader runs version %s from location %" PRIu32, node,
                boot.version.c_str(), boot.location);
}

/// What a reset has loaded, for the log: a transaction is no place to write lines.
struct Loaded {
    std::vector<std::uint32_t> versions; ///< in the order of the description
    std::optional<RunningBoot> boot;
};

Loaded loadAll(Store::Write& write, const NodeDescription& node) {
    Loaded loaded;
    for (const FpgaDevice& fpga : node.devices.fpgas)
        loaded.versions.push_back(loadFpga(write, node.id, fpga));
    if (node.devices.boot)
        loaded.boot = startBoot(write, node.id, *node.devices.boot);
    for (std::uint32_t board = firstExtensionBoard; board <= lastExtensionBoard; ++board)
        write.erase(Table::devices, bootImageInhibitKey(node.id, board));
    countReset(write, node);
    return loaded;
}

} // namespace

bool resetNode(const Run& run, std::uint16_t node) {
    const auto description = describedNode(run, node);
    if (description == nullptr)
        return false;
    forgetBmuReset(run, node); // before: what asks from now on is to be heard
    Store::Write write(run.store());
    const Loaded loaded = loadAll(write, *description);
    if (!write.commit())
        return false;
    for (std::size_t i = 0; i < loaded.versions.size(); ++i)
        logLoaded(node, description->devices.fpgas[i], loaded.versions[i]);
    if (loaded.boot)
        logStarted(node, *loaded.boot);
    return true;
}

bool reloadFpga(const Run& run, std::uint16_t node, std::uint32_t fpgaId) {
    const auto description = describedNode(run, node);
    if (description == nullptr)
        return false;
    const auto& all = description->devices.fpgas;
    const auto fpga =
        std::find_if(all.begin(), all.end(), [fpgaId](const auto& device) { return device.id == fpgaId; });
    if (fpga == all.end())
        return false;
    Store::Write write(run.store());
    const std::uint32_t version = loadFpga(write, node, *fpga);
    if (!write.commit())
        return false;
    logLoaded(node, *fpga, version);
    return true;
}

} // namespace mox::host
