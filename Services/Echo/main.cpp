#include "EchoService.hpp"

namespace {

// The library's main() finds the service: there is exactly one, and it is global.
mox::echo::EchoService g_service;

} // namespace
