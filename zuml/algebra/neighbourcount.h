/// Comparison of two neighbourhoods of each pixel.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// How often the neighbourhood `s1` of a pixel is above its neighbourhood `s2`: the number of pairs
/// of a pixel p under a true pixel of s1 and a pixel q under one of s2 with p > q, the statistic of
/// H. B. Mann and D. R. Whitney, "On a test of whether one of two random variables is
/// stochastically larger than the other" (1947). It goes from 0 to the product of the elements'
/// sizes, and channels are counted apart.
///
/// The result covers the pixels at which the box around both elements stays inside the image, and
/// has the image's channels. Throws XQException "ZUMGreaterCnt: Multichannel
/// structuring elements are not allowed", and as ZUMDisplacementArray::FromNonZeroPixels for an
/// element without a true pixel. Runs in the calling thread; the cost of a pixel is the number of
/// pairs.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMGreaterCnt(const ZUMImage<P>& image,
                                                       const ZUMImage<ZUMBool>& s1,
                                                       const ZUMImage<ZUMBool>& s2);

/// The number of pairs with p <= q, so that without NaN the two counts add up to the number of
/// pairs. Throws XQException "ZUMLessCnt: Multichannel structuring elements are not allowed".
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMLessCnt(const ZUMImage<P>& image,
                                                    const ZUMImage<ZUMBool>& s1,
                                                    const ZUMImage<ZUMBool>& s2);
