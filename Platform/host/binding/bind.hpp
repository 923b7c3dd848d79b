// Defines each function of a family as the platform's symbol, which hands its arguments to the function of the same
// name in mox::host, past the faults that are planned for it. Included once a family, after the header that declares
// both, with MOX_FAMILY naming its list; hence no #pragma once.
//
// With MOX_UNCANCELLED defined no function of the family is a cancellation point as a whole; the functions of other
// families see to that themselves where it matters, because some have to be fast.
#include "../faults/Call.hpp"
#include "../run/NoCancellation.hpp"

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

#ifdef MOX_UNCANCELLED
#define MOX_GUARD_ const ::mox::host::NoCancellation wholeCall;
#else
#define MOX_GUARD_
#endif

#define MOX_FUNCTION(result, name, types)                                                                              \
    result name(MOX_PARAMETERS(types)) {                                                                               \
        MOX_GUARD_                                                                                                     \
        if (MOX_FAULT_PLANNED(name))                                                                                   \
            return MOX_FAULTED(name)(&::mox::host::name, MOX_ARGUMENTS(types));                                        \
        return ::mox::host::name(MOX_ARGUMENTS(types));                                                                \
    }
#define MOX_FUNCTION0(result, name)                                                                                    \
    result name(void) {                                                                                                \
        MOX_GUARD_                                                                                                     \
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
#undef MOX_GUARD_
#undef MOX_UNCANCELLED
