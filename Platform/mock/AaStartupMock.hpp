#pragma once
/// The double of the functions in pal/AaStartup.h: class AaStartupMock. How it is used: Use.hpp.
#include <pal/AaStartup.h>

#define MOX_FAMILY <families/AaStartup.def>
#define MOX_FAMILY_NAME AaStartup
#include "mock/declareMock.hpp"
