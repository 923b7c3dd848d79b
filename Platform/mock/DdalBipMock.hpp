#pragma once
/// The double of the functions in ddal/ddal_bip.h: class DdalBipMock. How it is used: Use.hpp.
#include <ddal/ddal_bip.h>

#define MOX_FAMILY <families/ddal_bip.def>
#define MOX_FAMILY_NAME DdalBip
#include "mock/declareMock.hpp"
