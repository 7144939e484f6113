/// The bilateral filter: means over the surroundings of a pixel in which pixels count the less, the
/// farther away they are and the more their values differ. Edges stay.
///
/// C. Tomasi, R. Manduchi, "Bilateral filtering for gray and color images", ICCV 1998.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"
#include "zuml/filters/convolution.h"

/// The filter with a Gaussian of sigma_space over the distances, ZUMGaussian2D(sigma_space,
/// radius), and one of sigma_value over the differences. Bytes and integers are filtered by
/// ZUMBilateralConv: bytes with ZUMGaussianX(sigma_value, 255), which covers every difference,
/// short and long ones with ZUMGaussianX(sigma_value), so that differences beyond the default
/// radius do not count. For real pixels the weight of a pixel s beside c is
///
///   g = exp(-(c - s)^2 / (2 sigma_value^2)) (a / sigma_value) w      a = 1 / sqrt(2 pi)
///
/// with w that of the distance, and the result is the sum of g s over the sum of g; a sigma_value
/// of 0 lets equal values count alone. Regions and channels are those of ZUMBilateralConv. Throws
/// what the two kernels throw, that of the distances first. Tasks: CTaskBilateralConv,
/// CTaskBilateralReal.
template <ZUMGreyPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMBilateral(const ZUMImage<PixT>& image,
                                                      double sigma_space, double sigma_value,
                                                      int radius);

/// The filter by a spatial kernel and a kernel of values. The latter is a row along X with Y, Z and
/// T at 0, whose pixel d is the weight of a difference c - s = d; differences beyond its ends do
/// not count. The result is
///
///   sum of s value(c - s) w(k) / sum of value(c - s) w(k),   s = source(p - k), c = source(p),
///
/// over the spatial kernel's pixels w(k) other than 0 in its sweep order, for the pixels p of
/// the source for which its whole box lies inside the source. Channels are filtered each by itself.
/// `long` results are sums of 32 bits that wrap, and a quotient cut toward zero, 0 where the
/// divisor is 0; reals give the quotient, a NaN where nothing counts.
///
/// Throws XQException "ZUMBilateralConv: it not allows  multichanel kernels" and
/// "ZUMBilateralConv: Dimensions of value kernel not allowed" for the kernel of values, and for a
/// spatial kernel of zeros as ZUMDisplacementValueArray does. Tasks: CTaskBilateralConv.
template <class OutT, class InT>
requires ZUMKernelCoefficient<OutT> && ZUMDiscretePixel<InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMBilateralConv(const ZUMImage<InT>& image,
                                                       const ZUMImage<OutT>& spatial,
                                                       const ZUMImage<OutT>& value);
