#include "../pal/AaTrbl.hpp"

#define MOX_FAMILY <families/AaTrbl.def>
#include "bind.hpp"
