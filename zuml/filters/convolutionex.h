/// Convolutions that keep the source's region.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"
#include "zuml/filters/convolution.h"

/// Convolution over the source's whole region: result(p) = sum of w(k) source(p - k) over the
/// kernel pixels k for which p - k lies in the source; what falls outside contributes nothing. Only
/// X and Y of the kernel's pixels count. The result has the source's region and channels; it is 0
/// where nothing contributes.
///
/// The terms are added to 0 in the kernel's sweep order:
///
///   long from bool, byte, short, long   32-bit products and sums that wrap
///   long from float, double             truncate(w source + value), in the source's type, at each
///                                       term
///   double from any type                products and sums in double
///   float from all but double           products and sums in float
///   float from double                   each product in double and rounded; sums in float
///
/// Throws XQException "ZUMConvEx: Multichannel kernels are not allowed". Tasks: CTaskConvEx2.
template <class OutT, class InT>
requires ZUMConvPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMConvEx(const ZUMImage<InT>& image,
                                                const ZUMImage<OutT>& kernel);

/// Correlation with a kernel along Y or X over the source's whole region, for derivatives: a kernel
/// whose region lies at X = 0 is one along Y, otherwise one that lies at Y = 0 is along X. With the
/// kernel's offsets j from b to e, weights w(j), and the pixels of a line numbered 0 to n:
///
/// - on a line with n <= e - b, result(i) = sum of w(j) source(i + j) / sum of w(j), both over the
///   offsets with i + j on the line. Integers divide toward zero, and give 0 where the weights' sum
///   is 0; reals give the quotient, which is then infinite or a NaN;
/// - along Y otherwise, result(i) = sum of w(j) source(i + j) over the offsets with i + j on the
///   line;
/// - along X otherwise, the same over all offsets, where the line's first and last pixel stand for
///   what lies beyond them.
///
/// Sums start from 0 and go from b to e. For `long`, they are 32-bit integers that wrap, and the
/// product with a double is truncated.
///
/// The result has the source's region and channels. Throws XQException "ZUMDeriveEx: Multichannel
/// kernels are not allowed", "ZUMDeriveEx: Only accepts unidimensional kernels". Runs on the
/// calling thread.
template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMDeriveEx(const ZUMImage<InT>& image,
                                                  const ZUMImage<OutT>& kernel);
