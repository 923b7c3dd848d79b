#pragma once
/// The double of the functions in ddal/ddal_syscom_route.h: class DdalSyscomRouteMock. How it is used: Use.hpp.
#include <ddal/ddal_syscom_route.h>

#define MOX_FAMILY <families/ddal_syscom_route.def>
#define MOX_FAMILY_NAME DdalSyscomRoute
#include "mock/declareMock.hpp"
