#include "zuml/regions/neighbours.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <utility>

#include "tests/regions/labelpictures.h"

namespace {

using namespace zuml_test;

// Calls f(a, b, p, c) for each pixel and neighbour in the image, in sweep order.
template <class F>
void ForEachPair(const ZUMImage<ZUMLong>& labels, const ZUMImage<ZUMBool>& con, F f) {
  ForEachPoint(labels, labels.GetCSz(), [&](int x, int y, int z, int t, int c) {
    for (const ZUMBasePoint<int>& d : StepsOf(con)) {
      const ZUMBasePoint<int> q(x + d.x, y + d.y, z + d.z, t + d.t);
      if (labels.InP(q)) {
        f(labels(x, y, z, t, c), labels(q, c), std::array<int, 5>{x, y, z, t, c});
      }
    }
  });
}

TEST(Neighbours, EqualTheCountsOfPairs) {
  Random random(1);
  for (int round = 0; round < 16; ++round) {
    // With many labels some have more than 19 neighbours.
    const ZUMImage<ZUMLong> labels =
        MakeRandomLabels(random, kLayouts[round % 4], round % 4 == 3 ? 0 : random.Int(3, 90));
    if (round % 2 == 0) {
      ForEachPoint(labels, labels.GetCSz(), [&](auto... at) {
        if (random.Int(0, 3) == 0) labels(at...) = random.Int(-1, 0);
      });
    }
    ZUMLong least = INT32_MAX, greatest = INT32_MIN, first = INT32_MAX;
    ForEachPoint(labels, labels.GetCSz(), [&](auto... at) {
      least = std::min(least, labels(at...));
      greatest = std::max(greatest, labels(at...));
      if (labels(at...) > 0) first = std::min(first, labels(at...));
    });
    for (const ZUMImage<ZUMBool>& con : MakeConnectivities()) {
      std::map<std::pair<ZUMLong, ZUMLong>, ZUMLong> pairs;
      std::map<ZUMLong, std::vector<ZUMLong>> listed;
      std::set<std::pair<ZUMLong, std::array<int, 5>>> touching;
      ForEachPair(labels, con, [&](ZUMLong a, ZUMLong b, const auto& p) {
        if (a == b) return;
        if (b > 0) touching.insert({b, p});
        if (b == -1) return;
        ++pairs[{a, b}];
        std::vector<ZUMLong>& list = listed[a];
        if (list.size() < 19 && std::find(list.begin(), list.end(), b) == list.end()) {
          list.push_back(b);
        }
      });
      EXPECT_TRUE(
          SameImage(ZUMRegionNeighbour(labels, con),
                    MakeByPoint<ZUMLong>(ZUMRoDRef(least, least, 0, 0, greatest, greatest, 0, 0), 1,
                                         [&](int x, int y, int, int, int) {
                                           return pairs[{y, x}];
                                         })));
      const ZUMRoDRef columns(least, 0, 0, 0, greatest, 20, 0, 0);
      const auto label_in = [&](int x, int row) {
        return listed[x][static_cast<std::size_t>(row - 1)];
      };
      EXPECT_TRUE(SameImage(ZUMRegionNeighbour2(labels, con),
                            MakeByPoint<ZUMLong>(columns, 1, [&](int x, int y, int, int, int) {
                              const int n = static_cast<int>(listed[x].size());
                              return y == 0 ? n : y <= n ? label_in(x, y) : 0;
                            })));
      EXPECT_TRUE(SameImage(ZUMRegionNeighbourFrontier2(labels, con),
                            MakeByPoint<ZUMLong>(columns, 1, [&](int x, int y, int, int, int) {
                              const int n = static_cast<int>(listed[x].size());
                              return y == 0 || y > n ? 0 : pairs[{x, label_in(x, y)}];
                            })));
      const ZUMImage<ZUMLong> frontier = ZUMRegionExtFrontierArea(labels, con);
      EXPECT_EQ(frontier.EmptyP() != 0, greatest < 1);
      if (greatest < 1) continue;
      std::map<ZUMLong, ZUMLong> area;
      for (const auto& entry : touching) ++area[entry.first];
      EXPECT_TRUE(
          SameImage(frontier, MakeByPoint<ZUMLong>(ZUMRoDRef(first, 0, 0, 0, greatest, 0, 0, 0), 1,
                                                   [&](int x, auto...) { return area[x]; })));
    }
  }
}

TEST(Neighbours, ListsStopAtNineteen) {
  // A 0 between many labels.
  const ZUMImage<ZUMLong> labels(ZUMRect(0, 0, 0, 0, 24, 1, 0, 0), 1, 0);
  for (int x = 0; x < 25; ++x) labels(x, 1) = x + 1;
  const ZUMImage<ZUMLong> lists = ZUMRegionNeighbour2(labels, ZUMCon4);
  EXPECT_EQ(lists(0, 0), 19);
  EXPECT_EQ(lists(0, 19), 19);
  EXPECT_EQ(lists(0, 20), 0);
  EXPECT_EQ(ZUMRegionNeighbourFrontier2(labels, ZUMCon4)(0, 19), 1);
}

TEST(Neighbours, Messages) {
  const ZUMImage<ZUMBool> aside(ZUMRect(1, 0, 0, 0, 2, 0, 0, 0), 1, true);
  using Operation = ZUMImage<ZUMLong> (*)(const ZUMImage<ZUMLong>&, const ZUMImage<ZUMBool>&);
  const std::pair<Operation, std::string> operations[] = {
      {ZUMRegionExtFrontierArea, "ZUMRegionExtFrontierArea"},
      {ZUMRegionNeighbour, "ZUMRegionNeighbour"},
      {ZUMRegionNeighbour2, "ZUMRegionNeighbour2"},
      {ZUMRegionNeighbourFrontier2, "ZUMRegionNeighbourFrontier2"}};
  for (const auto& [operation, name] : operations) {
    EXPECT_EQ(MessageOf([&, f = operation] { f(ReadLabels("12"), aside); }),
              name + ": Dimensions of the connectivity image are not allowed");
    EXPECT_EQ(
        MessageOf([&, f = operation] { f(ZUMImage<ZUMLong>(), ZUMCon8); }),
        name == "ZUMRegionExtFrontierArea" ? "" : "ZUMMinMax:Valor indefinido por imagen vacia");
  }
}

}  // namespace
