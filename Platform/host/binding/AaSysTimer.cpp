#include "../pal/AaSysTimer.hpp"

#define MOX_FAMILY <families/AaSysTimer.def>
#include "bind.hpp"
