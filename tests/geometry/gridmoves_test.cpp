#include "zuml/geometry/gridmoves.h"

#include <gtest/gtest.h>

#include "tests/support/everylayout.h"
#include "tests/support/testimages.h"
#include "zuml/geometry/coordinates.h"

namespace {

using namespace zuml_test;

// What a move does: the region of its result, and where the pixel (x, y, z, t) of the result comes
// from: (xx x + xy y, yx x + yy y, zz z, tt t).
template <class P>
struct Move {
  const char* name;
  ZUMImage<P> result;
  ZUMRoDRef region;
  int xx, xy, yx, yy, zz, tt;
};

template <class P>
class GridMoves : public testing::Test {};
TYPED_TEST_SUITE(GridMoves, ValueTypes);

TYPED_TEST(GridMoves, MovePixelsWithTheirRegion) {
  using P = TypeParam;
  Random random(1);
  for (int round = 0; round < 32; ++round) {
    const ZUMRect box = MakeRandomBox(random, 150, 100, 2, 2);
    const int csz = random.Int(1, 3);
    const auto image = MakeRandomImage<P>(random, box, csz, kLayouts[round % 4]);
    const auto before = ZUMCopy(image);
    const ZUMRegionOfDefinition& rod = image.RoD();
    const ZUMRoDRef transposed(box.begin.y, box.begin.x, box.begin.z, box.begin.t, box.end.y,
                               box.end.x, box.end.z, box.end.t);
    const Move<P> moves[] = {
        {"through the origin", ZUMSymmetry(image), rod.Symmetry(), -1, 0, 0, -1, -1, -1},
        {"X", ZUMSymmetryX(image), rod.SymmetryX(), -1, 0, 0, 1, 1, 1},
        {"Y", ZUMSymmetryY(image), rod.SymmetryY(), 1, 0, 0, -1, 1, 1},
        {"Z", ZUMSymmetryZ(image), rod.SymmetryZ(), 1, 0, 0, 1, -1, 1},
        {"T", ZUMSymmetryT(image), rod.SymmetryT(), 1, 0, 0, 1, 1, -1},
        {"360", ZUMRotateZ(image, 360), rod.RotateZ(0), 1, 0, 0, 1, 1, 1},
        {"450", ZUMRotateZ(image, 450), rod.RotateZ(90), 0, 1, -1, 0, 1, 1},
        {"180", ZUMRotateZ(image, 180), rod.RotateZ(180), -1, 0, 0, -1, 1, 1},
        {"-90", ZUMRotateZ(image, -90), rod.RotateZ(270), 0, -1, 1, 0, 1, 1},
        {"transposed", ZUMTranspose(image), transposed, 0, 1, 1, 0, 1, 1},
    };
    for (const Move<P>& m : moves) {
      const auto source = [&](int x, int y, int z, int t, int c) {
        return image(m.xx * x + m.xy * y, m.yx * x + m.yy * y, m.zz * z, m.tt * t, c);
      };
      ASSERT_TRUE(SameImage(m.result, MakeByPoint<P>(m.region, csz, source))) << m.name;
      ASSERT_NE(m.result.GetData(), image.GetData()) << m.name;
    }
    EXPECT_TRUE(SameImage(image, before));
  }
}

TYPED_TEST(GridMoves, TranslationSharesPixels) {
  Random random(3);
  for (const Layout layout : kLayouts) {
    const auto image =
        MakeRandomImage<TypeParam>(random, ZUMRect(0, 0, 0, 0, 9, 9, 1, 1), 2, layout);
    const auto moved = ZUMTranslate(image, 3, -2, 1, 5);
    EXPECT_EQ(moved.Rect(), ZUMRect(3, -2, 1, 5, 12, 7, 2, 6));
    ForEachPoint(image, 2, [&](int x, int y, int z, int t, int c) {
      ASSERT_EQ(&moved(x + 3, y - 2, z + 1, t + 5, c), &image(x, y, z, t, c));
    });
    EXPECT_TRUE(SameImage(ZUMTranslate(moved, ZUMBasePoint<int>(-3, 2, -1, -5)), image));
  }
}

TEST(GridMoves, OddAnglesAndEmptyImages) {
  const ZUMImage<ZUMByte> none, image(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, 0);
  for (const int angle : {45, -1, 91}) {
    EXPECT_EQ(MessageOf([&] { ZUMRotateZ(image, angle); }),
              "ZUMRoDRect::RotateZ only allows angles multiples of 90");
  }
  for (const auto& moved : {ZUMRotateZ(none, 90), ZUMTranspose(none), ZUMSymmetry(none)}) {
    EXPECT_TRUE(moved.EmptyP());
  }
}

TEST(Coordinates, AreThePixels) {
  const ZUMRoDRef rod(-2, 3, -1, 4, 5, 6, 1, 5);
  const ZUMImage<ZUMLong> all = ZUMCoorsImage(rod);
  EXPECT_TRUE(SameImage(all, MakeByPoint<ZUMLong>(rod, 4, [](int x, int y, int z, int t, int c) {
                          return c == 0 ? x : c == 1 ? y : c == 2 ? z : t;
                        })));
  int c = 0;
  for (const auto& one : {ZUMXsImage(rod), ZUMYsImage(rod), ZUMZsImage(rod), ZUMTsImage(rod)}) {
    EXPECT_TRUE(SameImage(one, all.Channel(c++)));
  }
  EXPECT_TRUE(ZUMCoorsImage(ZUMEmptyRoD).EmptyP());
}

}  // namespace
