/// Unknown pixels filled from the known ones, front by front. A mask says which pixels of an image
/// are unknown: true is to compute, false is known. Where the regions of image and mask meet, each
/// channel is filled by itself.
///
/// The neighbours of a pixel are the true pixels of a connectivity image of one channel whose
/// region holds the origin. The result lies in a raster with a frame as wide as that, whose pixels
/// are undefined; where image and mask do not meet, it is empty. Both throw XQException
/// "ZUMExtendNearest: Dimensions of the connectivity image are not allowed" and "ZUMExtendNearest:
/// Diferent number of channels %d!=%d", with their own name, and for a connectivity without a true
/// pixel as ZUMDisplacementArray::FromNonZeroPixels. They run on the calling thread.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The nearest known pixel, counted in steps between neighbours. The known pixels beside unknown
/// ones begin, in sweep order, and values spread breadth first: a pixel takes the value of the
/// first pixel that reaches it, and each hands its value on to its neighbours in the connectivity's
/// order. A pixel that nothing reaches keeps the image's own value.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMExtendNearest(const ZUMImage<P>& image,
                                                    const ZUMImage<ZUMBool>& mask,
                                                    const ZUMImage<ZUMBool>& connectivity);

/// The mean of the neighbours that are known by then. The unknown pixels beside known ones begin,
/// in sweep order; each pixel is computed when its turn comes, its unknown neighbours queue behind
/// in the connectivity's order, and it counts as known at once. Means are taken in `double`, of the
/// pixels as they were stored; they are cut toward zero on integer pixels, and a bool is true where
/// one of its known neighbours is. A pixel that nothing reaches is 0, of reals a NaN.
/// So is one without a known neighbour, which a one-sided connectivity can reach.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMExtendMean(const ZUMImage<P>& image,
                                                 const ZUMImage<ZUMBool>& mask,
                                                 const ZUMImage<ZUMBool>& connectivity);
