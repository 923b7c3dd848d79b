#pragma once
/// The AaSysMb family of the workstation platform; documented in the public header.
#include <pal/AaSysMb.h>

#define MOX_FAMILY <families/AaSysMb.def>
#include "declare.hpp"
