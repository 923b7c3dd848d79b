#pragma once
/// The double of the functions in ddal/ddal_sysinfo.h: class DdalSysinfoMock. How it is used: Use.hpp.
#include <ddal/ddal_sysinfo.h>

#define MOX_FAMILY <families/ddal_sysinfo.def>
#define MOX_FAMILY_NAME DdalSysinfo
#include "mock/declareMock.hpp"
