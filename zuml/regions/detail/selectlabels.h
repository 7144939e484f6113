#pragma once

#include <cstddef>

#include "zuml/core/foreachrun.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// The image over the region that is true where chosen[label] is; the labels' raster covers it.
inline ZUMImage<ZUMBool> SelectLabels(const ZUMRoDRef& rod, const ZUMImage<ZUMLong>& labels,
                                      const bool* chosen) {
  const ZUMImage<ZUMBool> result(rod, labels.GetCSz(), nullptr);
  ZUMForEachRun(
      rod,
      [chosen](ZUMBool* to, const ZUMLong* label, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = chosen[label[i]];
      },
      result, labels);
  return result;
}

}  // namespace zuml_detail
