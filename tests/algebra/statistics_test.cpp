#include "zuml/algebra/statistics.h"

#include <cmath>

#include "tests/algebra/everylayout.h"

namespace {

using namespace zuml_test;

template <class P>
class Sums : public testing::Test {};
using SumTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal, ZUMComplex>;
TYPED_TEST_SUITE(Sums, SumTypes);

TYPED_TEST(Sums, OfPixelsAndChannels) {
  using P = TypeParam;
  using Out = std::conditional_t<std::integral<P>, ZUMLong, P>;
  using Sum = std::conditional_t<std::integral<P>, std::uint32_t, P>;
  for (int csz : {1, 3}) {
    ForEachLayout<P>(csz, [&](const ZUMImage<P>& image, Random&) {
      Sum sum{};
      const ZUMImage<Out> channels(image, 1, Out{});
      ForEachPoint(image, csz, [&](int x, int y, int z, int t, int c) {
        const Sum v = static_cast<Sum>(image(x, y, z, t, c));
        sum += v;
        channels(x, y, z, t) = static_cast<Out>(static_cast<Sum>(channels(x, y, z, t)) + v);
      });
      EXPECT_TRUE(SameBits(static_cast<Out>(sum), ZUMSum<Out>(image)));
      EXPECT_TRUE(SameImage(ZUMSumChannels<Out>(image), channels));
    });
  }
}

template <class P>
class Moments : public testing::Test {};
TYPED_TEST_SUITE(Moments, GreyTypes);

TYPED_TEST(Moments, OfAllChannelsTogether) {
  using P = TypeParam;
  for (int csz : {1, 3}) {
    ForEachLayout<P>(csz, [&](const ZUMImage<P>& image, Random&) {
      double s = 0, q = 0, n = 0;
      ForEachPoint(image, csz, [&](auto... at) {
        const double v = static_cast<double>(image(at...));
        s += v;
        q += v * v;
        ++n;
      });
      EXPECT_EQ(s / n, ZUMMean(image));
      // Of integers, 32 bits of the sum go into what follows.
      if (std::integral<P>) s = static_cast<ZUMLong>(static_cast<std::int64_t>(s));
      EXPECT_EQ(std::sqrt(std::fmax(n * q - s * s, 0)) * (1 / n), ZUMStdDeviation(image));
      EXPECT_EQ((q - s * s / n) / n, ZUMVariance(image));
    });
  }
}

TEST(Statistics, ValuesWorkedByHand) {
  EXPECT_EQ(2.5, ZUMStdDeviation(MakeLine<double>({1, 6})));
  EXPECT_EQ(6.25, ZUMVariance(MakeLine<double>({1, 6})));
  // The sum wraps, the mean does not.
  const ZUMImage<ZUMLong> large(ZUMRect(0, 0, 0, 0, 3, 0, 0, 0), 1, 1 << 30);
  EXPECT_EQ(1073741824.0, ZUMMean(large));
  EXPECT_EQ(0, ZUMSum<ZUMLong>(large));
  EXPECT_EQ(1073741824.0, ZUMStdDeviation(large));
  // Rounding below 0: the deviation is clamped, the variance is not.
  bool below = false;
  for (int n = 2; n < 100; ++n) {
    const ZUMImage<ZUMReal> flat(ZUMRect(1, 0, 0, 0, n, 0, 0, 0), 1, 0.1);
    below |= ZUMVariance(flat) < 0;
    EXPECT_FALSE(std::isnan(ZUMStdDeviation(flat)));
  }
  EXPECT_TRUE(below);
  EXPECT_TRUE(std::isnan(ZUMMean(ZUMImage<ZUMByte>())));
  EXPECT_TRUE(std::isnan(ZUMStdDeviation(MakeLine<double>({1, kNaN}))));
}

// Bytes pass 32 bits; shorts pass 2^53, from where on each addition is rounded in sweep order.
TEST(Statistics, LargeSumsOfSquares) {
  const int n = 2200;
  const double count = 2.0 * n * n;
  const ZUMImage<ZUMByte> bytes(ZUMRect(0, 0, 0, 0, n - 1, n - 1, 0, 0), 2, ZUMByte{255});
  bytes.Channel(1).SetPixels(ZUMByte{0});
  EXPECT_EQ(16256.25, ZUMVariance(bytes));
  const ZUMImage<ZUMShort> shorts(bytes, 2, ZUMShort{32767});
  double q = 0;
  for (int i = 0; i < 2 * n * n; ++i) q += 32767.0 * 32767.0;
  ASSERT_LT(9007199254740992.0, q);
  const double s = static_cast<ZUMLong>(static_cast<std::int64_t>(32767.0 * count));
  EXPECT_EQ((q - s * s / count) / count, ZUMVariance(shorts));
}

}  // namespace
