#include "zuml/geometry/gridmoves.h"

#include <gtest/gtest.h>

#include "tests/support/testimages.h"
#include "zuml/geometry/coordinates.h"

namespace {

using namespace zuml_test;

template <class P>
class GridMoves : public testing::Test {};
using Types = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal, ZUMComplex>;
TYPED_TEST_SUITE(GridMoves, Types);

// Each move against its rule on coordinates: where the result's pixel comes from, and the region.
TYPED_TEST(GridMoves, MovePixelsWithTheirRegion) {
  using P = TypeParam;
  using Image = ZUMImage<P>;
  Random random(1);
  for (int round = 0; round < 12; ++round) {
    for (const Layout layout : kLayouts) {
      const ZUMRect box = MakeRandomBox(random, 70, 40, 3, 2);
      const int csz = random.Int(1, 3);
      const Image image = MakeRandomImage<P>(random, box, csz, layout);
      const Image before = ZUMCopy(image);
      const ZUMRegionOfDefinition& rod = image.RoD();
      const auto expect = [&](const Image& result, const ZUMRoDRef& region, auto source) {
        EXPECT_TRUE(
            SameImage(result, MakeByPoint<P>(region, csz, [&](int x, int y, int z, int t, int c) {
                        const ZUMBasePoint<int> p = source(x, y, z, t);
                        return image(p, c);
                      })));
        EXPECT_NE(result.GetData(), image.GetData());
      };
      using Point = ZUMBasePoint<int>;
      expect(ZUMSymmetry(image), rod.Symmetry(),
             [](int x, int y, int z, int t) { return Point(-x, -y, -z, -t); });
      expect(ZUMSymmetryX(image), rod.SymmetryX(),
             [](int x, int y, int z, int t) { return Point(-x, y, z, t); });
      expect(ZUMSymmetryY(image), rod.SymmetryY(),
             [](int x, int y, int z, int t) { return Point(x, -y, z, t); });
      expect(ZUMSymmetryZ(image), rod.SymmetryZ(),
             [](int x, int y, int z, int t) { return Point(x, y, -z, t); });
      expect(ZUMSymmetryT(image), rod.SymmetryT(),
             [](int x, int y, int z, int t) { return Point(x, y, z, -t); });
      expect(ZUMRotateZ(image, 360), rod.RotateZ(0),
             [](int x, int y, int z, int t) { return Point(x, y, z, t); });
      expect(ZUMRotateZ(image, 450), rod.RotateZ(90),
             [](int x, int y, int z, int t) { return Point(y, -x, z, t); });
      expect(ZUMRotateZ(image, 180), rod.RotateZ(180),
             [](int x, int y, int z, int t) { return Point(-x, -y, z, t); });
      expect(ZUMRotateZ(image, -90), rod.RotateZ(270),
             [](int x, int y, int z, int t) { return Point(-y, x, z, t); });
      expect(ZUMTranspose(image),
             ZUMRoDRef(box.begin.y, box.begin.x, box.begin.z, box.begin.t, box.end.y, box.end.x,
                       box.end.z, box.end.t),
             [](int x, int y, int z, int t) { return Point(y, x, z, t); });
      EXPECT_TRUE(SameImage(image, before));
    }
  }
}

TYPED_TEST(GridMoves, FourQuarterTurnsAreNone) {
  Random random(2);
  const auto image =
      MakeRandomImage<TypeParam>(random, ZUMRect(2, -3, 0, 0, 36, 30, 0, 0), 2, Layout::kCut);
  const auto turned = ZUMRotateZ(ZUMRotateZ(ZUMRotateZ(ZUMRotateZ(image, 90), 90), 90), 90);
  EXPECT_TRUE(SameImage(turned, image));
}

TYPED_TEST(GridMoves, TranslationSharesPixels) {
  using P = TypeParam;
  Random random(3);
  for (const Layout layout : kLayouts) {
    const auto image = MakeRandomImage<P>(random, ZUMRect(0, 0, 0, 0, 9, 9, 1, 1), 2, layout);
    const ZUMImage<P> moved = ZUMTranslate(image, 3, -2, 1, 5);
    EXPECT_EQ(moved.GetData(), image.GetData());
    EXPECT_EQ(moved.Rect(), ZUMRect(3, -2, 1, 5, 12, 7, 2, 6));
    ForEachPoint(image, 2, [&](int x, int y, int z, int t, int c) {
      ASSERT_EQ(&moved(x + 3, y - 2, z + 1, t + 5, c), &image(x, y, z, t, c));
    });
    EXPECT_TRUE(SameImage(ZUMTranslate(moved, ZUMBasePoint<int>(-3, 2, -1, -5)), image));
  }
}

TEST(GridMoves, RefuseWhatTheyCannotDo) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, 0);
  for (const int angle : {45, -1, 91}) {
    EXPECT_EQ(MessageOf([&] { ZUMRotateZ(image, angle); }),
              "ZUMRoDRect::RotateZ only allows angles multiples of 90");
  }
  const ZUMImage<ZUMByte> none;
  EXPECT_EQ(ZUMRotateZ(none, 90).NPixels(), 0);
  EXPECT_EQ(ZUMTranspose(none).NPixels(), 0);
  EXPECT_EQ(ZUMSymmetry(none).NPixels(), 0);
}

TEST(Coordinates, AreThePixels) {
  const ZUMRoDRef rod(-2, 3, -1, 4, 5, 6, 1, 5);
  const ZUMImage<ZUMLong> all = ZUMCoorsImage(rod);
  EXPECT_TRUE(SameImage(all, MakeByPoint<ZUMLong>(rod, 4, [](int x, int y, int z, int t, int c) {
                          return c == 0 ? x : c == 1 ? y : c == 2 ? z : t;
                        })));
  EXPECT_TRUE(SameImage(ZUMXsImage(rod), all.Channel(0)));
  EXPECT_TRUE(SameImage(ZUMYsImage(rod), all.Channel(1)));
  EXPECT_TRUE(SameImage(ZUMZsImage(rod), all.Channel(2)));
  EXPECT_TRUE(SameImage(ZUMTsImage(rod), all.Channel(3)));
  EXPECT_EQ(ZUMCoorsImage(ZUMEmptyRoD).NPixels(), 0);
}

}  // namespace
