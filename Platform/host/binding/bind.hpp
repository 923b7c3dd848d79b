// Defines each function of a family as the platform's symbol, which hands its arguments to the function of the same
// name in mox::host. Included once a family, after the header that declares both, with MOX_FAMILY naming its list;
// hence no #pragma once.
#include <families/forEach.hpp>

#define MOX_FUNCTION(result, name, types)                                                                              \
    result name(MOX_PARAMETERS(types)) {                                                                               \
        return ::mox::host::name(MOX_ARGUMENTS(types));                                                                \
    }
#define MOX_FUNCTION0(result, name)                                                                                    \
    result name(void) {                                                                                                \
        return ::mox::host::name();                                                                                    \
    }
#define MOX_PROCEDURE(name, types)                                                                                     \
    void name(MOX_PARAMETERS(types)) {                                                                                 \
        ::mox::host::name(MOX_ARGUMENTS(types));                                                                       \
    }
#define MOX_PROCEDURE0(name)                                                                                           \
    void name(void) {                                                                                                  \
        ::mox::host::name();                                                                                           \
    }

extern "C" {
#include MOX_FAMILY
}

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0
#undef MOX_FAMILY
