#pragma once
/// The AaSysTime family of the workstation platform; documented in the public header.
#include <pal/AaSysTime.h>

#define MOX_FAMILY <families/AaSysTime.def>
#include "declare.hpp"
