/// Profiles: the pixels under a segment.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The pixels from (x0, y0) to (x1, y1), both included, in plane z (and t = 0) of channel c: an
/// image of one channel from X = 0 to max(|x1 - x0|, |y1 - y0|). The points between are those of
/// Bresenham's line (IBM Systems Journal 4, 1965), one for each step along the longer side; both
/// sides equal, along X.
///
/// If x0, x1, y0, y1, z or c is not below the raster's size on its axis, or below 0, the line
/// "Coordenadas fuera de la imagen" goes to the diagnostics; an image that does not begin at 0 can
/// bring it about with points inside it. The first point of the segment that is not in the image
/// throws XQException "Pixel coordinates out of image (%d,%d,%d,%d,%d)". Runs on the calling
/// thread.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMReadLine(const ZUMImage<PixT>& image, int x0, int y0,
                                                  int x1, int y1, int z, int c);
