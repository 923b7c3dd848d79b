#include <ddal/ddal_alarms.h>

#define MOX_FAMILY <families/ddal_alarms.def>
#define MOX_FAMILY_NAME DdalAlarms
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
