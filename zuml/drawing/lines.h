/// Lines: drawn, added, and read as images.
///
/// A line takes one pixel for each step along its longer side, both ends included: J. E. Bresenham,
/// IBM Systems Journal 4 (1965). A tie between two pixels moves aside.
#pragma once

#include <cstdint>
#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Sets the line's pixels to `value`. The line is first cut to the region's box on X and Y, by
/// Cohen and Sutherland's method with integer divisions toward zero: the begin before the end, on Y
/// before X. A line that has been cut may therefore differ by a pixel from the part that it has in
/// a larger image. Then it is walked toward higher X. Nothing is drawn where the region does not
/// reach the ends' Z and T.
///
/// Throws XQException "ZUMDrawLine: Out of channel range", or "ZUMDrawLine only draws line on a X-Y
/// plane" if the ends differ in Z or T. Runs on the calling thread.
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawLine(ZUMImage<P>& image, const ZUMBasePoint<int>& begin,
                          const ZUMBasePoint<int>& end, std::type_identity_t<P> value, int channel);
/// In a colour: channel 0 takes its bits 0 to 7, channel 1 the bits 8 to 15, channel 2 the bits 16
/// to 23. An image without these channels is refused, and stays as it is.
ZUML_API void ZUMDrawLine(ZUMImage<ZUMByte>& image, const ZUMBasePoint<int>& begin,
                          const ZUMBasePoint<int>& end, std::uint32_t colour);

/// Adds `value` to the line's pixels, once to each; integers wrap, and a bool pixel becomes the
/// value. The line is cut as by ZUMDrawLine, but walked from begin to end, so that it may turn
/// aside at other pixels.
///
/// Throws XQException "ZUMAddLine: Out of channel range", or "ZUMAddLine only draws line on a X-Y
/// plane". Runs on the calling thread.
template <ZUMAlgebraPixel P>
ZUML_API void ZUMAddLine(ZUMImage<P>& image, const ZUMBasePoint<int>& begin,
                         const ZUMBasePoint<int>& end, std::type_identity_t<P> value, int channel);

/// The pixels of the line from begin to end: pixel X = k of the result is the line's pixel k, by
/// the walk of ZUMAddLine. The result has the region (0, 0, 0, 0) to (n, 0, 0, 0), n the greater of
/// the distances on X and Y, and one channel, or all of the image's without a channel given. A
/// region that is no box is asked for both ends only.
///
/// Throws XQException "ZUMGetLine: Out of channel range (%d)", "ZUMGetLine only reads lines on a
/// X-Y plane", and for an end outside the region "ZUMGetLine: Line out of image P0(%d,%d,%d,%d)" or
/// "ZUMGetLine: Line out of image P1(%d,%d,%d,%d)". Runs on the calling thread.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMGetLine(const ZUMImage<P>& image,
                                              const ZUMBasePoint<int>& begin,
                                              const ZUMBasePoint<int>& end, int channel);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMGetLine(const ZUMImage<P>& image,
                                              const ZUMBasePoint<int>& begin,
                                              const ZUMBasePoint<int>& end);

/// Adds a line that loses strength where it runs against the gradient. The line from begin to end
/// is walked as by ZUMAddLine, but not cut: of its pixels, those in both regions count. With u the
/// unit vector from begin to end, each of them rises by w, which is `value` at first; then g = u .
/// gradient at the pixel, and if g < 0, w becomes w + g, and the walk ends once that is not above
/// 0. A line of one pixel has no direction and loses nothing.
///
/// The image has one channel, the gradient two, along X and along Y. Throws XQException
/// "ZUMAddGradientLine only allows images with one channel", "ZUMAddGradientLine only allows
/// gradient images with two channels", or "ZUMAddGradientLine only draws line on a X-Y plane".
/// Runs on the calling thread, in a time that depends on the part of the line beside the regions'
/// common box, not on its length.
ZUML_API void ZUMAddGradientLine(ZUMImage<ZUMReal>& image, const ZUMImage<ZUMReal>& gradient,
                                 const ZUMBasePoint<int>& begin, const ZUMBasePoint<int>& end,
                                 double value);
