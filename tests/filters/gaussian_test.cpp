#include "zuml/filters/gaussian.h"

#include <cmath>
#include <functional>
#include <limits>

#include "tests/support/everylayout.h"
#include "tests/support/testimages.h"
#include "zuml/filters/convolution.h"
#include "zuml/filters/gaussiankernels.h"
#include "zuml/filters/smoothing.h"

namespace {

using namespace zuml_test;

using Real = ZUMImage<ZUMReal>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double Profile(int order, double s, double u) {
  const double g = std::exp(-u * u / (2 * s * s));
  if (order == 0) return g / (s * std::sqrt(2 * M_PI));
  if (order == 1) return -u * g / (std::sqrt(2 * M_PI) * s * s * s);
  return (u * u - s * s) * g / (std::sqrt(2 * M_PI) * std::pow(s, 5));
}

TEST(GaussianKernels, LinesOnTheirAxes) {
  for (const double s : {0.4, 1.0, 2.7}) {
    const int r = static_cast<int>(1.5 * s + 0.5);
    const Real lines[] = {ZUMGaussianX(s), ZUMGaussianY(s), ZUMGaussianZ(s), ZUMGaussianT(s)};
    const ZUMRect boxes[] = {{-r, 0, 0, 0, r, 0, 0, 0},
                             {0, -r, 0, 0, 0, r, 0, 0},
                             {0, 0, -r, 0, 0, 0, r, 0},
                             {0, 0, 0, -r, 0, 0, 0, r}};
    double sum = 0;
    for (int i = -r; i <= r; ++i) sum += Profile(0, s, i);
    for (int axis = 0; axis < 4; ++axis) {
      ASSERT_EQ(lines[axis].Rect(), boxes[axis]);
      int i = -r;
      ForEachPoint(lines[axis], 1, [&](auto... at) {
        EXPECT_NEAR(lines[axis](at...), Profile(0, s, i++) / sum, 1e-15);
      });
    }
    for (int nd = 0; nd <= 2; ++nd) {
      const Real x = ZUMGaussianX_D(s, nd), t = ZUMGaussianT_D(s, nd, 5);
      const int least = r == 0 && nd > 0 ? 1 : r;
      ASSERT_EQ(x.Rect(), ZUMRect(-least, 0, 0, 0, least, 0, 0, 0));
      ASSERT_EQ(t.Rect(), ZUMRect(0, 0, 0, -5, 0, 0, 0, 5));
      for (int i = -least; i <= least && least > 0; ++i)
        EXPECT_NEAR(x(i), Profile(nd, s, i), 1e-13);
      for (int i = -5; i <= 5; ++i) EXPECT_NEAR(t(0, 0, 0, i), Profile(nd, s, i), 1e-13);
    }
  }
  // Single pixels, the limit of a sigma of 0, and a radius that comes out as 0.
  EXPECT_TRUE(SameImage(ZUMGaussianX(0), Real(ZUMRect(), 1, 1.0)));
  EXPECT_TRUE(SameImage(ZUMGaussianY_D(0.1, 0), Real(ZUMRect(), 1, 1.0)));
  const ZUMReal limit[] = {0, 0, 1, 0, 0};
  EXPECT_TRUE(SameImage(ZUMGaussianX(0, 2), Real(ZUMRect(-2, 0, 0, 0, 2, 0, 0, 0), 1, limit)));
  EXPECT_TRUE(SameImage(ZUMGaussianX(1e-300, 2), Real(ZUMRect(-2, 0, 0, 0, 2, 0, 0, 0), 1, limit)));
  EXPECT_TRUE(
      SameImage(ZUMGaussianZ_D(0, 0, 1), Real(ZUMRect(0, 0, -1, 0, 0, 0, 1, 0), 1, limit + 1)));
  EXPECT_EQ(ZUMGaussianX_D(0.1, 1).EndX(), 1);
}

TEST(GaussianKernels, IntegerLines) {
  // Sigma 2, scale 20: p = 3.98.
  const ZUMLong row[] = {1, 2, 3, 3, 3, 2, 1};
  EXPECT_TRUE(
      SameImage(ZUMGaussianIntX(2), ZUMImage<ZUMLong>(ZUMRect(-3, 0, 0, 0, 3, 0, 0, 0), 1, row)));
  const ZUMLong column[] = {11, 53, 88, 53, 11};  // p = 88.56
  EXPECT_TRUE(SameImage(ZUMGaussianIntY(1, 222).Cut(ZUMRect(0, -2, 0, 0, 0, 2, 0, 0)),
                        ZUMImage<ZUMLong>(ZUMRect(0, -2, 0, 0, 0, 2, 0, 0), 1, column)));
  EXPECT_EQ(ZUMGaussianIntZ(0, 9)(0), 1);
  EXPECT_EQ(ZUMGaussianIntT(0.05).NPixels(), 1);
}

TEST(GaussianKernels, TurnedKernels) {
  const int r = 4;
  for (const double angle : {0.0, 0.3, -2.0, M_PI / 2}) {
    const double c = std::cos(angle), s = std::sin(angle), sigma = 1.4;
    for (int ndx = 0; ndx <= 2; ++ndx) {
      for (int ndy = 0; ndy <= 2; ++ndy) {
        const Real full = ZUMGaussian2D_D(sigma, ndx, ndy, angle, r);
        const Real left = ZUMGaussian2D_DL(sigma, ndx, ndy, angle, r);
        const Real right = ZUMGaussian2D_DR(sigma, ndx, ndy, angle, r);
        const Real xy = ZUMGaussianXY_D(sigma, 0.8, ndx, ndy, angle, r, 2);
        ASSERT_EQ(xy.Rect(), ZUMRect(-r, -2, 0, 0, r, 2, 0, 0));
        ForEachPoint(full, 1, [&](int x, int y, int, int, int) {
          const double u = x * c + y * s, w = angle == 0 ? y : x * s - y * c;
          const double p = Profile(ndx, sigma, u) * Profile(ndy, sigma, w);
          const double q = Profile(ndx, sigma, u) * Profile(ndy, sigma, x * s - y * c);
          EXPECT_NEAR(full(x, y), p, 1e-13);
          EXPECT_NEAR(left(x, y), u > sigma ? 0 : q, 1e-13);
          EXPECT_NEAR(right(x, y), u < -sigma ? 0 : q, 1e-13);
          if (xy.InP(x, y, 0, 0)) {
            EXPECT_NEAR(xy(x, y), Profile(ndx, sigma, u) * Profile(ndy, 0.8, w), 1e-13);
          }
        });
      }
      const Real both = ZUMGaussianX_D(sigma, ndx, angle, 1.1, r);
      const Real left = ZUMGaussianX_DLeft(sigma, ndx, angle, 1.1, r);
      const Real right = ZUMGaussianX_DRight(sigma, ndx, angle, 1.1, r);
      ForEachPoint(both, 1, [&](int x, int y, int, int, int) {
        const double u = x * c + y * s;
        const bool on = x * x + y * y <= r * r && std::fabs(x * s - y * c) <= 1.1;
        const double p = on ? Profile(ndx, sigma, u) : 0;
        EXPECT_NEAR(both(x, y), p, 1e-13);
        EXPECT_NEAR(left(x, y), u > 0 ? 0 : p, 1e-13);
        EXPECT_NEAR(right(x, y), u < 0 ? 0 : p, 1e-13);
      });
    }
  }
  // Where the default radius comes out as 0, a derivative has the radius 1.
  EXPECT_EQ(ZUMGaussian2D_D(0.2, 0, 1, 0.5).Rect(), ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0));
  EXPECT_EQ(ZUMGaussian2D_D(0.2, 0, 1, 0).Rect(), ZUMRect(0, -1, 0, 0, 0, 1, 0, 0));
  EXPECT_EQ(ZUMGaussianX_DLeft(0.2, 1, 0.5, 1).Rect(), ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0));
  const Real log = ZUMLoG2D(1.3);
  ForEachPoint(log, 1, [&](int x, int y, int, int, int) {
    const double t = -(x * x + y * y) / (2 * 1.3 * 1.3);
    EXPECT_NEAR(log(x, y), -std::exp(t) * (t + 1) / (M_PI * std::pow(1.3, 4)), 1e-14);
  });
  const Real product = ZUMGaussianXY(1, 2);
  EXPECT_EQ(product.Rect(), ZUMRect(-2, -3, 0, 0, 2, 3, 0, 0));
  EXPECT_EQ(product(1, -3), ZUMGaussianX(1)(1) * ZUMGaussianY(2)(0, -3));
  EXPECT_TRUE(SameImage(ZUMGaussian2D(1), ZUMGaussianXY(1, 1, 2, 2)));
}

TEST(GaussianKernels, Errors) {
  const std::pair<std::function<void()>, const char*> cases[] = {
      {[] { ZUMGaussianX(kNaN); }, "ZUMGaussianX: Sigma negative not allowed"},
      {[] { ZUMGaussianT(-1, -1); }, "ZUMGaussianT: Sigma negative not allowed"},
      {[] { ZUMGaussianZ(1, -1); }, "ZUMGaussianZ: Radius negative not allowed"},
      {[] { ZUMGaussianIntY(-1); }, "ZUMGaussianIntY: Sigma negative not allowed"},
      {[] { ZUMGaussianIntT(0, -1); }, "ZUMGaussianIntT: Scale negative not allowed"},
      {[] { ZUMGaussianXY(-1, -1); }, "ZUMGaussianX: Sigma negative not allowed"},
      {[] { ZUMGaussianX_D(-1, 1); }, "ZUMGaussianX_D: Sigma negative not allowed"},
      {[] { ZUMGaussianZ_D(1, 1, -2); }, "ZUMGaussianZ_D: Radius negative not allowed"},
      {[] { ZUMGaussianX_D(0, 1, 3); }, "ZUMGaussianX_D: Sigma 0 not allowed"},
      {[] { ZUMGaussianY_D(0, 2); }, "ZUMGaussianY_D: Sigma 0 not allowed"},
      {[] { ZUMGaussianZ_D(0, 1); }, "ZUMGaussianY_D: Sigma 0 not allowed"},
      {[] { ZUMGaussianT_D(0, 1); }, "ZUMGaussianY_D: Sigma 0 not allowed"},
      {[] { ZUMGaussianY_D(1, 3); },
       "ZUMGaussianY_D only accept derivatives of orden 0,1 or 2 (nd=3)"},
      {[] { ZUMGaussianZ_D(1, -1); },
       "ZUMGaussianZ_D only accept derivatives of orden 0,1 or 2 (nd=-1)"},
      {[] { ZUMGaussianT_D(1, 3); },
       "ZUMGaussianZ_D only accept derivatives of orden 0,1 or 2 (nd=3)"},
      {[] { ZUMGaussianX_DLeft(-1, 1, 0, 1); }, "ZUMGaussianX_D: SigmaX negative not allowed"},
      {[] { ZUMGaussianX_DRight(0, 1, 0, 1); }, "ZUMGaussianX_D: SigmaX 0 not allowed"},
      {[] { ZUMGaussianX_D(1, 1, 0, 1, -1); }, "ZUMGaussianX_D: Radius negative not allowed"},
      {[] { ZUMGaussianX_D(1, 4, 0, 1, 1); },
       "ZUMGaussianX_D only accept derivatives of orden 0,1 or 2 (ndx=4)"},
      {[] { ZUMGaussian2D_D(-1, 0, 0, 0); }, "ZUMGaussian2D_D: Sigma negative not allowed"},
      {[] { ZUMGaussian2D_DL(1, 0, 0, 0, -1); }, "ZUMGaussian2D_D: Radius negative not allowed"},
      {[] { ZUMGaussian2D_DR(0, 0, 1, 0); }, "ZUMGaussian2D_D: Sigma 0 not allowed"},
      {[] { ZUMGaussian2D_D(1, 3, 3, 0); },
       "ZUMGaussian2D_D only accept derivatives of orden 0,1 or 2 (ndx=3)"},
      {[] { ZUMGaussian2D_D(1, 2, 3, 1); },
       "ZUMGaussian2D_D only accept derivatives of orden 0,1 or 2 (ndy=3)"},
      {[] { ZUMGaussianXY_D(-1, -1, 0, 0, 0.5, 0, 0); },
       "ZUMGaussian2D_D: SigmaX negative not allowed"},
      {[] { ZUMGaussianXY_D(1, -1, 0, 0, 0.5, 0, 0); },
       "ZUMGaussian2D_D: SigmaY negative not allowed"},
      {[] { ZUMGaussianXY_D(0, 1, 1, 0, 0.0, 0, 0); }, "ZUMGaussian2D_D: SigmaX 0 not allowed"},
      {[] { ZUMGaussianXY_D(1, 0, 1, 0, 0.5, 0, 0); }, "ZUMGaussian2D_D: SigmaY 0 not allowed"},
      {[] { ZUMGaussianXY_D(1, 1, 1, 0, 0.5, 0, -1); },
       "ZUMGaussian2D_D: Radius negative not allowed"},
      {[] { ZUMGaussianXY_D(1, 1, 1, 0, 0, -1); }, "ZUMGaussianY_D: Radius negative not allowed"},
      {[] { ZUMLoG2D(0); }, "ZUMLoG2D: Sigma 0 not allowed"},
      {[] { ZUMGaussianGrad(ZUMImage<ZUMByte>(ZUMRect(), 2, ZUMByte(0)), 1); },
       "ZUMGaussianGrad: It only allows monochannel images"},
      {[] { ZUMGaussianGradModule(ZUMImage<ZUMByte>(ZUMRect(), 2, ZUMByte(0)), 1); },
       "ZUMGaussianGradModule: It only allows monochannel images"}};
  for (const auto& [call, text] : cases) EXPECT_EQ(MessageOf(call), text);
  EXPECT_NE(MessageOf([] { ZUMGaussianX(1e300); }), "");
}

template <class P>
class Gaussian : public testing::Test {};
TYPED_TEST_SUITE(Gaussian, ScalarTypes);

TYPED_TEST(Gaussian, FiltersTheAxesThatTheImageHas) {
  Random random(4);
  // Several columns and rows, a single column, a single row, smaller than the kernel.
  constexpr int kSizes[][2] = {{70, 23}, {1, 30}, {30, 1}, {3, 3}};
  int round = 0;
  for (const auto& size : kSizes) {
    for (const Layout layout : kLayouts) {
      const WithThreads threads(kThreadCounts[round++ % 5]);
      const ZUMRect box(-2, 3, 1, 0, -3 + size[0], 2 + size[1], 2, 0);
      const auto image = MakeRandomImage<TypeParam>(random, box, 2, layout);
      const Real gx = ZUMGaussianX(1.1), gy = ZUMGaussianY(1.1, 3);
      const Real dx = ZUMGaussianX_D(1.1, 1, 3), dy = ZUMGaussianY_D(1.1, 2, 3);
      Real smooth, ex, derived;
      if (size[0] < 2) {
        smooth = ZUMConv(image, ZUMGaussianY(1.1));
        ex = ZUMSmoothEx(image, ZUMGaussianY(1.1));
        derived = ZUMConv(image, dy);
      } else if (size[1] < 2) {
        smooth = ZUMConv(image, gx);
        ex = ZUMSmoothEx(image, gx);
        derived = ZUMConv(image, dx);
      } else {
        smooth = ZUMConv(ZUMConv(image, gx), ZUMGaussianY(1.1));
        ex = ZUMSmoothEx(ZUMSmoothEx(image, gx), ZUMGaussianY(1.1));
        derived = ZUMConv(ZUMConv(image, dx), dy);
      }
      EXPECT_TRUE(SameImage(ZUMGaussianSmooth(image, 1.1), smooth));
      EXPECT_TRUE(SameImage(ZUMGaussianSmoothEx(image, 1.1), ex));
      EXPECT_TRUE(SameImage(ZUMGaussianDerive(image, 1.1, 1, 2, 3), derived));
      EXPECT_TRUE(SameImage(ZUMGaussianXYSmooth(image, 1.1, 0), ZUMConv(image, gx)));
      EXPECT_TRUE(SameImage(ZUMGaussianXYSmooth(image, 0, 1.1, 0, 3), ZUMConv(image, gy)));
      EXPECT_TRUE(SameImage(ZUMGaussianXYSmoothEx(image, 0, 1.1, 0, 3), ZUMSmoothEx(image, gy)));
      EXPECT_TRUE(
          SameImage(ZUMGaussianXYSmooth(image, 1.1, 1.1, 0, 3), ZUMConv(ZUMConv(image, gx), gy)));
      EXPECT_TRUE(SameImage(ZUMGaussianXYDerive(image, 1.1, 1.1, 1, 2, 3, 3),
                            ZUMConv(ZUMConv(image, dx), dy)));
      const Real plain = ZUMGaussianXYDerive(image, 0, 0, 1, 1),
                 kept = ZUMGaussianDerive(image, 0, 1, 1);
      EXPECT_TRUE(SameImage(plain, kept));
      EXPECT_TRUE(SameImage(plain, Real(image)));
      EXPECT_NE(plain.GetData(), image.GetData());

      const auto channel = image.Channel(1);
      const Real along_x = ZUMConv(ZUMConv(channel, dx), gy), gx3 = ZUMGaussianX(1.1, 3);
      const Real along_y = ZUMConv(ZUMConv(channel, gx3), ZUMGaussianY_D(1.1, 1, 3));
      const Real gradient = ZUMGaussianGrad(channel, 1.1, 3);
      ASSERT_EQ(gradient.Rect(), along_x.Rect());
      ASSERT_EQ(gradient.GetCSz(), 2);
      EXPECT_TRUE(SameImage(gradient.Channel(0), along_x));
      EXPECT_TRUE(SameImage(gradient.Channel(1), along_y));
      EXPECT_TRUE(SameImage(ZUMGaussianGradModule(channel, 1.1, 3),
                            MakeByPoint<ZUMReal>(along_x, 1, [&](int x, int y, int z, int t, int) {
                              const double a = along_x(x, y, z, t), b = along_y(x, y, z, t);
                              return std::sqrt(b * b + a * a);
                            })));
    }
  }
  // Both axes lose the radius of the derivative, also where that of the smoothing is 0.
  const ZUMImage<TypeParam> small(ZUMRect(0, 0, 0, 0, 4, 4, 0, 0), 1, TypeParam(1));
  EXPECT_EQ(ZUMGaussianGrad(small, 0.3).Rect(), ZUMRect(1, 1, 0, 0, 3, 3, 0, 0));
}

}  // namespace
