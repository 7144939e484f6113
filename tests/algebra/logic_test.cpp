#include "zuml/algebra/logic.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

TEST(Logic, MasksAndBits) {
  CheckForms<bool>(std::logical_and<>(), std::logical_and<>(), "operator&&");
  CheckForms<bool>(std::logical_or<>(), std::logical_or<>(), "operator||");
  CheckUnary<bool>(std::logical_not<>(), std::logical_not<>());
  CheckUnary<bool>(std::bit_not<>(), std::logical_not<>());
  ForTypes(DiscreteTypes(), []<class P>() {
    CheckForms<P>(std::bit_and<>(), InPixels(std::bit_and<>()), "operator&");
    CheckForms<P>(std::bit_or<>(), InPixels(std::bit_or<>()), "operator|");
    CheckForms<P>(std::bit_xor<>(), InPixels(std::bit_xor<>()), "operator^");
    if constexpr (!std::same_as<P, bool>) {
      CheckUnary<P>(std::bit_not<>(), InPixels(std::bit_not<>()));
    }
  });
}

// One bit at a time, so that the count modulo 32 stands for itself.
template <class P>
P Shift(P a, P b, bool left) {
  const int count = ((static_cast<int>(b) % 32) + 32) % 32;
  long long value = a;
  for (int i = 0; i < count; ++i)
    value = left ? Wrap<ZUMLong>(2 * value) : (value - (value & 1)) / 2;
  return Wrap<P>(value);
}

TEST(Logic, Shifts) {
  ForTypes(IntegerTypes(), []<class P>() {
    CheckForms<P>([](const auto& a, const auto& b) { return a << b; },
                  [](P a, P b) { return Shift(a, b, true); }, "operator<<");
    CheckForms<P>([](const auto& a, const auto& b) { return a >> b; },
                  [](P a, P b) { return Shift(a, b, false); }, "operator>>");
  });
  EXPECT_EQ((MakeLine<ZUMLong>({3}) << 33)(0), 6);
  EXPECT_EQ((MakeLine<ZUMLong>({1}) << -1)(0), std::numeric_limits<ZUMLong>::min());
}

}  // namespace
