#include <ddal/ddal_eth_switch.h>

#define MOX_FAMILY <families/ddal_eth_switch.def>
#define MOX_FAMILY_NAME DdalEthSwitch
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
