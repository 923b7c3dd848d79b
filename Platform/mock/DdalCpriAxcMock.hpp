#pragma once
/// The double of the functions in ddal/ddal_cpri_axc.h: class DdalCpriAxcMock. How it is used: Use.hpp.
#include <ddal/ddal_cpri_axc.h>

#define MOX_FAMILY <families/ddal_cpri_axc.def>
#define MOX_FAMILY_NAME DdalCpriAxc
#include "mock/declareMock.hpp"
