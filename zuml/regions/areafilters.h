/// Components of bool images chosen by their areas. The results cover the image's region with its
/// channels; components of all channels are one population. All of it runs on the calling thread
/// and throws what ZUMRegionLabel throws.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumimage.h"

/// The component with the most pixels; of equal ones the first in sweep order. An image without a
/// true pixel has no component, and the result is its background: all true.
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMBigRegion(const ZUMImage<ZUMBool>& image,
                                                      const ZUMImage<ZUMBool>& connectivity);

/// The components with min_area to max_area pixels, both included. The background counts as a
/// component without pixels: it is true if min_area <= 0 <= max_area.
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMAreaFilter(const ZUMImage<ZUMBool>& image, int min_area,
                                                       int max_area,
                                                       const ZUMImage<ZUMBool>& connectivity);
