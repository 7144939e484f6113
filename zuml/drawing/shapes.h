/// Shapes drawn into an image: rectangles, circles, ellipses and polygons, as outlines and filled.
///
/// A shape is drawn in one channel, at the Z and T of its points, and only where the image's region
/// has pixels: the part outside is left out and takes no time. All run on the calling thread.
///
/// A colour is a number that holds what channel 0 takes in its bits 0 to 7, channel 1 in the bits 8
/// to 15, channel 2 in the bits 16 to 23. An image without these channels is refused, and stays as
/// it is.
#pragma once

#include <cstdint>
#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The four sides of a rectangle, as lines of ZUMDrawLine. Throws its "ZUMDrawLine: Out of channel
/// range", and "ZUMDrawLine only draws line on a X-Y plane" for a box that is not flat in Z and T.
template <ZUMArithmeticPixel P>
ZUML_API void ZUMDrawRect(ZUMImage<P>& image, const ZUMRect& box, std::type_identity_t<P> value,
                          int channel);
ZUML_API void ZUMDrawRect(ZUMImage<ZUMByte>& image, const ZUMRect& box, std::uint32_t colour);

/// All pixels of a box, at all its Z and T. Throws XQException "ZUMImage<PixT>::Channel: channel %d
/// out of image".
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawFilledRect(ZUMImage<P>& image, const ZUMRect& box,
                                std::type_identity_t<P> value, int channel);
ZUML_API void ZUMDrawFilledRect(ZUMImage<ZUMByte>& image, const ZUMRect& box, std::uint32_t colour);

/// The circle around a pixel, by the midpoint rule on integers (J. E. Bresenham, CACM 20, 1977): in
/// the octant from (0, r) on, d = 5 - 4 r; while x < y, x rises by 1, and if d < 0, d rises by 8 x
/// + 4, else d rises by 8 (x - y + 1) + 4 and y falls by 1. Each (x, y) is drawn in all octants.
/// Radius 0 is the centre.
///
/// Throws XQException "ZUMDrawLine: Out of channel range" or "ZUMDrawCircle: Radius less than
/// zero".
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawCircle(ZUMImage<P>& image, const ZUMBasePoint<int>& centre, int radius,
                            std::type_identity_t<P> value, int channel);
ZUML_API void ZUMDrawCircle(ZUMImage<ZUMByte>& image, const ZUMBasePoint<int>& centre, int radius,
                            std::uint32_t colour);

/// The rows between the points of that circle. The errors are those of ZUMDrawCircle.
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawFilledCircle(ZUMImage<P>& image, const ZUMBasePoint<int>& centre, int radius,
                                  std::type_identity_t<P> value, int channel);
ZUML_API void ZUMDrawFilledCircle(ZUMImage<ZUMByte>& image, const ZUMBasePoint<int>& centre,
                                  int radius, std::uint32_t colour);

/// A filled circle around the origin, as a mask or a structuring element: true inside, over the
/// region (-r, -r, 0, 0) to (r, r, 0, 0). Throws XQException "ZUMDrawCircle: Radius less than
/// zero".
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMCircleIm(int radius);

/// The ellipse that a box holds: its pixels with (x - cx)^2 B + (y - cy)^2 A <= A B, with cx and cy
/// the middle of the box, A and B the squares of half its EndX - BeginX and EndY - BeginY, all in
/// double. A box without a width is a line.
///
/// Throws XQException "ZUMDrawFilledEllipse: Out of channel range", or "ZUMDrawFilledEllipse only
/// draws ellipses on a X-Y plane" for a box that is not flat in Z and T.
template <ZUMScalarPixel P>
ZUML_API void ZUMDrawFilledEllipse(ZUMImage<P>& image, const ZUMRect& box,
                                   std::type_identity_t<P> value, int channel);

/// The sides of a polygon, as lines of ZUMDrawLine: from the last of the `count` points to the
/// first, then from each point to the next.
///
/// Throws XQException "ZUMDrawPolygon: Out of channel range", "ZUMDrawPolygon: few points" for
/// fewer than 3 or a null pointer, and "ZUMDrawLine only draws line on a X-Y plane" for points that
/// differ in Z or T.
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawPolygon(ZUMImage<P>& image, const ZUMBasePoint<int>* points, int count,
                             std::type_identity_t<P> value, int channel);

/// A polygon with its inside by the even-odd rule. The sides are drawn as by ZUMDrawPolygon, at the
/// points' Z and T; the inside at Z = T = 0, whatever these are. On each row, every side with one
/// end above the row and the other on or below it gives a node at X = (y - yi) / (yj - yi) (xj -
/// xi) + xi + 0.5, in double and cut toward zero; the nodes in ascending order are taken in pairs,
/// and each pair is a run of pixels with both nodes.
///
/// Throws XQException "ZUMDrawFilledPolygon: Out of channel range", "ZUMDrawFilledPolygon: few
/// points", and otherwise as ZUMDrawPolygon does.
template <ZUMAlgebraPixel P>
ZUML_API void ZUMDrawFilledPolygon(ZUMImage<P>& image, const ZUMBasePoint<int>* points, int count,
                                   std::type_identity_t<P> value, int channel);
