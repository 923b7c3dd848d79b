#pragma once
/// Values of the system information: what the description says, unless one was set since.
#include "../board/Description.hpp"

#include <cstdint>
#include <string>

namespace mox::host {

/// Key of a value in Table::devices: "1011/sysinfo/0/14", with an index "1011/sysinfo/0/12/5/2".
std::string systemInformationKey(std::uint16_t node, const SystemInformation& entry);

/// The number of resets in the unit's lifetime; null when none is described.
const SystemInformation* resetCounter(const Devices& devices);

/// The value that a record of the store holds; the described one when the record is none.
TypedValue systemInformationValue(const std::optional<std::string>& record, const SystemInformation& entry);

} // namespace mox::host
