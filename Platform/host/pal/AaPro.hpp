#pragma once
/// The AaPro family of the workstation platform; documented in the public header.
#include <pal/AaPro.h>

#define MOX_FAMILY <families/AaPro.def>
#include "declare.hpp"
