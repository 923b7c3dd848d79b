// The headers of all families are seen here, so a list that disagrees with its header does not compile.
#include "host/ddal/Ddal.hpp"

#define MOX_UNCANCELLED
#define MOX_FAMILY <families/ddal.def>
#include "bind.hpp"
