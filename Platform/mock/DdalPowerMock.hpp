#pragma once
/// The double of the functions in ddal/ddal_power.h: class DdalPowerMock. How it is used: Use.hpp.
#include <ddal/ddal_power.h>

#define MOX_FAMILY <families/ddal_power.def>
#define MOX_FAMILY_NAME DdalPower
#include "mock/declareMock.hpp"
