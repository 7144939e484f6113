/// The correlation coefficient of a pattern.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The normalised correlation coefficient of the pattern, pixels that are 0 included, with the
/// image's pixels p + k at the pattern's coordinates k: 1 where they are a positive multiple of the
/// pattern plus a constant, up to rounding. It covers the points at which the pattern's box lies
/// inside the image.
///
/// With n the number of the pattern's pixels, m its mean, M the image's local mean and sums over
/// the pattern's box, it is (sum of pattern image - m n M) / (sqrt(sum of image^2 - n M^2) sqrt(sum
/// of (pattern - m)^2)) in double. What is not a number from -1 to 1 becomes -1: a constant
/// neighbourhood, a constant pattern, also one of zeros.
///
/// Beware: a perfect match, such as that of an image with its own crop, MAY READ AS -1, since
/// rounding can take it above 1. The maximum of the result then misses it. Whoever expects perfect
/// matches looks at the pixels of -1 as well.
///
/// The pattern has one channel, which goes with every channel of the image; otherwise throws
/// XQException "operator-: Diferent number of channels %d!=%d", or what ZUMConv throws. Tasks:
/// those of ZUMSum and ZUMConv, and CTaskCorCoef. An image of no channel gives none.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMCorCoef(const ZUMImage<PixT>& image,
                                                    const ZUMImage<PixT>& pattern);
