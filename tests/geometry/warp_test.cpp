#include "zuml/geometry/warp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "tests/support/testimages.h"
#include "zuml/core/pixelarith.h"
#include "zuml/geometry/gridmoves.h"

namespace {

using namespace zuml_test;

// The sampling rules, pixel by pixel and in numbers that do not overflow.
template <class P>
P Sample(const ZUMImage<P>& image, double sx, double sy, int z, int t, int c, bool linear,
         bool from_zero, P default_value) {
  const auto holds = [&](double x, double y) {
    return x >= image.BeginX() && x <= image.EndX() && y >= image.BeginY() && y <= image.EndY() &&
           image.InP(image.BeginX(), image.BeginY(), z, t);
  };
  const auto at = [&](double x, double y) {
    return image(static_cast<int>(x), static_cast<int>(y), z, t, c);
  };
  if (!linear) {
    const double x = std::trunc(sx >= 0 ? sx + 0.5 : sx - 0.5);
    const double y = std::trunc(sy >= 0 ? sy + 0.5 : sy - 0.5);
    return holds(x, y) ? at(x, y) : default_value;
  }
  const auto pair = [from_zero](double s, double& first, double& second) {
    const double cut = std::trunc(s);
    first = s >= 0 || from_zero ? cut : cut - 1;
    second = s >= 0 || !from_zero ? first + 1 : cut - 1;
  };
  double x0, x1, y0, y1;
  pair(sx, x0, x1);
  pair(sy, y0, y1);
  if (!holds(x0, y0) || !holds(x1, y0) || !holds(x0, y1) || !holds(x1, y1)) return default_value;
  const double p00 = static_cast<double>(at(x0, y0)), p10 = static_cast<double>(at(x1, y0));
  const double p01 = static_cast<double>(at(x0, y1)), p11 = static_cast<double>(at(x1, y1));
  const double a = p00 + (p10 - p00) * (sx - x0), b = p01 + (p11 - p01) * (sx - x0);
  return ZUMTruncate<P>(a + (b - a) * (sy - y0));
}

template <class P>
class Warp : public testing::Test {};
using ScalarTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(Warp, ScalarTypes);

TYPED_TEST(Warp, AffineFollowsTheRules) {
  using P = TypeParam;
  Random random(7);
  for (int round = 0; round < 30; ++round) {
    const auto layout = kLayouts[round % 4];
    const ZUMRect box = MakeRandomBox(random, 20, 20, 2, 2);
    const auto image = MakeRandomImage<P>(random, box, 2, layout);
    // Halves and whole steps meet the ties; the last rounds have no order along a line.
    double m[2][3];
    for (auto& row : m) {
      for (double& v : row) v = random.Int(-8, 8) / (round % 2 == 0 ? 4.0 : 3.7);
    }
    if (round == 26) m[0][0] = std::numeric_limits<double>::quiet_NaN();
    if (round == 27) m[1][1] = std::numeric_limits<double>::infinity();
    if (round == 28) m[0][0] = 1e300;
    const ZUMRect target(-9, -7, 0, 0, 30, 8, 1, 1);
    const P other = random.Pixel<P>();
    for (const bool linear : {false, true}) {
      const auto expected = MakeByPoint<P>(target, 2, [&](int x, int y, int z, int t, int c) {
        const double sx = x * m[0][0] + (y * m[0][1] + m[0][2]);
        const double sy = x * m[1][0] + (y * m[1][1] + m[1][2]);
        return Sample(image, sx, sy, z, t, c, linear, false, other);
      });
      const auto rule = linear ? ZUMInterpolationLinear : ZUMInterpolationNearest;
      for (const int threads : {1, 7, 32}) {
        const WithThreads with(threads);
        ASSERT_TRUE(SameImage(ZUMWarpAffine2D(image, target, m, rule, other), expected))
            << round << (linear ? " linear" : " nearest");
      }
    }
  }
}

TYPED_TEST(Warp, QuadraticFollowsTheRules) {
  using P = TypeParam;
  Random random(8);
  for (int round = 0; round < 12; ++round) {
    const ZUMRect box = MakeRandomBox(random, 20, 20, 2);
    const auto image = MakeRandomImage<P>(random, box, 2, kLayouts[round % 4]);
    double q[2][6];
    for (auto& row : q) {
      for (double& v : row) v = random.Int(-8, 8) / 4.0;
      for (int k = 0; k < 3; ++k) row[k] /= 16;
    }
    const ZUMRect target(-9, -7, 0, 0, 12, 8, 1, 0);
    for (const bool linear : {false, true}) {
      const auto expected = MakeByPoint<P>(target, 2, [&](int x, int y, int z, int t, int c) {
        const auto value = [x, y](const double(&k)[6]) {
          return k[0] * (x * x) + k[1] * (x * y) + k[2] * (y * y) + k[3] * x + k[4] * y + k[5];
        };
        // The region is asked at Z 0, T 0.
        if (!image.InP(image.BeginX(), image.BeginY(), 0, 0)) return P(1);
        return Sample(image, value(q[0]), value(q[1]), z, t, c, linear, true, P(1));
      });
      const auto rule = linear ? ZUMInterpolationLinear : ZUMInterpolationNearest;
      ASSERT_TRUE(SameImage(ZUMWarp2D(image, target, q, rule, P(1)), expected)) << round;
    }
  }
}

TYPED_TEST(Warp, PolarFollowsTheRules) {
  using P = TypeParam;
  Random random(9);
  for (const bool linear : {false, true}) {
    const auto rule = linear ? ZUMInterpolationLinear : ZUMInterpolationNearest;
    const auto image =
        MakeRandomImage<P>(random, ZUMRect(-8, -6, 0, 0, 9, 7, 0, 0), 2, Layout::kFramed);
    for (const double step : {0.0, 0.3}) {
      const double used = step > 0 ? step : 1.0 / 9;
      const int last = static_cast<int>(2 * std::numbers::pi / used + 0.5);
      const ZUMRect box(0, 0, 0, 0, last, 9, 0, 0);
      const auto polar = ZUMCartesianToPolarIm(image, {1, -1}, 9, step, rule, P(1));
      ASSERT_TRUE(SameImage(polar, MakeByPoint<P>(box, 2, [&](int x, int y, int z, int t, int c) {
                              return Sample(image, y * std::cos(x * used) + 1,
                                            y * std::sin(x * used) - 1, z, t, c, linear, false,
                                            P(1));
                            })));
      const double back = step > 0 ? step : 2 * std::numbers::pi / last;
      ASSERT_TRUE(
          SameImage(ZUMPolarToCartesianIm(polar, step, rule, P(1)),
                    MakeByPoint<P>(ZUMRect(-9, -9, 0, 0, 9, 9, 0, 0), 2,
                                   [&](double x, double y, int z, int t, int c) {
                                     const double angle = std::atan2(-y, -x) + std::numbers::pi;
                                     return Sample(polar, angle / back, std::sqrt(x * x + y * y), z,
                                                   t, c, linear, false, P(1));
                                   })));
    }
  }
}

TEST(Warp, RoundsByItsOwnRule) {
  const ZUMByte pixels[] = {10, 11, 12, 13, 14, 15, 16};
  const ZUMImage<ZUMByte> line(ZUMRect(-3, 0, 0, 0, 3, 0, 0, 0), 1, pixels);
  const auto nearest = [&](double sx) {
    const double m[2][3] = {{0, 0, sx}, {0, 0, 0}};
    return int{ZUMWarpAffine2D(line, ZUMRoDRef(0, 0, 0, 0, 0, 0, 0, 0), m, ZUMInterpolationNearest,
                               99)(0)};
  };
  EXPECT_EQ(nearest(2.5), 16);
  EXPECT_EQ(nearest(-2.5), 10);
  EXPECT_EQ(nearest(0.49999999999999994), 14);  // the sum with 0.5 rounds to 1
  EXPECT_EQ(nearest(3.5), 99);
  EXPECT_EQ(nearest(-0.0), 13);
}

TEST(Warp, IdentityKeepsAllButTheLastLinesWhenLinear) {
  Random random(10);
  const auto image =
      MakeRandomImage<ZUMByte>(random, ZUMRect(0, 0, 0, 0, 9, 9, 0, 0), 1, Layout::kCut);
  const double m[2][3] = {{1, 0, 0}, {0, 1, 0}};
  const ZUMRect target(-1, -1, 0, 0, 10, 10, 0, 0);
  const auto nearest = ZUMWarpAffine2D(image, target, m, ZUMInterpolationNearest, 5);
  const auto linear = ZUMWarpAffine2D(image, target, m, ZUMInterpolationLinear, 5);
  ForEachPoint(nearest, 1, [&](int x, int y, int z, int t, int c) {
    const int expected = image.InP(x, y, z, t) ? image(x, y, z, t, c) : 5;
    ASSERT_EQ(nearest(x, y), expected);
    ASSERT_EQ(linear(x, y), x < 9 && y < 9 ? expected : 5);
  });
  XQMatrix matrix(3, 3);
  for (int row = 0; row < 3; ++row) {
    for (int col = 0; col < 3; ++col) matrix[row][col] = row < 2 ? m[row][col] : -7;
  }
  EXPECT_TRUE(
      SameImage(ZUMWarpAffine2D(image, target, matrix, ZUMInterpolationNearest, 5), nearest));
}

TEST(Warp, EmptyAndRefused) {
  const ZUMImage<ZUMByte> none, image(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, 7);
  const double m[2][3] = {{1, 0, 0}, {0, 1, 0}};
  const double q[2][6] = {};
  const auto unknown = static_cast<ZUMInterpolation>(2);
  const ZUMRoDRef target = image;
  EXPECT_EQ(ZUMWarpAffine2D(none, target, m, ZUMInterpolationLinear, 3)(2, 2), 3);
  EXPECT_EQ(ZUMWarpAffine2D(image, none, m, ZUMInterpolationNearest, 3).NPixels(), 0);
  EXPECT_EQ(ZUMWarp2D(none, target, q, ZUMInterpolationNearest, 3)(2, 2), 3);
  EXPECT_EQ(MessageOf([&] { ZUMWarpAffine2D(image, target, m, unknown, 0); }),
            "ZUMWarpAffine2D: Unknown interpolation method");
  EXPECT_EQ(MessageOf([&] { ZUMWarp2D(image, target, q, unknown, 0); }),
            "ZUMWarp2D: Unknown interpolation method");
  EXPECT_EQ(MessageOf([&] {
              ZUMCartesianToPolarIm(image, {0, 0}, 1, 1, unknown, 0);
            }),
            "ZUMCartesianToPolarIm: Unknown interpolation method");
  EXPECT_EQ(MessageOf([&] { ZUMPolarToCartesianIm(image, 1, unknown, 0); }),
            "ZUMPolarToCartesianIm: Unknown interpolation method");
  EXPECT_EQ(ZUMCartesianToPolarIm(image, {0, 0}, 100, 0, ZUMInterpolationNearest, 0).EndX(), 628);
  EXPECT_NE(MessageOf([&] {
              ZUMCartesianToPolarIm(image, {0, 0}, 1, 1e-300, ZUMInterpolationNearest, 0);
            }),
            "");
}

template <class P>
class WarpXLut : public testing::Test {};
using AlgebraTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal, ZUMComplex>;
TYPED_TEST_SUITE(WarpXLut, AlgebraTypes);

TYPED_TEST(WarpXLut, TakesColumnsByTable) {
  using P = TypeParam;
  Random random(11);
  for (const Layout layout : kLayouts) {
    const ZUMRect box = MakeRandomBox(random, 12, 5, 2, 2);
    const auto image = MakeRandomImage<P>(random, box, 2, layout);
    const auto lut = MakeByPoint<ZUMLong>(
        ZUMRoDRef(-4, 0, 0, 0, 9, 0, 0, 0), 1,
        [&](int, int, int, int, int) { return random.Int(box.begin.x, box.end.x); });
    ZUMRect region = box;
    region.begin.x = -4;
    region.end.x = 9;
    const auto expected = MakeByPoint<P>(
        region, 2, [&](int x, int y, int z, int t, int c) { return image(lut(x), y, z, t, c); });
    for (const int threads : kThreadCounts) {
      const WithThreads with(threads);
      ASSERT_TRUE(SameImage(ZUMWarpXLut(image, lut), expected));
    }
  }
  const ZUMImage<P> image(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, P());
  for (const auto& [rect, csz] : {std::pair(ZUMRect(0, 1, 0, 0, 3, 1, 0, 0), 1),
                                  std::pair(ZUMRect(0, 0, 0, 0, 3, 0, 1, 0), 1),
                                  std::pair(ZUMRect(0, 0, 0, 0, 3, 0, 0, 0), 2)}) {
    const ZUMImage<ZUMLong> lut(rect, csz, 0);
    EXPECT_EQ(MessageOf([&] { ZUMWarpXLut(image, lut); }),
              "ZUMWarpXLut: Dimensions of LUTX are not accepted");
  }
}

}  // namespace
