#pragma once
/// The double of the functions in ddal/ddal_boot.h: class DdalBootMock. How it is used: Use.hpp.
#include <ddal/ddal_boot.h>

#define MOX_FAMILY <families/ddal_boot.def>
#define MOX_FAMILY_NAME DdalBoot
#include "mock/declareMock.hpp"
