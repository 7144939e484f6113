/// The pixel-type lists as types of typed test suites.
#pragma once

#include <gtest/gtest.h>

#include "zuml/core/pixeltypes.h"

namespace zuml_test {

/// One name for what the macros of pixeltypes.h list: each type with a comma before it.
template <class First, class... Types>
struct Suite {
  using Of = testing::Types<Types...>;
};

#define ZUML_TEST_COMMA(TYPE) , TYPE
using AllTypes = Suite<void ZUML_ALL_TYPES(ZUML_TEST_COMMA)>::Of;
using ValueTypes = Suite<void ZUML_VALUE_TYPES(ZUML_TEST_COMMA)>::Of;
using AlgebraTypes = Suite<void ZUML_ALGEBRA_TYPES(ZUML_TEST_COMMA)>::Of;
using ArithmeticTypes = Suite<void ZUML_ARITHMETIC_TYPES(ZUML_TEST_COMMA)>::Of;
using IntegerTypes = Suite<void ZUML_INTEGER_TYPES(ZUML_TEST_COMMA)>::Of;
#undef ZUML_TEST_COMMA

}  // namespace zuml_test
