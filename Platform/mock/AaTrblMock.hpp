#pragma once
/// The double of the functions in pal/AaTrbl.h: class AaTrblMock. How it is used: Use.hpp.
#include <pal/AaTrbl.h>

#define MOX_FAMILY <families/AaTrbl.def>
#define MOX_FAMILY_NAME AaTrbl
#include "mock/declareMock.hpp"
