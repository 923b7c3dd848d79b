#pragma once
/// The double of the functions in ddal/ddal_fpga.h: class DdalFpgaMock. How it is used: Use.hpp.
#include <ddal/ddal_fpga.h>

#define MOX_FAMILY <families/ddal_fpga.def>
#define MOX_FAMILY_NAME DdalFpga
#include "mock/declareMock.hpp"
