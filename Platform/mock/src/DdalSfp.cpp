#include <ddal/ddal_sfp.h>

#define MOX_FAMILY <families/ddal_sfp.def>
#define MOX_FAMILY_NAME DdalSfp
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
