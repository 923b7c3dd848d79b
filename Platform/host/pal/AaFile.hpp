#pragma once
/// The AaFile family of the workstation platform; documented in the public header.
#include <pal/AaFile.h>

#define MOX_FAMILY <families/AaFile.def>
#include "declare.hpp"
