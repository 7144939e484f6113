#include "zuml/filters/localstatistics.h"

#include <cmath>

#include "tests/support/testimages.h"
#include "zuml/algebra/frames.h"
#include "zuml/filters/boxsum.h"
#include "zuml/filters/convolution.h"
#include "zuml/filters/corcoef.h"
#include "zuml/filters/maskmaxvol.h"

namespace {

using namespace zuml_test;

// The measures from sums A and B of n that the operations of the house give.
template <class P>
void ExpectMeasures(const ZUMImage<P>& a, const ZUMImage<P>& b, double n,
                    const ZUMImage<ZUMReal>& mean, const ZUMImage<ZUMReal>& deviation,
                    const ZUMImage<ZUMReal>& variance) {
  const auto by_point = [&](auto f) {
    return MakeByPoint<ZUMReal>(a, a.GetCSz(), [&](int x, int y, int z, int t, int c) {
      return f(static_cast<double>(a(x, y, z, t, c)), static_cast<double>(b(x, y, z, t, c)));
    });
  };
  EXPECT_TRUE(SameImage(mean, by_point([&](double p, double) { return p / n; })));
  EXPECT_TRUE(SameImage(deviation, by_point([&](double p, double q) {
                          return std::sqrt(std::max(n * q - p * p, 0.0)) / n;
                        })));
  EXPECT_TRUE(
      SameImage(variance, by_point([&](double p, double q) { return (q - p * p / n) / n; })));
}

TEST(LocalStatistics, FollowFromTheSums) {
  Random random(21);
  for (const Layout layout : kLayouts) {
    const ZUMRect box(-3, 2, 0, 0, 30, 20, 1, 0), small(-1, 0, 0, 0, 2, 1, 0, 0);
    const auto image = MakeRandomImage<ZUMByte>(random, box, 2, layout);
    const auto squares = MakeByPoint<ZUMLong>(image, 2, [&](int x, int y, int z, int t, int c) {
      return image(x, y, z, t, c) * image(x, y, z, t, c);
    });
    ZUMImage<bool> mask(small, 1, true);
    mask(0, 1) = false;
    ExpectMeasures(ZUMSum<ZUMLong>(image, mask), ZUMSum<ZUMLong>(squares, mask), 7,
                   ZUMMean(image, mask), ZUMStdDeviation(image, mask), ZUMVariance(image, mask));
    const ZUMImage<ZUMLong> weights(small, 1, 3);
    weights(-1, 0) = -4;
    ExpectMeasures(ZUMConv(image, weights), ZUMConv(squares, weights), 17, ZUMMean(image, weights),
                   ZUMStdDeviation(image, weights), ZUMVariance(image, weights));
    const ZUMImage<ZUMReal> x(ZUMRect(0, 0, 0, 0, 2, 0, 0, 0), 1, 0.75), none;
    const ZUMImage<ZUMReal> y(ZUMRect(0, -1, 0, 0, 0, 1, 0, 0), 1, 0.5);
    const ZUMKernel<ZUMReal> kernel(x, y, none, none);
    ExpectMeasures(ZUMConv(image, kernel), ZUMConv(squares, kernel), 2.25 * 1.5,
                   ZUMMean(image, kernel), ZUMStdDeviation(image, kernel),
                   ZUMVariance(image, kernel));
  }
  const ZUMImage<ZUMReal> constant(ZUMRect(0, 0, 0, 0, 9, 9, 0, 0), 1, 0.1);
  const auto zero =
      ZUMStdDeviation(constant, ZUMImage<bool>(ZUMRect(0, 0, 0, 0, 2, 2, 0, 0), 1, true));
  EXPECT_EQ(zero.NPixels(), 64);
  ForEachPoint(zero, 1, [&](int x, int y, int, int, int) { EXPECT_LT(zero(x, y), 1e-7); });
}

TEST(LocalStatistics, Messages) {
  const ZUMRect box(0, 0, 0, 0, 3, 3, 0, 0);
  const ZUMImage<ZUMByte> image(box, 1, 1);
  const ZUMImage<bool> mask(box, 2, true);
  const ZUMImage<ZUMLong> longs(box, 2, 1);
  const ZUMImage<ZUMReal> reals(box, 2, 1.0);
  const ZUMKernel<ZUMLong> kernel(longs);
  const std::string text = " only allows a mask with one channel";
  EXPECT_EQ(MessageOf([&] { ZUMMean(image, kernel); }), "ZUMMean" + text);
  EXPECT_EQ(MessageOf([&] { ZUMMean(image, mask); }), "ZUMMean" + text);
  EXPECT_EQ(MessageOf([&] { ZUMStdDeviation(image, mask); }), "ZUMStdDeviation" + text);
  EXPECT_EQ(MessageOf([&] { ZUMStdDeviation(image, longs); }), "ZUMStdDeviation" + text);
  EXPECT_EQ(MessageOf([&] { ZUMStdDeviation(image, reals); }), "ZUMVariance" + text);
  EXPECT_EQ(MessageOf([&] { ZUMStdDeviation(image, kernel); }), "ZUMVariance" + text);
  EXPECT_EQ(MessageOf([&] { ZUMVariance(image, mask); }), "ZUMVariance" + text);
}

TEST(CorCoef, FindsItsOwnCrop) {
  Random random(22);
  const auto image =
      MakeRandomImage<ZUMByte>(random, ZUMRect(-5, 3, 0, 0, 40, 30, 0, 0), 1, Layout::kCut);
  const auto crop = image.Cut(ZUMRect(4, 7, 0, 0, 12, 11, 0, 0));
  const auto r = ZUMCorCoef(image, crop);
  EXPECT_EQ(r.Rect(), ZUMRect(-9, -4, 0, 0, 28, 19, 0, 0));
  // By the definition, at every point; the crop's own place is the origin.
  const double n = 45;
  ForEachPoint(r, 1, [&](int x, int y, int, int, int) {
    double mi = 0, mk = 0, ik = 0, ii = 0, kk = 0;
    ForEachPoint(crop, 1, [&](int i, int j, int, int, int) {
      mi += image(x + i, y + j) / n;
      mk += crop(i, j) / n;
    });
    ForEachPoint(crop, 1, [&](int i, int j, int, int, int) {
      ik += (image(x + i, y + j) - mi) * (crop(i, j) - mk);
      ii += std::pow(image(x + i, y + j) - mi, 2);
      kk += std::pow(crop(i, j) - mk, 2);
    });
    if (x == 0 && y == 0) return;
    EXPECT_NEAR(r(x, y), ik / std::sqrt(ii * kk), 1e-9);
  });
  EXPECT_TRUE(r(0, 0) > 1 - 1e-9 || r(0, 0) == -1);  // rounding can take it above 1
  // What is constant has no coefficient, zero or not.
  for (const int value : {0, 8}) {
    const auto v = static_cast<ZUMByte>(value);
    const auto flat = ZUMCorCoef(image, ZUMImage<ZUMByte>(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, v));
    EXPECT_TRUE(SameImage(flat, ZUMImage<ZUMReal>(flat, 1, -1.0)));
    const auto still = ZUMCorCoef(ZUMImage<ZUMByte>(image.Rect(), 1, v), crop);
    EXPECT_TRUE(SameImage(still, ZUMImage<ZUMReal>(r, 1, -1.0)));
  }
  // Each channel has its own coefficients, and the pattern one channel.
  const auto three = ZUMAppendChannels(image, image, image), crops = three.Cut(crop);
  EXPECT_TRUE(SameImage(ZUMCorCoef(three, crop), ZUMAppendChannels(r, r, r)));
  EXPECT_EQ(MessageOf([&] { ZUMCorCoef(three, crops); }),
            "operator-: Diferent number of channels 1!=3");
  EXPECT_EQ(MessageOf([&] { ZUMCorCoef(image, ZUMImage<ZUMByte>(crop, 3, 1)); }),
            "operator-: Diferent number of channels 3!=1");
}

TEST(MaskMaxVol, CountsFromTheFirstSum) {
  const ZUMImage<ZUMByte> image(ZUMRect(-3, -3, 0, 0, 6, 6, 0, 0), 1, 1);
  image(2, 1) = 200;
  const ZUMImage<bool> mask(ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0), 1, true);
  int x = -7, y = -7;
  ZUMLong value = -7;
  ZUMMaskMaxVol(image, ZUMImage<bool>(ZUMRect(0, 0, 0, 0, 10, 0, 0, 0), 1, true), &x, &y, &value);
  EXPECT_EQ(value, -7);
  ZUMMaskMaxVol(image, mask, &x, &y, &value);
  // The sums begin at (-2, -2); the first that holds the pixel lies at (1, 0).
  EXPECT_EQ(x, 3);
  EXPECT_EQ(y, 2);
  EXPECT_EQ(value, 208);
}

}  // namespace
