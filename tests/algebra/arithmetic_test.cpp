#include "zuml/algebra/arithmetic.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

constexpr auto kMinus = std::minus<>();

TEST(Arithmetic, SumsAndDifferences) {
  ForTypes(ArithmeticTypes(), []<class P>() {
    CheckForms<P>(std::plus<>(), InPixels(std::plus<>()), "operator+");
    CheckForms<P>(kMinus, InPixels(kMinus), "operator-");
    CheckUnary<P>(std::negate<>(), InPixels(std::negate<>()));
  });
  CheckForms<bool>(kMinus, std::greater<>(), "operator-");
  CheckUnary<bool>(std::negate<>(), std::logical_not<>());
}

TEST(Arithmetic, SymmetricDifferences) {
  const auto op = [](const auto& a, const auto& b) { return ZUMSymmetricSubtraction(a, b); };
  ForTypes(ScalarTypes(), [&]<class P>() {
    const auto rule = [](P a, P b) {
      if constexpr (std::same_as<P, bool>)
        return a != b;
      else
        return a >= b ? InPixels(kMinus)(a, b) : InPixels(kMinus)(b, a);
    };
    CheckForms<P>(op, rule, "ZUMSymmetricSubtraction");
  });
}

TEST(Arithmetic, AbsoluteValuesAndSigns) {
  const auto op = [](const auto& a) { return abs(a); };
  const auto magnitude = InPixels([](auto a) { return std::abs(a); });
  ForTypes(GreyTypes(), [&]<class P>() {
    CheckUnary<P>(op, magnitude);
    CheckUnary<P>(ZUMAbs<P>, magnitude);
  });
  CheckUnary<ZUMComplex>(
      op, [](ZUMComplex a) { return ZUMComplex(std::hypot(a.real(), a.imag()), 0); });
  ForTypes(SignedTypes(), []<class P>() {
    CheckUnary<P>(ZUMSign<P>, [](P a) { return P(a > 0 ? 1 : a == 0 ? 0 : -1); });
  });
}

// A number stands for the second operand on either side, which shows with a NaN and a zero.
TEST(Arithmetic, Extremes) {
  ForTypes(GreyTypes(), []<class P>() {
    const auto check = [](auto op, auto rule, const std::string& name) {
      CheckPairs<P>(op, rule, name);
      ForEachOperands<P>(2, 1, [&](const ZUMImage<P>& a, const ZUMImage<P>&, P n) {
        const auto expected = [&](auto... at) { return rule(a(at...), n); };
        ExpectPixels(op(a, n), a, 2, expected);
        ExpectPixels(op(n, a), a, 2, expected);
      });
    };
    check([](const auto& a, const auto& b) { return ZUMMax(a, b); },
          [](P a, P b) { return a > b ? a : b; }, "ZUMMax");
    check([](const auto& a, const auto& b) { return ZUMMin(a, b); },
          [](P a, P b) { return a < b ? a : b; }, "ZUMMin");
  });
}

TEST(Arithmetic, EdgesByHand) {
  EXPECT_EQ(abs(MakeLine<ZUMShort>({-32768}))(0), -32768);
  EXPECT_EQ(ZUMMax(MakeLine<double>({NAN}), 3)(0), 3);
  EXPECT_TRUE(std::isnan(ZUMMin(MakeLine<double>({3}), MakeLine<double>({NAN}))(0)));
  EXPECT_DOUBLE_EQ(abs(MakeLine<ZUMComplex>({{3e200, -4e200}}))(0).real(), 5e200);
}

}  // namespace
