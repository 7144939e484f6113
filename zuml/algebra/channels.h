/// Channels of several images joined into one image.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// One image with the channels of all `n` images, in the order given, over the region that all
/// share. Its raster is new and tight. Runs on the calling thread.
///
/// Throws XQException "AppendChannels: A NULL pointer to an array of images are not allowed" for a
/// null array, and "AppendChannels: An array of zero images are not allowed" if `n` is below 1 or
/// the first element is null.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAppendChannels(int n, const ZUMImage<P>** images);
/// The same for two and for three images.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAppendChannels(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAppendChannels(const ZUMImage<P>& a, const ZUMImage<P>& b,
                                                     const ZUMImage<P>& c);
