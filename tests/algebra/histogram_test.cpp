#include "zuml/algebra/histogram.h"

#include "tests/support/everylayout.h"
#include "zuml/algebra/extrema.h"
#include "zuml/core/pixelarith.h"

namespace {

using namespace zuml_test;

ZUMRect MakeAxes(int csz, int begin, int end) {
  ZUMRect box;
  for (int k = 0; k < csz; ++k) box.begin.*kAxes[k] = begin, box.end.*kAxes[k] = end;
  return box;
}

// Compares with value(x, y, z, t) added to the cell of each tuple of bin(v), if it is on the axes;
// bins are doubles, so that none is taken for another.
template <class OutT, class P, class Bin, class Value>
void ExpectCells(const ZUMImage<OutT>& cells, const ZUMRect& axes, const ZUMImage<P>& image,
                 Bin bin, Value value) {
  const ZUMImage<OutT> expected(axes, 1, OutT{});
  ForEachPoint(image, 1, [&](int x, int y, int z, int t, int) {
    ZUMBasePoint<int> at;
    for (int c = 0; c < image.GetCSz(); ++c) {
      const double v = bin(image(x, y, z, t, c));
      if (!(std::fabs(v) < 1e9)) return;
      at.*kAxes[c] = static_cast<int>(v);
    }
    if (expected.InP(at)) expected(at) = ZUMWrapAdd<OutT>(expected(at), value(x, y, z, t));
  });
  EXPECT_TRUE(SameImage(cells, expected));
}

constexpr auto kOne = [](auto...) { return 1; };

TEST(Histogram, CountsTuplesOnTheAxes) {
  const auto make = []<class P>(Random& random) {
    return random.Int(0, 9) == 0 ? random.Pixel<P>() : static_cast<P>(random.Int(-40, 64));
  };
  const auto check = []<class P>(const ZUMImage<P>& image, Random& random) {
    const int min = random.Int(0, 9), max = random.Int(min, 19), csz = image.GetCSz();
    for (const unsigned levels : {0, 1, 5, 11, max - min + 1}) {
      if (levels == 0 && !std::integral<P>) continue;
      const int range = max - min + 1, last = static_cast<int>(levels) - 1;
      const bool plain = std::integral<P> && (last == -1 || last == range - 1);
      const double scale = plain ? 1 : 1.0 * last / (max - min), low = plain ? 0 : min;
      const auto bin = [&](P v) { return std::trunc((static_cast<double>(v) - low) * scale); };
      const auto axes = last == -1 ? MakeAxes(csz, min, max) : MakeAxes(csz, 0, last);
      const P from = static_cast<P>(min), to = static_cast<P>(max);
      ExpectCells(ZUMHistogram(image, levels, from, to), axes, image, bin, kOne);
    }
  };
  ForEachLayout(GreyTypes(), {1, 2, 3, 4}, make, check);
}

TEST(Histogram, FullRangesAndFarValues) {
  const auto bytes = MakeLine<ZUMByte>({0, 0, 10, 255});
  const auto shorts = MakeLine<ZUMShort>({-32768, -1, 0, 5, 32767});
  EXPECT_TRUE(SameImage(ZUMHistogram(bytes, 0, 1, 0), ZUMPixelValueCnt(bytes)));
  EXPECT_TRUE(SameImage(ZUMHistogram(bytes, 256, 200, 100), ZUMPixelValueCnt(bytes)));
  EXPECT_TRUE(SameImage(ZUMHistogram(shorts, 0, 1, 0), ZUMPixelValueCnt(shorts)));
  // An axis begins at 0 where levels are given: negative values are not on it.
  const auto on_axis = shorts.Cut(ZUMRect(2, 0, 0, 0, 4, 0, 0, 0));
  EXPECT_TRUE(SameImage(ZUMHistogram(shorts, 65536, 1, 0), ZUMHistogram(on_axis, 65536, 1, 0)));
  const auto reals = MakeLine<double>(
      {-0.5, 0, 2.5, 4294967296.0, -4294967296.0, 1e300, kInfinity, -kInfinity, kNaN, 5, 5.4});
  EXPECT_TRUE(SameImage(ZUMHistogram(reals, 6, 0, 5), MakeLine<ZUMLong>({2, 0, 1, 0, 0, 2})));
}

TEST(PixelValueCnt, CountsAndAddsPerTuple) {
  const auto expect = []<class P>(const auto& cells, const ZUMImage<P>& bins, auto value) {
    ZUMRect axes;
    for (int c = 0; c < bins.GetCSz(); ++c) {
      axes.begin.*kAxes[c] = ZUMMin(bins.Channel(c)), axes.end.*kAxes[c] = ZUMMax(bins.Channel(c));
    }
    const auto bin = [](P v) { return static_cast<double>(v); };
    ExpectCells(cells, axes, bins, bin, value);
  };
  const auto make = []<class P>(Random& random) {
    return static_cast<P>(random.Int(0, 29) - 9 * std::signed_integral<P>);
  };
  const auto check = [&]<class P>(const ZUMImage<P>& image, Random& random) {
    const ZUMRect box = MakeOverlappingBox(random, image.Rect());
    const auto values = MakeRandomImage<ZUMLong>(random, box, image.GetCSz(), DrawLayout(random));
    const auto shared = image.Cut(values);
    expect(ZUMPixelValueCnt(image), image, kOne);
    if (shared.EmptyP()) return;
    const ZUMImage<ZUMReal> reals = values;
    expect(ZUMPixelValueCnt<ZUMLong>(image, values), shared, values);
    expect(ZUMPixelValueCnt<ZUMReal>(image, reals), shared, reals);
  };
  ForEachLayout(DiscreteTypes(), {1, 2, 3}, make, check);
}

TEST(Histogram, RefusedWhereItDoesNotFit) {
  constexpr ZUMLong least = std::numeric_limits<ZUMLong>::min(), most = -1 - least;
  const ZUMImage<ZUMByte> four(ZUMRect(), 4, ZUMByte{0}), one = four.Channel(0);
  const ZUMImage<ZUMLong> longs(ZUMRect(), 5, 0), a_long = MakeLine<ZUMLong>({least, most});
  const ZUMImage<ZUMReal> reals(ZUMRect(), 5, 0.0), real = reals.Channel(0);
  const std::string only = " only allows images with 1,2,3", big = ": Histogram too big";
  const auto expect = [](const std::string& text, auto call) {
    EXPECT_EQ("ZUMHistogram" + text, MessageOf(call));
  };
  expect(only + ", or 4 channels", [&] { ZUMHistogram(longs, 0, 1, 0); });
  expect(only + " or 4 channels", [&] { ZUMHistogram(reals, 0, 1, 0); });
  expect(": Histogram with 0 level is not allowed", [&] { ZUMHistogram(real, 0, 0, 1); });
  expect(big, [&] { ZUMHistogram(a_long, 0, 1, 0); });
  expect(big, [&] { ZUMHistogram(real, 9, 1, 0); });
  expect(big, [&] { ZUMHistogram(four, 65536, 0, 9); });
  expect(big, [&] { ZUMHistogram(one, 4294967295u, 0, 255); });
  expect(big, [&] { ZUMHistogram(a_long, 0, least, most); });
  const std::string name = "ZUMPixelValueCnt: ", many = name + "number of channels not allowed";
  EXPECT_EQ(many, MessageOf([&] { ZUMPixelValueCnt(four); }));
  EXPECT_EQ(many, MessageOf([&] { ZUMPixelValueCnt<ZUMLong>(four, four); }));
  EXPECT_EQ(name + "Binds and value image don't have the same number of channels",
            MessageOf([&] { ZUMPixelValueCnt<ZUMLong>(four, one); }));
  EXPECT_EQ(name + "Histogram too big", MessageOf([&] { ZUMPixelValueCnt(a_long); }));
  // Without a channel there is nothing to count, and no value to begin an axis.
  const ZUMImage<ZUMByte> none(ZUMRect(), 0, nullptr);
  EXPECT_TRUE(SameImage(ZUMHistogram(none, 9, 0, 8), MakeLine<ZUMLong>({0})));
  const std::string empty = "ZUMMinMax:Valor indefinido por imagen vacia";
  EXPECT_EQ(empty, MessageOf([&] { ZUMPixelValueCnt(none); }));
  EXPECT_EQ(empty, MessageOf([&] { ZUMPixelValueCnt<ZUMLong>(none, none); }));
}

}  // namespace
