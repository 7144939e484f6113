#include "zuml/core/zumrod.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "tests/support/otherregion.h"
#include "tests/support/testimages.h"
#include "zuml/core/detail/axes.h"

using namespace zuml_test;

namespace {

using Region = ZUMRegionOfDefinition;
using Point = ZUMBasePoint<int>;

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();

TEST(ZUMRoDRect, BoxesWorkedByHand) {
  const auto check = [](const ZUMRoDRef& rod, auto... rect) {
    EXPECT_EQ(rod.Rect(), ZUMRect(rect...));
    EXPECT_EQ(rod.EmptyP() != 0, rod.NPixels() == 0);
  };
  // What begins behind its end on any axis is empty, and marked so in X only.
  check(new ZUMRoDRect, 0, 0, 0, 0, -1, 0, 0, 0);
  check(ZUMEmptyRoD, 0, 1, 1, 1, -1, 0, 0, 0);
  check({0, 0, 0, 0, 5, -1, 0, 0}, 0, 0, 0, 0, -1, -1, 0, 0);
  check({1, 2, 8, 4, 6, 8, 7, 9}, 0, 2, 8, 4, -1, 8, 7, 9);
  check({1, 2, 3, 8, 6, 8, 9, 7}, 0, 2, 3, 8, -1, 8, 9, 7);
  EXPECT_NE(ZUMRoDRect(), ZUMEmptyRoD.RoD()) << "both empty, with other values";

  const ZUMRoDRef box(-3, 1, 2, -5, 2, 3, 3, -4);
  const Region& rod = box.RoD();
  EXPECT_EQ(rod.NPixels(), 6 * 3 * 2 * 2);
  check(rod.Translate(3, -4, 5, -6), 0, -3, 7, -11, 5, -1, 8, -10);
  check(rod.Symmetry(), -2, -3, -3, 4, 3, -1, -2, 5);
  check(rod.SymmetryX(), -2, 1, 2, -5, 3, 3, 3, -4);
  check(rod.SymmetryY(), -3, -3, 2, -5, 2, -1, 3, -4);
  check(rod.SymmetryZ(), -3, 1, -3, -5, 2, 3, -2, -4);
  check(rod.SymmetryT(), -3, 1, 2, 4, 2, 3, 3, 5);
  check(rod.RotateZ(-720), -3, 1, 2, -5, 2, 3, 3, -4);
  check(rod.RotateZ(90), -3, -3, 2, -5, -1, 2, 3, -4);
  check(rod.RotateZ(-180), -2, -3, 2, -5, 3, -1, 3, -4);
  check(rod.RotateZ(-90), 1, -2, 2, -5, 3, 3, 3, -4);
  check(DisplaceSides(box, -1, 1, -2, 2, 3, -1, 4, 9), -4, 2, 0, -3, 5, 2, 7, 5);
  check(DisplaceSides(box, 0, 2, 0, 0, 0, -2, 0, 0), 0, 3, 2, -5, -1, 1, 3, -4);
  check(Intersection({1, 0, 2, 0, 5, 2, 6, 0}, {2, 7, 4, 0, 9, 9, 9, 0}), 0, 7, 4, 0, -1, 2, 6, 0);
  // An empty box keeps its values, and widened far enough it has points again.
  check(DisplaceSides(ZUMEmptyRoD, -1, -1, -1, -1, 1, 1, 1, 1), -1, 0, 0, 0, 0, 1, 1, 1);
  // Coordinates stop where 32 bits end.
  const ZUMRoDRef all(kMin, kMin, 0, 0, kMax, kMax, 0, 0), line(1, 0, 0, 0, kMax, 0, 0, 0);
  EXPECT_EQ(line.NPixels(), kMax);
  check(DisplaceSides(line, kMax, 0, 0, 0, kMin, 0, 0, 0), 0, 0, 0, 0, -1, 0, 0, 0);
  check(line.RoD().Translate(-3, 1, 0, 0), -2, 1, 0, 0, kMax - 3, 1, 0, 0);
  check(ZUMRoDRef(all.RoDPart(3, 4)).RoD().Symmetry(), -kMax, -kMax, 0, 0, kMax, -(1 << 30), 0, 0);
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
  EXPECT_EQ(MessageOf([&] { box.RotateZ(-45); }),
            "ZUMRoDRect::RotateZ only allows angles multiples of 90");
  EXPECT_NE(box, other.RoD()) << "same box, other class";
}

TEST(ZUMRoDRect, PartsTileTheFirstAxisThatIsLongEnough) {
  using Axis = int Point::*;
  const struct {
    Region* (ZUMRoDRef::*part)(int, int) const;
    std::vector<Axis> axes;
  } kinds[] = {{&ZUMRoDRef::RoDPart, {&Point::y, &Point::z, &Point::t, &Point::x}},
               {&ZUMRoDRef::RoDHorizontalPart, {&Point::y, &Point::z, &Point::t}},
               {&ZUMRoDRef::RoDVerticalPart, {&Point::x, &Point::z, &Point::t}}};
  Random random(3);
  for (int i = 0; i < 600; ++i) {
    const auto& [part, axes] = kinds[i % 3];
    const int n = random.Int(1, 12);
    // An empty box is not cut, however long its other axes are.
    ZUMRoDRef rod(0, 0, 0, 0, -1, 99, 9, 9);
    if (i > 30) rod = MakeRandomBox(random, 20, 12, 12, 12);
    const ZUMRect box = rod.Rect();
    Axis cut = nullptr;
    for (const Axis axis : axes) {
      if (!cut && !rod.EmptyP() && box.end.*axis - box.begin.*axis + 1 >= n) cut = axis;
    }
    for (int k = -1; k <= n; ++k) {
      ZUMRect expected = k == 0 ? box : ZUMRoDRect().Rect();
      if (cut && k >= 0 && k < n) {
        const int first = box.begin.*cut, size = box.end.*cut - first + 1;
        expected = box;
        expected.begin.*cut = first + size * k / n;
        expected.end.*cut = first + size * (k + 1) / n - 1;
      }
      EXPECT_EQ(ZUMRoDRef((rod.*part)(k, n)).Rect(), expected);
    }
    EXPECT_TRUE(ZUMRoDRef((rod.*part)(0, -i)).EmptyP());
  }
}

TEST(ZUMRoDRef, HoldsAndReleasesRegions) {
  ZUMRoDRef a = new OtherRegion({}), b = a;
  a = &b.RoD();
  a = new OtherRegion({});
  EXPECT_EQ(OtherRegion::alive, 2);
  a = b;
  EXPECT_EQ(OtherRegion::alive, 1);
  a = b = nullptr;
  EXPECT_EQ(OtherRegion::alive, 0);
}

TEST(DrawOutFrame, FillsTheMarginsAndNothingElse) {
  Random random(4);
  for (int i = 0; i < 40; ++i) {
    ZUMRect box = MakeRandomBox(random, 5, 4, 3, 2);
    if (i % 4 == 3) box.end.y -= i / 4;  // empty ones too
    const ZUMRoDRef inner = box;
    const ZUMRoDRef outer = DisplaceSides(inner, -2, -i % 3, -1, -i % 2, i % 4, 3, i % 5, 1);
    const ZUMRoDRef all = DisplaceSides(outer, -2, -1, -1, 0, 1, 2, 1, 1);
    const auto image = MakeRandomImage<ZUMSReal>(random, all.Rect(), 2, kLayouts[i % 4]);
    const auto before = ZUMCopy(image);
    inner.RoD().DrawOutFrame(image, {2, i % 3, 1, i % 2, i % 4, 3, i % 5, 1}, 0.3f);
    const auto drawn = MakeByPoint<ZUMSReal>(all, 2, [&](int x, int y, int z, int t, int c) {
      return outer.InP(x, y, z, t) && !inner.InP(x, y, z, t) ? 0.3f : before(x, y, z, t, c);
    });
    EXPECT_TRUE(SameImage(image, drawn));
  }
}

// The frame of a region at an end of 32 bits lies beyond it, where coordinates wrap.
TEST(DrawOutFrame, WorksAtTheEndsOf32Bits) {
  constexpr int kMargin = 2, kSize = 3, kAll = kSize + 2 * kMargin;
  const ZUMRect wide(kMargin, kMargin, kMargin, kMargin, kMargin, kMargin, kMargin, kMargin);
  for (int i = 0; i < 4 * 2 * 3; ++i) {
    const auto axis = zuml_detail::kAxes[i % 4];
    ZUMRect box(0, 0, 0, 0, kSize - 1, kSize - 1, kSize - 1, kSize - 1);
    box.begin.*axis = i / 4 % 2 ? kMin : kMax - kSize + 1;
    box.end.*axis = i / 4 % 2 ? kMin + kSize - 1 : kMax;
    const ZUMRect frames[] = {{}, {1, 2, 0, 1, 2, 0, 1, 1}, wide};
    const ZUMRect frame = frames[i / 8];
    const ZUMRoDRef rod = box;
    const ZUMImage<ZUMByte> image(rod, wide, 1, nullptr);
    auto* const pixels = static_cast<ZUMByte*>(image.GetData());
    std::fill(pixels, pixels + image.GetRasterSz(), ZUMByte(0));
    rod.RoD().DrawOutFrame(image, frame, ZUMByte(7));
    ForEachPoint(ZUMRoDRef(0, 0, 0, 0, kAll - 1, kAll - 1, kAll - 1, kAll - 1), 1, [&](auto... at) {
      const int place[] = {at...};
      Point p;
      bool inner = true, outer = true;
      for (int k = 0; k < 4; ++k) {
        const auto a = zuml_detail::kAxes[k];
        const int from_begin = place[k] - kMargin;
        inner = inner && from_begin >= 0 && from_begin < kSize;
        outer = outer && from_begin >= -(frame.begin.*a) && from_begin < kSize + frame.end.*a;
        p.*a = static_cast<int>(std::int64_t{box.begin.*a} + from_begin);
      }
      ZUMByte* const pixel = static_cast<ZUMByte*>(image.PixelAddress(p, 0));
      ASSERT_EQ(pixel - pixels, ((place[3] * kAll + place[2]) * kAll + place[1]) * kAll + place[0]);
      ASSERT_EQ(image.AddressCoord(pixel), p);
      ASSERT_EQ(*pixel, outer && !inner ? 7 : 0);
    });
  }
}

}  // namespace
