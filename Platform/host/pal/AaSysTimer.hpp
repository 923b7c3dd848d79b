#pragma once
/// The AaSysTimer family of the workstation platform; documented in the public header.
#include <pal/AaSysTimer.h>

#define MOX_FAMILY <families/AaSysTimer.def>
#include "declare.hpp"
