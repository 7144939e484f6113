/// Walks and copies of lines by their coordinates, for operations that read around a pixel.
#pragma once

#include <algorithm>
#include <cstring>

#include "zuml/core/detail/axes.h"
#include "zuml/core/zumimage.h"
#include "zuml/morphology/detail/lanes.h"

namespace zuml_detail {

/// Calls body(y, z, t, c) for each line of the region in each channel, in sweep order.
template <class Body>
void ForEachLine(const ZUMRoDRef& rod, int csz, Body&& body) {
  if (rod.EmptyP()) return;
  const ZUMRect box = rod.Rect();
  for (int c = 0; c < csz; ++c) {
    for (int t = box.begin.t; t <= box.end.t; ++t) {
      for (int z = box.begin.z; z <= box.end.z; ++z) {
        for (int y = box.begin.y; y <= box.end.y; ++y) body(y, z, t, c);
      }
    }
  }
}

/// Copies the n pixels from x on of the line at the Y, Z and T of `at`; `outside` stands for those
/// outside the image.
template <class P>
void CopyPaddedLine(Stored<P>* to, const ZUMImage<P>& image, int x, int n,
                    const ZUMBasePoint<int>& at, int c, std::type_identity_t<Stored<P>> outside) {
  const ZUMRect box = image.Rect();
  const bool line = box.begin.y <= at.y && at.y <= box.end.y && box.begin.z <= at.z &&
                    at.z <= box.end.z && box.begin.t <= at.t && at.t <= box.end.t;
  const int first = line ? std::clamp(box.begin.x - x, 0, n) : n;
  const int end = std::clamp(box.end.x + 1 - x, first, n);
  std::fill(to, to + first, outside);
  if (first < end) {
    std::memcpy(to + first, &image(x + first, at.y, at.z, at.t, c),
                static_cast<std::size_t>(end - first) * sizeof(P));
  }
  std::fill(to + end, to + n, outside);
}

}  // namespace zuml_detail
