#include "../pal/AaShell.hpp"

#define MOX_FAMILY <families/AaShell.def>
#include "bind.hpp"
