#include <ddal/ddal.h>

#define MOX_FAMILY <families/ddal_strerror.def>
#define MOX_FAMILY_NAME DdalStrerror
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
