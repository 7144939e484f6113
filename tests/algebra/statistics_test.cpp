#include "zuml/algebra/statistics.h"

#include "tests/support/everylayout.h"
#include "zuml/algebra/extrema.h"
#include "zuml/core/pixelarith.h"

namespace {

using namespace zuml_test;

TEST(Statistics, OfAllChannelsTogether) {
  const auto check = []<class P>(const ZUMImage<P>& image, Random&) {
    using Out = std::conditional_t<std::integral<P>, ZUMLong, P>;
    Out sum{};
    double s = 0, q = 0, n = 0;
    const ZUMImage<Out> channels(image, 1, Out{});
    ForEachPoint(image, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
      const Out v = static_cast<Out>(image(x, y, z, t, c));
      sum = ZUMWrapAdd(sum, v);
      channels(x, y, z, t) = ZUMWrapAdd(channels(x, y, z, t), v);
      const double d = std::real(v);
      s += d, q += d * d, ++n;
    });
    EXPECT_TRUE(SameBits(sum, ZUMSum<Out>(image)));
    EXPECT_TRUE(SameImage(ZUMSumChannels<Out>(image), channels));
    if constexpr (ZUMGreyPixel<P>) {
      EXPECT_EQ(s / n, ZUMMean(image));
      s = sum;
      EXPECT_EQ(std::sqrt(std::fmax(n * q - s * s, 0)) * (1 / n), ZUMStdDeviation(image));
      EXPECT_EQ((q - s * s / n) / n, ZUMVariance(image));
    }
    if constexpr (ZUMDiscretePixel<P>) {
      long long wide = 0;
      ForEachPoint(image, image.GetCSz(), [&](auto... at) { wide += image(at...); });
      EXPECT_EQ(wide, ZUMSumWide(image));
    }
    if constexpr (ZUMIntegerPixel<P>) {
      const double mean = ZUMMean(image);
      double spread = 0;
      ForEachPoint(image, image.GetCSz(),
                   [&](auto... at) { spread += (image(at...) - mean) * (image(at...) - mean); });
      EXPECT_NEAR(spread / n, ZUMVarianceWide(image), 1e-9 * (1 + spread / n));
      EXPECT_NEAR(std::sqrt(spread / n), ZUMStdDeviationWide(image), 1e-9 * (1 + spread / n));
    }
  };
  ForEachLayout(AlgebraTypes(), {1, 3}, kAnyPixel, check);
}

TEST(Statistics, AtTheEndsOfTheirArithmetic) {
  // Rounding below 0: the deviation is clamped, the variance is not.
  const ZUMImage<ZUMReal> flat(ZUMRect(0, 0, 0, 0, 9, 0, 0, 0), 1, 0.7);
  EXPECT_GT(0, ZUMVariance(flat));
  EXPECT_EQ(0, ZUMStdDeviation(flat));
  EXPECT_TRUE(std::isnan(ZUMMean(ZUMImage<ZUMByte>())));
  EXPECT_TRUE(std::isnan(ZUMStdDeviation(MakeLine<double>({1, kNaN}))));
  const ZUMImage<ZUMByte> none(flat, 0, nullptr);
  EXPECT_TRUE(SameImage(ZUMSumChannels<ZUMLong>(none), {flat, 1, 0}));
  // Squares of bytes pass 32 bits; those of shorts 2^53, from where on additions are rounded.
  EXPECT_EQ(0, ZUMVariance(ZUMImage<ZUMByte>(ZUMRect(0, 0, 0, 0, 99999, 0, 0, 0), 1, 255)));
  const ZUMImage<ZUMShort> shorts(ZUMRect(0, 0, 0, 0, 3199, 3199, 0, 0), 1, 32767);
  double q = 0;
  for (int i = 0; i < shorts.NPixels(); ++i) q += 32767.0 * 32767.0;
  ASSERT_LT(9007199254740992.0, q);
  const double n = shorts.NPixels(), s = ZUMSum<ZUMLong>(shorts);
  EXPECT_EQ((q - s * s / n) / n, ZUMVariance(shorts));
}

// A picture of 26 megapixels: half its bytes are 10 above the mean and half as far below it. Sums
// of `long` pixels leave 32 bits at once.
TEST(Statistics, WideMeasuresHoldAtAnySize) {
  const ZUMImage<ZUMByte> large(ZUMRect(0, 0, 0, 0, 6249, 4159, 0, 0), 1, 190);
  large.Cut(ZUMRect(0, 0, 0, 0, 6249, 2079, 0, 0)).SetPixels(210);
  EXPECT_EQ(5200000000, ZUMSumWide(large));
  EXPECT_EQ(10, ZUMStdDeviationWide(large));
  EXPECT_EQ(100, ZUMVarianceWide(large));
  const ZUMLong least = std::numeric_limits<ZUMLong>::min();
  const auto far = MakeLine<ZUMLong>({least, least + 2, least, least + 2});
  EXPECT_EQ(4LL * least + 4, ZUMSumWide(far));
  EXPECT_EQ(1, ZUMStdDeviationWide(far));
  EXPECT_EQ(0, ZUMVarianceWide(ZUMImage<ZUMLong>(ZUMRect(0, 0, 0, 0, 9999, 9, 0, 0), 1, least)));
  EXPECT_TRUE(std::isnan(ZUMVarianceWide(ZUMImage<ZUMByte>())));
}

// Any byte but 0 is true, and none is more true than another.
TEST(Statistics, OfWrappedBoolPixels) {
  unsigned char bytes[100] = {2, 255};
  const ZUMRect box(0, 0, 0, 0, 99, 0, 0, 0);
  const ZUMImage<bool> image(ZUMRoDRef(box), ZUMRaster(box, 1, ZUMBoolPixel, bytes));
  EXPECT_EQ(2, ZUMSum<ZUMLong>(image));
  EXPECT_EQ(ZUMBasePoint<int>(0, 0), ZUMSearchMax(image));
  EXPECT_EQ(ZUMBasePoint<int>(2, 0), ZUMSearchMin(image));
}

}  // namespace
