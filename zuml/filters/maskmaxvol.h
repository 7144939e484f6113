/// Where a mask holds the greatest sum.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"
#include "zuml/filters/boxsum.h"

/// With S = ZUMSum(image, mask): the place of its greatest pixel, the first one in sweep order,
/// counted from S's first pixel, and the value there. Nothing is written where the mask's raster is
/// larger than the image's on X or Y, or their numbers of channels differ; that is no error.
///
/// Throws what ZUMSum and ZUMSearchMax throw.
template <class InT, std::same_as<ZUMBool> MaskT, class OutT>
requires ZUMSumPixels<OutT, InT> && ZUMGreyPixel<InT> ZUML_API void ZUMMaskMaxVol(
    const ZUMImage<InT>& image, const ZUMImage<MaskT>& mask, int* x, int* y, OutT* value);
