#pragma once
/// The AaError family of the workstation platform; documented in the public header.
#include <pal/AaError.h>

#define MOX_FAMILY <families/AaError.def>
#include "declare.hpp"
