/// Scaling by whole numbers: binning, zoom by repetition, and the fields of interlaced frames.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The means of blocks of nx x ny pixels. Pixel (X, Y) of the result is the mean of the pixels
/// (nx X + i, ny Y + j); the result begins at Begin / n (division toward zero) and an incomplete
/// last block is dropped. nx = ny = 1 shares the image.
///
/// Factors 2, 2 and 3, 3 on integers: a 32-bit sum, which wraps for `long` pixels alone, shifted
/// right by 2 or divided by 9. All else:
/// the sum in double times 1 / (nx ny), toward zero on integers. A first or last block that begins
/// or ends outside the region, which happens where the region is not aligned to the factor, is the
/// mean of the pixels that exist.
///
/// Throws XQException, in this order: "Solo puede hacerse binning para números positivos", "Solo
/// puede hacerse binning NxN para rectangulares", "Solo puede hacerse binning NxN para imágenes con
/// ancho mayor o igual que N", "Solo puede hacerse binning NxN para imágenes con alto mayor o igual
/// que N". Tasks: CTaskBinning2D2x2, CTaskBinning2D3x3, CTaskBinning2DNxN.
template <ZUMNumericPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMBinning2D(const ZUMImage<P>& image, int nx, int ny);

/// The image with each pixel repeated nx x ny times: the pixel (x, y) fills (nx x, ny y) to
/// (nx x + nx - 1, ny y + ny - 1), below 0 as above. nx = ny = 1 shares the image.
///
/// Throws XQException "Solo puede hacerse zoom para números positivos", "Solo puede hacerse zoom
/// NxN para rectangulares" or "ZUMZoom2D: coordinate %lld times %d is beyond 32 bits". Tasks:
/// CTaskZoom2D2x2, CTaskZoom2D3x3, CTaskZoom2DNxN.
template <ZUMOrderedPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMZoom2D(const ZUMImage<P>& image, int nx, int ny);

/// One field of an interlaced frame. Fields 0 and 1: the even or the odd rows, counted from the
/// first; 2 and 3: the same with the means of pairs of pixels along X; 4 and 5: as 0 and 1 with
/// each row written twice, over the whole region. The result begins where the image does.
///
/// The mean of a pair is (a + b) >> 1 in 32 bits on integers, 0.5 (a + b) on double, a and b on
/// bool; the last pixel of an odd width stands alone. Where the odd rows run out, the last of them
/// is repeated, and the first row stands in if there is none. An empty image is returned as it is.
///
/// Throws XQException "ZUMInterlacedField only allows 2D images" or "ZUMInterlacedField: Fields
/// allowed are 0 (odd lines), 1 (even lines)". Runs in the caller's thread.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMInterlacedField(const ZUMImage<P>& image, int field);
