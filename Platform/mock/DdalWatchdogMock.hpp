#pragma once
/// The double of the functions in ddal/ddal_watchdog.h: class DdalWatchdogMock. How it is used: Use.hpp.
#include <ddal/ddal_watchdog.h>

#define MOX_FAMILY <families/ddal_watchdog.def>
#define MOX_FAMILY_NAME DdalWatchdog
#include "mock/declareMock.hpp"
