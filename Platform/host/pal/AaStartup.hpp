#pragma once
/// The AaStartup family of the workstation platform; documented in the public header.
#include <pal/AaStartup.h>

#define MOX_FAMILY <families/AaStartup.def>
#include "declare.hpp"
