#include "zuml/algebra/histogram.h"

#include <cmath>

#include "tests/algebra/everylayout.h"

namespace {

using namespace zuml_test;

constexpr ZUMLong kLeast = std::numeric_limits<ZUMLong>::min();

ZUMRect MakeAxes(int csz, int begin, int end) {
  ZUMRect box;
  for (int k = 0; k < csz; ++k) box.begin.*kAxes[k] = begin, box.end.*kAxes[k] = end;
  return box;
}

// Adds value(x, y, z, t) to the cell of each tuple of bin(v), if it is on the axes; bins are
// doubles, so that none is taken for another.
template <class OutT, class P, class Bin, class Value>
ZUMImage<OutT> CountSlowly(const ZUMImage<P>& image, const ZUMRect& axes, Bin bin, Value value) {
  const ZUMImage<OutT> cells(axes, 1, OutT{});
  ForEachPoint(image, 1, [&](int x, int y, int z, int t, int) {
    ZUMBasePoint<int> at;
    for (int c = 0; c < image.GetCSz(); ++c) {
      const double v = bin(image(x, y, z, t, c));
      if (!(std::fabs(v) < 1e9)) return;
      at.*kAxes[c] = static_cast<int>(v);
    }
    if (cells.InP(at)) cells(at) = static_cast<OutT>(cells(at) + value(x, y, z, t));
  });
  return cells;
}

template <class P>
class Histogram : public testing::Test {};
TYPED_TEST_SUITE(Histogram, GreyTypes);

TYPED_TEST(Histogram, CountsTuplesOnTheAxes) {
  using P = TypeParam;
  const auto make = [](Random& random) {
    return random.Int(0, 9) == 0 ? random.Pixel<P>() : static_cast<P>(random.Int(-40, 64));
  };
  for (int csz : {1, 2, 3, 4}) {
    ForEachLayout<P>(csz, make, [&](const ZUMImage<P>& image, Random& random) {
      const int min = random.Int(0, 9), max = random.Int(10, 19);
      const int range = max - min + 1;
      for (const int levels : {0, 1, 5, 11, range}) {
        if (levels == 0 && !std::integral<P>) continue;
        const bool plain = std::integral<P> && (levels == 0 || levels == range);
        const double scale = plain ? 1 : (levels - 1.0) / (max - min);
        const double low = plain ? 0 : min;
        const auto expected = CountSlowly<ZUMLong>(
            image, levels == 0 ? MakeAxes(csz, min, max) : MakeAxes(csz, 0, levels - 1),
            [&](P v) { return std::trunc((static_cast<double>(v) - low) * scale); },
            [](auto...) { return 1; });
        EXPECT_TRUE(SameImage(ZUMHistogram(image, static_cast<unsigned>(levels),
                                           static_cast<P>(min), static_cast<P>(max)),
                              expected))
            << levels << " levels";
      }
    });
  }
}

TEST(HistogramRanges, OfBytes) {
  const auto image = MakeLine<ZUMByte>({0, 0, 10, 15, 20, 21, 255});
  const auto full = ZUMHistogram(image, 0, 0, 255);
  EXPECT_EQ(MakeAxes(1, 0, 255), full.Rect());
  EXPECT_EQ(2, full(0));
  EXPECT_TRUE(SameImage(full, ZUMHistogram(image, 0, 1, 0)));
  EXPECT_TRUE(SameImage(full, ZUMHistogram(image, 256, 200, 100)));
  // 10 lies less than one bin below the first, 21 less than one above the last.
  EXPECT_TRUE(SameImage(ZUMHistogram(image, 2, 12, 20), MakeLine<ZUMLong>({2, 2})));
  EXPECT_TRUE(SameImage(ZUMHistogram(image, 3, 10, 10), MakeLine<ZUMLong>({0, 0, 0})));
}

TEST(HistogramRanges, OfShortsAndRealsOffTheAxes) {
  const auto image = MakeLine<ZUMShort>({-32768, -1, 0, 5, 32767});
  const auto full = ZUMHistogram(image, 0, 1, 0);
  EXPECT_EQ(MakeAxes(1, -32768, 32767), full.Rect());
  EXPECT_EQ(2, full(-32768) + full(-1));
  // The axis begins at 0 where levels are given: negative values are not on it.
  const auto given = ZUMHistogram(image, 65536, -32768, 32767);
  EXPECT_TRUE(
      SameImage(given, ZUMHistogram(image.Cut(ZUMRect(2, 0, 0, 0, 4, 0, 0, 0)), 65536, 1, 0)));
  EXPECT_EQ(3, given(0) + given(5) + given(32767));
  const auto reals = MakeLine<double>(
      {-0.5, 0, 2.5, 4294967296.0, -4294967296.0, 1e300, kInfinity, -kInfinity, kNaN, 5, 5.4});
  EXPECT_TRUE(SameImage(ZUMHistogram(reals, 6, 0, 5), MakeLine<ZUMLong>({2, 0, 1, 0, 0, 2})));
}

template <class P>
class PixelValueCnt : public testing::Test {};
TYPED_TEST_SUITE(PixelValueCnt, DiscreteTypes);

TYPED_TEST(PixelValueCnt, CountsAndAddsPerTuple) {
  using P = TypeParam;
  const auto make = [](Random& random) {
    return static_cast<P>(random.Int(0, 29) - 9 * std::signed_integral<P>);
  };
  const auto value_of = [](P v) { return static_cast<double>(v); };
  for (int csz : {1, 2, 3}) {
    ForEachLayout<P>(csz, make, [&](const ZUMImage<P>& image, Random& random) {
      const auto values = MakeRandomImage<ZUMLong>(random, MakeRandomBox(random, 90, 9, 3, 2), csz,
                                                   DrawLayout(random));
      const ZUMImage<ZUMReal> reals = values;
      const auto find_axes = [&](const ZUMImage<P>& bins) {
        ZUMRect box = MakeAxes(csz, 1 << 30, -(1 << 30));
        ForEachPoint(bins, csz, [&](int x, int y, int z, int t, int c) {
          const int v = bins(x, y, z, t, c);
          box.begin.*kAxes[c] = std::min(box.begin.*kAxes[c], v);
          box.end.*kAxes[c] = std::max(box.end.*kAxes[c], v);
        });
        return box;
      };
      EXPECT_TRUE(SameImage(
          ZUMPixelValueCnt(image),
          CountSlowly<ZUMLong>(image, find_axes(image), value_of, [](auto...) { return 1; })));
      const auto shared = image.Cut(values);
      if (shared.EmptyP()) return;
      EXPECT_TRUE(SameImage(
          ZUMPixelValueCnt<ZUMLong>(image, values),
          CountSlowly<ZUMLong>(shared, find_axes(shared), value_of,
                               [&](auto... at) { return static_cast<unsigned>(values(at...)); })));
      EXPECT_TRUE(SameImage(ZUMPixelValueCnt<ZUMReal>(image, reals),
                            CountSlowly<ZUMReal>(shared, find_axes(shared), value_of,
                                                 [&](auto... at) { return reals(at...); })));
    });
  }
}

TEST(HistogramRanges, RefusedWhereTheyDoNotFit) {
  const ZUMRect box(0, 0, 0, 0, 1, 0, 0, 0);
  const ZUMImage<ZUMByte> four(box, 4, ZUMByte{0}), one = four.Channel(0);
  const ZUMImage<ZUMLong> longs(box, 5, 0), a_long = longs.Channel(0);
  const ZUMImage<ZUMReal> reals(box, 5, 0.0), real = reals.Channel(0);
  const std::string big = "ZUMHistogram: Histogram too big";
  const std::string many = "ZUMPixelValueCnt: number of channels not allowed";
  const std::pair<std::string, std::string> kMessages[] = {
      {"ZUMHistogram only allows images with 1,2,3, or 4 channels",
       MessageOf([&] { ZUMHistogram(longs, 0, 1, 0); })},
      {"ZUMHistogram only allows images with 1,2,3 or 4 channels",
       MessageOf([&] { ZUMHistogram(reals, 0, 1, 0); })},
      {"ZUMHistogram: Histogram with 0 level is not allowed",
       MessageOf([&] { ZUMHistogram(real, 0, 0, 1); })},
      {big, MessageOf([&] { ZUMHistogram(a_long, 0, 1, 0); })},
      {big, MessageOf([&] { ZUMHistogram(real, 9, 1, 0); })},
      {big, MessageOf([&] { ZUMHistogram(four, 0, 1, 0); })},
      {big, MessageOf([&] { ZUMHistogram(four, 65536, 0, 9); })},
      {big, MessageOf([&] { ZUMHistogram(one, 4294967295u, 0, 255); })},
      {big, MessageOf([&] { ZUMHistogram(a_long, 0, kLeast, -1 - kLeast); })},
      {many, MessageOf([&] { ZUMPixelValueCnt(four); })},
      {many, MessageOf([&] { ZUMPixelValueCnt<ZUMLong>(four, four); })},
      {"ZUMPixelValueCnt: Binds and value image don't have the same number of channels",
       MessageOf([&] { ZUMPixelValueCnt<ZUMLong>(four, one); })},
      {"ZUMMinMax:Valor indefinido por imagen vacia",
       MessageOf([&] { ZUMPixelValueCnt(ZUMImage<ZUMByte>()); })},
      {"ZUMPixelValueCnt: Histogram too big", MessageOf([&] {
         ZUMPixelValueCnt(MakeLine<ZUMLong>({kLeast, -1 - kLeast}));
       })}};
  for (const auto& [expected, message] : kMessages) EXPECT_EQ(expected, message);
}

}  // namespace
