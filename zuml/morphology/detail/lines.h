/// Copies of lines, for operations that read around a pixel.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "zuml/core/foreachrun.h"
#include "zuml/core/zumimage.h"
#include "zuml/morphology/detail/lanes.h"

namespace zuml_detail {

/// Copies the n pixels from (x, y, z, t) on of channel c; `outside` stands for those outside the
/// image.
template <class P>
void CopyPaddedLine(Stored<P>* to, const ZUMImage<P>& image, std::int64_t x, std::int64_t y,
                    std::int64_t z, std::int64_t t, int c, std::ptrdiff_t n,
                    std::type_identity_t<Stored<P>> outside) {
  const ZUMRect box = image.Rect();
  const auto between = [](std::int64_t a, int begin, int end) { return begin <= a && a <= end; };
  const bool line = between(y, box.begin.y, box.end.y) && between(z, box.begin.z, box.end.z) &&
                    between(t, box.begin.t, box.end.t);
  const std::ptrdiff_t first = line ? std::clamp<std::ptrdiff_t>(box.begin.x - x, 0, n) : n;
  const std::ptrdiff_t end = std::clamp<std::ptrdiff_t>(std::int64_t{box.end.x} + 1 - x, first, n);
  std::fill(to, to + first, outside);
  if (first < end) {
    const P* const from = &image(static_cast<int>(x + first), static_cast<int>(y),
                                 static_cast<int>(z), static_cast<int>(t), c);
    std::copy_n(StoredPixels(from), end - first, to + first);
  }
  std::fill(to + end, to + n, outside);
}

}  // namespace zuml_detail
