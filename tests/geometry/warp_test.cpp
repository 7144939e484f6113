#include "zuml/geometry/warp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>

#include "tests/support/everylayout.h"
#include "tests/support/otherregion.h"
#include "tests/support/testimages.h"
#include "zuml/core/pixelarith.h"

namespace {

using namespace zuml_test;
using Position = ZUMBasePoint2D<double>;

// A warp by its rules, pixel by pixel and in numbers that do not overflow; `position(x, y)` is
// where a pixel comes from. The quadratic warp counts its neighbours from zero, and asks the region
// at Z 0, T 0.
template <class P, class F>
ZUMImage<P> Reference(const ZUMImage<P>& image, const ZUMRoDRef& target, ZUMInterpolation rule,
                      bool quadratic, P other, F position) {
  return MakeByPoint<P>(target, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    const Position s = position(x, y);
    const auto holds = [&](double px, double py) {
      const ZUMRect box = image.Rect();
      return z <= box.end.z && z >= box.begin.z && std::abs(px) < 1e9 && std::abs(py) < 1e9 &&
             t <= box.end.t && t >= box.begin.t &&
             image.InP(int(px), int(py), quadratic ? 0 : z, quadratic ? 0 : t);
    };
    const auto at = [&](double px, double py) { return image(int(px), int(py), z, t, c); };
    if (rule == ZUMInterpolationNearest) {
      const double px = std::trunc(s.x >= 0 ? s.x + 0.5 : s.x - 0.5);
      const double py = std::trunc(s.y >= 0 ? s.y + 0.5 : s.y - 0.5);
      return holds(px, py) ? at(px, py) : other;
    }
    const auto first = [&](double v) { return std::trunc(v) - (v >= 0 || quadratic ? 0 : 1); };
    const auto second = [&](double v) { return first(v) + (v < 0 && quadratic ? -1 : 1); };
    const double x0 = first(s.x), x1 = second(s.x), y0 = first(s.y), y1 = second(s.y);
    if (!holds(x0, y0) || !holds(x1, y0) || !holds(x0, y1) || !holds(x1, y1)) return other;
    const double p00 = double(at(x0, y0)), p10 = double(at(x1, y0));
    const double p01 = double(at(x0, y1)), p11 = double(at(x1, y1));
    const double a = p00 + (p10 - p00) * (s.x - x0), b = p01 + (p11 - p01) * (s.x - x0);
    return ZUMTruncate<P>(a + (b - a) * (s.y - y0));
  });
}

template <class P>
class Warp : public testing::Test {};
TYPED_TEST_SUITE(Warp, ScalarTypes);

constexpr ZUMInterpolation kRules[] = {ZUMInterpolationNearest, ZUMInterpolationLinear};

TYPED_TEST(Warp, AffineAndQuadratic) {
  using P = TypeParam;
  Random random(7);
  for (int round = 0; round < 36; ++round) {
    const bool wide = round % 4 == 1;
    const ZUMRect box = round == 35 ? ZUMRect(-3, -3, 0, 0, 3, 3, 1, 1)
                        : wide      ? ZUMRect(-280, -12, 0, 0, 270, 12, 1, 1)
                                    : MakeRandomBox(random, 20, 20, 2, 2);
    ZUMImage<P> image = MakeRandomImage<P>(random, box, 2, kLayouts[round / 2 % 4]);
    if (round % 8 == 2) image = ZUMImage<P>(ZUMRoDRef(new OddRegion(box)), image);
    // Quarters meet the ties; the last rounds have no order along a line.
    double m[2][3], q[2][6];
    for (auto& row : m) {
      for (double& v : row) v = random.Int(-8, 8) / (round % 2 == 0 ? 4.0 : 3.7);
    }
    for (auto& row : q) {
      for (double& v : row) v = random.Int(-8, 8) / (&v < row + 3 ? 64.0 : 4.0);
    }
    if (wide) m[0][0] = round % 8 == 1 ? 0.9 : -1, m[1][0] = 0.01;
    if (round == 32) m[0][0] = std::numeric_limits<double>::quiet_NaN();
    if (round == 33) m[1][1] = std::numeric_limits<double>::infinity();
    if (round == 34) m[0][0] = 1e300;
    // The greatest number below a half is rounded up by the sum with 0.5.
    if (round == 35) m[0][0] = 0.49999999999999994, m[0][1] = m[0][2] = -0.0, m[1][2] = -2.5;
    const auto affine = [&](int x, int y) {
      return Position(x * m[0][0] + (y * m[0][1] + m[0][2]), x * m[1][0] + (y * m[1][1] + m[1][2]));
    };
    const auto polynomial = [&](int x, int y) {
      const auto value = [x, y](const double(&k)[6]) {
        return k[0] * (x * x) + k[1] * (x * y) + k[2] * (y * y) + k[3] * x + k[4] * y + k[5];
      };
      return Position(value(q[0]), value(q[1]));
    };
    XQMatrix matrix(3, 3);
    for (int k = 0; k < 6; ++k) matrix[k / 3][k % 3] = m[k / 3][k % 3];
    const ZUMRect target(wide ? -300 : -9, -7, 0, 0, wide ? 300 : 30, 8, 1, 1);
    const P other = random.Pixel<P>();
    for (const auto rule : kRules) {
      const auto expected = Reference(image, target, rule, false, other, affine);
      for (const int threads : {1, 7, 32}) {
        const WithThreads with(threads);
        ASSERT_TRUE(SameImage(ZUMWarpAffine2D(image, target, m, rule, other), expected)) << round;
      }
      ASSERT_TRUE(SameImage(ZUMWarpAffine2D(image, target, matrix, rule, other), expected));
      ASSERT_TRUE(SameImage(ZUMWarp2D(image, target, q, rule, other),
                            Reference(image, target, rule, true, other, polynomial)))
          << round;
    }
  }
}

TYPED_TEST(Warp, ThereAndBackInPolarCoordinates) {
  Random random(9);
  const auto image =
      MakeRandomImage<TypeParam>(random, ZUMRect(-8, -6, 0, 0, 9, 7, 0, 0), 2, Layout::kFramed);
  for (const auto rule : kRules) {
    for (const double step : {0.0, 0.3}) {
      const double used = step > 0 ? step : 1.0 / 9;
      const int last = static_cast<int>(2 * std::numbers::pi / used + 0.5);
      const auto polar = ZUMCartesianToPolarIm(image, {1, -1}, 9, step, rule, TypeParam(1));
      const auto there = [&](int x, int y) {
        return Position(y * std::cos(x * used) + 1, y * std::sin(x * used) - 1);
      };
      ASSERT_TRUE(SameImage(polar, Reference(image, ZUMRoDRef(0, 0, 0, 0, last, 9, 0, 0), rule,
                                             false, TypeParam(1), there)));
      const auto back = [&](double x, double y) {
        const double width = step > 0 ? step : 2 * std::numbers::pi / last;
        return Position((std::atan2(-y, -x) + std::numbers::pi) / width, std::sqrt(x * x + y * y));
      };
      ASSERT_TRUE(SameImage(
          ZUMPolarToCartesianIm(polar, step, rule, TypeParam(1)),
          Reference(polar, ZUMRoDRef(-9, -9, 0, 0, 9, 9, 0, 0), rule, false, TypeParam(1), back)));
    }
  }
}

// Bool pixels in wrapped memory may hold any byte; results hold 0 and 1, also beside positions that
// are tested one by one.
TEST(Warp, WrappedBools) {
  ZUMByte bytes[] = {0, 2, 1, 255};
  const ZUMRect box(0, 0, 0, 0, 3, 0, 0, 0);
  const ZUMImage<ZUMBool> image(ZUMRoDRef(box), ZUMRaster(box, 1, ZUMBoolPixel, bytes));
  const ZUMImage<ZUMBool> odd(ZUMRoDRef(new OtherRegion(box)), image);
  const double m[2][3] = {{1, 0, 0}, {0, 1, 0}};
  for (const auto& source : {image, odd}) {
    const auto result = ZUMWarpAffine2D(source, ZUMRoDRef(box), m, kRules[0], false);
    EXPECT_EQ(std::memcmp(result.GetData(), "\0\1\1\1", 4), 0);
  }
}

TEST(Warp, EmptyAndRefused) {
  const ZUMImage<ZUMByte> none, image(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, 7);
  const double m[2][3] = {{1, 0, 0}, {0, 1, 0}}, q[2][6] = {};
  const auto unknown = static_cast<ZUMInterpolation>(2);
  EXPECT_EQ(ZUMWarpAffine2D(none, image, m, kRules[1], 3)(2, 2), 3);
  EXPECT_TRUE(ZUMWarpAffine2D(image, none, m, kRules[0], 3).EmptyP());
  EXPECT_EQ(ZUMWarp2D(none, image, q, kRules[0], 3)(2, 2), 3);
  const auto refused = [](const std::string& text, auto f) { EXPECT_EQ(MessageOf(f), text); };
  const std::string method = ": Unknown interpolation method", polar = "ZUMCartesianToPolarIm";
  refused("ZUMWarpAffine2D" + method, [&] { ZUMWarpAffine2D(image, image, m, unknown, 0); });
  refused("ZUMWarp2D" + method, [&] { ZUMWarp2D(image, image, q, unknown, 0); });
  refused(polar + method, [&] { ZUMCartesianToPolarIm(image, {}, 1, 1, unknown, 0); });
  refused("ZUMPolarToCartesianIm" + method, [&] { ZUMPolarToCartesianIm(image, 1, unknown, 0); });
  refused(polar + ": a step of 1e-300 makes too many angles",
          [&] { ZUMCartesianToPolarIm(image, {}, 1, 1e-300, kRules[0], 0); });
}

template <class P>
class WarpXLut : public testing::Test {};
TYPED_TEST_SUITE(WarpXLut, AlgebraTypes);

TYPED_TEST(WarpXLut, TakesColumnsByTable) {
  using P = TypeParam;
  Random random(11);
  for (int round = 0; round < 12; ++round) {
    const ZUMRect box = MakeRandomBox(random, 12, 5, 2, 2);
    const auto image = MakeRandomImage<P>(random, box, 2, kLayouts[round % 4]);
    const auto lut = MakeByPoint<ZUMLong>(
        ZUMRoDRef(-4, 0, 0, 0, 9, 0, 0, 0), 1,
        [&](int, int, int, int, int) { return random.Int(box.begin.x, box.end.x); });
    const ZUMRect region({-4, box.begin.y, box.begin.z, box.begin.t},
                         {9, box.end.y, box.end.z, box.end.t});
    const auto column = [&](int x, int y, int z, int t, int c) {
      return image(lut(x), y, z, t, c);
    };
    const WithThreads with(kThreadCounts[round % 5]);
    ASSERT_TRUE(SameImage(ZUMWarpXLut(image, lut), MakeByPoint<P>(region, 2, column)));
  }
  const ZUMImage<P> image(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, P());
  const ZUMRoDRef second_line(0, 1, 0, 0, 3, 1, 0, 0), plane(0, 0, 0, 0, 3, 0, 1, 0);
  for (const auto& lut : {ZUMImage<ZUMLong>(second_line, 1, 0), ZUMImage<ZUMLong>(plane, 1, 0),
                          ZUMImage<ZUMLong>(ZUMRoDRef(0, 0, 0, 0, 3, 0, 0, 0), 2, 0)}) {
    EXPECT_EQ(MessageOf([&] { ZUMWarpXLut(image, lut); }),
              "ZUMWarpXLut: Dimensions of LUTX are not accepted");
  }
}

}  // namespace
