/// Runs as pointers and a count: the sweep's loop, written once. Operations on whole images give
/// the inner loop only, which then is a plain loop over arrays that the compiler vectorises.
#pragma once

#include <cstddef>
#include <cstring>
#include <utility>

#include "zuml/core/zumimage.h"
#include "zuml/core/zumsweep.h"

/// Calls body(P1*, P2*, ..., n) for each run of the region: the runs' first pixels in the images
/// and their number of pixels, in sweep order. The first image governs the channels.
template <class Body, class P1, class... Ps>
void ForEachRun(const ZUMRoDRef& rod, Body&& body, const ZUMImage<P1>& first,
                const ZUMImage<Ps>&... others) {
  ZUMGenericSweep<1 + sizeof...(Ps)> sweep(rod, first, others...);
  for (; sweep.GetStart1(); sweep.Next()) {
    P1* start = static_cast<P1*>(sweep.GetStart1());
    const std::ptrdiff_t n = static_cast<P1*>(sweep.GetEnd1()) - start + 1;
    [&]<std::size_t... K>(std::index_sequence<K...>) {
      body(start, static_cast<Ps*>(sweep.at.start[K + 1])..., n);
    }
    (std::index_sequence_for<Ps...>{});
  }
}

/// Copies n pixels; the two runs may be the same or overlap.
template <class P>
void CopyRun(P* to, const P* from, std::ptrdiff_t n) {
  std::memmove(static_cast<void*>(to), from, static_cast<std::size_t>(n) * sizeof(P));
}
