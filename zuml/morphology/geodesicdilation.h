/// Dilation along connected paths.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Each marked pixel spreads its own value to a geodesic ball whose radius is that value.
///
/// The result begins as a copy of the image. From every true pixel p of the mask, with the value r,
/// a flood goes along neighbours that are true in the mask and whose distance from p on X and Y,
/// the shortest one, is at most r - 1; each pixel that it reaches takes the greater of its value
/// and r. The own value of p is kept, so that r <= 1 changes nothing. The connectivity is direct;
/// its steps along Z and T add nothing to the distance.
///
/// The mask lies over the image's region: what it lacks counts as false. A mask of one channel
/// serves all channels of the image.
///
/// Throws XQException "ZUMDilateArea: Dimensions of the connectivity image are not allowed". Runs
/// in the caller's thread; the cost is the sum of the balls.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMDilateValue(const ZUMImage<PixT>& image,
                                                     const ZUMImage<ZUMBool>& mask,
                                                     const ZUMImage<ZUMBool>& connectivity);
