#include "zuml/regions/filling.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "zuml/algebra/frames.h"
#include "zuml/core/detail/axes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqmemory.h"
#include "zuml/geometry/gridmoves.h"
#include "zuml/regions/detail/selectlabels.h"
#include "zuml/regions/labelling.h"

namespace {

// How far the image has to move for a frame of one pixel to have coordinates of its own. A block
// has no room for both ends of an axis.
ZUMBasePoint<int> StepFromEnds(const ZUMRoDRef& rod) {
  using Limits = std::numeric_limits<int>;
  ZUMBasePoint<int> step;
  for (const zuml_detail::Axis axis : {zuml_detail::kX, zuml_detail::kY}) {
    step.*axis = (rod.Begin().*axis == Limits::min()) - (rod.End().*axis == Limits::max());
  }
  return step;
}

ZUMImage<ZUMBool> FillHoles(const ZUMImage<ZUMBool>& image, const ZUMImage<ZUMBool>& connectivity) {
  const ZUMImage<ZUMBool> background = ZUMAddFrame(image, ZUMRect(1, 1, 0, 0, 1, 1, 0, 0), false);
  ZUMForEachRun(
      background,
      [](ZUMBool* pixels, std::ptrdiff_t n) {
        ZUMByte* const bytes = zuml_detail::StoredPixels(pixels);
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

}  // namespace

ZUMImage<ZUMBool> ZUMFillRegion(const ZUMImage<ZUMBool>& image,
                                const ZUMImage<ZUMBool>& connectivity) {
  const ZUMBasePoint<int> step = StepFromEnds(image);
  if (step == ZUMBasePoint<int>()) return FillHoles(image, connectivity);
  const ZUMImage<ZUMBool> filled = FillHoles(ZUMTranslate(image, step), connectivity);
  return ZUMTranslate(filled, {-step.x, -step.y});
}
