#pragma once
/// The AaShell family of the workstation platform; documented in the public header.
#include <pal/AaShell.h>

#define MOX_FAMILY <families/AaShell.def>
#include "declare.hpp"
