#include "SimulatedUnit.hpp"

#include "../run/Run.hpp"
#include "../store/Store.hpp"
#include "Unsupported.hpp"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

namespace mox::host {

namespace {

struct Known {
    std::string json;
    std::shared_ptr<const NodeDescription> description;
};

struct KnownNodes {
    std::mutex mutex;
    std::map<std::uint16_t, Known> nodes;
};

KnownNodes& knownNodes() {
    // Never destroyed: services may call the devices while the process ends.
    static auto* const instance = new KnownNodes;
    return *instance;
}

} // namespace

std::shared_ptr<const NodeDescription> describedNode(const Run& run, std::uint16_t node) {
    auto json = run.store().get(Table::nodes, hex4(node));
    if (!json)
        return nullptr;
    KnownNodes& all = knownNodes();
    const std::lock_guard lock(all.mutex);
    Known& known = all.nodes[node];
    if (known.json != *json) {
        DescriptionError error;
        auto description = parseNode(*json, error);
        known.description = description ? std::make_shared<NodeDescription>(std::move(*description)) : nullptr;
        known.json = std::move(*json);
    }
    return known.description;
}

SimulatedUnit::SimulatedUnit(const char* function) : m_run(Run::current()) {
    if (m_run != nullptr)
        m_description = describedNode(*m_run, m_run->node());
    if (m_description == nullptr)
        reportUnsupported(function);
}

const FpgaDevice* SimulatedUnit::fpga(std::uint32_t id) const {
    const auto& all = devices().fpgas;
    const auto found = std::find_if(all.begin(), all.end(), [id](const FpgaDevice& device) { return device.id == id; });
    return found == all.end() ? nullptr : &*found;
}

} // namespace mox::host
