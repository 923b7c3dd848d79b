#include <ddal/ddal_cpri_axc.h>

#define MOX_FAMILY <families/ddal_cpri_axc.def>
#define MOX_FAMILY_NAME DdalCpriAxc
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
