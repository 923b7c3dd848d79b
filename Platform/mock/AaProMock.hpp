#pragma once
/// The double of the functions in pal/AaPro.h: class AaProMock. How it is used: Use.hpp.
#include <pal/AaPro.h>

#define MOX_FAMILY <families/AaPro.def>
#define MOX_FAMILY_NAME AaPro
#include "mock/declareMock.hpp"
