/// Frames and padding: images made larger or cut back. All of it runs on the calling thread, with
/// the channels of the image.
#pragma once

#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The image widened by a frame of margins whose pixels are `value`, on a new raster, also where
/// all margins are 0. The frame is part of the result's region. A margin that would leave the
/// 32-bit coordinates ends with them and takes no memory beyond.
///
/// Throws XQException "ZUMAddFrame: It is not allowed add a frame to an empty image", or
/// "ZUMAddFrame: It is not allowed add a negative frame to an image"; and as ZUMSimpleRaster for a
/// result larger than a block.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAddFrame(const ZUMImage<P>& image, const ZUMRect& frame,
                                               std::type_identity_t<P> value);

/// The image without its outer margins, on the same raster: the result shares its pixels with the
/// image. An empty image is returned as it is; margins larger than the image leave an empty one.
///
/// Throws XQException "ZUMAddFrame: It is not allowed remove a negative frame to an image".
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMRemoveFrame(const ZUMImage<P>& image, const ZUMRect& frame);

/// A new image over the box: the image's pixels where it lies in the box, `value` elsewhere. The
/// box may cut the image. Throws as ZUMSimpleRaster for a box larger than a block.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPadding(const ZUMImage<P>& image, const ZUMRect& box,
                                              std::type_identity_t<P> value);
