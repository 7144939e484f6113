#include "zuml/algebra/arithmetic.h"

#include "tests/algebra/operand_forms.h"

namespace {

using namespace zuml_test;

// An operation's integers through 64 bits, its floating values as they are.
template <class P, class F>
P Compute(P a, P b, F f) {
  if constexpr (std::integral<P>) {
    return Wrap<P>(f(static_cast<long long>(a), static_cast<long long>(b)));
  } else {
    return f(a, b);
  }
}

TEST(Arithmetic, Sums) {
  ForTypes<ZUMByte, ZUMShort, ZUMLong, ZUMReal, ZUMComplex>([]<class P>() {
    CheckForms<P>([](const auto& a, const auto& b) { return a + b; },
                  [](P a, P b) { return Compute(a, b, [](auto x, auto y) { return x + y; }); });
  });
}

TEST(Arithmetic, Differences) {
  const auto op = [](const auto& a, const auto& b) { return a - b; };
  ForTypes<ZUMByte, ZUMShort, ZUMLong, ZUMReal, ZUMComplex>([&]<class P>() {
    CheckForms<P>(op, [](P a, P b) { return Compute(a, b, [](auto x, auto y) { return x - y; }); });
    CheckUnary<P>([](const auto& a) { return -a; },
                  [](P a) { return Compute(a, a, [](auto x, auto) { return -x; }); });
  });
  CheckForms<bool>(op, [](bool a, bool b) { return a && !b; });
  CheckUnary<bool>([](const auto& a) { return -a; }, [](bool a) { return !a; });
}

TEST(Arithmetic, SymmetricDifferences) {
  const auto op = [](const auto& a, const auto& b) { return ZUMSymmetricSubtraction(a, b); };
  ForTypes<ZUMByte, ZUMShort, ZUMLong, ZUMReal>([&]<class P>() {
    CheckForms<P>(op, [](P a, P b) {
      return a >= b ? Compute(a, b, [](auto x, auto y) { return x - y; })
                    : Compute(b, a, [](auto x, auto y) { return x - y; });
    });
  });
  CheckForms<bool>(op, [](bool a, bool b) { return a != b; });
}

TEST(Arithmetic, AbsoluteValuesAndSigns) {
  const auto op = [](const auto& a) { return abs(a); };
  ForTypes<ZUMByte, ZUMShort, ZUMLong>([&]<class P>() {
    CheckUnary<P>(op, [](P a) { return Wrap<P>(std::abs(static_cast<long long>(a))); });
  });
  CheckUnary<ZUMReal>(op, [](double a) { return std::fabs(a); });
  CheckUnary<ZUMComplex>(
      op, [](ZUMComplex a) { return ZUMComplex(std::hypot(a.real(), a.imag()), 0); });
  CheckUnary<ZUMShort>([](const auto& a) { return ZUMAbs(a); },
                       [](ZUMShort a) { return Wrap<ZUMShort>(std::abs(int{a})); });
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
    const auto check = [](auto op, auto rule) {
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
          [](P a, P b) { return a > b ? a : b; });
    check([](const auto& a, const auto& b) { return ZUMMin(a, b); },
          [](P a, P b) { return a < b ? a : b; });
  });
}

TEST(Arithmetic, EdgesByHand) {
  EXPECT_EQ((MakeLine<ZUMByte>({200}) + 100)(0), 44);
  EXPECT_EQ((100 - MakeLine<ZUMByte>({200}))(0), 156);
  EXPECT_EQ(ZUMSymmetricSubtraction(100, MakeLine<ZUMByte>({200}))(0), 100);
  EXPECT_EQ(abs(MakeLine<ZUMShort>({-32768}))(0), -32768);
  EXPECT_EQ(ZUMSign(MakeLine<double>({NAN}))(0), -1);
  EXPECT_EQ(ZUMMax(MakeLine<double>({NAN}), 3)(0), 3);
  EXPECT_TRUE(std::isnan(ZUMMin(MakeLine<double>({3}), MakeLine<double>({NAN}))(0)));
  EXPECT_DOUBLE_EQ(abs(MakeLine<ZUMComplex>({{3e200, -4e200}}))(0).real(), 5e200);
}

TEST(Arithmetic, ChannelsMustAgree) {
  const ZUMImage<ZUMLong> a(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 2, 1), b(a, 3, 1);
  const std::string numbers = ": Diferent number of channels 2!=3";
  EXPECT_EQ(MessageOf([&] { a + b; }), "operator+" + numbers);
  EXPECT_EQ(MessageOf([&] { a - b; }), "operator-" + numbers);
  EXPECT_EQ(MessageOf([&] { ZUMSymmetricSubtraction(a, b); }), "ZUMSymmetricSubtraction" + numbers);
  EXPECT_EQ(MessageOf([&] { ZUMMax(a, b); }), "ZUMMax" + numbers);
  EXPECT_EQ(MessageOf([&] { ZUMMin(a, b); }), "ZUMMin" + numbers);
}

}  // namespace
