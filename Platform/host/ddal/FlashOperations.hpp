#pragma once
/// What the flash asks the plan of its process.
#include "FlashPlan.hpp"

namespace mox::host {

/// Makes a plan that was left for the node (planFlashOf) this process's. At the begin of an update.
void takePlanOf(const Run& run, std::uint16_t node);

/// Counts an operation. @return what is to become of it; with anything but none, half of it is to be done
FlashPlan::Kind beginFlashOperation();

/// Ends an operation as planned: does not return when the process is to be killed. @return whether it went well
bool endFlashOperation(FlashPlan::Kind planned);

} // namespace mox::host
