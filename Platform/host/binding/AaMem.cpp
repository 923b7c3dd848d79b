#include "../pal/AaMem.hpp"

#define MOX_FAMILY <families/AaMem.def>
#include "bind.hpp"
