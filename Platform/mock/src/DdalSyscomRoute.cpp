#include <ddal/ddal_syscom_route.h>

#define MOX_FAMILY <families/ddal_syscom_route.def>
#define MOX_FAMILY_NAME DdalSyscomRoute
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
