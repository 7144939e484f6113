/// Moments per label in the plane, tables as in medidas.h, in double precision. All of it runs on
/// the calling thread. A run of pixels adds its sum at once: sums below 2^53 are exact.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// M(p, q): the sum of x^p y^q over the region's pixels; 0 at the start. Throws XQException
/// "ZUMRegionMoment: it only calcules moments of order 0,1 and 2" for an exponent outside 0..2.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionMoment(const ZUMImage<ZUMLong>& labels, int p,
                                                         int q);

/// The moment about the region's centre (a, b) = (M(1,0), M(0,1)) / m, m the greater of the area
/// and 1, from moments about the origin:
///
///   (0,0)         M(0,0)
///   (1,0), (0,1)  0
///   (1,1)         M(1,1) - a M(0,1)
///   (2,0)         M(2,0) - a M(1,0)
///   (0,2)         M(0,2) - b M(0,1)
///   (1,2)         M(1,2) - 2 b M(1,1) - a M(0,2) + 2 b b M(1,0)
///   (2,1)         M(2,1) - 2 a M(1,1) - b M(2,0) + 2 a a M(0,1)
///
/// Throws XQException "ZUMRegionCenteredMoment: it only calcules moments of order 0,1 and 2" for
/// other exponents.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRegionCenteredMoment(const ZUMImage<ZUMLong>& labels,
                                                                 int p, int q);
