// Defines each function of a family as the platform's symbol, which hands its arguments to the function of the same
// name in mox::host, past the faults that are planned for it. Included once a family, after the header that declares
// both, with MOX_FAMILY naming its list; hence no #pragma once.
#include "../faults/Call.hpp"

#include <families/forEach.hpp>

#define MOX_FUNCTION(result, name, types) MOX_FAULT_TAG(name)
#define MOX_FUNCTION0(result, name) MOX_FAULT_TAG(name)
#define MOX_PROCEDURE(name, types) MOX_FAULT_TAG(name)
#define MOX_PROCEDURE0(name) MOX_FAULT_TAG(name)

#define MOX_FAULT_TAG(function)                                                                                        \
    struct function {                                                                                                  \
        static constexpr const char* name = #function;                                                                 \
    };

namespace mox::host::faults::tag {
#include MOX_FAMILY
} // namespace mox::host::faults::tag

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0

#define MOX_FAULT_PLANNED(name) ::mox::host::faults::isPlanned<::mox::host::faults::tag::name>()
#define MOX_FAULTED(name) ::mox::host::faults::call<::mox::host::faults::tag::name>

#define MOX_FUNCTION(result, name, types)                                                                              \
    result name(MOX_PARAMETERS(types)) {                                                                               \
        if (MOX_FAULT_PLANNED(name))                                                                                   \
            return MOX_FAULTED(name)(&::mox::host::name, MOX_ARGUMENTS(types));                                        \
        return ::mox::host::name(MOX_ARGUMENTS(types));                                                                \
    }
#define MOX_FUNCTION0(result, name)                                                                                    \
    result name(void) {                                                                                                \
        if (MOX_FAULT_PLANNED(name))                                                                                   \
            return MOX_FAULTED(name)(&::mox::host::name);                                                              \
        return ::mox::host::name();                                                                                    \
    }
#define MOX_PROCEDURE(name, types) MOX_FUNCTION(void, name, types)
#define MOX_PROCEDURE0(name) MOX_FUNCTION0(void, name)

extern "C" {
#include MOX_FAMILY
}

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0
#undef MOX_FAMILY
