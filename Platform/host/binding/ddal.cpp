// The headers of all families are seen here, so a list that disagrees with its header does not compile.
#include "host/ddal/Ddal.hpp"

#define MOX_FUNCTION(result, name, types)                                                                              \
    extern "C" result name(MOX_PARAMETERS(types)) {                                                                    \
        return ::mox::host::name(MOX_ARGUMENTS(types));                                                                \
    }
#define MOX_FUNCTION0(result, name)                                                                                    \
    extern "C" result name() {                                                                                         \
        return ::mox::host::name();                                                                                    \
    }
#include <families/ddal.def>
#undef MOX_FUNCTION0
#undef MOX_FUNCTION
