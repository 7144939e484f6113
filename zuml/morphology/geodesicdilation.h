/// Dilation along connected paths.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Each marked pixel spreads its own value to a geodesic ball whose radius is that value.
///
/// The result begins as a copy of the image. From every true pixel p of the mask, with the value r,
/// a flood goes on to neighbours that are true in the mask and at most r - 1 away from p; each
/// pixel that it reaches takes the greater of its value and r. The value of p itself is kept, so
/// that r <= 1 changes nothing. The connectivity is direct. Distances are straight ones on X and Y:
/// along Z and T a flood goes as far as the mask lets it.
///
/// Where the mask has no pixel it counts as false. A mask of one channel serves all channels of the
/// image.
///
/// Throws XQException "ZUMDilateArea: Dimensions of the connectivity image are not allowed", and
/// for a connectivity without a true pixel "ZUMDisplacementArray::FromNonZeroPixels Un elemento
/// estructurante ha de tener como mínimo un pixel". Runs in the caller's thread; the cost is the
/// sum of the balls.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMDilateValue(const ZUMImage<PixT>& image,
                                                     const ZUMImage<ZUMBool>& mask,
                                                     const ZUMImage<ZUMBool>& connectivity);
