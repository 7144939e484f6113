/// What the tests of regions share: label images with gaps and negative values, walks by
/// coordinates, and connectivities of every kind.
#pragma once

#include <deque>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/core/zumconnectivity.h"

namespace zuml_test {

/// Labels in short runs, with stacks and channels: 0, negative values, and positive ones with gaps
/// from 3 up to `greatest`, or none at all if that is 0.
inline ZUMImage<ZUMLong> MakeRandomLabels(Random& random, Layout layout, int greatest) {
  const ZUMRect box = MakeRandomBox(random, 30, 12, 2, 2);
  const ZUMImage<ZUMLong> labels = MakeRandomImage<ZUMLong>(random, box, random.Int(1, 2), layout);
  ZUMLong label = 0;
  ForEachPoint(labels, labels.GetCSz(), [&](auto... at) {
    if (random.Int(0, 2) == 0) label = 3 * random.Int(-4, greatest / 3);
    labels(at...) = label;
  });
  return labels;
}

/// A pixel: its point and its channel.
struct Place {
  ZUMBasePoint<int> p;
  int c;
};

template <class P>
P& At(const ZUMImage<P>& image, const Place& at) {
  return image(at.p, at.c);
}

/// The places where `in` holds, in sweep order.
template <class In>
std::deque<Place> PlacesOf(const ZUMRoDRef& rod, int csz, In in) {
  std::deque<Place> places;
  ForEachPoint(rod, csz, [&](int x, int y, int z, int t, int c) {
    if (in(Place{{x, y, z, t}, c})) places.push_back({{x, y, z, t}, c});
  });
  return places;
}

/// The walk by coordinates: from the first place of the queue on, calls enter(from, to) for each
/// neighbour in the region, in sweep order of the steps; one that is entered goes into the queue.
template <class Enter>
void Walk(const ZUMRoDRef& rod, const ZUMImage<ZUMBool>& con, std::deque<Place> queue,
          Enter enter) {
  const auto steps = PlacesOf(con, 1, [&](const Place& at) { return At(con, at); });
  for (; !queue.empty(); queue.pop_front()) {
    const Place from = queue.front();
    for (const auto& [d, c] : steps) {
      const Place to{{from.p.x + d.x, from.p.y + d.y, from.p.z + d.z, from.p.t + d.t}, from.c};
      if (rod.InP(to.p) && enter(from, to)) queue.push_back(to);
    }
  }
}

/// Plane ones, with their centre and in a wide image too, a wide one, and those of stacks and of
/// sequences, some of which have the neighbours in the plane of a plane one.
inline std::vector<ZUMImage<ZUMBool>> MakeSymmetricConnectivities() {
  const auto make_four = [](const ZUMRect& box) {
    const ZUMImage<ZUMBool> con(box, 1, false);
    con(0, -1) = con(-1, 0) = con(1, 0) = con(0, 1) = true;
    return con;
  };
  const ZUMImage<ZUMBool> four = make_four({-3, -2, 0, 0, 3, 2, 0, 0}), wide = ZUMCopy(four);
  wide(-3, 1) = wide(3, -1) = wide(2, 0) = wide(-2, 0) = true;
  wide(-1, 0) = wide(1, 0) = false;
  const auto along_z = make_four({-1, -1, -1, 0, 1, 1, 1, 0}),
             along_t = make_four({-1, -1, 0, -1, 1, 1, 0, 1});
  along_z(0, 0, -1) = along_z(0, 0, 1) = along_t(0, 0, 0, -1) = along_t(0, 0, 0, 1) = true;
  return {ZUMCon4,
          ZUMCon8,
          four,
          ZUMImage<ZUMBool>(ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0), 1, true),
          wide,
          ZUMImage<ZUMBool>(ZUMRect(-1, -1, -1, 0, 1, 1, 1, 0), 1, true),
          ZUMImage<ZUMBool>(ZUMRect(-1, 0, 0, -1, 1, 0, 0, 1), 1, true),
          along_z,
          along_t};
}

/// These, and some that lead in one direction.
inline std::vector<ZUMImage<ZUMBool>> MakeConnectivities() {
  std::vector<ZUMImage<ZUMBool>> all = MakeSymmetricConnectivities();
  all.push_back(ZUMImage<ZUMBool>(ZUMRect(0, 0, 0, 0, 2, 1, 0, 0), 1, true));
  all.push_back(ZUMImage<ZUMBool>(ZUMRect(-1, -2, 0, 0, 0, 0, 0, 0), 1, true));
  return all;
}

}  // namespace zuml_test
