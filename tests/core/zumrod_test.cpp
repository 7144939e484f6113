#include "zuml/core/zumrod.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <vector>

#include "tests/support/otherregion.h"
#include "tests/support/pixelsuites.h"
#include "tests/support/testimages.h"
#include "zuml/core/zumrodrect.h"

namespace {

using zuml_test::MakeRandomBox;
using zuml_test::MessageOf;
using zuml_test::OtherRegion;
using zuml_test::Random;
using Region = ZUMRegionOfDefinition;
using Point = ZUMBasePoint<int>;

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();

TEST(ZUMRoDRect, StoresItsBoxAndMarksEmptyOnesInX) {
  const struct {
    ZUMRect given, stored;
    int pixels;
  } cases[] = {{{-2, 1, 3, 4, 0, 2, 3, 5}, {-2, 1, 3, 4, 0, 2, 3, 5}, 12},
               {{0, 0, 0, 0, 5, -1, 0, 0}, {0, 0, 0, 0, -1, -1, 0, 0}, 0},
               {{1, 2, 8, 4, 6, 8, 7, 9}, {0, 2, 8, 4, -1, 8, 7, 9}, 0},
               {{1, 2, 3, 8, 6, 8, 9, 7}, {0, 2, 3, 8, -1, 8, 9, 7}, 0},
               {{1, 0, 0, 0, kMax, 0, 0, 0}, {1, 0, 0, 0, kMax, 0, 0, 0}, kMax}};
  for (const auto& [given, stored, pixels] : cases) {
    const ZUMRoDRect rod(given);
    EXPECT_EQ(rod.Rect(), stored);
    EXPECT_EQ(rod.NPixels(), pixels);
    EXPECT_EQ(rod.EmptyP() != 0, pixels == 0);
    EXPECT_EQ(ZUMRoDRect(rod).Rect(), stored);
    EXPECT_EQ(ZUMRoDRef(given).RoD(), rod);
  }
  EXPECT_EQ(ZUMRoDRect().Rect(), ZUMRect(0, 0, 0, 0, -1, 0, 0, 0));
  EXPECT_EQ(ZUMEmptyRoD.Rect(), ZUMRect(0, 1, 1, 1, -1, 0, 0, 0));
  EXPECT_NE(ZUMRoDRect(), ZUMEmptyRoD.RoD()) << "both empty, with other values";
}

TEST(ZUMRoDRect, MovesAndMirrorsEveryPoint) {
  const auto quarter = [](const Point& p) { return Point(-p.y, p.x, p.z, p.t); };
  const auto half = [](const Point& p) { return Point(-p.x, -p.y, p.z, p.t); };
  const auto back = [](const Point& p) { return Point(p.y, -p.x, p.z, p.t); };
  const struct {
    std::function<Region*(const Region&)> derive;
    std::function<Point(const Point&)> move;
  } cases[] = {
      {[](auto& r) { return r.Translate(3, -4, 5, -6); },
       [](auto& p) { return Point(p.x + 3, p.y - 4, p.z + 5, p.t - 6); }},
      {&Region::Symmetry, [](auto& p) { return Point(-p.x, -p.y, -p.z, -p.t); }},
      {&Region::SymmetryX, [](auto& p) { return Point(-p.x, p.y, p.z, p.t); }},
      {&Region::SymmetryY, [](auto& p) { return Point(p.x, -p.y, p.z, p.t); }},
      {&Region::SymmetryZ, [](auto& p) { return Point(p.x, p.y, -p.z, p.t); }},
      {&Region::SymmetryT, [](auto& p) { return Point(p.x, p.y, p.z, -p.t); }},
      {[](auto& r) { return r.RotateZ(-720); }, [](auto& p) { return p; }},
      {[](auto& r) { return r.RotateZ(90); }, quarter},
      {[](auto& r) { return r.RotateZ(-180); }, half},
      {[](auto& r) { return r.RotateZ(630); }, back},
      {[](auto& r) { return r.RotateZ(-90); }, back},
  };
  Random random(2);
  for (const auto& test : cases) {
    const ZUMRoDRef rod = MakeRandomBox(random, 6, 5, 4, 3), moved = test.derive(rod.RoD());
    EXPECT_EQ(moved.NPixels(), rod.NPixels());
    zuml_test::ForEachPoint(rod, 1, [&](int x, int y, int z, int t, int) {
      EXPECT_TRUE(moved.InP(test.move(Point(x, y, z, t))));
    });
  }
}

TEST(ZUMRoDRect, DerivesFromEmptyBoxesToo) {
  const ZUMRoDRef box(1, 2, 3, 4, 5, 6, 7, 8), all(kMin, kMin, 0, 0, kMax, kMax, 0, 0);
  EXPECT_EQ(DisplaceSides(box, -1, 1, -2, 2, 3, -3, 4, -1).Rect(),
            ZUMRect(0, 3, 1, 6, 8, 3, 11, 7));
  EXPECT_EQ(DisplaceSides(box, 0, 3, 0, 0, 0, -2, 0, 0).Rect(), ZUMRect(0, 5, 3, 4, -1, 4, 7, 8));
  EXPECT_EQ(DisplaceSides(ZUMEmptyRoD, -1, -1, -1, -1, 1, 1, 1, 1).Rect(),
            ZUMRect(-1, 0, 0, 0, 0, 1, 1, 1))
      << "an empty box keeps its values, and widened far enough it has points again";
  EXPECT_EQ(Intersection({1, 0, 2, 0, 5, 2, 6, 0}, {2, 7, 4, 0, 9, 9, 9, 0}).Rect(),
            ZUMRect(0, 7, 4, 0, -1, 2, 6, 0));
  // Coordinates stop where 32 bits end.
  EXPECT_TRUE(DisplaceSides(box, kMax, 0, 0, 0, kMin, 0, 0, 0).EmptyP());
  EXPECT_EQ(ZUMRoDRef(all.RoD().Translate(1, -1, 0, 0)).Rect(),
            ZUMRect(kMin + 1, kMin, 0, 0, kMax, kMax - 1, 0, 0));
  EXPECT_EQ(ZUMRoDRef(all.RoD().Symmetry()).Rect(), ZUMRect(-kMax, -kMax, 0, 0, kMax, kMax, 0, 0));
  EXPECT_EQ(ZUMRoDRef(all.RoDPart(3, 4)).Rect(), ZUMRect(kMin, 1 << 30, 0, 0, kMax, kMax, 0, 0));
}

TEST(ZUMRoDRect, TellsWhatItCannotDo) {
  const ZUMRoDRect box(0, 0, 0, 0, 1, 1, 0, 0);
  const ZUMRoDRef other = new OtherRegion(box.Rect());
  EXPECT_EQ(MessageOf([&] { box.Intersection(other.RoD()); }),
            "ZUMRoDRect::Intersection no implementada para zuml_test::OtherRegion");
  EXPECT_EQ(MessageOf([&] { box.Union(box); }), "ZUMRoDRect::Union No implementada");
  EXPECT_EQ(MessageOf([&] { box.RotateX(0); }), "ZUMRoDRect::RotateX not implemented");
  EXPECT_EQ(MessageOf([&] { box.RotateY(0); }), "ZUMRoDRect::RotateY not implemented");
  EXPECT_EQ(MessageOf([&] { box.RotateT(0); }), "ZUMRoDRect::RotateT not implemented");
  for (const int angle : {45, -45, 359, 91}) {
    EXPECT_EQ(MessageOf([&] { box.RotateZ(angle); }),
              "ZUMRoDRect::RotateZ only allows angles multiples of 90");
  }
  EXPECT_FALSE(box == other.RoD()) << "same box, other class";
  EXPECT_TRUE(other.RoD() != box);
}

using Axis = int Point::*;

const struct {
  Region* (ZUMRoDRef::*part)(int, int) const;
  std::vector<Axis> axes;
} kPartKinds[] = {{&ZUMRoDRef::RoDPart, {&Point::y, &Point::z, &Point::t, &Point::x}},
                  {&ZUMRoDRef::RoDHorizontalPart, {&Point::y, &Point::z, &Point::t}},
                  {&ZUMRoDRef::RoDVerticalPart, {&Point::x, &Point::z, &Point::t}}};

TEST(ZUMRoDRect, PartsTileTheFirstAxisThatIsLongEnough) {
  Random random(3);
  for (int i = 0; i < 600; ++i) {
    const auto& kind = kPartKinds[i % 3];
    const int n = random.Int(1, 12);
    const ZUMRoDRef rod = MakeRandomBox(random, 20, 12, 12, 12);
    const ZUMRect box = rod.Rect();
    const auto axis = std::find_if(kind.axes.begin(), kind.axes.end(),
                                   [&](Axis a) { return box.end.*a - box.begin.*a + 1 >= n; });
    for (int k = 0; k < n; ++k) {
      ZUMRect expected = k == 0 ? box : ZUMRect(0, 0, 0, 0, -1, 0, 0, 0);
      if (axis != kind.axes.end()) {
        const int first = box.begin.**axis, size = box.end.**axis - first + 1;
        expected = box;
        expected.begin.** axis = first + size * k / n;
        expected.end.** axis = first + size * (k + 1) / n - 1;
      }
      EXPECT_EQ(ZUMRoDRef((rod.*kind.part)(k, n)).Rect(), expected);
    }
  }
  // An empty box is not cut, however long its other axes are; parts that do not exist are empty.
  const ZUMRoDRef empty(0, 0, 0, 0, -1, 99, 9, 9), box(0, 0, 0, 0, 9, 9, 9, 9);
  for (const auto& kind : kPartKinds) {
    EXPECT_EQ(ZUMRoDRef((empty.*kind.part)(0, 4)).Rect(), empty.Rect());
    EXPECT_EQ(ZUMRoDRef((empty.*kind.part)(3, 4)).Rect(), ZUMRoDRect().Rect());
    for (const auto& [i, n] : {std::pair{-1, 3}, {3, 3}, {0, 0}, {0, -1}}) {
      EXPECT_TRUE(ZUMRoDRef((box.*kind.part)(i, n)).EmptyP());
    }
  }
  // The products need more than 32 bits.
  EXPECT_EQ(ZUMRoDRef(ZUMRoDRef(-kMax, 0, 0, 0, kMax - 1, 0, 0, 0).RoDPart(31, 32)).Rect(),
            ZUMRect(kMax - (1 << 27), 0, 0, 0, kMax - 1, 0, 0, 0));
}

TEST(ZUMRoDRef, HoldsAndReleasesRegions) {
  const ZUMRect box(0, 0, 0, 0, 1, 1, 0, 0);
  ZUMRoDRef a = new OtherRegion(box), b = a, null;
  const ZUMRoDRef& same = b;
  b = same;
  b = &b.RoD();
  a = new OtherRegion(box);
  EXPECT_EQ(OtherRegion::alive, 2);
  a = b;
  EXPECT_EQ(OtherRegion::alive, 1);
  b = nullptr;
  a = null;
  EXPECT_EQ(OtherRegion::alive, 0);
}

template <class P>
class DrawOutFrame : public testing::Test {};
TYPED_TEST_SUITE(DrawOutFrame, zuml_test::AllTypes);

TYPED_TEST(DrawOutFrame, FillsTheMarginsAndNothingElse) {
  using P = TypeParam;
  Random random(4);
  const auto margin = [&random] { return random.Int(0, 3); };
  for (int i = 0; i < 24; ++i) {
    ZUMRect box = MakeRandomBox(random, 5, 4, 3, 2);
    if (i % 4 == 3) box.end.y -= i / 4;  // empty ones too
    const ZUMRoDRef inner = box;
    const ZUMRect f(margin(), margin(), margin(), margin(), margin(), margin(), margin(), margin());
    const ZUMRoDRef outer = DisplaceSides(inner, -f.begin.x, -f.begin.y, -f.begin.z, -f.begin.t,
                                          f.end.x, f.end.y, f.end.z, f.end.t);
    const ZUMRoDRef all = DisplaceSides(outer, -2, -1, -1, 0, 1, 2, 1, 1);
    const auto image =
        zuml_test::MakeRandomImage<P>(random, all.Rect(), 2, zuml_test::kLayouts[i % 4]);
    const ZUMImage<P> before = ZUMCopy(image);
    const P value = random.Pixel<P>();
    inner.RoD().DrawOutFrame(image, f, value);
    const auto expected = [&](int x, int y, int z, int t, int c) {
      const bool drawn = outer.InP(x, y, z, t) && !inner.InP(x, y, z, t);
      return drawn ? value : before(x, y, z, t, c);
    };
    EXPECT_TRUE(zuml_test::SameImage(image, zuml_test::MakeByPoint<P>(image, 2, expected)));
  }
  ZUMEmptyRoD.RoD().DrawOutFrame(ZUMImage<P>(), ZUMRect(), P());
}

}  // namespace
