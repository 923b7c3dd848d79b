#pragma once
/// The AaTrbl family of the workstation platform; documented in the public header.
#include <pal/AaTrbl.h>

#define MOX_FAMILY <families/AaTrbl.def>
#include "declare.hpp"
