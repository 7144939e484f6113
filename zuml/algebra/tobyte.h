/// Conversions of an image to bytes, for showing it.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// A clamp, without scaling: below 0 gives 0, above 255 gives 255, a fraction is cut off, a NaN
/// gives 0; bool pixels give 0 and 1. Tasks: CTaskImToByte.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMImToByte(const ZUMImage<P>& image);

/// A stretch of the image's range, over all its channels, to 0..255: the pixel v becomes (v - min)
/// * (255.0 / (max - min)) with the fraction cut off, and a constant image becomes 0. Nothing is
/// rounded, so that the maximum may give 254: a range of 25, for one, makes 25 * 10.2 in `double`,
/// which is just below 255. v - min is a 32-bit integer for the integer types, which wraps where
/// the range does not fit in it. A NaN gives 0.
///
/// Throws XQException "ZUMMinMax:Valor indefinido por imagen vacia" for an empty image. Tasks:
/// CTaskMinMax, CTaskMaxcon.
template <ZUMOrderedPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMMaxcon(const ZUMImage<P>& image);

/// False colours in three channels (red, green, blue), as a heat camera shows them: dark blue,
/// blue, green, yellow, orange, red, white from 0 to 255. The image has one channel.
/// Runs on the calling thread.
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMThermography(const ZUMImage<ZUMByte>& image);
