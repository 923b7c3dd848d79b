#pragma once
/// The double of the functions in ddal/ddal.h: class DdalStrerrorMock. How it is used: Use.hpp.
#include <ddal/ddal.h>

#define MOX_FAMILY <families/ddal_strerror.def>
#define MOX_FAMILY_NAME DdalStrerror
#include "mock/declareMock.hpp"
