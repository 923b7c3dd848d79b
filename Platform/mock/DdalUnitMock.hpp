#pragma once
/// The double of the functions in ddal/ddal_unit.h: class DdalUnitMock. How it is used: Use.hpp.
#include <ddal/ddal_unit.h>

#define MOX_FAMILY <families/ddal_unit.def>
#define MOX_FAMILY_NAME DdalUnit
#include "mock/declareMock.hpp"
