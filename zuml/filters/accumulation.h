/// Running sums with a line of zeros in front, so that the sum of a stretch or of a box is read as
/// a difference without a test at the border.
///
/// Result types: `long`, which wraps, from bool, byte, short and long pixels; double from double. A
/// region that is not a box throws XQException, with the texts below. Without a result type, as in
/// ZUMAccumImage(image), it follows from the image's.
///
/// The region of an empty image grows as well: if it has lines, the result is zeros. Where the
/// image begins at the least coordinate there is no room, and the result has no line in front.
#pragma once

#include <concepts>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"
#include "zuml/filters/boxsum.h"

/// The pixel types of running sums.
template <class OutT, class InT>
concept ZUMAccumPixels = (std::same_as<OutT, ZUMLong> && ZUMDiscretePixel<InT>) ||
                         (std::same_as<OutT, ZUMReal> && std::same_as<InT, ZUMReal>);

/// The summed-area table of an image in the plane: the region grows by one line on the low sides of
/// X and Y, where the result is 0, and result(x, y) is the sum of the pixels up to (x, y). The sum
/// of a box is result(x1, y1) - result(x0 - 1, y1) - result(x1, y0 - 1) + result(x0 - 1, y0 - 1).
/// A row's running sum is added to the value above.
///
/// Throws XQException "ZUMAccumImage only allows 2D rectangular images" also where Z or T have
/// another extent than 1. Runs on the calling thread.
template <class OutT, class InT>
requires ZUMAccumPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMAccumImage(const ZUMImage<InT>& image);
template <int = 0, ZUMScalarPixel InT>
[[nodiscard]] ZUMImage<ZUMNaturalSum<InT>> ZUMAccumImage(const ZUMImage<InT>& image) {
  return ZUMAccumImage<ZUMNaturalSum<InT>>(image);
}

/// Running sums of the rows: the region grows by one on the low side of X, where the result is 0,
/// and result(x) = result(x - 1) + image(x). Throws XQException "ZUMXAccumImage only allows
/// rectangular images". Tasks: CTaskXAccumImage, never cut along X.
template <class OutT, class InT>
requires ZUMAccumPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMXAccumImage(const ZUMImage<InT>& image);
template <int = 0, ZUMScalarPixel InT>
[[nodiscard]] ZUMImage<ZUMNaturalSum<InT>> ZUMXAccumImage(const ZUMImage<InT>& image) {
  return ZUMXAccumImage<ZUMNaturalSum<InT>>(image);
}

/// Running sums of the columns, likewise along Y. Throws XQException "ZUMYAccumImage only allows
/// rectangular images". Runs on the calling thread.
template <class OutT, class InT>
requires ZUMAccumPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMYAccumImage(const ZUMImage<InT>& image);
template <int = 0, ZUMScalarPixel InT>
[[nodiscard]] ZUMImage<ZUMNaturalSum<InT>> ZUMYAccumImage(const ZUMImage<InT>& image) {
  return ZUMYAccumImage<ZUMNaturalSum<InT>>(image);
}
