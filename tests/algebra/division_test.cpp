#include "zuml/algebra/division.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

template <class P>
P Divide(P a, P b) {
  if constexpr (std::integral<P>) {
    return b == 0 ? P{0} : InPixels(std::divides<>())(a, b);
  } else if constexpr (std::same_as<P, ZUMComplex>) {
    const auto [x, y, c, d] = std::array{a.real(), a.imag(), b.real(), b.imag()};
    if (std::fabs(d) >= std::fabs(c)) {
      const double r = c / d, s = r * c + d;
      return {(x * r + y) / s, (y * r - x) / s};
    }
    const double r = d / c, s = r * d + c;
    return {(x + y * r) / s, (y - x * r) / s};
  } else {
    return a / b;
  }
}

template <class P>
P Remainder(P a, P b) {
  return b == 0 ? P{0} : InPixels(std::modulus<>())(a, b);
}

TEST(Division, Quotients) {
  const std::divides<> op;
  ForTypes(ArithmeticTypes(), [&]<class P>() {
    for (const int csz : {1, 3}) {
      CheckImages<P>(csz, 1, csz, op,
                     [](const auto& a, const auto& b, int x, int y, int z, int t, int c) {
                       return Divide(a(x, y, z, t, c), b(x, y, z, t));
                     });
    }
    CheckNumbers<P>(op, Divide<P>);
  });
}

TEST(Division, Remainders) {
  ForTypes(IntegerTypes(),
           []<class P>() { CheckForms<P>(std::modulus<>(), Remainder<P>, "operator%"); });
}

// Around every multiple of a divisor, where a rounded quotient would go over to the next integer,
// and at the ends of the type.
TEST(Division, IntegerQuotientsAreExact) {
  ForTypes(IntegerTypes(), []<class P>() {
    constexpr long long kLeast = std::numeric_limits<P>::min();
    constexpr long long kMost = std::numeric_limits<P>::max();
    Random random(3);
    const ZUMImage<P> a(ZUMRect(0, 0, 0, 0, 7, 20000, 0, 0), 1, P()), b(a, 1, P());
    for (int y = 0; y <= 20000; ++y) {
      const int bits = random.Int(0, static_cast<int>(sizeof(P)) * 8 - 1);
      const long long divisor = static_cast<long long>(random.Pixel<P>()) >> bits;
      const long long multiple = divisor ? random.Pixel<P>() / divisor * divisor : 0;
      const long long dividends[] = {multiple - 1, multiple,  multiple + 1, kLeast,
                                     kMost,        kMost / 2, -divisor,     2 * divisor - 1};
      for (int x = 0; x < 8; ++x) {
        a(x, y) = Wrap<P>(dividends[x]);
        b(x, y) = Wrap<P>(divisor);
      }
    }
    ExpectPixels(a / b, a, 1, [&](auto... at) { return Divide(a(at...), b(at...)); });
    ExpectPixels(a % b, a, 1, [&](auto... at) { return Remainder(a(at...), b(at...)); });
  });
}

TEST(Division, EdgesByHand) {
  const ZUMImage<ZUMLong> three(ZUMRect(), 3, 1);
  EXPECT_EQ(MessageOf([&] { three / three; }),
            "operator/: second multichannel image is not allowed image (3,3)");
  const ZUMLong least = std::numeric_limits<ZUMLong>::min();
  EXPECT_EQ((MakeLine<ZUMLong>({least}) / -1)(0), least);
  EXPECT_EQ((MakeLine<ZUMLong>({least}) % -1)(0), 0);
  EXPECT_EQ((MakeLine<ZUMByte>({9}) / 0)(0), 0);
  EXPECT_EQ((MakeLine<double>({-1}) / 0)(0), -std::numeric_limits<double>::infinity());
  // Squares of these parts overflow.
  const ZUMComplex q = (MakeLine<ZUMComplex>({{2e300, 4e300}}) / ZUMComplex(1e300, -3e300))(0);
  EXPECT_NEAR(std::abs(q - ZUMComplex(-1, 1)), 0, 1e-15);
  for (const ZUMComplex divisor : {ZUMComplex(0, 0), ZUMComplex(NAN, 1), ZUMComplex(1, NAN)}) {
    const ZUMComplex nan = (MakeLine<ZUMComplex>({{1, 2}}) / divisor)(0);
    EXPECT_TRUE(std::isnan(nan.real()) && std::isnan(nan.imag())) << divisor;
  }
}

}  // namespace
