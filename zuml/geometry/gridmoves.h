/// Moves of the pixel grid that keep every pixel: translation, mirroring, quarter turns and
/// transposition. Regions move with the pixels: mirroring an image that begins at 0 gives one that
/// ends at 0. Pixels that would leave the 32-bit coordinates drop out, as those at the least one do
/// in a mirror. All run in the caller's thread.
///
/// Bool pixels in wrapped memory keep their bytes.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The image at coordinates shifted by the vector. No pixel is copied: the result shares the
/// raster, and what is written through one is seen through the other.
template <ZUMValuePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMTranslate(const ZUMImage<P>& image, int dx, int dy, int dz,
                                                int dt);
template <ZUMValuePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMTranslate(const ZUMImage<P>& image,
                                                const ZUMBasePoint<int>& d);

/// The image mirrored through the origin: ZUMSymmetry on all axes, result(-x, -y, -z, -t) =
/// image(x, y, z, t); the others on one axis.
template <ZUMValuePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMSymmetry(const ZUMImage<P>& image);
template <ZUMValuePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMSymmetryX(const ZUMImage<P>& image);
template <ZUMValuePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMSymmetryY(const ZUMImage<P>& image);
template <ZUMValuePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMSymmetryZ(const ZUMImage<P>& image);
template <ZUMValuePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMSymmetryT(const ZUMImage<P>& image);

/// The image turned about the origin in the XY plane: pixel (x, y) goes to (-y, x) for 90 degrees,
/// (-x, -y) for 180 and (y, -x) for 270. Angles are taken modulo 360; 0 gives a copy. Throws
/// XQException "ZUMRoDRect::RotateZ only allows angles multiples of 90".
template <ZUMValuePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMRotateZ(const ZUMImage<P>& image, int angle);

/// X and Y exchanged: result(y, x, z, t) = image(x, y, z, t). Throws XQException "ZUMTranspose: it
/// only allows images with rectangular RoD".
template <ZUMValuePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMTranspose(const ZUMImage<P>& image);
