#include <ddal/ddal_devicetree.h>

#define MOX_FAMILY <families/ddal_devicetree.def>
#define MOX_FAMILY_NAME DdalDevicetree
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
