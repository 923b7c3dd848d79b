#include <ddal/ddal_bip.h>

#define MOX_FAMILY <families/ddal_bip.def>
#define MOX_FAMILY_NAME DdalBip
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
