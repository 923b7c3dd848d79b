#include <ddal/ddal_boot.h>

#define MOX_FAMILY <families/ddal_boot.def>
#define MOX_FAMILY_NAME DdalBoot
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
