#pragma once
/// The double of the functions in pal/AaCpuBit.h: class AaCpuBitMock. How it is used: Use.hpp.
#include <pal/AaCpuBit.h>

#define MOX_FAMILY <families/AaCpuBit.def>
#define MOX_FAMILY_NAME AaCpuBit
#include "mock/declareMock.hpp"
