#include "zuml/algebra/functions.h"

#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

TEST(Functions, OfGreyPixels) {
  ForTypes(GreyTypes(), []<class P>() {
    CheckUnary<P>(ZUMLog<P>, [](P v) -> double { return std::log(static_cast<float>(v)); });
    CheckUnary<P>(ZUMLog10<P>, [](P v) -> double { return std::log10(static_cast<float>(v)); });
    CheckUnary<P>(ZUMExp<P>, [](double v) { return std::exp(v); });
    CheckUnary<P>(ZUMSin<P>, [](double v) { return std::sin(v); });
    CheckUnary<P>(ZUMCos<P>, [](double v) { return std::cos(v); });
    CheckUnary<P>(ZUMSinh<P>, [](double v) { return std::sinh(v); });
    CheckUnary<P>(ZUMCosh<P>, [](double v) { return std::cosh(v); });
    CheckUnary<P>(ZUMSqrt<P>, [](double v) { return std::sqrt(v); });
  });
  ForTypes(ScalarTypes(),
           []<class P>() { CheckUnary<P>(ZUMSqr<ZUMReal, P>, [](double v) { return v * v; }); });
  ForTypes(DiscreteTypes(), []<class P>() {
    CheckUnary<P>(ZUMSqr<ZUMLong, P>, [](std::int64_t v) { return Wrap<ZUMLong>(v * v); });
  });
}

TEST(Functions, OfRealAndComplexPixels) {
  CheckUnary<double>(ZUMTan<ZUMReal>, [](double v) { return std::tan(v); });
  CheckUnary<double>(ZUMTanh<ZUMReal>, [](double v) { return std::tanh(v); });
  CheckUnary<double>(ZUMAsin<ZUMReal>, [](double v) { return std::asin(v); });
  CheckUnary<double>(ZUMAcos<ZUMReal>, [](double v) { return std::acos(v); });
  CheckUnary<double>(ZUMAtan<ZUMReal>, [](double v) { return std::atan(v); });
  using C = ZUMComplex;
  CheckUnary<C>(ZUMRealComponent, [](C v) { return v.real(); });
  CheckUnary<C>(ZUMImagComponent, [](C v) { return v.imag(); });
  CheckUnary<C>(ZUMComplexModule, [](C v) { return std::hypot(v.real(), v.imag()); });
  CheckUnary<C>(ZUMPhase, [](C v) { return std::atan2(v.imag(), v.real()); });
  CheckUnary<C>(ZUMConjg, [](C v) { return std::conj(v); });
  CheckImages<double>(2, 3, 2, ZUMAtan2<double>, [](const auto& y, const auto& x, auto... at) {
    return std::atan2(y(at...), x(at...));
  });
}

TEST(Functions, ValuesWorkedByHand) {
  // Logarithms have the precision of float.
  EXPECT_EQ(0.6931471824645996, ZUMLog(MakeLine<double>({2}))(0));
  EXPECT_EQ(kInfinity, ZUMLog(MakeLine<double>({1e300}))(0));
  EXPECT_EQ(-kInfinity, ZUMLog(MakeLine<ZUMLong>({0}))(0));
  EXPECT_TRUE(std::isnan(ZUMLog10(MakeLine<ZUMShort>({-1}))(0)));
  EXPECT_EQ(std::acos(-1.0), ZUMPhase(MakeLine<ZUMComplex>({{-1, 0}}))(0));
  EXPECT_DOUBLE_EQ(5e200, ZUMComplexModule(MakeLine<ZUMComplex>({{3e200, -4e200}}))(0));
}

}  // namespace
