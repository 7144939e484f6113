/// Sums that are carried along a row.
#pragma once

#include "zuml/filters/detail/weightedsum.h"

namespace zuml_detail {

/// The first pixel of each row of the part is the sum of `all`. Each further one is the sum before
/// it with `changes` added one after the other, whose offsets count from the pixel before. Reals
/// therefore depend on where the rows begin.
template <class OutT, class InT>
void WriteSlidingSums(const ZUMRoDRef& part, const ZUMImage<OutT>& result,
                      const ZUMImage<InT>& source, const Terms<WeightOf<OutT>>& all,
                      const Terms<WeightOf<OutT>>& changes);

/// Sums over the X and Y of a box, for integers: columns are carried from line to line, and the
/// sums of columns along the row, so that the box's size does not matter.
template <class InT>
void WriteRunningBoxSums(const ZUMRoDRef& part, const ZUMImage<ZUMLong>& result,
                         const ZUMImage<InT>& source, const ZUMRect& box);

}  // namespace zuml_detail
