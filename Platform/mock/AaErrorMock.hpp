#pragma once
/// The double of the functions in pal/AaError.h: class AaErrorMock. How it is used: Use.hpp.
#include <pal/AaError.h>

#define MOX_FAMILY <families/AaError.def>
#define MOX_FAMILY_NAME AaError
#include "mock/declareMock.hpp"
