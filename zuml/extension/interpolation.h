/// Unknown pixels computed from a band of known ones around them, in one step.
///
/// A mask says which pixels of an image are unknown: true is to compute, false is known. Image and
/// mask have one channel each, and the result covers what both cover. The band are the known pixels
/// there that ZUMDilateEx of the mask with ZUMCircleIm(radius) reaches. Computed values are
/// `double`; they are cut toward zero on integer pixels, and a bool is true where the value is not
/// 0.
///
/// Throw XQException "ZUMExtendLinear: It only accepts images with one channel (%d)",
/// "ZUMExtendLinear: Diferent number of channels %d!=%d", with their own name, and "ZUMDrawCircle:
/// Radius less than zero". Run on the calling thread.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Interpolation by radial basis functions (R. L. Hardy, "Multiquadric equations of topography and
/// other irregular surfaces", 1971) with the distance itself as the function: of the n pixels of
/// the band in sweep order, weights w solve sum of d(i, j) w(j) = pixel i, and an unknown pixel p
/// is the sum of d(p, j) w(j). Without a pixel in the band the image is copied.
///
/// Throws what XQSolveGauss throws for a singular system, and XQMatrix for n above 16383. The time
/// is that of n^3 / 3 multiplications, and n for each unknown pixel.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMExtendLinear(const ZUMImage<P>& image,
                                                   const ZUMImage<ZUMBool>& mask, int radius);

/// The mean of the band's pixels weighted by ZUMGaussianX(sigma, S) at their distance on each axis,
/// S being the largest size of the result. Where all weights are 0, and without a pixel in the
/// band, an unknown pixel is 0, of reals a NaN. Throws what ZUMGaussianX throws. The time is that
/// of the band's pixels for each unknown one.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMExtendGauss(const ZUMImage<P>& image,
                                                  const ZUMImage<ZUMBool>& mask, int radius,
                                                  double sigma);
