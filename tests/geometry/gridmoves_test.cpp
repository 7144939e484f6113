#include "zuml/geometry/gridmoves.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <limits>
#include <vector>

#include "tests/support/everylayout.h"
#include "tests/support/testimages.h"
#include "zuml/core/detail/axes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/geometry/coordinates.h"

namespace {

using namespace zuml_test;

constexpr int kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();
using Point = ZUMBasePoint<long long>;

// A move, and where the pixel (x, y, z, t) of its result comes from: (xx x + xy y, yx x + yy y,
// zz z, tt t), which is also the way back.
template <class P>
struct Move {
  const char* name;
  ZUMImage<P> result;
  int xx, xy, yx, yy, zz, tt;

  Point GetSource(const Point& p) const {
    return {xx * p.x + xy * p.y, yx * p.x + yy * p.y, zz * p.z, tt * p.t};
  }
};

// All moves of an image but the translation; a new one joins by a line.
template <class P>
std::vector<Move<P>> MakeMoves(const ZUMImage<P>& image) {
  return {{"through the origin", ZUMSymmetry(image), -1, 0, 0, -1, -1, -1},
          {"X", ZUMSymmetryX(image), -1, 0, 0, 1, 1, 1},
          {"Y", ZUMSymmetryY(image), 1, 0, 0, -1, 1, 1},
          {"Z", ZUMSymmetryZ(image), 1, 0, 0, 1, -1, 1},
          {"T", ZUMSymmetryT(image), 1, 0, 0, 1, 1, -1},
          {"360", ZUMRotateZ(image, 360), 1, 0, 0, 1, 1, 1},
          {"450", ZUMRotateZ(image, 450), 0, 1, -1, 0, 1, 1},
          {"180", ZUMRotateZ(image, 180), -1, 0, 0, -1, 1, 1},
          {"-90", ZUMRotateZ(image, -90), 0, -1, 1, 0, 1, 1},
          {"transposed", ZUMTranspose(image), 0, 1, 1, 0, 1, 1}};
}

template <class P>
class GridMoves : public testing::Test {};
TYPED_TEST_SUITE(GridMoves, ValueTypes);

// At the ends of 32 bits, too, where the least coordinate has no mirror.
TYPED_TEST(GridMoves, MovePixelsWithTheirRegion) {
  using P = TypeParam;
  Random random(1);
  for (int round = 0; round < 40; ++round) {
    const ZUMRect box = MakeRandomBox(random, round < 28 ? 150 : 5, round < 28 ? 100 : 5, 2, 2);
    const int csz = 1 + round % 3;
    auto image = MakeRandomImage<P>(random, box, csz, kLayouts[round / 4 % 4]);
    long long lost = 0;
    if (round >= 28) {
      const auto axis = zuml_detail::kAxes[round % 4];
      const int low = round < 36 ? kLeast : kMost - (box.end.*axis - box.begin.*axis);
      ZUMRect far = box;
      far.begin.*axis = low;
      far.end.*axis = low + (box.end.*axis - box.begin.*axis);
      image = ZUMImage<P>(far, csz, static_cast<const P*>(ZUMCopy(image).GetData()));
      lost = low == kLeast ? image.NPixels() / (far.end.*axis - low + 1LL) : 0;
    }
    const auto before = ZUMCopy(image);
    for (const Move<P>& m : MakeMoves(image)) {
      SCOPED_TRACE(m.name);
      const auto at = [](long long a) { return static_cast<int>(a); };
      ASSERT_EQ(m.result.GetCSz(), csz);
      ASSERT_TRUE(m.result.NPixels() == image.NPixels() ||
                  m.result.NPixels() == image.NPixels() - lost);
      ASSERT_NE(m.result.GetSimpleRaster(), image.GetSimpleRaster());
      ZUMForEachPlacedRun(
          m.result,
          [&](const ZUMRunPlace& place, const P* r, std::ptrdiff_t n) {
            for (std::ptrdiff_t i = 0; i < n; ++i) {
              const Point s = m.GetSource({place.x + i, place.y, place.z, place.t});
              const ZUMBasePoint<int> p(at(s.x), at(s.y), at(s.z), at(s.t));
              ASSERT_EQ(Point(p.x, p.y, p.z, p.t), s);
              ASSERT_TRUE(image.InP(p));
              ASSERT_EQ(std::memcmp(r + i, &image(p, place.c), sizeof(P)), 0);
            }
          },
          m.result);
    }
    ASSERT_TRUE(round >= 28 || SameImage(image, before));
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
  // What leaves the 32 bits is gone, and the rest stays where it belongs.
  const ZUMImage<TypeParam> low(ZUMRoDRef(kLeast, 0, 0, 0, kLeast + 3, 0, 0, 0), 1, TypeParam());
  const auto left = ZUMTranslate(low, -3, 0, 0, 0);
  EXPECT_EQ(left.Rect(), ZUMRect(kLeast, 0, 0, 0, kLeast, 0, 0, 0));
  EXPECT_EQ(&left(kLeast), &low(kLeast + 3));
  EXPECT_TRUE(ZUMTranslate(low, -4, 0, 0, 0).EmptyP());
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
