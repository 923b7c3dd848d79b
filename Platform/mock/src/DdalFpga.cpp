#include <ddal/ddal_fpga.h>

#define MOX_FAMILY <families/ddal_fpga.def>
#define MOX_FAMILY_NAME DdalFpga
#include "mock/declareCalls.hpp"
#include "mock/src/bindFamily.hpp"
