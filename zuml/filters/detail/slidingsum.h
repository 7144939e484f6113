/// Sums that are carried along a row.
#pragma once

#include "zuml/filters/detail/weightedsum.h"

namespace zuml_detail {

/// The first pixel of each row of the part is the sum of `all`. Each further one is the sum before
/// it with `changes` added one after the other, whose offsets count from the pixel before. Reals
/// therefore depend on where the rows begin. Both lists have the same distance.
template <class OutT, class InT>
void WriteSlidingSums(const ZUMRoDRef& part, const ZUMImage<OutT>& result,
                      const ZUMImage<InT>& source, const Terms<WeightOf<OutT>>& all,
                      const Terms<WeightOf<OutT>>& changes);

}  // namespace zuml_detail
