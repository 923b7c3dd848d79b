#pragma once
/// The double of the functions in pal/AaShell.h: class AaShellMock. How it is used: Use.hpp.
#include <pal/AaShell.h>

#define MOX_FAMILY <families/AaShell.def>
#define MOX_FAMILY_NAME AaShell
#include "mock/declareMock.hpp"
