#pragma once
/// The double of the functions in pal/AaSysCom.h: class AaSysComMock. How it is used: Use.hpp.
#include <pal/AaSysCom.h>

#define MOX_FAMILY <families/AaSysCom.def>
#define MOX_FAMILY_NAME AaSysCom
#include "mock/declareMock.hpp"
