// Declares what the doubles of one family consist of: the class <Family>Calls with a virtual function for each function
// of the family, the functions of mox::mock::real that carry a call out, and a tag type for each function. Included
// once a family and translation unit, after the family's public header, with MOX_FAMILY naming its list and
// MOX_FAMILY_NAME the family; hence no #pragma once.
//
// Functions that take a va_list are written by hand (AaSysLogText.hpp): a double is offered the text that it makes.
#include <boost/preprocessor/cat.hpp>
#include <boost/preprocessor/control/iif.hpp>
#include <boost/preprocessor/facilities/is_empty.hpp>
#include <boost/preprocessor/tuple/eat.hpp>
#include <families/forEach.hpp>

#ifndef MOX_UNLESS_BY_HAND
#define MOX_BY_HAND_AaSysLogVPrint
#define MOX_BY_HAND_AaSysLogVPrintE
#define MOX_KEEP_(...) __VA_ARGS__
/// MOX_UNLESS_BY_HAND(name)(code): the code, or nothing for a function that is written by hand.
#define MOX_UNLESS_BY_HAND(name)                                                                                       \
    BOOST_PP_IIF(BOOST_PP_IS_EMPTY(BOOST_PP_CAT(MOX_BY_HAND_, name)), BOOST_PP_TUPLE_EAT(), MOX_KEEP_)
#endif

#ifndef MOX_FAMILY_TEXT_CALLS
#define MOX_FAMILY_TEXT_CALLS
#endif

namespace mox::mock {

#define MOX_FUNCTION(result, name, types) MOX_UNLESS_BY_HAND(name)(virtual result name(MOX_TYPES(types)) = 0;)
#define MOX_FUNCTION0(result, name) virtual result name() = 0;
#define MOX_PROCEDURE(name, types) virtual void name(MOX_TYPES(types)) = 0;
#define MOX_PROCEDURE0(name) virtual void name() = 0;

/// Answers the calls of one family.
class BOOST_PP_CAT(MOX_FAMILY_NAME, Calls) {
public:
    virtual ~BOOST_PP_CAT(MOX_FAMILY_NAME, Calls)() = default;
#include MOX_FAMILY
    MOX_FAMILY_TEXT_CALLS
};

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0

#define MOX_FUNCTION(result, name, types) MOX_UNLESS_BY_HAND(name)(result name(MOX_TYPES(types));)
#define MOX_FUNCTION0(result, name) result name();
#define MOX_PROCEDURE(name, types) void name(MOX_TYPES(types));
#define MOX_PROCEDURE0(name) void name();

namespace real {
#include MOX_FAMILY
} // namespace real

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0

#define MOX_FUNCTION(result, name, types) struct name;
#define MOX_FUNCTION0(result, name) struct name;
#define MOX_PROCEDURE(name, types) struct name;
#define MOX_PROCEDURE0(name) struct name;

namespace tag {
#include MOX_FAMILY
} // namespace tag

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0

} // namespace mox::mock
