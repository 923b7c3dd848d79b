#pragma once
/// The double of the functions in pal/AaConfig.h: class AaConfigMock. How it is used: Use.hpp.
#include <pal/AaConfig.h>

#define MOX_FAMILY <families/AaConfig.def>
#define MOX_FAMILY_NAME AaConfig
#include "mock/declareMock.hpp"
