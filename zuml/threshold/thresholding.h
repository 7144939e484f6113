/// Binary images by fixed thresholds.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// True where the pixel is greater than or equal to the threshold, over the image's region and
/// channels; a NaN is false. Runs in the caller's thread.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMThr(const ZUMImage<P>& image,
                                                std::type_identity_t<P> threshold);

/// True where low <= pixel <= high, over the image's region and channels: both bounds belong to the
/// interval, and low > high makes it empty. Runs in the caller's thread.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMDblThr(const ZUMImage<P>& image,
                                                   std::type_identity_t<P> low,
                                                   std::type_identity_t<P> high);
