/// Frames, padding and channels: images made larger, cut back, or joined by their channels. All of
/// it runs on the calling thread.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// One image with the channels of all, in the order given, over the region that all share.
///
/// Throws XQException "AppendChannels: A NULL pointer to an array of images are not allowed" for a
/// null array, and "AppendChannels: An array of zero images are not allowed" if its first element
/// is null.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAppendChannels(int n, const ZUMImage<P>** images);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAppendChannels(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAppendChannels(const ZUMImage<P>& a, const ZUMImage<P>& b,
                                                     const ZUMImage<P>& c);

/// The image widened by a frame of margins whose pixels are `value`. The frame is part of the
/// result's region.
///
/// Throws XQException "ZUMAddFrame: It is not allowed add a frame to an empty image", or
/// "ZUMAddFrame: It is not allowed add a negative frame to an image".
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAddFrame(const ZUMImage<P>& image, const ZUMRect& frame,
                                               std::type_identity_t<P> value);

/// The image without its outer margins, on the same raster: no pixel is touched. An empty image is
/// returned as it is; a frame larger than the image leaves an empty one.
///
/// Throws XQException "ZUMAddFrame: It is not allowed remove a negative frame to an image".
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMRemoveFrame(const ZUMImage<P>& image, const ZUMRect& frame);

/// A new image over the box, `value` everywhere but where the image lies in it.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPadding(const ZUMImage<P>& image, const ZUMRect& box,
                                              std::type_identity_t<P> value);
