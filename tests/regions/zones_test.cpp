#include "zuml/regions/zones.h"

#include <gtest/gtest.h>

#include <deque>
#include <limits>

#include "tests/regions/labelpictures.h"

namespace {

using namespace zuml_test;

template <class P>
class Zones : public testing::Test {};
using Types = testing::Types<ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(Zones, Types);

struct Place {
  ZUMBasePoint<int> p;
  int c;
};

ZUMBasePoint<int> Move(const ZUMBasePoint<int>& p, const ZUMBasePoint<int>& d) {
  return {p.x + d.x, p.y + d.y, p.z + d.z, p.t + d.t};
}

TYPED_TEST(Zones, OfInfluenceGrowInOrderOfArrival) {
  using P = TypeParam;
  Random random(1);
  for (int round = 0; round < 20; ++round) {
    const auto seeds = MakeRandomImage<P>(random, MakeRandomBox(random, 15, 12, 2, 2),
                                          random.Int(1, 2), kLayouts[round % 4]);
    ForEachPoint(seeds, seeds.GetCSz(), [&](auto... at) {
      seeds(at...) = random.Int(0, 14) == 0 ? static_cast<P>(random.Int(1, 100)) : P(0);
    });
    for (const ZUMImage<ZUMBool>& con : MakeConnectivities()) {
      // Every seed in the queue: those inside have nothing to give and change no order.
      const ZUMImage<P> zones = ZUMCopy(seeds);
      std::deque<Place> queue;
      ForEachPoint(seeds, seeds.GetCSz(), [&](int x, int y, int z, int t, int c) {
        if (seeds(x, y, z, t, c) != 0) queue.push_back({{x, y, z, t}, c});
      });
      for (; !queue.empty(); queue.pop_front()) {
        const Place from = queue.front();
        for (const auto& d : StepsOf(con)) {
          const ZUMBasePoint<int> q = Move(from.p, d);
          if (!zones.InP(q) || zones(q, from.c) != 0) continue;
          zones(q, from.c) = zones(from.p, from.c);
          queue.push_back({q, from.c});
        }
      }
      EXPECT_TRUE(SameImage(ZUMRegionsOfInfluence(seeds, con), zones));
    }
  }
}

TYPED_TEST(Zones, ClimbAndDescend) {
  using P = TypeParam;
  Random random(2);
  for (int round = 0; round < 20; ++round) {
    const int csz = random.Int(1, 2);
    const ZUMRect box = MakeRandomBox(random, 15, 12, 2, 2);
    const auto region = MakeRandomImage<ZUMBool>(random, box, csz, kLayouts[round % 4]);
    const ZUMRect shifted(box.begin.x - 1, box.begin.y - 2, box.begin.z, box.begin.t,
                          box.end.x + round % 2, box.end.y, box.end.z + 1, box.end.t);
    const auto image = MakeRandomImage<P>(random, shifted, csz, kLayouts[(round + 1) % 4]);
    ForEachPoint(region, csz, [&](auto... at) { region(at...) = random.Int(0, 9) == 0; });
    ForEachPoint(image, csz, [&](auto... at) { image(at...) = static_cast<P>(random.Int(0, 5)); });
    const ZUMRoDRef rod = Intersection(region, image);
    for (const ZUMImage<ZUMBool>& con : MakeConnectivities()) {
      // Whole sweeps until nothing changes.
      const auto grow = [&](auto passes) {
        const auto grown =
            MakeByPoint<ZUMBool>(rod, csz, [&](auto... at) { return region(at...); });
        for (bool changed = true; changed;) {
          changed = false;
          ForEachPoint(rod, csz, [&](int x, int y, int z, int t, int c) {
            if (!grown(x, y, z, t, c)) return;
            for (const auto& d : StepsOf(con)) {
              const ZUMBasePoint<int> q = Move({x, y, z, t}, d);
              if (!rod.InP(q) || grown(q, c)) continue;
              if (passes(image(q, c), image(x, y, z, t, c))) changed = grown(q, c) = true;
            }
          });
        }
        return grown;
      };
      EXPECT_TRUE(SameImage(ZUMExtendRegionToMax(region, image, con),
                            grow([](P next, P here) { return next >= here; })));
      EXPECT_TRUE(SameImage(ZUMExtendRegionToMin(region, image, con),
                            grow([](P next, P here) { return next <= here; })));
    }
  }
}

TYPED_TEST(Zones, Messages) {
  using P = TypeParam;
  const ZUMRect box(0, 0, 0, 0, 3, 3, 0, 0);
  const ZUMImage<P> image(box, 1, P(0)), two_channels(box, 2, P(0)), nothing;
  const ZUMImage<ZUMBool> region(box, 1, true), aside(ZUMRect(1, 0, 0, 0, 2, 0, 0, 0), 1, true);
  const std::string bad = ": Dimensions of the connectivity image are not allowed";
  const std::string channels = ": Images with different number of channels are not allowed";
  const std::string no_frame =
      "ZUMRaster: It is not allowed create a framed raster with an empty RoD";
  EXPECT_EQ(MessageOf([&] { ZUMRegionsOfInfluence(image, aside); }), "RegionsOfInfluence" + bad);
  EXPECT_EQ(MessageOf([&] { ZUMRegionsOfInfluence(nothing, ZUMCon8); }), no_frame);
  EXPECT_EQ(MessageOf([&] { ZUMExtendRegionToMax(region, image, aside); }),
            "ZUMExtendRegionToMax" + bad);
  EXPECT_EQ(MessageOf([&] { ZUMExtendRegionToMin(region, image, aside); }),
            "ZUMExtendRegionToMin" + bad);
  // The channels are the first error.
  EXPECT_EQ(MessageOf([&] { ZUMExtendRegionToMax(region, two_channels, aside); }),
            "ZUMExtendRegionToMax" + channels);
  EXPECT_EQ(MessageOf([&] { ZUMExtendRegionToMin(region, two_channels, ZUMCon4); }),
            "ZUMExtendRegionToMin" + channels);
  EXPECT_EQ(MessageOf([&] { ZUMExtendRegionToMax(region, nothing, ZUMCon4); }), no_frame);
  // Nothing to grow from.
  EXPECT_TRUE(SameImage(ZUMRegionsOfInfluence(image, ZUMCon8), image));
}

TEST(ZonesOfReals, ANaNIsASeedAndNoWay) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const ZUMRoDRef rod(0, 0, 0, 0, 4, 0, 0, 0);
  const double row[] = {0, -0.0, 3, nan, 0};
  const double grown[] = {3, 3, 3, nan, nan};
  EXPECT_TRUE(SameImage(ZUMRegionsOfInfluence(ZUMImage<ZUMReal>(rod, 1, row), ZUMCon4),
                        ZUMImage<ZUMReal>(rod, 1, grown)));
  const ZUMImage<ZUMBool> region(rod, 1, false);
  region(2) = true;
  EXPECT_EQ(WritePicture(ZUMExtendRegionToMin(region, ZUMImage<ZUMReal>(rod, 1, row), ZUMCon4)),
            "###..\n");
}

}  // namespace
