#include "zuml/regions/labelling.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <utility>

#include "tests/regions/labelpictures.h"
#include "zuml/algebra/comparison.h"
#include "zuml/core/detail/axes.h"
#include "zuml/regions/areafilters.h"
#include "zuml/regions/filling.h"
#include "zuml/regions/singleregion.h"

namespace {

using namespace zuml_test;

// Flood by coordinates: regions of pixels that `joins` their first pixel, numbered in sweep order.
template <class In, class Joins>
ZUMImage<ZUMLong> FloodByPlace(const ZUMRoDRef& rod, int csz, const ZUMImage<ZUMBool>& con,
                               ZUMLong& next, In in, Joins joins) {
  constexpr ZUMLong kOpen = std::numeric_limits<ZUMLong>::min();
  const ZUMImage<ZUMLong> labels(rod, csz, 0);
  const std::deque<Place> open = PlacesOf(rod, csz, in);
  for (const Place& at : open) At(labels, at) = kOpen;
  for (const Place& start : open) {
    if (At(labels, start) != kOpen) continue;
    At(labels, start) = next;
    Walk(rod, con, {start}, [&](const Place&, const Place& to) {
      if (At(labels, to) != kOpen || !joins(start, to)) return false;
      At(labels, to) = next;
      return true;
    });
    ++next;
  }
  return labels;
}

ZUMImage<ZUMLong> LabelByPlace(const ZUMImage<ZUMBool>& image, const ZUMImage<ZUMBool>& con,
                               ZUMLong&& next = 1) {
  return FloodByPlace(
      image, image.GetCSz(), con, next, [&](const Place& at) { return At(image, at); },
      [](auto&&...) { return true; });
}

// Random pictures of every density, in every layout, with stacks and channels; by the runs and by
// the flood, against the walk by coordinates.
TEST(RegionLabel, EqualsTheFloodByCoordinates) {
  Random random(1);
  const std::vector<ZUMImage<ZUMBool>> connectivities = MakeConnectivities();
  for (int round = 0; round < 60; ++round) {
    const bool wide = round % 3 == 0;
    const ZUMRect box = wide ? MakeRandomBox(random, 300, 6) : MakeRandomBox(random, 20, 20, 3, 2);
    const ZUMImage<ZUMBool> image =
        MakeRandomImage<ZUMBool>(random, box, random.Int(1, 3), kLayouts[round % 4]);
    const int density = random.Int(0, 10);
    ForEachPoint(image, image.GetCSz(),
                 [&](auto... at) { image(at...) = random.Int(1, 10) <= density; });
    for (const ZUMImage<ZUMBool>& con : connectivities) {
      EXPECT_TRUE(SameImage(ZUMRegionLabel(image, con), LabelByPlace(image, con)));
      ZUMLong next = -3, expected_next = -3;  // the way up passes the marks of the flood
      const ZUMImage<ZUMLong> labels = ZUMRegionLabel(image, con, next);
      EXPECT_TRUE(SameImage(labels, LabelByPlace(image, con, std::move(expected_next))));
      EXPECT_EQ(next, expected_next);
    }
  }
}

// What random pictures seldom have: lines that end with a word of 64 pixels, trees that are joined
// late, and spirals.
TEST(RegionLabel, CopesWithShapesThatAreHardForRuns) {
  for (const int width : {1, 2, 62, 63, 64, 65, 128}) {
    const ZUMRoDRef rod(-1, -1, 0, 0, width - 2, 31, 0, 0);
    const std::function<bool(int, int)> shapes[] = {
        [](int x, int y) { return x % 2 == 0 || y == 31; },                      // a comb
        [](int x, int y) { return y % 2 == 0 || x == (y % 4 == 1 ? 30 : -1); },  // a snake
        [=](int x, int y) {
          return std::min({x, width - 3 - x, y, 30 - y}) % 2 == 0;
        },
        [=](int x, int) { return x == width - 2; }};
    for (const auto& shape : shapes) {
      const auto image =
          MakeByPoint<ZUMBool>(rod, 1, [&](int x, int y, int, int, int) { return shape(x, y); });
      for (const ZUMImage<ZUMBool>* con : {&ZUMCon4, &ZUMCon8}) {
        EXPECT_TRUE(SameImage(ZUMRegionLabel(image, *con), LabelByPlace(image, *con)));
      }
    }
  }
}

TEST(RegionLabel, ReadsAnyByteButZeroAsTrue) {
  unsigned char bytes[] = {2, 0, 255, 1, 0, 0, 0, 128, 0};
  const ZUMRoDRef rod(0, 0, 0, 0, 2, 2, 0, 0);
  const ZUMImage<ZUMBool> image(rod, ZUMRaster(rod.RoD(), 1, ZUMBoolPixel, bytes));
  const ZUMImage<ZUMBool> wide(ZUMRect(-2, 0, 0, 0, 2, 0, 0, 0), 1, true);
  for (const ZUMImage<ZUMBool>& con : {ZUMCon4, ZUMCon8, wide}) {
    EXPECT_TRUE(SameImage(ZUMRegionLabel(image, con),
                          LabelByPlace(ZUMImage<ZUMByte>(rod, 1, bytes) > 0, con)));
  }
}

// Steps that lead out of the image from everywhere change nothing and take no memory, nor do those
// of the connectivity: pages that nobody writes read as 0.
TEST(Connectivity, MayBeLargerThanTheImage) {
  constexpr int kMost = std::numeric_limits<int>::max();
  Random random(7);
  void* const memory = mmap(nullptr, kMost, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(memory, MAP_FAILED);
  const auto image = MakeRandomImage<ZUMBool>(random, {-2, 1, 0, 3, 5, 7, 3, 6}, 1, Layout::kCut);
  for (const auto axis : zuml_detail::kAxes) {
    for (const int reach : {2, 1000, 1000000, 1000000000, kMost - 1}) {
      ZUMRect box, near_box;
      box.begin.*axis = reach < kMost - 1 ? -reach : 0;
      near_box.begin.*axis = reach < kMost - 1 ? -2 : 0;
      box.end.*axis = reach;
      near_box.end.*axis = 2;
      const ZUMImage<ZUMBool> con(box, ZUMRaster(box, 1, ZUMBoolPixel, memory)),
          near = con.Cut(near_box);
      con(box.begin) = con(box.end) = true;
      if (reach == 1000) {
        EXPECT_EQ(ZUMRegionArea(ZUMBigRegion(image, con)), 1);
      }
      con(near_box.begin) = con(near_box.end) = true;
      EXPECT_TRUE(SameImage(ZUMRegionLabel(image, con), LabelByPlace(image, near)));
      EXPECT_TRUE(SameImage(ZUMFillRegion(image, con), ZUMFillRegion(image, near)));
      con(near_box.begin) = con(near_box.end) = con(box.begin) = con(box.end) = false;
    }
  }
  munmap(memory, kMost);
}

template <class P>
class RegionValueLabel : public testing::Test {};
using ValueTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal, ZUMComplex>;
TYPED_TEST_SUITE(RegionValueLabel, ValueTypes);

// Few values, among them the frame's, one that differs in one part only, both zeros and a NaN.
TYPED_TEST(RegionValueLabel, EqualsTheFloodByCoordinates) {
  using P = TypeParam;
  Random random(3);
  std::vector<P> values{P(0), P(1), P(0)};
  if constexpr (std::same_as<P, ZUMComplex>) values.push_back({1, 2});
  if constexpr (std::same_as<P, ZUMReal>) values = {0, 1, -0.0, NAN};
  for (int round = 0; round < 16; ++round) {
    const ZUMRect box = MakeRandomBox(random, 14, 14, 3, 2);
    const auto image = MakeRandomImage<P>(random, box, random.Int(1, 2), kLayouts[round % 4]);
    ForEachPoint(image, image.GetCSz(),
                 [&](auto... at) { image(at...) = values[random.Next() % values.size()]; });
    const auto all = [](const Place&) { return true; };
    const auto equal = [&](auto& p, auto& q) { return At(image, p) == At(image, q); };
    for (const ZUMImage<ZUMBool>& con : MakeConnectivities()) {
      ZUMLong next = 0;
      EXPECT_TRUE(SameImage(ZUMRegionValueLabel(image, con),
                            FloodByPlace(image, image.GetCSz(), con, next, all, equal)));
    }
  }
}

TEST(Relabel, MakesPositiveLabelsConsecutive) {
  const ZUMRoDRef rod(2, 0, 0, 0, 4, 0, 0, 0);
  const ZUMLong labels[] = {7, -3, 0, 1000, 7, 9}, numbers[] = {1, -3, 0, 3, 1, 2};
  EXPECT_TRUE(SameImage(ZUMRelabel({rod, 2, labels}), ZUMImage<ZUMLong>(rod, 2, numbers)));
}

TEST(AreaFilters, ChooseComponentsByArea) {
  Random random(5);
  for (int round = 0; round < 24; ++round) {
    const auto image =
        MakeRandomImage<ZUMBool>(random, MakeRandomBox(random, 12, 9, 2), 2, kLayouts[round % 4]);
    ForEachPoint(image, 2, [&](int x, int y, int z, int t, int c) {
      // Columns of equal areas, of which the first counts; then no pixel at all.
      image(x, y, z, t, c) = round < 2 ? round == 0 && x % 2 == 0 : random.Int(0, 2) == 0;
    });
    const ZUMImage<ZUMLong> labels = LabelByPlace(image, ZUMCon4);
    std::map<ZUMLong, int> areas{{0, 0}};  // the background has no pixels
    ForEachPoint(labels, 2, [&](auto... at) { areas[labels(at...)] += labels(at...) > 0; });
    ZUMLong biggest = 0;
    for (const auto& [label, area] : areas) biggest = area > areas[biggest] ? label : biggest;
    EXPECT_TRUE(SameImage(ZUMBigRegion(image, ZUMCon4), ZUMPointEqual(labels, biggest)));
    for (const int least : {0, 1, 3}) {
      const auto chosen = MakeByPoint<ZUMBool>(labels, 2, [&](auto... at) {
        return areas[labels(at...)] >= least && areas[labels(at...)] <= 4;
      });
      EXPECT_TRUE(SameImage(ZUMAreaFilter(image, least, 4, ZUMCon4), chosen));
    }
  }
}

// A hole is what cannot be left towards the outside of its own plane, or along Z and T too if the
// connectivity leads there.
TEST(FillRegion, EachPlaneHasItsOutside) {
  Random random(6);
  for (const Layout layout : kLayouts) {
    const auto image = MakeRandomImage<ZUMBool>(random, {-3, 2, 0, 0, 12, 14, 2, 1}, 2, layout);
    const ZUMRoDRef wide = DisplaceSides(image, -1, -1, 0, 0, 1, 1, 0, 0);
    const auto open = [&](const Place& at) { return !image.InP(at.p) || !At(image, at); };
    for (const ZUMImage<ZUMBool>& con : MakeSymmetricConnectivities()) {
      const ZUMImage<ZUMBool> filled(wide, 2, true);
      const auto corners = PlacesOf(wide, 2, [&](const Place& at) {
        return at.p.x == wide.BeginX() && at.p.y == wide.BeginY();
      });
      Walk(wide, con, corners, [&](const Place&, const Place& to) {
        return open(to) && std::exchange(At(filled, to), false);
      });
      EXPECT_TRUE(SameImage(ZUMFillRegion(image, con), ZUMCopy(filled.Cut(image.Rect()))));
    }
  }
}

}  // namespace
