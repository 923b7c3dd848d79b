#include <ddal/ddal_ffs.h>

#define MOX_FAMILY <families/ddal_ffs.def>
#define MOX_FAMILY_NAME DdalFfs
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
