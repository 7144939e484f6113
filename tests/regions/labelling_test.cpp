#include "zuml/regions/labelling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <map>

#include "tests/regions/labelpictures.h"
#include "zuml/regions/areafilters.h"
#include "zuml/regions/filling.h"

namespace {

using namespace zuml_test;

const char* const kBadConnectivity =
    "RegionLabel: Dimensions of the connectivity image are not allowed";
const char* const kNoFrame =
    "ZUMRaster: It is not allowed create a framed raster with an empty RoD";

// Flood by coordinates: regions of pixels that `joins` their first pixel, numbered in sweep order.
template <class In, class Joins>
ZUMImage<ZUMLong> FloodByPoint(const ZUMRoDRef& rod, int csz, const ZUMImage<ZUMBool>& con,
                               ZUMLong next, ZUMLong elsewhere, In in, Joins joins) {
  constexpr ZUMLong kOpen = std::numeric_limits<ZUMLong>::min();
  const ZUMImage<ZUMLong> labels = MakeByPoint<ZUMLong>(
      rod, csz,
      [&](int x, int y, int z, int t, int c) { return in(x, y, z, t, c) ? kOpen : elsewhere; });
  ForEachPoint(rod, csz, [&](int x, int y, int z, int t, int c) {
    if (labels(x, y, z, t, c) != kOpen) return;
    std::vector<ZUMBasePoint<int>> waiting{{x, y, z, t}};
    labels(x, y, z, t, c) = next;
    while (!waiting.empty()) {
      const ZUMBasePoint<int> p = waiting.back();
      waiting.pop_back();
      for (const ZUMBasePoint<int>& d : StepsOf(con)) {
        const ZUMBasePoint<int> q(p.x + d.x, p.y + d.y, p.z + d.z, p.t + d.t);
        if (!rod.InP(q) || labels(q, c) != kOpen || !joins(ZUMBasePoint<int>(x, y, z, t), q, c)) {
          continue;
        }
        labels(q, c) = next;
        waiting.push_back(q);
      }
    }
    ++next;
  });
  return labels;
}

ZUMImage<ZUMLong> LabelByPoint(const ZUMImage<ZUMBool>& image, const ZUMImage<ZUMBool>& con,
                               ZUMLong next) {
  return FloodByPoint(
      image, image.GetCSz(), con, next, 0, [&](auto... at) { return image(at...); },
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
    const ZUMImage<ZUMBool> before = ZUMCopy(image);
    for (const ZUMImage<ZUMBool>& con : connectivities) {
      EXPECT_TRUE(SameImage(ZUMRegionLabel(image, con), LabelByPoint(image, con, 1)));
      ZUMLong next = -3;  // whose way up passes the marks of the flood
      const ZUMImage<ZUMLong> labels = ZUMRegionLabel(image, con, next);
      EXPECT_TRUE(SameImage(labels, LabelByPoint(image, con, -3)));
      ZUMLong greatest = -4;
      ForEachPoint(image, image.GetCSz(), [&](auto... at) {
        if (image(at...)) greatest = std::max(greatest, labels(at...));
      });
      EXPECT_EQ(next, greatest + 1);
    }
    EXPECT_TRUE(SameImage(image, before));
  }
}

// What random pictures seldom have: lines that end with a word of 64 pixels, trees that are joined
// late, and spirals.
TEST(RegionLabel, CopesWithShapesThatAreHardForRuns) {
  for (const int width : {1, 2, 62, 63, 64, 65, 127, 128, 129, 192}) {
    const ZUMRoDRef rod(-1, -1, 0, 0, width - 2, 31, 0, 0);
    const std::function<bool(int, int)> shapes[] = {
        [](int, int) { return true; },
        [](int x, int y) { return (x + y) % 2 == 0; },                           // a board
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
        EXPECT_TRUE(SameImage(ZUMRegionLabel(image, *con), LabelByPoint(image, *con, 1)));
      }
    }
  }
}

TEST(RegionLabel, ReadsWrappedBytesAndIgnoresTheCentre) {
  unsigned char bytes[] = {2, 0, 255, 1, 0, 0, 0, 128, 0};
  const ZUMRoDRef rod(0, 0, 0, 0, 2, 2, 0, 0);
  const ZUMImage<ZUMBool> image(rod, ZUMRaster(rod.RoD(), 1, ZUMBoolPixel, bytes));
  const ZUMLong eight[] = {1, 0, 2, 1, 0, 0, 0, 1, 0}, four[] = {1, 0, 2, 1, 0, 0, 0, 3, 0};
  EXPECT_TRUE(SameImage(ZUMRegionLabel(image, ZUMCon8), ZUMImage<ZUMLong>(rod, 1, eight)));
  EXPECT_TRUE(SameImage(ZUMRegionLabel(image, ZUMCon4), ZUMImage<ZUMLong>(rod, 1, four)));
  const ZUMImage<ZUMBool> with_centre = ZUMCopy(ZUMCon8),
                          wide(ZUMRect(-4, -4, 0, 0, 4, 4, 0, 0), 1, false);
  with_centre(0, 0) = true;
  for (const auto& [x, y] : {std::pair{0, -1}, {-1, 0}, {1, 0}, {0, 1}}) wide(x, y) = true;
  EXPECT_TRUE(SameImage(ZUMRegionLabel(image, with_centre), ZUMImage<ZUMLong>(rod, 1, eight)));
  EXPECT_TRUE(SameImage(ZUMRegionLabel(image, wide), ZUMImage<ZUMLong>(rod, 1, four)));
}

TEST(RegionLabel, RefusesConnectivitiesAndEmptyImages) {
  const ZUMImage<ZUMBool> image = ReadPicture("#.#");
  const ZUMImage<ZUMBool> empty, two_channels(ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0), 2, true),
      aside(ZUMRect(1, 1, 0, 0, 3, 3, 0, 0), 1, true),
      none(ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0), 1, false);
  for (const ZUMImage<ZUMBool>& con : {two_channels, aside, empty}) {
    EXPECT_EQ(MessageOf([&] { ZUMRegionLabel(image, con); }), kBadConnectivity);
    EXPECT_EQ(MessageOf([&] { ZUMRegionValueLabel(image, con); }), kBadConnectivity);
    EXPECT_EQ(MessageOf([&] { ZUMBigRegion(image, con); }), kBadConnectivity);
    EXPECT_EQ(MessageOf([&] { ZUMAreaFilter(image, 1, 2, con); }), kBadConnectivity);
    EXPECT_EQ(MessageOf([&] { ZUMFillRegion(image, con); }), kBadConnectivity);
  }
  EXPECT_EQ(MessageOf([&] { ZUMRegionLabel(image, none); }),
            "ZUMDisplacementArray::FromNonZeroPixels Un elemento estructurante ha de tener como "
            "mínimo un pixel");
  EXPECT_EQ(MessageOf([&] { ZUMRegionLabel(empty, ZUMCon8); }), kNoFrame);
  EXPECT_EQ(MessageOf([&] { ZUMRegionValueLabel(empty, ZUMCon8); }), kNoFrame);
  EXPECT_EQ(MessageOf([&] { ZUMFillRegion(empty, ZUMCon8); }),
            "ZUMAddFrame: It is not allowed add a frame to an empty image");
}

template <class P>
class RegionValueLabel : public testing::Test {};
using ValueTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal, ZUMComplex>;
TYPED_TEST_SUITE(RegionValueLabel, ValueTypes);

TYPED_TEST(RegionValueLabel, EqualsTheFloodByCoordinates) {
  using P = TypeParam;
  Random random(3);
  for (int round = 0; round < 16; ++round) {
    const ZUMRect box = MakeRandomBox(random, 14, 14, 3, 2);
    const auto image = MakeRandomImage<P>(random, box, random.Int(1, 2), kLayouts[round % 4]);
    // Three values, among them the frame's and two that differ in one part only.
    P values[] = {P(0), P(1), P(0)};
    if constexpr (std::same_as<P, ZUMComplex>) values[2] = {1, 2};
    ForEachPoint(image, image.GetCSz(),
                 [&](auto... at) { image(at...) = values[random.Int(0, 2)]; });
    for (const ZUMImage<ZUMBool>& con : MakeConnectivities()) {
      EXPECT_TRUE(SameImage(
          ZUMRegionValueLabel(image, con),
          FloodByPoint(
              image, image.GetCSz(), con, 0, 0, [](auto&&...) { return true; },
              [&](const auto& p, const auto& q, int c) { return image(p, c) == image(q, c); })));
    }
  }
}

TEST(RegionValueLabelOfReals, ANaNIsAZoneOfItsOwn) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double values[] = {nan, nan, 1, -0.0, 0.0};
  const ZUMRoDRef rod(0, 0, 0, 0, 4, 0, 0, 0);
  const ZUMLong zones[] = {0, 1, 2, 3, 3};
  EXPECT_TRUE(SameImage(ZUMRegionValueLabel(ZUMImage<ZUMReal>(rod, 1, values), ZUMCon8),
                        ZUMImage<ZUMLong>(rod, 1, zones)));
}

TEST(Relabel, MakesPositiveLabelsConsecutive) {
  Random random(4);
  for (int round = 0; round < 20; ++round) {
    const auto labels = MakeRandomLabels(random, kLayouts[round % 4], round % 5 == 0 ? 0 : 40);
    std::map<ZUMLong, ZUMLong> numbers;
    ForEachPoint(labels, labels.GetCSz(), [&](auto... at) {
      if (labels(at...) > 0) numbers[labels(at...)];
    });
    ZUMLong next = 0;
    for (auto& entry : numbers) entry.second = ++next;
    EXPECT_TRUE(SameImage(ZUMRelabel(labels),
                          MakeByPoint<ZUMLong>(labels, labels.GetCSz(), [&](auto... at) {
                            return labels(at...) > 0 ? numbers[labels(at...)] : labels(at...);
                          })));
  }
  EXPECT_EQ(MessageOf([] { ZUMRelabel(ZUMImage<ZUMLong>()); }),
            "ZUMMinMax:Valor indefinido por imagen vacia");
}

TEST(AreaFilters, ChooseComponentsByArea) {
  const ZUMImage<ZUMBool> image = ReadPicture(
      "##..#...\n"
      "..#.#.##\n"
      "....#.##\n");
  EXPECT_EQ(WritePicture(ZUMBigRegion(image, ZUMCon8)), "........\n......##\n......##\n");
  EXPECT_EQ(WritePicture(ZUMAreaFilter(image, 3, 3, ZUMCon8)), "##..#...\n..#.#...\n....#...\n");
  EXPECT_EQ(WritePicture(ZUMAreaFilter(image, 1, 2, ZUMCon4)), "##......\n..#.....\n........\n");
  EXPECT_EQ(WritePicture(ZUMAreaFilter(image, 5, 9, ZUMCon4)), "........\n........\n........\n");
  // The background has no pixels.
  EXPECT_EQ(WritePicture(ZUMAreaFilter(image, 0, 2, ZUMCon8)), "..##.###\n##.#.#..\n####.#..\n");
  // Of equal areas the first.
  EXPECT_EQ(WritePicture(ZUMBigRegion(ReadPicture("#.##.##"), ZUMCon4)), "..##...\n");
  for (const bool value : {false, true}) {
    const ZUMImage<ZUMBool> flat(ZUMRect(1, 1, 0, 0, 5, 4, 0, 0), 1, value);
    EXPECT_TRUE(SameImage(ZUMBigRegion(flat, ZUMCon4), ZUMImage<ZUMBool>(flat, 1, true)));
    EXPECT_TRUE(SameImage(ZUMAreaFilter(flat, 20, 20, ZUMCon4), ZUMImage<ZUMBool>(flat, 1, value)));
  }
}

// A hole is what cannot be left towards the outside of its own plane, or along Z and T too if the
// connectivity leads there.
TEST(FillRegion, EachPlaneHasItsOutside) {
  Random random(6);
  for (const Layout layout : kLayouts) {
    const ZUMRect box(-3, 2, 0, 0, 12, 14, 2, 1);
    const auto image = MakeRandomImage<ZUMBool>(random, box, 2, layout);
    for (const ZUMImage<ZUMBool>& con : MakeSymmetricConnectivities()) {
      const ZUMRoDRef wide = DisplaceSides(image, -1, -1, 0, 0, 1, 1, 0, 0);
      const auto open = MakeByPoint<ZUMBool>(wide, 2, [&](int x, int y, int z, int t, int c) {
        return !image.InP(x, y, z, t) || !image(x, y, z, t, c);
      });
      const ZUMImage<ZUMLong> labels = LabelByPoint(open, con, 1);
      EXPECT_TRUE(SameImage(ZUMFillRegion(image, con),
                            MakeByPoint<ZUMBool>(image, 2, [&](int x, int y, int z, int t, int c) {
                              bool outside = false;
                              for (int pt = 0; pt <= 1; ++pt)
                                for (int pz = 0; pz <= 2; ++pz)
                                  outside |= labels(x, y, z, t, c) ==
                                             labels(wide.BeginX(), wide.BeginY(), pz, pt, c);
                              return !outside;
                            })));
    }
  }
}

}  // namespace
