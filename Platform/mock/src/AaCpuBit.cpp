#include <pal/AaCpuBit.h>

#define MOX_FAMILY <families/AaCpuBit.def>
#define MOX_FAMILY_NAME AaCpuBit
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
