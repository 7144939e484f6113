#include "zuml/regions/filling.h"

#include <algorithm>

#include "zuml/algebra/frames.h"
#include "zuml/core/xqmemory.h"
#include "zuml/regions/detail/selectlabels.h"
#include "zuml/regions/labelling.h"

ZUMImage<ZUMBool> ZUMFillRegion(const ZUMImage<ZUMBool>& image,
                                const ZUMImage<ZUMBool>& connectivity) {
  const ZUMImage<ZUMBool> background = ZUMAddFrame(image, ZUMRect(1, 1, 0, 0, 1, 1, 0, 0), false);
  ZUMForEachRun(
      background,
      [](ZUMBool* pixels, std::ptrdiff_t n) {
        auto* bytes = reinterpret_cast<unsigned char*>(pixels);
        for (std::ptrdiff_t i = 0; i < n; ++i) bytes[i] = bytes[i] == 0;
      },
      background);
  ZUMLong next = 1;
  const ZUMImage<ZUMLong> labels = ZUMRegionLabel(background, connectivity, next);

  const auto n = static_cast<std::size_t>(next);
  const auto filled = zuml_detail::MakeScratch<bool>(n);
  std::fill_n(filled.get(), n, true);
  const ZUMRect corners(labels.BeginX(), labels.BeginY(), labels.BeginZ(), labels.BeginT(),
                        labels.BeginX(), labels.BeginY(), labels.EndZ(), labels.EndT());
  ZUMForEachRun(
      ZUMRoDRef(corners),
      [&filled](const ZUMLong* outside, std::ptrdiff_t) {
        filled[static_cast<std::size_t>(*outside)] = false;
      },
      labels);
  return zuml_detail::SelectLabels(image, labels, filled.get());
}
