#include "FirmService.hpp"

namespace {

// The library's main() finds the service: there is exactly one, and it is global.
mox::firm::FirmService g_service;

} // namespace
