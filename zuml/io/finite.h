/// Tests for values that are no numbers, typically of an image that was just read.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

// Each reads the region's pixels in all channels, on the calling thread, up to the line that
// decides.

/// Whether a pixel is +infinity or -infinity; false for an image without pixels.
[[nodiscard]] ZUML_API bool ZUMImageHasInf(const ZUMImage<ZUMReal>& image);

/// Whether a pixel is a NaN, quiet or signalling; false for an image without pixels.
[[nodiscard]] ZUML_API bool ZUMImageHasNaN(const ZUMImage<ZUMReal>& image);

/// Whether no pixel is infinite or a NaN; true for an image without pixels.
[[nodiscard]] ZUML_API bool ZUMImageIsFinite(const ZUMImage<ZUMReal>& image);
