/// Drawing: what changes an image in its own pixels. Here are images, warped images and masks,
/// drawn over an image; the headers that this one includes have lines and shapes.
///
/// A source is drawn where its region and the target's meet, its channel k into the target's
/// channel `channel` + k. No other pixel changes. A source that shares pixels with the target is
/// read as it was before the call. A displacement is added to the source's coordinates.
///
/// Throws XQException "negative number of channel" for a channel below 0, and "out of channel
/// range" if the target does not have all those channels. All run on the calling thread.
#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"
#include "zuml/drawing/lines.h"
#include "zuml/drawing/shapes.h"
#include "zuml/geometry/warp.h"

/// Copies the source's pixels.
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawImage(ZUMImage<P>& target, const ZUMImage<P>& source, int channel);
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawImage(ZUMImage<P>& target, const ZUMImage<P>& source,
                           const ZUMBasePoint<int>& displacement, int channel);

/// Draws the source as it is seen through xs = M[0][0] x + M[0][1] y + M[0][2], ys = M[1][0] x +
/// M[1][1] y + M[1][2], summed from left to right: each pixel (x, y) of the target takes the pixel
/// of the source at (xs, ys), Z = T = 0, at whatever Z and T it lies itself. One without a source
/// stays as it is.
///
/// Nearest: xs + 0.5 for xs >= 0, xs - 0.5 below 0, cut toward zero; the same on Y. Linear: between
/// x0, which is xs cut toward zero, and x1, which is x0 + 1 for xs >= 0 and x0 - 1 below 0, by the
/// weight xs - x0 with its sign: value(x0) + (value(x1) - value(x0)) (xs - x0). Along X first, then
/// likewise along Y; the region must hold all four pixels. At a negative position this is not the
/// value of ZUMWarpAffine2D, whose pair lies around the position: the weight is negative there, and
/// the result goes on beyond x0, away from x1. In double, cut toward zero on integer pixels, value
/// != 0 on bool.
///
/// Throws besides XQException "ZUMWarpAffine2D: Unknown interpolation method".
template <ZUMScalarPixel P>
ZUML_API void ZUMDrawWarpAffine2D(ZUMImage<P>& target, const ZUMImage<P>& source,
                                  const double (&M)[2][3], ZUMInterpolation interpolation,
                                  int channel);

/// Sets the pixels under the true pixels of the mask to `value`.
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawMask(ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                          std::type_identity_t<P> value, int channel);
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawMask(ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                          const ZUMBasePoint<int>& displacement, std::type_identity_t<P> value,
                          int channel);
/// Blends `value` over them: pixel (1 - alpha) + value alpha, in double, cut toward zero on integer
/// pixels; a bool pixel is true where that is not 0.
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawMask(ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                          std::type_identity_t<P> value, double alpha, int channel);
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawMask(ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                          const ZUMBasePoint<int>& displacement, std::type_identity_t<P> value,
                          double alpha, int channel);

/// In a colour: channel k of the mask is drawn into channel k with the colour's bits 0 to 7, into k
/// + 1 with the bits 8 to 15, into k + 2 with the bits 16 to 23. An image without all of these
/// channels is refused, and stays as it is.
ZUML_API void ZUMDrawMask(ZUMImage<ZUMByte>& image, const ZUMImage<ZUMBool>& mask,
                          std::uint32_t colour);
ZUML_API void ZUMDrawMask(ZUMImage<ZUMByte>& image, const ZUMImage<ZUMBool>& mask,
                          const ZUMBasePoint<int>& displacement, std::uint32_t colour);

namespace zuml_detail {
ZUML_API void BlendColouredMask(const ZUMImage<ZUMByte>& image, const ZUMImage<ZUMBool>& mask,
                                const ZUMBasePoint<int>& displacement, std::uint32_t colour,
                                double alpha);
}  // namespace zuml_detail

/// A colour blended over the pixels. An integer behind the value is always a channel: in
/// ZUMDrawMask(image, mask, 255, 0), 255 is the value and 0 the channel. So an alpha here is a
/// floating number.
template <std::floating_point Alpha>
void ZUMDrawMask(ZUMImage<ZUMByte>& image, const ZUMImage<ZUMBool>& mask, std::uint32_t colour,
                 Alpha alpha) {
  zuml_detail::BlendColouredMask(image, mask, {}, colour, static_cast<double>(alpha));
}
template <std::floating_point Alpha>
void ZUMDrawMask(ZUMImage<ZUMByte>& image, const ZUMImage<ZUMBool>& mask,
                 const ZUMBasePoint<int>& displacement, std::uint32_t colour, Alpha alpha) {
  zuml_detail::BlendColouredMask(image, mask, displacement, colour, static_cast<double>(alpha));
}
