#include "zuml/algebra/lut.h"

#include "tests/algebra/everylayout.h"
#include "tests/support/oddregion.h"

namespace {

using namespace zuml_test;

template <class Q, class P>
void CheckLookups(int table_csz, int csz) {
  const int low = std::signed_integral<P> ? -4 : 0, high = std::same_as<P, bool> ? 1 : 6;
  ZUMRect box;
  for (int k = 0; k < csz; ++k) box.begin.*kAxes[k] = low, box.end.*kAxes[k] = high;
  // All indices lie inside the table, or most, or hardly one.
  for (int beyond : {0, 1, 100}) {
    const auto make = [&](Random& random) {
      return static_cast<P>(random.Int(low - beyond, high + beyond));
    };
    ForEachLayout<P>(csz, make, [&](const ZUMImage<P>& image, Random& random) {
      const auto table = MakeRandomImage<Q>(random, box, table_csz, DrawLayout(random));
      const Q missing = random.Pixel<Q>();
      const auto expected =
          MakeByPoint<Q>(image, table_csz, [&](int x, int y, int z, int t, int c) {
            int at[3] = {};
            for (int k = 0; k < csz; ++k) at[k] = image(x, y, z, t, k);
            return table.InP(at[0], at[1], at[2], 0) ? table(at[0], at[1], at[2], 0, c) : missing;
          });
      EXPECT_TRUE(SameImage(ZUMLut(image, table, missing), expected));
      EXPECT_TRUE(beyond != 0 || SameImage(ZUMUnsafeLut(image, table), expected));
    });
  }
}

template <class P>
class Lut : public testing::Test {};
TYPED_TEST_SUITE(Lut, DiscreteTypes);

TYPED_TEST(Lut, ReadsTheTableAtThePixels) {
  using P = TypeParam;
  CheckLookups<ZUMByte, P>(1, 1);
  CheckLookups<bool, P>(2, 1);
  CheckLookups<ZUMShort, P>(1, 2);
  CheckLookups<ZUMComplex, P>(3, 2);
  CheckLookups<ZUMReal, P>(1, 3);
  CheckLookups<ZUMLong, P>(2, 3);
}

TEST(LutTables, BeginAnywhereAndMayBeEmpty) {
  const auto table = MakeLine<ZUMReal>({1.5, 7, 2.5}, -1);
  constexpr ZUMLong least = std::numeric_limits<ZUMLong>::min();
  EXPECT_TRUE(SameImage(ZUMLut(MakeLine<ZUMLong>({least, -2, -1, 1, 2, -1 - least}), table, -1),
                        MakeLine<double>({-1, -1, 1.5, 2.5, -1, -1})));
  // A table that bytes do not reach.
  EXPECT_TRUE(SameImage(ZUMLut(MakeLine<ZUMByte>({0, 255}), MakeLine<ZUMByte>({1, 2}, 300), 9),
                        MakeLine<ZUMByte>({9, 9})));
  const ZUMImage<ZUMByte> source(ZUMRect(2, 3, 0, 0, 5, 4, 0, 0), 3, ZUMByte{1});
  for (int csz : {1, 2, 3}) {
    const ZUMImage<ZUMByte> image = source.Channels(0, csz - 1);
    EXPECT_TRUE(SameImage(ZUMLut(image, ZUMImage<ZUMShort>(), -3),
                          ZUMImage<ZUMShort>(image, csz, ZUMShort{-3})));
    EXPECT_TRUE(SameImage(ZUMLut(image, ZUMImage<ZUMLong>(ZUMEmptyRoD, 4, 0), 8),
                          ZUMImage<ZUMLong>(image, 4, 8)));
  }
}

TEST(LutTables, RefusedWhereTheyDoNotFit) {
  const ZUMRect box(0, 0, 0, 0, 9, 9, 9, 0);
  const ZUMImage<ZUMLong> odd(new OddRegion(box), ZUMRaster(box, 1, ZUMLongPixel));
  const auto table = [](const ZUMRect& b) { return ZUMImage<ZUMLong>(b, 1, 0); };
  const struct {
    int csz;
    ZUMImage<ZUMLong> table;
    const char* message;
  } kCases[] = {
      {1, table({0, 0, 0, 0, 9, 1, 0, 0}), "Only 1D lut is allowed with monochrome image"},
      {1, table({0, 1, 0, 0, 9, 1, 0, 0}), "Only 1D lut is allowed with monochrome image"},
      {2, table({0, 0, 0, 0, 9, 9, 1, 0}), "Only 2D lut is allowed with two channels image"},
      {3, table({0, 0, 0, -1, 9, 9, 9, 0}), "Only 3D lut is allowed with three channels image"},
      {4, table({0, 0, 0, 0, 9, 0, 0, 0}), "Number of channels of the imagen not allowed"},
      {4, ZUMImage<ZUMLong>(), "Number of channels of the imagen not allowed"},
      {4, odd, "Only LUTs with rectangular RoD are allowed"},
  };
  for (const auto& k : kCases) {
    const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 3, 0, 0, 0), k.csz, ZUMByte{0});
    EXPECT_EQ(std::string("ZUMLut: ") + k.message, MessageOf([&] { ZUMLut(image, k.table, 0); }));
    EXPECT_EQ(std::string("ZUMUnsafeLut: ") + k.message,
              MessageOf([&] { ZUMUnsafeLut(image, k.table); }));
  }
}

}  // namespace
