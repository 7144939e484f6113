/// Local means: the binomial sum, means by a kernel or under a mask, and their Ex forms, which keep
/// the source's region and take at the border the part of the kernel that lies inside. Channels are
/// filtered each by itself.
#pragma once

#include <concepts>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"
#include "zuml/filters/convolution.h"

/// The sum over 3 x 3 pixels with the weights 1 2 1, 2 4 2, 1 2 1: 16 times a mean. Sums are 32-bit
/// integers that wrap; a real pixel is truncated first. The region loses a pixel on each side along
/// X and Y. Tasks: as for ZUMCorr.
template <std::same_as<ZUMLong> OutT = ZUMLong, ZUMScalarPixel InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMSmooth(const ZUMImage<InT>& image);

/// ZUMCorr(image, kernel) / ZUMSum(kernel): the mean with the kernel's weights; see there for
/// regions, channels and errors. Integers divide toward zero, and give 0 where the weights sum to
/// 0.
template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMSmooth(const ZUMImage<InT>& image,
                                                const ZUMImage<OutT>& kernel);

/// The mean of source(p + k) over the N true pixels k of the mask, for the points p at which the
/// mask's whole box lies inside the source: the sum in `double`, times 1.0 / N.
///
/// With I of the true pixels at the right ends of their runs: for N <= 2 I each sum is taken
/// directly, in the mask's sweep order. For N > 2 I it slides along X: after the first pixel of a
/// row, the pixels that leave are taken from the sum before and those that enter are added, in this
/// order, so that rounding errors of reals run along the row. Rows are never cut.
///
/// Throws XQException "ZUMSmooth only allows a mask with one channel", and for a mask without a
/// true pixel as ZUMDisplacementArray::FromNonZeroPixels. Tasks: CTaskSmooth, or CTaskSmoothSC.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMSmooth(const ZUMImage<PixT>& image,
                                                   const ZUMImage<ZUMBool>& mask);

/// The mean by a kernel over the source's whole region. A kernel of a single column on the plane
/// Z = T = 0 reads source(q + k), as does one of a single row, and all its pixels count; any other
/// kernel reads source(q - k), and its pixels other than 0 count. The result is the sum of
/// w(k) source over the k whose pixels lie inside the source, divided by the sum of their w(k): at
/// the border the kernel is renormalised.
///
/// Both sums go in the kernel's sweep order. For `long` they are 32-bit integers that wrap, the
/// product with a real pixel is truncated, and the quotient is cut toward zero; a divisor 0 gives
/// 0. Reals give the quotient, which is then infinite or a NaN.
///
/// Throws XQException "ZUMSmooth: Multichannel kernels are not allowed". Tasks: CTaskSmoothEx.
template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMSmoothEx(const ZUMImage<InT>& image,
                                                  const ZUMImage<OutT>& kernel);

/// The mean of source(q - k) over the true pixels k of the mask with q - k inside the source, over
/// the source's whole region: the other way round from ZUMSmooth. A pixel that nothing reaches is
/// 0. Sums go in the mask's sweep order.
///
/// Throws XQException "ZUMSmoothEx only allows a mask with one or two channels" unless the mask has
/// one channel. Tasks: CTaskSmoothEx.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMSmoothEx(const ZUMImage<PixT>& image,
                                                     const ZUMImage<ZUMBool>& mask);
