#pragma once
/// The AaCpuBit family of the workstation platform; documented in the public header.
#include <pal/AaCpuBit.h>

#define MOX_FAMILY <families/AaCpuBit.def>
#include "declare.hpp"
