#include "zuml/algebra/arithmetic.h"

#include "tests/algebra/operand_forms.h"

namespace {

using namespace zuml_test;

constexpr auto kMinus = std::minus<>();

TEST(Arithmetic, SumsAndDifferences) {
  ForTypes<ZUMByte, ZUMShort, ZUMLong, ZUMReal, ZUMComplex>([]<class P>() {
    CheckForms<P>(std::plus<>(), InPixels(std::plus<>()), "operator+");
    CheckForms<P>(kMinus, InPixels(kMinus), "operator-");
    CheckUnary<P>(std::negate<>(), InPixels(std::negate<>()));
  });
  CheckForms<bool>(kMinus, std::greater<>(), "operator-");
  CheckUnary<bool>(std::negate<>(), std::logical_not<>());
}

TEST(Arithmetic, SymmetricDifferences) {
  const auto op = [](const auto& a, const auto& b) { return ZUMSymmetricSubtraction(a, b); };
  ForTypes<ZUMByte, ZUMShort, ZUMLong, ZUMReal>([&]<class P>() {
    CheckForms<P>(
        op, [](P a, P b) { return a >= b ? InPixels(kMinus)(a, b) : InPixels(kMinus)(b, a); });
  });
  CheckForms<bool>(op, std::not_equal_to<>(), "ZUMSymmetricSubtraction");
}

TEST(Arithmetic, AbsoluteValuesAndSigns) {
  const auto op = [](const auto& a) { return abs(a); };
  const auto magnitude = InPixels([](auto a) { return std::abs(a); });
  ForTypes<ZUMByte, ZUMShort, ZUMLong, ZUMReal>([&]<class P>() {
    CheckUnary<P>(op, magnitude);
    CheckUnary<P>([](const auto& a) { return ZUMAbs(a); }, magnitude);
  });
  CheckUnary<ZUMComplex>(
      op, [](ZUMComplex a) { return ZUMComplex(std::hypot(a.real(), a.imag()), 0); });
  ForTypes<ZUMShort, ZUMLong, ZUMReal>([]<class P>() {
    CheckUnary<P>([](const auto& a) { return ZUMSign(a); },
                  [](P a) {
                    return P(a > 0 ? 1 : a == 0 ? 0 : -1);
                  });
  });
}

// A number stands for the second operand on either side, which shows with a NaN and a zero.
TEST(Arithmetic, Extremes) {
  ForTypes<ZUMByte, ZUMShort, ZUMLong, ZUMReal>([]<class P>() {
    const auto check = [](auto op, auto rule, const std::string& name) {
      const ZUMImage<P> two(ZUMRect(), 2, P()), three(two, 3, P());
      EXPECT_EQ(MessageOf([&] { op(two, three); }), name + ": Diferent number of channels 2!=3");
      CheckImages<P>(2, 2, 2, op, [&](const auto& a, const auto& b, auto... at) {
        return rule(a(at...), b(at...));
      });
      ForEachOperands<P>(2, 1, [&](const ZUMImage<P>& a, const ZUMImage<P>&, P n) {
        const auto expected = MakeByPoint<P>(a, 2, [&](auto... at) { return rule(a(at...), n); });
        EXPECT_TRUE(SameImage(WithOneNaN(op(a, n)), WithOneNaN(expected)));
        EXPECT_TRUE(SameImage(WithOneNaN(op(n, a)), WithOneNaN(expected)));
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
  EXPECT_EQ(ZUMSign(MakeLine<double>({NAN}))(0), -1);
  EXPECT_EQ(ZUMMax(MakeLine<double>({NAN}), 3)(0), 3);
  EXPECT_TRUE(std::isnan(ZUMMin(MakeLine<double>({3}), MakeLine<double>({NAN}))(0)));
  EXPECT_DOUBLE_EQ(abs(MakeLine<ZUMComplex>({{3e200, -4e200}}))(0).real(), 5e200);
}

}  // namespace
