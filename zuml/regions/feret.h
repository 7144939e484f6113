/// Feret diameters: the widths of regions seen from several directions (Feret 1930). All of it runs
/// on the calling thread.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The extents of a region in n directions: for direction i, the greatest less the least x cos(i pi
/// / n) - y sin(i pi / n) of its pixels' centres, in double. No pixel's width is added; direction 0
/// is the X axis, and angles grow from it against Y. Without a pixel, minus infinity.
///
/// Of a bool image, X is the direction, from 0 to n - 1, and all true pixels are the region. Of a
/// label image, X is the label, from the least to the greatest positive one, and Y the direction;
/// without a positive label the result is a default image.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionFeretDiameters(const ZUMImage<ZUMBool>& image,
                                                                 int n);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionFeretDiameters(const ZUMImage<ZUMLong>& labels,
                                                                 int n);
