#pragma once
/// The AaSem family of the workstation platform; documented in the public header.
#include <pal/AaSem.h>

#define MOX_FAMILY <families/AaSem.def>
#include "declare.hpp"
