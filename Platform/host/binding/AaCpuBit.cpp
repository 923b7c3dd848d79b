#include "../pal/AaCpuBit.hpp"

#define MOX_FAMILY <families/AaCpuBit.def>
#include "bind.hpp"
