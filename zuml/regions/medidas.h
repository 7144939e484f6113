/// Measures per label: extents, areas, sums and centres of all regions of a label image at once.
///
/// The result is a table: an image whose X axis runs over the labels from the least to the greatest
/// positive one, at Y, Z, T 0. Entry x is the measure of label x; a label in between without a
/// pixel holds the measure's starting value. Without a positive label the result is a default
/// image. The pixels of all channels of the label image count. All of it runs on the calling
/// thread; the cost does not depend on the number of regions beyond the size of the table.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The least and the greatest positive label; 1 and 0 if there is none.
ZUML_API void ZUMLabelInterval(const ZUMImage<ZUMLong>& labels, ZUMLong& first, ZUMLong& last);

/// The number of pixels; 0 at the start.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionArea(const ZUMImage<ZUMLong>& labels);

/// Bounding box, area and sums in the plane, a table of seven channels: least X, least Y, greatest
/// X, greatest Y, area, sum of X, sum of Y. They start at EndX, EndY, BeginX, BeginY of the region,
/// 0, 0, 0. Sums are 32-bit integers that wrap, as those of ZUMRegionSumX do.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionMeasures2D(const ZUMImage<ZUMLong>& labels);

/// The greatest coordinate less the least one: 0 for a region of one column, and for a label
/// without a pixel.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionSizeX(const ZUMImage<ZUMLong>& labels);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionSizeY(const ZUMImage<ZUMLong>& labels);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionSizeZ(const ZUMImage<ZUMLong>& labels);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionSizeT(const ZUMImage<ZUMLong>& labels);

/// The sum of the pixels' coordinates, a 32-bit integer that wraps; 0 at the start. A region of w x
/// h pixels at (x, y) has a sum of X of w h (x + (w - 1) / 2): a square at the origin wraps from
/// 1626 x 1626 pixels on, one at a distance from it earlier.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionSumX(const ZUMImage<ZUMLong>& labels);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionSumY(const ZUMImage<ZUMLong>& labels);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionSumZ(const ZUMImage<ZUMLong>& labels);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMRegionSumT(const ZUMImage<ZUMLong>& labels);

/// The same sums for regions of any size: formed in 64 bits, which no image exceeds, and then
/// rounded to the nearest double. Sums up to 2^53 are exact.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionSumXWide(const ZUMImage<ZUMLong>& labels);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionSumYWide(const ZUMImage<ZUMLong>& labels);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionSumZWide(const ZUMImage<ZUMLong>& labels);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionSumTWide(const ZUMImage<ZUMLong>& labels);

/// The centre of mass, a table of four channels: the sums of X, Y, Z and T, 32-bit integers that
/// wrap as those of ZUMRegionSumX do, over the number of pixels, in double. 0 for a label without a
/// pixel. A region whose sum wraps has a centre far outside of it: the one of 1500 x 1500 pixels at
/// (800, 400) comes out at (-359.4, -759.4).
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionGravityCenter(const ZUMImage<ZUMLong>& labels);

/// The same centre for regions of any size, from the sums of ZUMRegionSumXWide and its kin.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionGravityCenterWide(
    const ZUMImage<ZUMLong>& labels);
