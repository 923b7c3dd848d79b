#pragma once
/// The AaMem family of the workstation platform; documented in the public header.
#include <pal/AaMem.h>

#define MOX_FAMILY <families/AaMem.def>
#include "declare.hpp"
