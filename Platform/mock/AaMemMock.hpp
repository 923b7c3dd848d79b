#pragma once
/// The double of the functions in pal/AaMem.h: class AaMemMock. How it is used: Use.hpp.
#include <pal/AaMem.h>

#define MOX_FAMILY <families/AaMem.def>
#define MOX_FAMILY_NAME AaMem
#include "mock/declareMock.hpp"
