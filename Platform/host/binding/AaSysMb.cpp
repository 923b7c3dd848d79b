#include "../pal/AaSysMb.hpp"

#define MOX_FAMILY <families/AaSysMb.def>
#include "bind.hpp"
