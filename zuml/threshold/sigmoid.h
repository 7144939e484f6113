/// Soft threshold curves.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The curve 1 / (exp((x0 - x) k) + 1) + y0 as a line image from `from` to `to` along X; at x0 it
/// is y0 + 0.5. Throws XQException "ZUMSigmoidX: x0 greater than x1" if from > to.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMSigmoidX(ZUMReal x0, ZUMReal y0, ZUMReal k, int from,
                                                     int to);

/// The same curve along a direction through the origin, `angle` in radians, in the square from
/// (-r, -r) to (r, r), r = max(|from|, |to|). A pixel takes the curve's value at its position along
/// the direction if that lies between `from` and `to` and the pixel at most `half_width` beside it;
/// elsewhere it is 0.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMSigmoidX(ZUMReal x0, ZUMReal y0, ZUMReal k,
                                                     ZUMReal angle, ZUMReal half_width, int from,
                                                     int to);
