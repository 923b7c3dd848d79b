#include "../pal/AaSem.hpp"

#define MOX_FAMILY <families/AaSem.def>
#include "bind.hpp"
