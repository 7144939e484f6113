/// Sums over boxes in the plane, row by row.
#pragma once

#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// Writes the sums over the X and Y of the box: of each row's pixels from the box's low X to its
/// high one, and then of these sums from the low Y to the high one, each in that order.
///
/// Integers, for which no order shows, are carried from line to line and along the row, so that the
/// box's size does not matter to the time.
template <class OutT, class InT>
void WriteBoxSums(const ZUMRoDRef& part, const ZUMImage<OutT>& result, const ZUMImage<InT>& source,
                  const ZUMRect& box);

}  // namespace zuml_detail
