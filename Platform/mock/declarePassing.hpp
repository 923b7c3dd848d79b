// Declares <Family>Passing, which carries each call of one family out on the platform. A double that is derived from it
// answers what it overrides and passes on the rest:
//
//     #define MOX_FAMILY <families/ddal_unit.def>
//     #define MOX_FAMILY_NAME DdalUnit
//     #include "mock/declarePassing.hpp"
//
//     struct PicoBoard : mox::mock::DdalUnitPassing {
//         int ddal_unit_get_board() override { return 4; }
//     };
//
// For doubles without expectations: the gmock class takes a compiler many times as long. As that one (Use.hpp) it
// serves as long as it lives, one a family at a time. Included once a family and translation unit, after the family's
// public header and not beside its mock; hence no #pragma once. A function that is written by hand (AaSysLogText.hpp)
// has to be overridden.
#include "mock/Slot.hpp"
#include "mock/declareCalls.hpp"

namespace mox::mock {

#define MOX_FUNCTION(result, name, types)                                                                              \
    MOX_UNLESS_BY_HAND(name)                                                                                           \
    (result name(MOX_PARAMETERS(types)) override { return real::name(MOX_ARGUMENTS(types)); })
#define MOX_FUNCTION0(result, name)                                                                                    \
    result name() override {                                                                                           \
        return real::name();                                                                                           \
    }
#define MOX_PROCEDURE(name, types)                                                                                     \
    void name(MOX_PARAMETERS(types)) override {                                                                        \
        real::name(MOX_ARGUMENTS(types));                                                                              \
    }
#define MOX_PROCEDURE0(name)                                                                                           \
    void name() override {                                                                                             \
        real::name();                                                                                                  \
    }

class BOOST_PP_CAT(MOX_FAMILY_NAME, Passing) : public BOOST_PP_CAT(MOX_FAMILY_NAME, Calls) {
public:
    using Calls = BOOST_PP_CAT(MOX_FAMILY_NAME, Calls);
    using Self = BOOST_PP_CAT(MOX_FAMILY_NAME, Passing);

    BOOST_PP_CAT(MOX_FAMILY_NAME, Passing)() { Slot<Calls>::install(*this); }
    ~BOOST_PP_CAT(MOX_FAMILY_NAME, Passing)() override { Slot<Calls>::remove(); }
    BOOST_PP_CAT(MOX_FAMILY_NAME, Passing)(const Self&) = delete;
    Self& operator=(const Self&) = delete;

#include MOX_FAMILY
};

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0

} // namespace mox::mock

#undef MOX_FAMILY
#undef MOX_FAMILY_NAME
#undef MOX_FAMILY_TEXT_CALLS
