// Defines each function of a family as the platform's symbol, which takes the call through the doubles, and the
// function of mox::mock::real that hands it to the function of the same name in mox::host. Included once a family,
// after the effects, with MOX_FAMILY and MOX_FAMILY_NAME as for declareCalls.hpp; hence no #pragma once.
//
// A function of real that is written by hand is named beforehand: #define MOX_REAL_BY_HAND_<name>
#include "mock/src/Call.hpp"

#define MOX_UNLESS_REAL_BY_HAND(name)                                                                                  \
    BOOST_PP_IIF(BOOST_PP_IS_EMPTY(BOOST_PP_CAT(MOX_REAL_BY_HAND_, name)), BOOST_PP_TUPLE_EAT(), MOX_KEEP_)

#define MOX_FUNCTION(result, name, types) result name(MOX_TYPES(types));
#define MOX_FUNCTION0(result, name) result name();
#define MOX_PROCEDURE(name, types) void name(MOX_TYPES(types));
#define MOX_PROCEDURE0(name) void name();

namespace mox::host {
#include MOX_FAMILY
} // namespace mox::host

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0

#define MOX_REAL_(result, name, parameters, arguments)                                                                 \
    result name parameters {                                                                                           \
        Call::noteCarriedOut(#name);                                                                                   \
        return ::mox::host::name arguments;                                                                            \
    }
#define MOX_FUNCTION(result, name, types)                                                                              \
    MOX_UNLESS_BY_HAND(name)                                                                                           \
    (MOX_UNLESS_REAL_BY_HAND(name)(MOX_REAL_(result, name, (MOX_PARAMETERS(types)), (MOX_ARGUMENTS(types)))))
#define MOX_FUNCTION0(result, name) MOX_REAL_(result, name, (), ())
#define MOX_PROCEDURE(name, types) MOX_REAL_(void, name, (MOX_PARAMETERS(types)), (MOX_ARGUMENTS(types)))
#define MOX_PROCEDURE0(name) MOX_REAL_(void, name, (), ())

namespace mox::mock::real {
#include MOX_FAMILY
} // namespace mox::mock::real

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0

#define MOX_CALLS_ ::mox::mock::BOOST_PP_CAT(MOX_FAMILY_NAME, Calls)
#define MOX_RECORD_(name) static ::mox::mock::FunctionRecord& record = ::mox::mock::functionRecord(#name)
#define MOX_STEPS_(name) record, &MOX_CALLS_::name, &::mox::mock::real::name
#define MOX_FUNCTION(result, name, types)                                                                              \
    MOX_UNLESS_BY_HAND(name)                                                                                           \
    (result name(MOX_PARAMETERS(types)) {                                                                              \
        MOX_RECORD_(name);                                                                                             \
        return ::mox::mock::dispatch<::mox::mock::tag::name>(MOX_STEPS_(name), MOX_ARGUMENTS(types));                  \
    })
#define MOX_FUNCTION0(result, name)                                                                                    \
    result name(void) {                                                                                                \
        MOX_RECORD_(name);                                                                                             \
        return ::mox::mock::dispatch<::mox::mock::tag::name>(MOX_STEPS_(name));                                        \
    }
#define MOX_PROCEDURE(name, types)                                                                                     \
    void name(MOX_PARAMETERS(types)) {                                                                                 \
        MOX_RECORD_(name);                                                                                             \
        ::mox::mock::dispatch<::mox::mock::tag::name>(MOX_STEPS_(name), MOX_ARGUMENTS(types));                         \
    }
#define MOX_PROCEDURE0(name)                                                                                           \
    void name(void) {                                                                                                  \
        MOX_RECORD_(name);                                                                                             \
        ::mox::mock::dispatch<::mox::mock::tag::name>(MOX_STEPS_(name));                                               \
    }

extern "C" {
#include MOX_FAMILY
}

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0
#undef MOX_FAMILY
#undef MOX_FAMILY_NAME
