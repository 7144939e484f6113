/// The median of the pixels that a mask leaves over. A true mask pixel EXCLUDES its pixel.
///
/// Of n values the median is the one with (n - 1) / 2 values before it, the lower one of two.
/// NaNs come after all numbers.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The median of all channels over the region that image and mask share.
///
/// Throws XQException "ZUMMedianMasked: im and mask don't have the same number of channels", and
/// "ZUMMedianMasked:Valor indefinido por imagen vacia" where no pixel is left over. Runs on the
/// calling thread in linear time on average.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API PixT ZUMMedianMasked(const ZUMImage<PixT>& image,
                                            const ZUMImage<ZUMBool>& mask);

/// The median of each pixel's neighbourhood: of the pixels p + k, k running over the true pixels of
/// the element, that the mask leaves over. Where none is left over, the result is the pixel p
/// itself (0 if p is outside the image, which takes an element beside the origin). Channels of
/// image and mask go together; the element has one. The result covers the points for which the
/// element's box stays in the region that image and mask share.
///
/// Throws XQException "ZUMMedianMasked: Multichannel structuring elements are not allowed",
/// "ZUMMedianMasked: im and mask don't have the same number of channels", and for an element
/// without a true pixel what ZUMDisplacementArray::FromNonZeroPixels throws. Tasks:
/// CTaskMedianMasked; the time is that of visiting the element at each pixel.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMMedianMasked(const ZUMImage<PixT>& image,
                                                      const ZUMImage<ZUMBool>& element,
                                                      const ZUMImage<ZUMBool>& mask);
