#pragma once
/// The double of the functions in pal/AaSem.h: class AaSemMock. How it is used: Use.hpp.
#include <pal/AaSem.h>

#define MOX_FAMILY <families/AaSem.def>
#define MOX_FAMILY_NAME AaSem
#include "mock/declareMock.hpp"
