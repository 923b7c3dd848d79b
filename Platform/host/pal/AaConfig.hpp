#pragma once
/// The AaConfig family of the workstation platform; documented in the public header.
#include <pal/AaConfig.h>

#define MOX_FAMILY <families/AaConfig.def>
#include "declare.hpp"
