#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/algebra/histogram.h"
#include "zuml/core/pixelarith.h"
#include "zuml/threshold/histogramthresholds.h"
#include "zuml/threshold/otsu.h"
#include "zuml/threshold/sigmoid.h"
#include "zuml/threshold/thresholding.h"

namespace {

using namespace zuml_test;

// A histogram that begins anywhere; its image has more around it.
ZUMImage<ZUMLong> MakeHistogram(int begin, const std::vector<ZUMLong>& counts) {
  const int end = begin + static_cast<int>(counts.size()) - 1;
  const ZUMImage<ZUMLong> larger(ZUMRect(begin - 2, -1, 0, 0, end + 3, 1, 0, 0), 2, 12345);
  ZUMImage<ZUMLong> histogram = larger.Channel(1).Cut(ZUMRect(begin, 0, 0, 0, end, 0, 0, 0));
  histogram.SetPixels(counts.data());
  return histogram;
}

ZUMImage<ZUMLong> MakeRandomHistogram(Random& random) {
  std::vector<ZUMLong> counts(static_cast<std::size_t>(random.Int(1, 24)));
  const int kind = random.Int(0, 2);
  for (ZUMLong& count : counts) {
    // Many zeros and equal counts, for the ties; some counts whose moments pass 32 bits.
    count = kind == 0 ? random.Int(0, 3) : kind == 1 ? random.Int(0, 500) : random.Int(0, 1) * 7;
    if (kind == 1 && random.Int(0, 9) == 0) count = 300000000;
  }
  return MakeHistogram(random.Int(-9, 30), counts);
}

struct Part {
  double n = 0, s = 0, peak = 0;
  double Mean() const { return s / n; }
};

// The bins first to last, summed anew.
Part Sum(const ZUMImage<ZUMLong>& h, int first, int last) {
  Part part;
  for (int i = first; i <= last; ++i) {
    part.n += h(i);
    part.s += ZUMWrapMul<ZUMLong>(i, h(i));
    part.peak = std::max(part.peak, static_cast<double>(h(i)));
  }
  return part;
}

// The standard deviation by its definition.
double Deviation(const ZUMImage<ZUMLong>& h, int first, int last) {
  const Part part = Sum(h, first, last);
  double squares = 0;
  for (int i = first; i <= last; ++i) squares += h(i) * std::pow(i - part.Mean(), 2);
  return std::sqrt(squares / part.n);
}

// The first bin from `first` to `last` with the greatest criterion above `least`; a NaN does not
// count.
template <class V, class Criterion>
int FirstGreatest(int first, int last, V least, Criterion criterion) {
  int best = 0;
  for (int t = first; t <= last; ++t) {
    const V v = criterion(t);
    if (v > least) least = v, best = t;
  }
  return best;
}

// The same up to rounding: no criterion is above that of the bin found, which is 0 if there is
// none.
template <class Criterion>
void ExpectGreatest(int found, int first, int last, Criterion criterion) {
  double best = -INFINITY;
  for (int t = first; t <= last; ++t) best = std::fmax(best, criterion(t));
  EXPECT_NEAR(best == -INFINITY ? found : criterion(found), best == -INFINITY ? 0 : best,
              1e-9 * std::max(1.0, std::abs(best)));
}

TEST(HistogramThresholds, AgreeWithTheirCriteriaBinByBin) {
  Random random(21);
  constexpr double kLeast = -std::numeric_limits<double>::max();
  // Bins without a deviation and below the first candidate of the fit; then random ones.
  const ZUMImage<ZUMLong> by_hand[] = {MakeHistogram(0, {1, 2, 3, 2, 1, 0}),
                                       MakeHistogram(1, {0, 0, 0, 0, 0, 0, 5})};
  for (std::size_t round = 0; round < 4000; ++round) {
    const ZUMImage<ZUMLong> h = round < 2 ? by_hand[round] : MakeRandomHistogram(random);
    const int begin = h.BeginX(), end = h.EndX();
    const Part all = Sum(h, begin, end);
    const auto otsu = [&](int t) {
      const Part a = Sum(h, begin, t - 1), b = Sum(h, t, end);
      const double d = b.Mean() - a.Mean();
      return a.n * b.n * (d * d);
    };
    const auto valley_otsu = [&](int t) { return otsu(t) * (all.n - h(t)); };
    const auto deviations = [&](int t) {
      return -(Deviation(h, begin, t - 1) + Deviation(h, t, end));
    };
    const auto areas = [&](int t) {
      double low = 0, high = 0;
      for (int i = begin; i < t; ++i) low += std::max(h(i) - h(t), 0);
      for (int i = t + 1; i < end; ++i) high += std::max(h(i) - h(t), 0);
      return std::min(low, high);
    };
    const auto depth = [&](int t) {
      const Part a = Sum(h, begin, t - 1), b = Sum(h, t, end - 1);
      if (a.n == 0 || b.n == 0) return std::pair(-1.0, 0.0);
      return std::pair(std::min(a.peak, b.peak) - h(t), std::min(t - a.Mean(), b.Mean() - t));
    };
    const auto fit = [&](int t) {
      const Part a = Sum(h, begin, t);
      const double sigma = Deviation(h, begin, t), most = 0.3989422804014327 / sigma;
      double error = 0;
      for (int i = begin; i <= t; ++i) {
        const double d = i - a.Mean();
        error += std::pow(h(i) / a.n - most * std::exp(d * d / (-2 * sigma * sigma)), 2);
      }
      return sigma > 1e-6 ? -error : NAN;
    };
    ASSERT_EQ(ZUMHistogramOtsu(h), FirstGreatest(begin, end, 0.0, otsu)) << round;
    ASSERT_EQ(ZUMHistogramValleyOtsu(h), FirstGreatest(begin, end, 0.0, valley_otsu)) << round;
    ASSERT_EQ(ZUMHistogramValleyMinSumThr(h), FirstGreatest(begin + 1, end, kLeast, areas));
    ASSERT_EQ(ZUMHistogramValleyThr(h),
              FirstGreatest(begin + 1, end - 1, std::pair(0.0, kLeast), depth));
    // Sums in another order round differently, so the criteria are compared, not the bins.
    if (all.n == 0 || all.n > 1e6) continue;
    ExpectGreatest(ZUMHistogramMinVarianceThr(h), begin, end - 1, deviations);
    const ZUMArray<ZUMReal> low = ZUMHistogramLowGaussianThr(h);
    const int best = static_cast<int>(low[2]);
    ExpectGreatest(best, std::max(begin, 6), end, fit);
    EXPECT_NEAR(low[0], low[1] > 0 ? Sum(h, begin, best).Mean() : 0, 1e-9) << round;
    EXPECT_NEAR(low[1], low[1] > 0 ? Deviation(h, begin, best) : 0, 1e-9) << round;
    const ZUMArray<ZUMLong> found = ZUMHistogramTrimodalOtsu(h);
    const auto spread = [&](int t1, int t2) {
      double v = 0;
      for (const Part& part : {Sum(h, begin, t1 - 1), Sum(h, t1, t2 - 1), Sum(h, t2, end)}) {
        v += part.n / all.n * std::pow(all.Mean() - part.Mean(), 2);
      }
      return v;
    };
    double greatest = 0;
    for (int t1 = begin; t1 < end; ++t1) {
      for (int t2 = t1; t2 < end; ++t2) greatest = std::max(greatest, spread(t1, t2));
    }
    EXPECT_NEAR(greatest ? spread(found[0], found[1]) : found[0], greatest, 1e-9 * greatest)
        << round;
  }
}

TEST(HistogramThresholds, WorkedByHand) {
  // Two equal peaks: every bin between them splits as well as the first behind the lower peak.
  EXPECT_EQ(ZUMHistogramOtsu(MakeHistogram(10, {0, 5, 0, 0, 0, 5, 0})), 12);
  EXPECT_EQ(ZUMHistogramOtsu(ZUMNullImageLong()), 0);
  // The two deep valleys at 3 and 7 are equal; 7 is further from the nearer mean.
  EXPECT_EQ(ZUMHistogramValleyThr(MakeHistogram(0, {0, 9, 9, 1, 5, 5, 4, 1, 0, 0, 9, 9, 0})), 8);
  // A count whose moment passes 32 bits: 8 * 300000000 wraps to -1894967296.
  EXPECT_EQ(ZUMHistogramOtsu(MakeHistogram(7, {1, 300000000})), 8);
  const ZUMArray<ZUMLong> split = ZUMHistogramTrimodalOtsu(MakeHistogram(5, {3, 0, 3, 0, 3, 0}));
  EXPECT_EQ(std::pair(split[0], split[1]), std::pair(6, 8));
}

TEST(Thresholds, OfImagesAreThoseOfTheirHistograms) {
  Random random(22);
  for (const Layout layout : kLayouts) {
    const auto bytes = MakeRandomImage<ZUMByte>(random, {-3, 2, 0, 0, 30, 25, 0, 0}, 1, layout);
    const ZUMImage<ZUMLong> h = ZUMHistogram(bytes, 0, 0, 255);
    EXPECT_EQ(ZUMOtsu(bytes, 0, 1, 0), ZUMHistogramOtsu(h));
    EXPECT_EQ(ZUMValleyOtsu(bytes, 0, 1, 0), ZUMHistogramValleyOtsu(h));
    EXPECT_EQ(ZUMMinVarianceThr(bytes), ZUMHistogramMinVarianceThr(h));
    EXPECT_EQ(ZUMValleyMinSumThr(bytes), ZUMHistogramValleyMinSumThr(h));
    EXPECT_EQ(ZUMValleyThr(bytes), ZUMHistogramValleyThr(h));
    // Of the pixels themselves, the first that reaches the threshold of all values.
    const auto shorts = MakeRandomImage<ZUMShort>(random, {0, 2, 0, 0, 12, 9, 0, 0}, 1, layout);
    const int least = ZUMHistogramOtsu(ZUMHistogram(shorts, 0, -32768, 32767));
    int reaches = 32767;
    ForEachPoint(shorts, 1, [&](auto... at) {
      if (shorts(at...) >= least) reaches = std::min<int>(reaches, shorts(at...));
    });
    EXPECT_EQ(ZUMPixelOtsu(shorts), reaches);
    // With levels the bin is converted back, cut toward zero on integers.
    const int bin = ZUMHistogramOtsu(ZUMHistogram(bytes, 16, 20, 200));
    EXPECT_EQ(ZUMOtsu(bytes, 16, 20, 200), 180 * bin / 15 + 20);
    EXPECT_EQ(ZUMOtsu(bytes, 1, 30, 60), 30);
    const ZUMImage<ZUMReal> reals = bytes;
    const ZUMImage<ZUMLong> ten = ZUMHistogram(reals, 10, 0, 99.5);
    EXPECT_EQ(ZUMOtsu(reals, 10, 0, 99.5), 99.5 * ZUMHistogramOtsu(ten) / 9 + 0);
    const ZUMArray<ZUMReal> three = ZUMTrimodalOtsu(reals, 10, 0, 99.5);
    const ZUMArray<ZUMLong> bins = ZUMHistogramTrimodalOtsu(ten);
    EXPECT_EQ(three.GetLength(), 2u);
    for (int k = 0; k < 2; ++k) EXPECT_EQ(three[k], 99.5 * bins[k] / 9 + 0);
  }
  EXPECT_EQ(ZUMPixelOtsu(ZUMImage<ZUMByte>(ZUMRect(0, 0, 0, 0, 3, 0, 0, 0), 1, 5)), 0);
  EXPECT_EQ(ZUMPixelOtsu(ZUMNullImageShort()), 0);
  // With an empty range, the bytes are counted over 0 to 255 and converted over what occurs.
  const ZUMRoDRef rod(0, 0, 0, 0, 3, 0, 0, 0);
  const ZUMByte pixels[] = {100, 100, 120, 120};
  const ZUMImage<ZUMByte> two(rod, 1, pixels);
  EXPECT_EQ(ZUMOtsu(two, 10, 1, 0), 20 * ZUMHistogramOtsu(ZUMHistogram(two, 10, 1, 0)) / 9 + 100);
  // A range and a bin whose product passes 32 bits.
  const ZUMLong wide[] = {-1000000000, -1000000000, 1000000000, 1000000000};
  const ZUMLong threshold = ZUMOtsu(ZUMImage<ZUMLong>(rod, 1, wide), 101, -1000000000, 1000000000);
  EXPECT_LT(std::abs(threshold), 1000000000);
}

TEST(Thresholds, ParametricValleyWeighsMinima) {
  // Counts by value: minima at 50 (deep), at the plateau 100-102 and at 200; a slope at 150-151
  // that only rests on its way down.
  std::vector<ZUMByte> pixels;
  for (int v = 0; v < 256; ++v) {
    const std::size_t count = v == 50 ? 1 : v / 3 == 34 ? 5 : v / 2 == 75 ? 8 : v > 151 ? 7 : 10;
    pixels.insert(pixels.end(), count, static_cast<ZUMByte>(v));
  }
  const int end = static_cast<int>(pixels.size()) - 1;
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, end, 0, 0, 0), 1, pixels.data());
  EXPECT_EQ(ZUMValleyParametricThr(image, 0, 1, 0), 50);
  // The moments prefer low thresholds; balance the minimum nearest to the middle of the pixels.
  EXPECT_EQ(ZUMValleyParametricThr(image, 1, 0, 0), 50);
  EXPECT_EQ(ZUMValleyParametricThr(image, 0, 0, 1), 104);
  // A histogram that never falls has no minimum.
  const ZUMImage<ZUMByte> rising(ZUMRect(0, 0, 0, 0, 2, 0, 0, 0), 1, 255);
  EXPECT_EQ(ZUMValleyParametricThr(rising, 1, 1, 1), 0);
}

template <class P>
class Thresholding : public testing::Test {};
using GreyTypes = testing::Types<ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(Thresholding, GreyTypes);

TYPED_TEST(Thresholding, IncludesItsBoundsAndPassesOverNaN) {
  using P = TypeParam;
  Random random(26);
  for (const Layout layout : kLayouts) {
    const auto image = MakeRandomImage<P>(random, ZUMRect(-4, -3, 0, -1, 20, 9, 1, 0), 2, layout);
    const P low = image(3, 3, 0, 0, 1), high = image(5, 2, 0, 0, 0);
    if (std::same_as<P, ZUMReal>) image(4, 4) = static_cast<P>(NAN);
    const auto by_point = [&](auto f) {
      return MakeByPoint<ZUMBool>(image, 2, [&](auto... at) { return f(image(at...)); });
    };
    EXPECT_TRUE(SameImage(ZUMThr(image, low), by_point([&](P p) { return p >= low; })));
    EXPECT_TRUE(SameImage(ZUMDblThr(image, low, high),
                          by_point([&](P p) { return p >= low && p <= high; })));
  }
}

TEST(Sigmoid, LineAndDirection) {
  const ZUMImage<ZUMReal> line = ZUMSigmoidX(2, 0.25, 1.5, -3, 6);
  EXPECT_EQ(line.Rect(), ZUMRect(-3, 0, 0, 0, 6, 0, 0, 0));
  EXPECT_EQ(line(2), 0.75);
  EXPECT_DOUBLE_EQ(line(4), 1 / (std::exp(-3.0) + 1) + 0.25);
  // A quarter turn: the curve runs along Y, three pixels wide.
  const ZUMImage<ZUMReal> turned = ZUMSigmoidX(2, 0.25, 1.5, std::acos(-1.0) / 2, 1.5, -3, 6);
  EXPECT_EQ(turned.Rect(), ZUMRect(-6, -6, 0, 0, 6, 6, 0, 0));
  for (const int across : {-1, 0, 1}) EXPECT_NEAR(turned(across, 4), line(4), 1e-12);
  EXPECT_EQ(turned(2, 4) + turned(0, -4), 0);
}

// At the ends of the coordinates, and without pixels.
TEST(Thresholds, Extremes) {
  Random random(27);
  constexpr int kMin = INT_MIN, kMax = INT_MAX;
  const ZUMLong counts[] = {9, 4, 2, 7, 0, 3, 8, 8, 1, 5};
  const ZUMImage<ZUMLong> none, bare(ZUMRect(0, 0, 0, 0, 9, 0, 0, 0), 0, 1),
      aside(ZUMRect(0, 1, 0, 0, 9, 1, 0, 0), 1, 1);
  for (const auto select : {ZUMHistogramValleyMinSumThr, ZUMHistogramOtsu, ZUMHistogramValleyOtsu,
                            ZUMHistogramMinVarianceThr, ZUMHistogramValleyThr}) {
    for (const auto& empty : {none, bare, aside}) EXPECT_EQ(select(empty), 0);
    for (const int begin : {kMin, kMax - 9}) {
      const ZUMImage<ZUMLong> h(ZUMRect(begin, 0, 0, 0, begin + 9, 0, 0, 0), 1, counts);
      const int t = select(h);
      EXPECT_TRUE(begin <= t && t <= begin + 9);
      EXPECT_TRUE(select != ZUMHistogramValleyMinSumThr || t == begin + 4);
      EXPECT_EQ(ZUMHistogramLowGaussianThr(h).GetLength() + ZUMHistogramTrimodalOtsu(h).GetLength(),
                5u);
    }
  }
  for (const int x : {kMin, kMax - 3}) {
    const ZUMImage<ZUMLong> image(ZUMRect(x, x, x, x, x + 3, x + 3, x + 3, x + 3), 1, 7);
    EXPECT_EQ(ZUMThr(image, 7).Rect(), image.Rect());
    EXPECT_FALSE(ZUMDblThr(image, 8, 9)(x + 3, x + 3, x + 3, x + 3));
    EXPECT_EQ(ZUMPixelOtsu(image), 0);
    EXPECT_EQ(ZUMSigmoidX(x + 2.0, 0, 1, x, x + 3)(x + 2), 0.5);
    EXPECT_NE(MessageOf([&] { ZUMSigmoidX(0, 0, 1, 0, 1, x, kMax); }), "");
  }
  EXPECT_NE(MessageOf([&] { ZUMSigmoidX(0, 0, 1, kMin, kMax); }), "");
  EXPECT_EQ(ZUMThr(bare, 1).GetCSz(), 0);
  EXPECT_TRUE(ZUMDblThr(none, 1, 2).EmptyP());
  for (const auto& image : {none, bare}) {
    MessageOf([&] { EXPECT_EQ(ZUMOtsu(image, 4, 0, 9), 0); });
    MessageOf([&] { EXPECT_EQ(ZUMTrimodalOtsu(image, 4, 0, 9)[1], 0); });
  }
}

TEST(Thresholds, Messages) {
  const auto sigmoid = "ZUMSigmoidX: x0 greater than x1";
  EXPECT_EQ(MessageOf([] { ZUMSigmoidX(0, 0, 1, 3, 2); }), sigmoid);
  EXPECT_EQ(MessageOf([] { ZUMSigmoidX(0, 0, 1, 0, 1, 3, 2); }), sigmoid);
  EXPECT_EQ(MessageOf([] { ZUMPixelOtsu(ZUMImage<ZUMByte>(ZUMRect(), 2, 1)); }),
            "ZUMPixelOtsu does not allow multichannel images");
}

}  // namespace
