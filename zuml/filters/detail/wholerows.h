/// Parts for running sums along X.
#pragma once

#include "zuml/core/zumrod.h"

namespace zuml_detail {

/// Takes back a cut along X: the first of the parts becomes the whole region, the others empty. A
/// running sum of reals that started anew inside a row would depend on the number of tasks.
inline void KeepRowsWhole(ZUMRoDRef& part, const ZUMRoDRef& whole) {
  if (part.EmptyP() || part.RoDXSz() == whole.RoDXSz()) return;
  part = part.BeginX() == whole.BeginX() ? whole : ZUMEmptyRoD;
}

}  // namespace zuml_detail
