/// Shape per label, tables as in medidas.h, in double precision. All of it runs on the calling
/// thread.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// 4 pi A / P^2, with A the area and P the length of the perimeter, or 1 if that is 0 (Cox 1927).
///
/// A pixel's part in a perimeter is its label less the least value in the square of 3 x 3 pixels
/// about it in its plane, where what lies outside the image is 0: it counts one pixel of the
/// perimeter of the region with that number. So a pixel at the background counts for its own
/// region, and one inside does not count. Where regions touch, or at negative values, the
/// difference is another number than the pixel's label.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionCircularity(const ZUMImage<ZUMLong>& labels);

/// sqrt(1 - small / big) with the principal moments big and small, u20 + u02 plus and minus sqrt(4
/// u11^2 + (u20 - u02)^2), of the centred moments over the area: the eccentricity of the ellipse
/// with the same moments, 0 for a disc, 1 for a line. A NaN for a single pixel, and for a label
/// without a pixel.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionElongation(const ZUMImage<ZUMLong>& labels);
