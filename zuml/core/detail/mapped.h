/// The loop of every operation whose result pixel depends on the operands' pixels at the same
/// coordinates alone, and its form on the calling thread. With tasks: pointwise.h.
#pragma once

#include <cstddef>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"

namespace zuml_detail {

/// result = op(images...) on a region. The copy of op belongs to the loop: pixels that are written
/// cannot change what it holds, so that a number in it is not read anew after every byte.
template <class Op, class R, class... Ps>
void MapRuns(const ZUMRoDRef& rod, const Op& op, const ZUMImage<R>& result,
             const ZUMImage<Ps>&... images) {
  ZUMForEachRun(
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
