#include "../pal/AaConfig.hpp"

#define MOX_FAMILY <families/AaConfig.def>
#include "bind.hpp"
