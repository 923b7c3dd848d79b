// Declares the gmock class of one family, <Family>Mock, whose calls without action are carried out by the platform.
// Included once a family, with MOX_FAMILY and MOX_FAMILY_NAME as for declareCalls.hpp, which it includes; hence no
// #pragma once.
#include "mock/Use.hpp"
#include "mock/declareCalls.hpp"

#ifndef MOX_FAMILY_TEXT_MOCKS
#define MOX_FAMILY_TEXT_MOCKS
#define MOX_FAMILY_TEXT_DEFAULTS
#endif

namespace mox::mock {

class BOOST_PP_CAT(MOX_FAMILY_NAME, Mock) : public BOOST_PP_CAT(MOX_FAMILY_NAME, Calls) {
public:
    using Calls = BOOST_PP_CAT(MOX_FAMILY_NAME, Calls);

#define MOX_FUNCTION(result, name, types)                                                                              \
    MOX_UNLESS_BY_HAND(name)(MOCK_METHOD(result, name, (MOX_TYPES(types)), (override));)
#define MOX_FUNCTION0(result, name) MOCK_METHOD(result, name, (), (override));
#define MOX_PROCEDURE(name, types) MOCK_METHOD(void, name, (MOX_TYPES(types)), (override));
#define MOX_PROCEDURE0(name) MOCK_METHOD(void, name, (), (override));

#include MOX_FAMILY
    MOX_FAMILY_TEXT_MOCKS

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0

#define MOX_FUNCTION(result, name, types) MOX_UNLESS_BY_HAND(name)(ON_CALL(*this, name).WillByDefault(&real::name);)
#define MOX_FUNCTION0(result, name) ON_CALL(*this, name).WillByDefault(&real::name);
#define MOX_PROCEDURE(name, types) ON_CALL(*this, name).WillByDefault(&real::name);
#define MOX_PROCEDURE0(name) ON_CALL(*this, name).WillByDefault(&real::name);

    BOOST_PP_CAT(MOX_FAMILY_NAME, Mock)() {
#include MOX_FAMILY
        MOX_FAMILY_TEXT_DEFAULTS
    }
};

} // namespace mox::mock

#undef MOX_FUNCTION
#undef MOX_FUNCTION0
#undef MOX_PROCEDURE
#undef MOX_PROCEDURE0
#undef MOX_FAMILY
#undef MOX_FAMILY_NAME
#undef MOX_FAMILY_TEXT_CALLS
#undef MOX_FAMILY_TEXT_MOCKS
#undef MOX_FAMILY_TEXT_DEFAULTS
