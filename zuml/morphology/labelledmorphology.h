/// Morphology by labelled elements: the non-zero pixels of a ZUMImage<ZUMLong> are the element, and
/// their values are labels or levels. mathmorph.h explains mirrored and direct, plain and `Ex`.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"
#include "zuml/morphology/pixelpairs.h"

/// The sum over the labels 1 to the element's greatest of the maximum under each label's pixels.
/// Mirrored. A maximum begins at 0, so that a label under which all pixels are negative counts 0.
/// Labels below 0 do not count. Long sums wrap. The result's type need not be named: it is long for
/// integer types and bool, double for double.
///
/// Throws XQException "CTaskDilateAcum: Multichannel structuring elements are not allowed", or, for
/// an element without a pixel other than 0, "ZUMDisplacementValueArray<PixT>::
/// SymmetricFromNonZeroPixels Un elemento estructurante ha de tener como mínimo un pixel" without
/// the space. Tasks: CTaskDilateSum.
template <class OutT, ZUMWidensTo<OutT> InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMDilateSum(const ZUMImage<InT>& image,
                                                   const ZUMImage<ZUMLong>& element);
template <ZUMNotNamed OutT = void, ZUMScalarPixel InT>
[[nodiscard]] ZUMImage<ZUMWidened<InT>> ZUMDilateSum(const ZUMImage<InT>& image,
                                                     const ZUMImage<ZUMLong>& element) {
  return ZUMDilateSum<ZUMWidened<InT>>(image, element);
}

/// The same over the source's region: at the border a label counts what it finds, or 0. An element
/// without a pixel gives zeros. Throws XQException "CTaskDilateAcumEx: Multichannel structuring
/// elements are not allowed". Tasks: CTaskDilateSumEx.
template <class OutT, ZUMWidensTo<OutT> InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMDilateSumEx(const ZUMImage<InT>& image,
                                                     const ZUMImage<ZUMLong>& element);
template <ZUMNotNamed OutT = void, ZUMScalarPixel InT>
[[nodiscard]] ZUMImage<ZUMWidened<InT>> ZUMDilateSumEx(const ZUMImage<InT>& image,
                                                       const ZUMImage<ZUMLong>& element) {
  return ZUMDilateSumEx<ZUMWidened<InT>>(image, element);
}

/// ZUMDilateSum, pixel for pixel. Throws XQException "CTaskDilateMedian: Multichannel structuring
/// elements are not allowed".
template <class OutT, ZUMWidensTo<OutT> InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMDilateMedian(const ZUMImage<InT>& image,
                                                      const ZUMImage<ZUMLong>& element);
template <ZUMNotNamed OutT = void, ZUMScalarPixel InT>
[[nodiscard]] ZUMImage<ZUMWidened<InT>> ZUMDilateMedian(const ZUMImage<InT>& image,
                                                        const ZUMImage<ZUMLong>& element) {
  return ZUMDilateMedian<ZUMWidened<InT>>(image, element);
}

/// The least level of the element at which the image is false: how far an erosion by growing
/// elements can go. Direct. Where the image is true under the whole element, the greatest level
/// plus 1, so that the result grows with the image; a greatest level of 2147483647 stays as it is.
/// Runs in the caller's thread; a pixel costs the steps up to its level.
///
/// Throws XQException "ZUMMaxErode: Dimensions of the structuring element are not allowed" unless
/// the element has one channel and its region holds the origin, and "ZUMDisplacementValueArray<
/// PixT>::FromNonZeroPixels Un elemento estructurante ha de tener como mínimo un pixel" without the
/// space.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMMaxErode(const ZUMImage<ZUMBool>& image,
                                                     const ZUMImage<ZUMLong>& element);
