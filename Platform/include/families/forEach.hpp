#pragma once
/// Turns the type sequence of a family list, `(T1)(T2)`, into parameters `T1 a0, T2 a1` and arguments `a0, a1`.
#include <boost/preprocessor/punctuation/comma_if.hpp>
#include <boost/preprocessor/seq/for_each_i.hpp>
#include <boost/preprocessor/seq/size.hpp>

#define MOX_PARAMETER_(r, data, i, type) BOOST_PP_COMMA_IF(i) type a##i
#define MOX_ARGUMENT_(r, data, i, type) BOOST_PP_COMMA_IF(i) a##i
#define MOX_TYPE_(r, data, i, type) BOOST_PP_COMMA_IF(i) type

#define MOX_PARAMETERS(types) BOOST_PP_SEQ_FOR_EACH_I(MOX_PARAMETER_, _, types)
#define MOX_ARGUMENTS(types) BOOST_PP_SEQ_FOR_EACH_I(MOX_ARGUMENT_, _, types)
#define MOX_TYPES(types) BOOST_PP_SEQ_FOR_EACH_I(MOX_TYPE_, _, types)
