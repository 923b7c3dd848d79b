#include <pal/AaError.h>

#define MOX_FAMILY <families/AaError.def>
#define MOX_FAMILY_NAME AaError
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
