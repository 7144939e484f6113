#include "zuml/algebra/product.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

template <class P>
P Multiply(P a, P b) {
  if constexpr (std::same_as<P, ZUMComplex>) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
  } else {
    return InPixels(std::multiplies<>())(a, b);
  }
}

TEST(Product, ChannelsMakeAScalarProduct) {
  const std::multiplies<> op;
  ForTypes(ArithmeticTypes(), [&]<class P>() {
    for (int csz = 1; csz <= 5; ++csz) {
      CheckImages<P>(
          csz, csz, 1, op, [csz](const auto& a, const auto& b, int x, int y, int z, int t, int) {
            P sum = Multiply(a(x, y, z, t, 0), b(x, y, z, t, 0));
            for (int c = 1; c < csz; ++c) {
              sum = InPixels(std::plus<>())(sum, Multiply(a(x, y, z, t, c), b(x, y, z, t, c)));
            }
            return sum;
          });
    }
    CheckNumbers<P>(op, Multiply<P>);
  });
}

TEST(Product, OneChannelMultipliesEveryChannel) {
  const auto check = []<class P>(auto op) {
    CheckImages<P>(1, 3, 3, op,
                   [](const auto& a, const auto& b, int x, int y, int z, int t, int c) {
                     return Multiply(a(x, y, z, t), b(x, y, z, t, c));
                   });
    CheckImages<P>(2, 1, 2, op,
                   [](const auto& a, const auto& b, int x, int y, int z, int t, int c) {
                     return Multiply(a(x, y, z, t, c), b(x, y, z, t));
                   });
  };
  ForTypes(testing::Types<ZUMByte, ZUMReal>(), [&]<class P>() {
    check.template operator()<P>(std::multiplies<>());
    check.template operator()<P>(
        [](const auto& a, const auto& b) { return ZUMPointProduct(a, b); });
  });
}

TEST(Product, PointProductsAndPowers) {
  const auto product = [](const auto& a, const auto& b) { return ZUMPointProduct(a, b); };
  ForTypes(GreyTypes(), [&]<class P>() { CheckForms<P>(product, Multiply<P>); });
  CheckNumbers<ZUMComplex>(product, Multiply<ZUMComplex>);
  ForTypes(RealComplexTypes(), []<class P>() {
    CheckForms<P>([](const auto& a, const auto& b) { return ZUMPow(a, b); },
                  [](P a, P b) -> P { return std::pow(a, b); });
  });
}

TEST(Product, ChannelsMustFit) {
  const ZUMImage<double> a(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 3, 1.0), b(a, 2, 1.0);
  const std::string numbers = ": Diferent number of channels and no one channel image 3!=2";
  EXPECT_EQ(MessageOf([&] { a* b; }), "operator*" + numbers);
  EXPECT_EQ(MessageOf([&] { ZUMPointProduct(a, b); }), "ZUMPointProduct" + numbers);
  EXPECT_EQ(MessageOf([&] { ZUMPow(a, b); }), "Diferent number of channels");
}

}  // namespace
