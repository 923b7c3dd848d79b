#pragma once
/// The double of the functions in pal/AaSysTime.h: class AaSysTimeMock. How it is used: Use.hpp.
#include <pal/AaSysTime.h>

#define MOX_FAMILY <families/AaSysTime.def>
#define MOX_FAMILY_NAME AaSysTime
#include "mock/declareMock.hpp"
