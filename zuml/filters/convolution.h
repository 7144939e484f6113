/// Convolution and correlation: weighted sums of a pixel's surroundings.
///
/// A kernel's coordinates are distances from the result pixel, so its origin is the point (0,0,0,0)
/// wherever that lies in the kernel's region, or outside of it; nothing is centred. With w(k) the
/// kernel's pixels,
///
///   ZUMConv   result(p) = sum of w(k) source(p - k)
///   ZUMCorr   result(p) = sum of w(k) source(p + k)
///
/// for the points p at which the kernel's whole box, pixels that are 0 included, lies inside the
/// source: the region shrinks, and a kernel away from the origin shifts it, up to the ends of 32
/// bits. A kernel larger than the source leaves an empty result. Pixels that are 0 are skipped. The
/// terms are added in the kernel's sweep order, the first one starting the sum:
///
///   long from bool, byte, short, long   32-bit products and sums that wrap
///   long from float, double             each product in the source's type, truncated to 32 bits;
///                                       these are added as integers
///   double from any type                products and sums in double
///   float from all but double           source and kernel in float, products and sums in float
///   float from double                   each product in double and rounded; sums in float
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"
#include "zuml/core/zumkernel.h"

/// The pixel types of convolutions: long, double and float results of all ordered types.
template <class OutT, class InT>
concept ZUMConvPixels = (ZUMKernelCoefficient<OutT> ||
                         std::same_as<OutT, ZUMSReal>)&&ZUMOrderedPixel<InT>;
/// The pixel types of correlations and of kernels in stages.
template <class OutT, class InT>
concept ZUMCorrPixels = ZUMKernelCoefficient<OutT> && ZUMScalarPixel<InT>;

/// Convolution and correlation with a kernel image; result pixels are of the kernel's type.
///
/// With one channel in the kernel, each channel of the source is filtered by it. With several in
/// the kernel and one in the source, channel c of the result is the source filtered by channel c.
/// With several in both, their numbers are equal and the result has one channel: the sum over all
/// channels of the source's channel filtered by the kernel's. A source of no channel gives none.
///
/// Both throw XQException "ZUMConv: convolution of Multichanel image and kernel with diferent
/// number of channels is not allowed"; a kernel, or the channel of it that is applied alone,
/// without a pixel other than 0 is refused as ZUMDisplacementValueArray does. Tasks: CTaskConv. The
/// time is proportional to the number of pixels other than 0.
template <class OutT, class InT>
requires ZUMConvPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMConv(const ZUMImage<InT>& image,
                                              const ZUMImage<OutT>& kernel);
template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMCorr(const ZUMImage<InT>& image,
                                              const ZUMImage<OutT>& kernel);

/// The same with a chain of stages: the source, converted to OutT, is filtered by the first stage,
/// the result of that by the second, and so on, each shrinking the region by its own box. On Z and
/// T, where a stage's box says nothing, the coordinates of its coefficients count. A chain without
/// stages makes a converted copy.
///
/// Channels are those of the first stage's source: with one channel in the kernel, each channel is
/// filtered alike; with several in the kernel and one in the source, channel c of each stage
/// filters channel c of the stage before; with several in both, each stage gives one channel, the
/// sum over its channels, and all channels of a further stage filter that one. A channel without
/// coefficients gives 0, where a kernel image would be refused. A source or a kernel of no channel
/// gives none.
///
/// Throw XQException "ZUMConv: multichannel Image and kernel with different number of channels are
/// not allowed" or the same with ZUMCorr. Tasks: CTaskConv, CTaskConvStages, CTaskAcumProduct.
template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMConv(const ZUMImage<InT>& image,
                                              const ZUMKernel<OutT>& kernel);
template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMCorr(const ZUMImage<InT>& image,
                                              const ZUMKernel<OutT>& kernel);
