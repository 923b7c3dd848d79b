#pragma once
/// The double of the functions in ddal/ddal_eth_switch.h: class DdalEthSwitchMock. How it is used: Use.hpp.
#include <ddal/ddal_eth_switch.h>

#define MOX_FAMILY <families/ddal_eth_switch.def>
#define MOX_FAMILY_NAME DdalEthSwitch
#include "mock/declareMock.hpp"
