#include "zuml/regions/zones.h"

#include <gtest/gtest.h>

#include "tests/regions/labelpictures.h"

namespace {

using namespace zuml_test;

template <class P>
class Zones : public testing::Test {};
using Types = testing::Types<ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(Zones, Types);

// NaNs are seeds, and no way; both zeros are none.
TYPED_TEST(Zones, OfInfluenceGrowInOrderOfArrival) {
  using P = TypeParam;
  Random random(1);
  for (int round = 0; round < 20; ++round) {
    const auto seeds = MakeRandomImage<P>(random, MakeRandomBox(random, 15, 12, 2, 2),
                                          random.Int(1, 2), kLayouts[round % 4]);
    ForEachPoint(seeds, seeds.GetCSz(), [&](auto... at) {
      const int kind = round == 0 ? 0 : random.Int(0, 14);
      seeds(at...) = static_cast<P>(kind == 1 ? random.Int(1, 100) : kind == 2 ? -0.0 : 0);
      if (std::same_as<P, ZUMReal> && kind == 3) seeds(at...) = static_cast<P>(NAN);
    });
    for (const ZUMImage<ZUMBool>& con : MakeConnectivities()) {
      // Every seed in the queue: those inside have nothing to give and change no order.
      const ZUMImage<P> zones = ZUMCopy(seeds);
      const auto queue =
          PlacesOf(seeds, seeds.GetCSz(), [&](const Place& at) { return At(seeds, at) != 0; });
      Walk(seeds, con, queue, [&](const Place& from, const Place& to) {
        if (At(zones, to) != 0) return false;
        At(zones, to) = At(zones, from);
        return true;
      });
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
      const auto grow = [&](auto passes) {
        const auto grown =
            MakeByPoint<ZUMBool>(rod, csz, [&](auto... at) { return region(at...); });
        const auto queue = PlacesOf(rod, csz, [&](const Place& at) { return At(region, at); });
        Walk(rod, con, queue, [&](const Place& from, const Place& to) {
          if (At(grown, to) || !passes(At(image, to), At(image, from))) return false;
          return At(grown, to) = true;
        });
        return grown;
      };
      EXPECT_TRUE(SameImage(ZUMExtendRegionToMax(region, image, con), grow(std::greater_equal())));
      EXPECT_TRUE(SameImage(ZUMExtendRegionToMin(region, image, con), grow(std::less_equal())));
    }
  }
}

}  // namespace
