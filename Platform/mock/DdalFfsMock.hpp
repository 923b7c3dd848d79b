#pragma once
/// The double of the functions in ddal/ddal_ffs.h: class DdalFfsMock. How it is used: Use.hpp.
#include <ddal/ddal_ffs.h>

#define MOX_FAMILY <families/ddal_ffs.def>
#define MOX_FAMILY_NAME DdalFfs
#include "mock/declareMock.hpp"
