#pragma once
/// The double of the functions in pal/AaFile.h: class AaFileMock. How it is used: Use.hpp.
#include <pal/AaFile.h>

#define MOX_FAMILY <families/AaFile.def>
#define MOX_FAMILY_NAME AaFile
#include "mock/declareMock.hpp"
