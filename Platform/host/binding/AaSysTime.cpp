#include "../pal/AaSysTime.hpp"

#define MOX_FAMILY <families/AaSysTime.def>
#include "bind.hpp"
