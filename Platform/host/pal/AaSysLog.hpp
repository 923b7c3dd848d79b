#pragma once
/// The AaSysLog family of the workstation platform; documented in the public header.
#include <pal/AaSysLog.h>

#define MOX_FAMILY <families/AaSysLog.def>
#include "declare.hpp"
