#include <ddal/ddal_watchdog.h>

#define MOX_FAMILY <families/ddal_watchdog.def>
#define MOX_FAMILY_NAME DdalWatchdog
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
