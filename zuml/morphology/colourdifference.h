/// How much the colour changes around a pixel.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"
#include "zuml/morphology/pixelpairs.h"

/// The greatest distance between the colour of a pixel p and those at p - k, for the element's true
/// pixels k. The image has three channels, the result one; its region is that of a plain mirrored
/// form (mathmorph.h). An element that lies on one side of the origin has result pixels outside the
/// image: they have no colour and are 0.
///
/// ZUMMaxL1Diff: the sum of the absolute differences of the channels, long for integer types (it
/// wraps) and double for double. ZUMMaxL2Diff: the root of the sum of their squares. The result's
/// type need not be named.
///
/// Throw XQException "ZUMMaxL1Diff: Multichannel structuring elements are not allowed",
/// "ZUMMaxL1Diff: images with %d channels are not allowed" with the function's own name, and
/// "ZUMDisplacementArray::SymmetricFromNonZeroPixels Un elemento estructurante ha de tener como
/// mínimo un pixel". Run in the caller's thread; the cost is one step for each pixel of the
/// element.
template <class OutT, ZUMWidensTo<OutT> InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMMaxL1Diff(const ZUMImage<InT>& image,
                                                   const ZUMImage<ZUMBool>& element);
template <ZUMNotNamed OutT = void, ZUMScalarPixel InT>
[[nodiscard]] ZUMImage<ZUMWidened<InT>> ZUMMaxL1Diff(const ZUMImage<InT>& image,
                                                     const ZUMImage<ZUMBool>& element) {
  return ZUMMaxL1Diff<ZUMWidened<InT>>(image, element);
}
template <std::same_as<ZUMReal> OutT = ZUMReal, ZUMScalarPixel InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMMaxL2Diff(const ZUMImage<InT>& image,
                                                   const ZUMImage<ZUMBool>& element);
