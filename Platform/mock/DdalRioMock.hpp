#pragma once
/// The double of the functions in ddal/ddal_rio.h: class DdalRioMock. How it is used: Use.hpp.
#include <ddal/ddal_rio.h>

#define MOX_FAMILY <families/ddal_rio.def>
#define MOX_FAMILY_NAME DdalRio
#include "mock/declareMock.hpp"
