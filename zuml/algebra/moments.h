/// Moments of a binary image.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The sum of x^p y^q z^r t^s over the coordinates of the true pixels of all channels: with all
/// exponents 0 the area, ZUMMoment(image, 1, 0, 0, 0) / area the centre's x. The power product is a
/// 32-bit integer that wraps, as 1300 cubed does; the sum is a `double`. An exponent of 0, or
/// below, gives the factor 1.
///
/// Runs on the calling thread.
[[nodiscard]] ZUML_API ZUMReal ZUMMoment(const ZUMImage<ZUMBool>& image, int p, int q, int r,
                                         int s);

/// The same about a centre, which is subtracted from each coordinate first, all in `double`, so
/// that nothing wraps; the centre (0, 0, 0, 0) gives the moment above. An exponent of 0 gives the
/// factor 1, one below 0 a reciprocal.
[[nodiscard]] ZUML_API ZUMReal ZUMMoment(const ZUMImage<ZUMBool>& image, int p, int q, int r, int s,
                                         ZUMReal x, ZUMReal y, ZUMReal z, ZUMReal t);
