#include "../pal/AaPro.hpp"

#define MOX_FAMILY <families/AaPro.def>
#include "bind.hpp"
