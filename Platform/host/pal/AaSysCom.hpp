#pragma once
/// The AaSysCom family of the workstation platform; documented in the public header.
#include <pal/AaSysCom.h>

#define MOX_FAMILY <families/AaSysCom.def>
#include "declare.hpp"
