/// The loop of every operation whose result pixel depends on the operands' pixels at the same
/// coordinates alone, and its form on the calling thread. With tasks: pointwise.h.
#pragma once

#include <concepts>
#include <cstddef>

#include "zuml/core/foreachrun.h"
#include "zuml/core/storedpixel.h"

namespace zuml_detail {

/// Pixel i of a run. Bool pixels of wrapped memory may hold other bytes than 0 and 1, and are read
/// as bytes.
template <class P>
inline P ValueAt(const P* x, std::ptrdiff_t i) {
  if constexpr (std::same_as<P, bool>) {
    return reinterpret_cast<const Stored<P>*>(x)[i] != 0;
  } else {
    return x[i];
  }
}

/// result = op(images...) on a region. The copy of op belongs to the loop: pixels that are written
/// cannot change what it holds, so that a number in it is not read anew after every byte.
template <class Op, class R, class... Ps>
void MapRuns(const ZUMRoDRef& rod, const Op& op, const ZUMImage<R>& result,
             const ZUMImage<Ps>&... images) {
  ForEachRun(
      rod,
      [op](R* r, const Ps*... x, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = op(ValueAt(x, i)...);
      },
      result, images...);
}

/// A new image over the region, with `csz` channels: op(images...), on the calling thread.
template <class R, class Op, class... Ps>
ZUMImage<R> MapImages(const ZUMRoDRef& rod, int csz, const Op& op, const ZUMImage<Ps>&... images) {
  const ZUMImage<R> result(rod, csz, nullptr);
  MapRuns(rod, op, result, images...);
  return result;
}

template <class R, class P, class Op>
ZUMImage<R> MapImage(const ZUMImage<P>& image, const Op& op) {
  return MapImages<R>(image, image.GetCSz(), op, image);
}

}  // namespace zuml_detail
