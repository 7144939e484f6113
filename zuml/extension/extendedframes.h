/// Frames and padding whose pixels follow from the image: the new pixels are unknown ones, filled
/// by the extension of the same name; see there for results and further errors.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"
#include "zuml/extension/diffusion.h"
#include "zuml/extension/spreading.h"

/// The image widened by a frame of margins. The frame is part of the result's region.
///
/// Throw XQException "ZUMAddFrameNearest: It is not allowed add a frame to an empty image",
/// "ZUMAddFrameNearest: It is not allowed add a negative frame to an image", each with its own
/// name.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAddFrameNearest(const ZUMImage<P>& image,
                                                      const ZUMRect& frame,
                                                      const ZUMImage<ZUMBool>& connectivity);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAddFrameMean(const ZUMImage<P>& image, const ZUMRect& frame,
                                                   const ZUMImage<ZUMBool>& connectivity);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAddFrameDiffuse(const ZUMImage<P>& image,
                                                      const ZUMRect& frame, double tolerance);

/// An image over the box: the image's pixels where it lies in the box, the others filled.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPaddingNearest(const ZUMImage<P>& image, const ZUMRect& box,
                                                     const ZUMImage<ZUMBool>& connectivity);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPaddingMean(const ZUMImage<P>& image, const ZUMRect& box,
                                                  const ZUMImage<ZUMBool>& connectivity);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPaddingDiffuse(const ZUMImage<P>& image, const ZUMRect& box,
                                                     double tolerance);
