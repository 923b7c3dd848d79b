#include <ddal/ddal_sysinfo.h>

#define MOX_FAMILY <families/ddal_sysinfo.def>
#define MOX_FAMILY_NAME DdalSysinfo
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
