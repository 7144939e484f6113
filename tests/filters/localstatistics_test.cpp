#include "zuml/filters/localstatistics.h"

#include <cmath>

#include "tests/support/testimages.h"
#include "zuml/algebra/arithmetic.h"
#include "zuml/algebra/channels.h"
#include "zuml/algebra/division.h"
#include "zuml/algebra/functions.h"
#include "zuml/algebra/product.h"
#include "zuml/algebra/statistics.h"
#include "zuml/filters/boxsum.h"
#include "zuml/filters/convolution.h"
#include "zuml/filters/corcoef.h"
#include "zuml/filters/maskmaxvol.h"

namespace {

using namespace zuml_test;

// The measures from the sums A and B of the image and of its squares, and the sum n of the weights.
template <class P, class Weights, class Sum>
void ExpectMeasures(const ZUMImage<P>& image, const Weights& weights, double n, Sum sum) {
  const ZUMImage<ZUMReal> a = sum(image), b = sum(ZUMSqr<P>(image)), aa = ZUMSqr<ZUMReal>(a);
  EXPECT_TRUE(SameImage(ZUMMean(image, weights), a / n));
  EXPECT_TRUE(SameImage(ZUMStdDeviation(image, weights), ZUMSqrt(ZUMMax(n * b - aa, 0.0)) / n));
  EXPECT_TRUE(SameImage(ZUMVariance(image, weights), (b - aa / n) / n));
}

TEST(LocalStatistics, FollowFromTheSums) {
  Random random(21);
  for (const Layout layout : kLayouts) {
    const ZUMRect box(-3, 2, 0, 0, 30, 20, 1, 0), small(-1, 0, 0, 0, 2, 1, 0, 0);
    const auto image = MakeRandomImage<ZUMLong>(random, box, 2, layout);
    const ZUMImage<bool> mask(small, 1, true);
    mask(0, 1) = false;
    ExpectMeasures(image, mask, 7, [&](const auto& x) { return ZUMSum<ZUMLong>(x, mask); });
    const ZUMImage<ZUMLong> weights(small, 1, 3);
    weights(-1, 0) = -4;
    ExpectMeasures(image, weights, 17, [&](const auto& x) { return ZUMConv(x, weights); });
    const ZUMImage<ZUMReal> x(ZUMRect(0, 0, 0, 0, 2, 0, 0, 0), 1, 0.75), none;
    const ZUMImage<ZUMReal> y(ZUMRect(0, -1, 0, 0, 0, 1, 0, 0), 1, 0.5);
    const ZUMKernel<ZUMReal> kernel(x, y, none, none);
    ExpectMeasures(image, kernel, 2.25 * 1.5, [&](const auto& s) { return ZUMConv(s, kernel); });
    // Squares of bytes and bools need more than a byte.
    const auto bytes = MakeRandomImage<ZUMByte>(random, box, 2, layout);
    EXPECT_TRUE(SameImage(ZUMVariance(bytes, mask), ZUMVariance(ZUMImage<ZUMLong>(bytes), mask)));
  }
}

TEST(LocalStatistics, Messages) {
  const ZUMRect box(0, 0, 0, 0, 3, 3, 0, 0);
  const ZUMImage<ZUMByte> image(box, 1, 1);
  const auto expect = [&](const std::string& deviation, const auto& weights) {
    const std::string text = " only allows a mask with one channel";
    EXPECT_EQ(MessageOf([&] { ZUMMean(image, weights); }), "ZUMMean" + text);
    EXPECT_EQ(MessageOf([&] { ZUMStdDeviation(image, weights); }), deviation + text);
    EXPECT_EQ(MessageOf([&] { ZUMVariance(image, weights); }), "ZUMVariance" + text);
  };
  expect("ZUMStdDeviation", ZUMImage<bool>(box, 2, true));
  expect("ZUMStdDeviation", ZUMImage<ZUMLong>(box, 2, 1));
  expect("ZUMVariance", ZUMImage<ZUMReal>(box, 2, 1.0));
  expect("ZUMVariance", ZUMKernel<ZUMLong>(ZUMImage<ZUMLong>(box, 2, 1)));
}

TEST(CorCoef, FindsItsOwnCrop) {
  Random random(22);
  const auto image =
      MakeRandomImage<ZUMByte>(random, ZUMRect(-5, 3, 0, 0, 40, 30, 0, 0), 1, Layout::kCut);
  const auto crop = image.Cut(ZUMRect(4, 7, 0, 0, 12, 11, 0, 0));
  const auto r = ZUMCorCoef(image, crop);
  EXPECT_EQ(r.Rect(), ZUMRect(-9, -4, 0, 0, 28, 19, 0, 0));
  // By the definition, at every point; the crop's own place is the origin.
  const double n = 45, mean = ZUMMean(crop);
  ForEachPoint(r, 1, [&](int x, int y, int, int, int) {
    const double m = ZUMMean(image.Cut(ZUMRect(x + 4, y + 7, 0, 0, x + 12, y + 11, 0, 0)));
    double ik = -n * m * mean, ii = -n * m * m, kk = -n * mean * mean;
    ForEachPoint(crop, 1, [&](int i, int j, int, int, int) {
      ik += image(x + i, y + j) * crop(i, j);
      ii += image(x + i, y + j) * image(x + i, y + j);
      kk += crop(i, j) * crop(i, j);
    });
    // Rounding can take the crop's own place above 1.
    const double expected = x == 0 && y == 0 && r(x, y) == -1 ? -1 : ik / std::sqrt(ii * kk);
    EXPECT_NEAR(r(x, y), expected, 1e-9);
  });
  // What is constant has no coefficient, zero or not.
  const ZUMImage<ZUMReal> none(r, 1, -1.0);
  for (const ZUMByte value : {0, 8}) {
    EXPECT_TRUE(SameImage(ZUMCorCoef(image, ZUMImage<ZUMByte>(crop, 1, value)), none));
    EXPECT_TRUE(SameImage(ZUMCorCoef(ZUMImage<ZUMByte>(image, 1, value), crop), none));
  }
  // Each channel has its own coefficients, and the pattern one channel.
  const auto three = ZUMAppendChannels(image, image, image);
  EXPECT_TRUE(SameImage(ZUMCorCoef(three, crop), ZUMAppendChannels(r, r, r)));
  EXPECT_EQ(MessageOf([&] { ZUMCorCoef(three, three.Cut(crop)); }),
            "operator-: Diferent number of channels 1!=3");
}

TEST(MaskMaxVol, CountsFromTheFirstSum) {
  const ZUMImage<ZUMByte> image(ZUMRect(-3, -3, 0, 0, 6, 6, 0, 0), 1, 1);
  image(2, 1) = 200;
  const ZUMImage<bool> mask(ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0), 1, true);
  const ZUMImage<bool> large(ZUMRect(0, 0, 0, 0, 10, 0, 0, 0), 1, true);
  int x = -7, y = -7;
  ZUMLong value = -7;
  ZUMMaskMaxVol(image, large, &x, &y, &value);
  EXPECT_EQ(value, -7);
  ZUMMaskMaxVol(image, mask, &x, &y, &value);
  // The sums begin at (-2, -2); the first that holds the pixel lies at (1, 0).
  EXPECT_EQ(ZUMBasePoint2D<int>(x, y), ZUMBasePoint2D<int>(3, 2));
  EXPECT_EQ(value, 208);
}

}  // namespace
