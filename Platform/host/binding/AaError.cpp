#include "../pal/AaError.hpp"

#define MOX_FAMILY <families/AaError.def>
#include "bind.hpp"
