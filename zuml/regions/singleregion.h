/// Measures of one region: the true pixels of a bool image, all channels taken together. All of it
/// runs on the calling thread.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The centre of mass: the sum of coordinate times pixel over the sum of the pixels, truncated, on
/// each axis; true counts 1. Sums are 32-bit integers that wrap, and the division is one of
/// integers; for reals the sums are doubles in sweep order, and the sum of coordinates is
/// multiplied by the reciprocal of the total. If the total is 0, the result is (0,0,0,0), since a
/// division by it would end the program.
///
/// The centre is wrong once a sum passes 2^31 - 1: for a square of true pixels at the origin from
/// 1626 x 1626 on, for bytes of 255 from 257 x 257 on, and earlier away from the origin.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMBasePoint<int> ZUMGravityCenter(const ZUMImage<P>& image);

/// The centre of mass for images of any size: sums in double, about the region's first pixel, and a
/// centre that is not truncated. Sums of integers below 2^53 are exact. If the total is 0, the
/// result is (0,0,0,0).
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMBasePoint<double> ZUMGravityCenterWide(const ZUMImage<P>& image);

/// The greatest less the least X (Y) of the true pixels, plus 1; 0 if there is none.
[[nodiscard]] ZUML_API int ZUMRegionWidth(const ZUMImage<ZUMBool>& image);
[[nodiscard]] ZUML_API int ZUMRegionHeight(const ZUMImage<ZUMBool>& image);

/// The bounding box of the true pixels. Without any it is an empty box: from End + 1 to Begin of
/// the region (where End is the last of all coordinates, from End to End - 1 at most), or the box
/// of an empty region itself, for which the rule could make a box with pixels.
[[nodiscard]] ZUML_API ZUMRect ZUMRegionRectHull(const ZUMImage<ZUMBool>& image);

/// The number of true pixels.
[[nodiscard]] ZUML_API ZUMLong ZUMRegionArea(const ZUMImage<ZUMBool>& image);
