#pragma once
/// The double of the functions in ddal/ddal_rp3_str.h: class DdalRp3StrMock. How it is used: Use.hpp.
#include <ddal/ddal_rp3_str.h>

#define MOX_FAMILY <families/ddal_rp3_str.def>
#define MOX_FAMILY_NAME DdalRp3Str
#include "mock/declareMock.hpp"
