#pragma once
/// The double of the functions in ddal/ddal_sfp.h: class DdalSfpMock. How it is used: Use.hpp.
#include <ddal/ddal_sfp.h>

#define MOX_FAMILY <families/ddal_sfp.def>
#define MOX_FAMILY_NAME DdalSfp
#include "mock/declareMock.hpp"
