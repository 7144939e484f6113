#include "zuml/regions/neighbours.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "tests/regions/labelpictures.h"
#include "zuml/regions/filling.h"
#include "zuml/regions/labelcolor.h"
#include "zuml/regions/labelling.h"
#include "zuml/regions/regionmoments.h"
#include "zuml/regions/zones.h"

namespace {

using namespace zuml_test;

TEST(Neighbours, EqualTheCountsOfPairs) {
  Random random(1);
  for (int round = 0; round < 16; ++round) {
    // With many labels some have more than 19 neighbours.
    const ZUMImage<ZUMLong> labels =
        MakeRandomLabels(random, kLayouts[round % 4], round % 4 == 3 ? 0 : random.Int(3, 90));
    const auto all = PlacesOf(labels, labels.GetCSz(), [](const Place&) { return true; });
    ZUMLong least = INT32_MAX, greatest = INT32_MIN, first = INT32_MAX;
    for (const Place& at : all) {
      if (round % 2 == 0 && random.Int(0, 3) == 0) At(labels, at) = random.Int(-1, 0);
      least = std::min(least, At(labels, at));
      greatest = std::max(greatest, At(labels, at));
      if (At(labels, at) > 0) first = std::min(first, At(labels, at));
    }
    for (const ZUMImage<ZUMBool>& con : MakeConnectivities()) {
      std::map<std::pair<ZUMLong, ZUMLong>, ZUMLong> pairs;
      std::map<ZUMLong, std::vector<ZUMLong>> listed;
      std::map<ZUMLong, std::set<const ZUMLong*>> touching;
      Walk(labels, con, all, [&](const Place& from, const Place& to) {
        const ZUMLong a = At(labels, from), b = At(labels, to);
        if (a == b) return false;
        touching[b].insert(&At(labels, from));
        if (b == -1) return false;
        ++pairs[{a, b}];
        std::vector<ZUMLong>& list = listed[a];
        const bool known = std::find(list.begin(), list.end(), b) != list.end();
        if (!known && list.size() < 19) list.push_back(b);
        return false;
      });
      const auto table = [](ZUMLong low, int y, ZUMLong high, int end_y, auto entry) {
        return MakeByPoint<ZUMLong>(ZUMRoDRef(low, y, 0, 0, high, end_y, 0, 0), 1,
                                    [&](int px, int py, auto...) { return entry(px, py); });
      };
      const auto in_row = [&](auto entry) {
        return table(least, 0, greatest, 20, [&](int x, int y) {
          const auto& list = listed[x];
          const auto n = static_cast<int>(list.size());
          return y <= n ? entry(x, n, y == 0 ? nullptr : &list[static_cast<std::size_t>(y - 1)])
                        : 0;
        });
      };
      EXPECT_TRUE(SameImage(ZUMRegionNeighbour(labels, con),
                            table(least, least, greatest, greatest, [&](int x, int y) {
                              return pairs[{y, x}];
                            })));
      EXPECT_TRUE(SameImage(ZUMRegionNeighbour2(labels, con),
                            in_row([](int, int n, const ZUMLong* b) { return b ? *b : n; })));
      EXPECT_TRUE(SameImage(ZUMRegionNeighbourFrontier2(labels, con),
                            in_row([&](int x, int, const ZUMLong* b) {
                              return b ? pairs[{x, *b}] : 0;
                            })));
      const ZUMImage<ZUMLong> frontier = ZUMRegionExtFrontierArea(labels, con);
      EXPECT_TRUE(greatest < 1 ? frontier.EmptyP() != 0
                               : SameImage(frontier, table(first, 0, greatest, 0, [&](int x, int) {
                                             return static_cast<ZUMLong>(touching[x].size());
                                           })));
    }
  }
}

// What all operations on regions refuse.
TEST(Regions, Messages) {
  const ZUMRect box(0, 0, 0, 0, 1, 0, 0, 0);
  const ZUMImage<ZUMBool> picture(box, 1, true), none,
      pairs(ZUMRect(-1, 0, 0, 0, 1, 0, 0, 0), 2, true),
      aside(ZUMRect(1, 0, 0, 0, 2, 0, 0, 0), 1, true);
  const ZUMImage<ZUMLong> labels(box, 1, 1), two(box, 2, 1), nothing;
  const std::string con = ": Dimensions of the connectivity image are not allowed";
  const std::string channels = ": Images with different number of channels are not allowed";
  const std::string frame = "ZUMRaster: It is not allowed create a framed raster with an empty RoD";
  const std::string range = "ZUMMinMax:Valor indefinido por imagen vacia";
  const auto refused = [](const std::string& text, auto f) { EXPECT_EQ(MessageOf(f), text); };
  for (const ZUMImage<ZUMBool>& bad : {pairs, aside, none}) {
    refused("RegionLabel" + con, [&] { ZUMRegionLabel(picture, bad); });
    refused("RegionsOfInfluence" + con, [&] { ZUMRegionsOfInfluence(labels, bad); });
    refused("ZUMRegionExtFrontierArea" + con, [&] { ZUMRegionExtFrontierArea(labels, bad); });
    refused("ZUMRegionNeighbour" + con, [&] { ZUMRegionNeighbour(labels, bad); });
    refused("ZUMRegionNeighbour2" + con, [&] { ZUMRegionNeighbour2(labels, bad); });
    refused("ZUMRegionNeighbourFrontier2" + con, [&] { ZUMRegionNeighbourFrontier2(labels, bad); });
    refused("ZUMExtendRegionToMax" + con, [&] { ZUMExtendRegionToMax(picture, labels, bad); });
    refused("ZUMExtendRegionToMin" + con, [&] { ZUMExtendRegionToMin(picture, labels, bad); });
    // The channels are the first error.
    refused("ZUMExtendRegionToMax" + channels, [&] { ZUMExtendRegionToMax(picture, two, bad); });
  }
  refused(frame, [&] { ZUMRegionLabel(none, ZUMCon8); });
  refused(frame, [&] { ZUMRegionsOfInfluence(nothing, ZUMCon8); });
  refused("ZUMAddFrame: It is not allowed add a frame to an empty image",
          [&] { ZUMFillRegion(none, ZUMCon8); });
  refused("", [&] { ZUMRegionExtFrontierArea(nothing, ZUMCon8); });
  refused(range, [&] { ZUMRegionNeighbour(nothing, ZUMCon8); });
  refused(range, [&] { ZUMRegionNeighbour2(nothing, ZUMCon8); });
  refused(range, [&] { ZUMRelabel(nothing); });
  refused("ZUMMin:Valor indefinido por imagen vacia", [&] { ZUMLabelColor(nothing); });
  const std::string order = ": it only calcules moments of order 0,1 and 2";
  for (const auto& [p, q] : {std::pair{3, 0}, {0, 3}, {-1, 0}, {0, -1}, {2, 2}}) {
    refused("ZUMRegionCenteredMoment" + order,
            [&, p = p, q = q] { ZUMRegionCenteredMoment(labels, p, q); });
    refused(p == q ? "" : "ZUMRegionMoment" + order,
            [&, p = p, q = q] { ZUMRegionMoment(labels, p, q); });
  }
}

}  // namespace
