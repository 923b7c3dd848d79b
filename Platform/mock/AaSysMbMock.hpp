#pragma once
/// The double of the functions in pal/AaSysMb.h: class AaSysMbMock. How it is used: Use.hpp.
#include <pal/AaSysMb.h>

#define MOX_FAMILY <families/AaSysMb.def>
#define MOX_FAMILY_NAME AaSysMb
#include "mock/declareMock.hpp"
