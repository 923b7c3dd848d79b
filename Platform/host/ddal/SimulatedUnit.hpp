#pragma once
/// The unit that this process's node sits on, as device functions look at it.
#include "../board/Description.hpp"

#include <cstdint>
#include <memory>
#include <string>

namespace mox::host {

class Run;

/// The description of a node of the run; null when there is none. It is read again only when the store's text has
/// changed, so asking is cheap. Any thread. Does not block on a writer.
std::shared_ptr<const NodeDescription> describedNode(const Run& run, std::uint16_t node);

/// What one call of a device function sees; built by it, on its thread.
///
///     const SimulatedUnit unit(__func__);
///     if (!unit)
///         return DDAL_NOT_SUPPORTED;
class SimulatedUnit {
public:
    /// Reports the function as not available (see Unsupported.hpp) when this process is in no run.
    explicit SimulatedUnit(const char* function);

    explicit operator bool() const { return m_description != nullptr; }
    const NodeDescription& description() const { return *m_description; }
    const Devices& devices() const { return m_description->devices; }
    const Run& run() const { return *m_run; }
    std::uint16_t node() const { return m_description->id; }
    /// The device with the id; null when the unit has none.
    const FpgaDevice* fpga(std::uint32_t id) const;

private:
    const Run* m_run;
    std::shared_ptr<const NodeDescription> m_description;
};

} // namespace mox::host
