#include "../pal/AaStartup.hpp"

#define MOX_FAMILY <families/AaStartup.def>
#include "bind.hpp"
