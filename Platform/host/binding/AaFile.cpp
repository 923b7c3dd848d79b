#include "../pal/AaFile.hpp"

#define MOX_UNCANCELLED
#define MOX_FAMILY <families/AaFile.def>
#include "bind.hpp"
