#include <pal/AaSysTime.h>

#define MOX_FAMILY <families/AaSysTime.def>
#define MOX_FAMILY_NAME AaSysTime
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
