#include "zuml/algebra/functions.h"

#include <cmath>

#include "tests/algebra/everylayout.h"

namespace {

using namespace zuml_test;

// The image function against the function of a number, pixel by pixel.
template <class R, class P, class F>
void CheckMap(ZUMImage<R> (*operation)(const ZUMImage<P>&), F f) {
  ForEachLayout<P>(2, [&](const ZUMImage<P>& image, Random&) {
    const auto expected = MakeByPoint<R>(image, 2, [&](auto... at) { return f(image(at...)); });
    EXPECT_TRUE(SameImage(operation(image), expected));
  });
}

template <class P>
class Functions : public testing::Test {};
TYPED_TEST_SUITE(Functions, GreyTypes);

TYPED_TEST(Functions, OfGreyPixels) {
  using P = TypeParam;
  CheckMap(ZUMLog<P>, [](P v) -> double { return std::log(static_cast<float>(v)); });
  CheckMap(ZUMLog10<P>, [](P v) -> double { return std::log10(static_cast<float>(v)); });
  CheckMap(ZUMExp<P>, [](double v) { return std::exp(v); });
  CheckMap(ZUMSin<P>, [](double v) { return std::sin(v); });
  CheckMap(ZUMCos<P>, [](double v) { return std::cos(v); });
  CheckMap(ZUMSinh<P>, [](double v) { return std::sinh(v); });
  CheckMap(ZUMCosh<P>, [](double v) { return std::cosh(v); });
  CheckMap(ZUMSqrt<P>, [](double v) { return std::sqrt(v); });
  CheckMap(ZUMSqr<ZUMReal, P>, [](double v) { return v * v; });
  if constexpr (std::integral<P>) {
    CheckMap(ZUMSqr<ZUMLong, P>, [](std::int64_t v) { return static_cast<ZUMLong>(v * v); });
  }
}

TEST(FunctionValues, OfRealAndComplexPixels) {
  CheckMap(ZUMTan<ZUMReal>, [](double v) { return std::tan(v); });
  CheckMap(ZUMTanh<ZUMReal>, [](double v) { return std::tanh(v); });
  CheckMap(ZUMAsin<ZUMReal>, [](double v) { return std::asin(v); });
  CheckMap(ZUMAcos<ZUMReal>, [](double v) { return std::acos(v); });
  CheckMap(ZUMAtan<ZUMReal>, [](double v) { return std::atan(v); });
  using Complex = const ZUMComplex&;
  CheckMap(ZUMRealComponent, [](Complex v) { return v.real(); });
  CheckMap(ZUMImagComponent, [](Complex v) { return v.imag(); });
  CheckMap(ZUMComplexModule, [](Complex v) { return std::hypot(v.real(), v.imag()); });
  CheckMap(ZUMPhase, [](Complex v) { return std::atan2(v.imag(), v.real()); });
  CheckMap(ZUMConjg, [](Complex v) { return std::conj(v); });
}

TEST(FunctionValues, ValuesWorkedByHand) {
  // Logarithms have the precision of float.
  EXPECT_EQ(0.6931471824645996, ZUMLog(MakeLine<double>({2}))(0));
  EXPECT_FLOAT_EQ(2, static_cast<float>(ZUMLog10(MakeLine<ZUMByte>({100}))(0)));
  EXPECT_EQ(kInfinity, ZUMLog(MakeLine<double>({1e300}))(0));
  EXPECT_EQ(-kInfinity, ZUMLog(MakeLine<ZUMLong>({0}))(0));
  EXPECT_TRUE(std::isnan(ZUMLog10(MakeLine<ZUMShort>({-1}))(0)));
  EXPECT_EQ(0, ZUMSqr<ZUMLong>(MakeLine<ZUMLong>({65536}))(0));
  EXPECT_EQ(4294967296.0, ZUMSqr<ZUMReal>(MakeLine<ZUMLong>({65536}))(0));
  EXPECT_EQ(std::acos(-1.0), ZUMPhase(MakeLine<ZUMComplex>({{-1, 0}}))(0));
  EXPECT_DOUBLE_EQ(5e200, ZUMComplexModule(MakeLine<ZUMComplex>({{3e200, -4e200}}))(0));
}

TEST(FunctionValues, Atan2MeetsAtEqualCoordinates) {
  ForEachLayout<ZUMReal>(2, [](const ZUMImage<ZUMReal>& y, Random& random) {
    const auto x =
        MakeRandomImage<ZUMReal>(random, MakeRandomBox(random, 60, 9, 3, 2), 3, DrawLayout(random));
    const auto expected = MakeByPoint<ZUMReal>(
        Intersection(y, x), 2, [&](auto... at) { return std::atan2(y(at...), x(at...)); });
    EXPECT_TRUE(SameImage(ZUMAtan2(y, x), expected));
  });
}

}  // namespace
