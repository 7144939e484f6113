#include "zuml/algebra/lut.h"

#include "tests/support/everylayout.h"
#include "tests/support/otherregion.h"
#include "zuml/algebra/extrema.h"

namespace {

using namespace zuml_test;

// Tables of Q that hold the values of each channel, or miss the least or the greatest.
template <class Q>
void CheckLookups(int table_csz, int csz) {
  const auto make = []<class P>(Random& random) {
    return static_cast<P>(random.Int(0, 9) - 4 * std::signed_integral<P>);
  };
  const auto check = [=]<class P>(const ZUMImage<P>& image, Random& random) {
    ZUMRect box;
    bool all = true;
    for (int k = 0; k < csz; ++k) {
      const int low = ZUMMin(image.Channel(k)), high = ZUMMax(image.Channel(k));
      const int begin = low + random.Int(-1, 1), end = std::max(begin, high + random.Int(-1, 1));
      box.begin.*kAxes[k] = begin, box.end.*kAxes[k] = end;
      all &= begin <= low && high <= end;
    }
    const auto table = MakeRandomImage<Q>(random, box, table_csz, DrawLayout(random));
    const Q missing = random.Pixel<Q>();
    const auto rule = [&](int x, int y, int z, int t, int c) {
      ZUMBasePoint<int> at;
      for (int k = 0; k < csz; ++k) at.*kAxes[k] = image(x, y, z, t, k);
      return table.InP(at) ? table(at, c) : missing;
    };
    const auto expected = MakeByPoint<Q>(image, table_csz, rule);
    EXPECT_TRUE(SameImage(ZUMLut(image, table, missing), expected));
    EXPECT_TRUE(!all || SameImage(ZUMUnsafeLut(image, table), expected));
  };
  ForEachLayout(DiscreteTypes(), {csz}, make, check);
}

TEST(Lut, ReadsTheTableAtThePixels) {
  CheckLookups<ZUMByte>(1, 1);
  CheckLookups<bool>(2, 1);
  CheckLookups<ZUMComplex>(3, 2);
  CheckLookups<ZUMReal>(1, 3);
}

TEST(Lut, TablesFarAwayOrEmpty) {
  constexpr ZUMLong least = std::numeric_limits<ZUMLong>::min();
  EXPECT_TRUE(SameImage(ZUMLut(MakeLine<ZUMLong>({least, -2, -1, 1, 2, -1 - least}),
                               MakeLine<ZUMReal>({1.5, 7, 2.5}, -1), -1),
                        MakeLine<double>({-1, -1, 1.5, 2.5, -1, -1})));
  EXPECT_TRUE(SameImage(ZUMLut(MakeLine<ZUMByte>({0, 255}), MakeLine<ZUMByte>({1, 2}, 300), 9),
                        MakeLine<ZUMByte>({9, 9})));
  for (int csz : {1, 2, 3}) {
    const ZUMImage<ZUMByte> image(ZUMRect(2, 3, 0, 0, 5, 4, 0, 0), csz, ZUMByte{1});
    EXPECT_TRUE(SameImage(ZUMLut(image, ZUMImage<ZUMReal>(), -3), {image, csz, -3.0}));
    EXPECT_TRUE(SameImage(ZUMLut(image, ZUMImage<ZUMLong>(ZUMEmptyRoD, 4, 0), 8), {image, 4, 8}));
  }
}

TEST(Lut, TablesThatDoNotFitAreRefused) {
  const auto expect = [](int csz, const ZUMImage<ZUMLong>& table, const std::string& text) {
    const ZUMImage<ZUMByte> image(ZUMRect(), csz, ZUMByte{0});
    EXPECT_EQ("ZUMLut: " + text, MessageOf([&] { ZUMLut(image, table, 0); }));
    EXPECT_EQ("ZUMUnsafeLut: " + text, MessageOf([&] { ZUMUnsafeLut(image, table); }));
  };
  const auto table = [](const ZUMRect& box) { return ZUMImage<ZUMLong>(box, 1, 0); };
  expect(1, table({0, 0, 0, 0, 9, 1, 0, 0}), "Only 1D lut is allowed with monochrome image");
  expect(1, table({0, 1, 0, 0, 9, 1, 0, 0}), "Only 1D lut is allowed with monochrome image");
  expect(2, table({0, 0, 0, 0, 9, 9, 1, 0}), "Only 2D lut is allowed with two channels image");
  expect(3, table({0, 0, 0, -1, 9, 9, 9, 0}), "Only 3D lut is allowed with three channels image");
  expect(4, table(ZUMRect()), "Number of channels of the imagen not allowed");
  expect(4, ZUMImage<ZUMLong>(), "Number of channels of the imagen not allowed");
  const ZUMRoDRef odd(new OddRegion(ZUMRect()));
  expect(4, ZUMImage<ZUMLong>(odd, 1, 0), "Only LUTs with rectangular RoD are allowed");
}

}  // namespace
