/// Extrema over boxes, axis by axis.
#pragma once

#include "zuml/core/zumimage.h"
#include "zuml/morphology/detail/lanes.h"

namespace zuml_detail {

/// Folds for each point p of `rod` the pixels from p + window.begin to p + window.end. What lies
/// outside the image contributes nothing, and a window that misses the image gives the neutral
/// value. Offered for the integer types, where the order of a fold plays no role.
///
/// X and Y are folded in one pass, Z and T in one each. Along X, windows are put together from four
/// windows of a quarter of their length; along the other axes three folds a pixel do for any length
/// (van Herk 1992, Gil and Werman 1993).
template <class P, class Order>
ZUMImage<P> FoldBox(const ZUMImage<P>& image, const ZUMRoDRef& rod, const ZUMRect& window);

}  // namespace zuml_detail
