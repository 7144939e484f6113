/// Runs as pointers and a count: the sweep's loop, written once. Operations on whole images give
/// the inner loop only, which then is a plain loop over arrays that the compiler vectorises.
#pragma once

#include <cstddef>
#include <cstring>
#include <utility>

#include "zuml/core/zumimage.h"
#include "zuml/core/zumsweep.h"

/// Where a run begins: the coordinates of its first pixel, and its channel in the first image.
struct ZUMRunPlace {
  int x, y, z, t, c;
};

namespace zuml_detail {

/// Calls body(sweep, start1, start2, ..., n) for each run while it returns true; whether it did so
/// for all.
template <class Sweep, class Body, class P1, class... Ps>
bool WalkRuns(const ZUMRoDRef& rod, Body&& body, const ZUMImage<P1>& first,
              const ZUMImage<Ps>&... others) {
  for (Sweep sweep(rod, first, others...); sweep.GetStart1(); sweep.Next()) {
    P1* const start = static_cast<P1*>(sweep.GetStart1());
    const std::ptrdiff_t n = static_cast<P1*>(sweep.GetEnd1()) - start + 1;
    const bool go_on = [&]<std::size_t... K>(std::index_sequence<K...>) {
      return body(sweep, start, static_cast<Ps*>(sweep.start[K + 1])..., n);
    }
    (std::index_sequence_for<Ps...>{});
    if (!go_on) return false;
  }
  return true;
}

}  // namespace zuml_detail

/// Calls body(P1*, P2*, ..., n) for each run of the region: the runs' first pixels in the images
/// and their number of pixels, in sweep order. The first image governs the channels.
template <class Body, class P1, class... Ps>
void ZUMForEachRun(const ZUMRoDRef& rod, Body&& body, const ZUMImage<P1>& first,
                   const ZUMImage<Ps>&... others) {
  zuml_detail::WalkRuns<ZUMGenericSweep<1 + sizeof...(Ps)>>(
      rod,
      [&](const auto&, auto... arguments) {
        body(arguments...);
        return true;
      },
      first, others...);
}

/// The same until body returns false; whether it returned true for all runs.
template <class Body, class P1, class... Ps>
bool ZUMForEachRunWhile(const ZUMRoDRef& rod, Body&& body, const ZUMImage<P1>& first,
                        const ZUMImage<Ps>&... others) {
  return zuml_detail::WalkRuns<ZUMGenericSweep<1 + sizeof...(Ps)>>(
      rod, [&](const auto&, auto... arguments) { return body(arguments...); }, first, others...);
}

/// With coordinates: calls body(place, P1*, P2*, ..., n) for each run, of up to four images.
template <class Body, class P1, class... Ps>
void ZUMForEachPlacedRun(const ZUMRoDRef& rod, Body&& body, const ZUMImage<P1>& first,
                         const ZUMImage<Ps>&... others) {
  zuml_detail::WalkRuns<ZUMGenericSweepCoords<1 + sizeof...(Ps)>>(
      rod,
      [&](const auto& sweep, auto... arguments) {
        body(ZUMRunPlace{sweep.GetX(), sweep.GetY(), sweep.GetZ(), sweep.GetT(), sweep.GetC()},
             arguments...);
        return true;
      },
      first, others...);
}

/// With coordinates, until body returns false; whether it returned true for all runs.
template <class Body, class P1, class... Ps>
bool ZUMForEachPlacedRunWhile(const ZUMRoDRef& rod, Body&& body, const ZUMImage<P1>& first,
                              const ZUMImage<Ps>&... others) {
  return zuml_detail::WalkRuns<ZUMGenericSweepCoords<1 + sizeof...(Ps)>>(
      rod,
      [&](const auto& sweep, auto... arguments) {
        return body(
            ZUMRunPlace{sweep.GetX(), sweep.GetY(), sweep.GetZ(), sweep.GetT(), sweep.GetC()},
            arguments...);
      },
      first, others...);
}

/// Copies n pixels; the two runs may be the same or overlap.
template <class P>
void ZUMCopyRun(P* to, const P* from, std::ptrdiff_t n) {
  std::memmove(static_cast<void*>(to), from, static_cast<std::size_t>(n) * sizeof(P));
}
