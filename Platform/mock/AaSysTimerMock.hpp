#pragma once
/// The double of the functions in pal/AaSysTimer.h: class AaSysTimerMock. How it is used: Use.hpp.
#include <pal/AaSysTimer.h>

#define MOX_FAMILY <families/AaSysTimer.def>
#define MOX_FAMILY_NAME AaSysTimer
#include "mock/declareMock.hpp"
