/// Soft threshold curves.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The curve 1 / (exp((x0 - x) k) + 1) + y0 as a line image from `from` to `to` along X; at x0 it
/// is y0 + 0.5. Throws XQException "ZUMSigmoidX: x0 greater than x1" if from > to.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMSigmoidX(ZUMReal x0, ZUMReal y0, ZUMReal k, int from,
                                                     int to);

/// The same curve laid along a direction through the origin, `angle` in radians, in the square from
/// (-r, -r) to (r, r), r = max(|from|, |to|): its value by the position along the direction, up to
/// `half_width` on both sides of it and between `from` and `to`; 0 elsewhere.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMSigmoidX(ZUMReal x0, ZUMReal y0, ZUMReal k,
                                                     ZUMReal angle, ZUMReal half_width, int from,
                                                     int to);
