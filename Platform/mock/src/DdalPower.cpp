#include <ddal/ddal_power.h>

#define MOX_FAMILY <families/ddal_power.def>
#define MOX_FAMILY_NAME DdalPower
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
