#include <ddal/ddal_unit.h>

#define MOX_FAMILY <families/ddal_unit.def>
#define MOX_FAMILY_NAME DdalUnit
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
