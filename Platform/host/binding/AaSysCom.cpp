#include "../pal/AaSysCom.hpp"

#define MOX_FAMILY <families/AaSysCom.def>
#include "bind.hpp"
