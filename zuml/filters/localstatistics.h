/// Mean, deviation and variance of each pixel's surroundings.
///
/// The surroundings are given by a mask, whose true pixels count alike; by an image of weights; or
/// by a kernel in stages. With W(x) the weighted sum, which is ZUMSum for a mask and ZUMConv
/// otherwise, n the sum of the weights, A = W(x) and B = W(x^2),
///
///   ZUMMean           A / n
///   ZUMStdDeviation   sqrt(max(n B - A A, 0)) / n
///   ZUMVariance       (B - A^2 / n) / n, which rounding can take below 0
///
/// over the region of that sum and in double. Squares of integer pixels are `long` and wrap, and so
/// are the sums under masks and `long` weights: the squares of pixels up to 1000 under 2147 pixels
/// still fit, those of pixels from 46341 on never do.
///
/// An image of no channel gives none. The mask, the weights or the kernel have one channel, or
/// XQException is thrown: "ZUMMean only allows a mask with one channel" by ZUMMean;
/// "ZUMStdDeviation only allows a mask with one channel" by ZUMStdDeviation with a mask or an image
/// of `long` weights; "ZUMVariance only allows a mask with one channel" otherwise. Tasks: those of
/// the sums, and CTaskLocalStatistics.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"
#include "zuml/core/zumkernel.h"

template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMMean(const ZUMImage<PixT>& image,
                                                 const ZUMImage<ZUMBool>& mask);
template <ZUMDiscretePixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMMean(const ZUMImage<PixT>& image,
                                                 const ZUMImage<ZUMLong>& weights);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMMean(const ZUMImage<PixT>& image,
                                                 const ZUMImage<ZUMReal>& weights);
template <ZUMDiscretePixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMMean(const ZUMImage<PixT>& image,
                                                 const ZUMKernel<ZUMLong>& kernel);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMMean(const ZUMImage<PixT>& image,
                                                 const ZUMKernel<ZUMReal>& kernel);

template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMStdDeviation(const ZUMImage<PixT>& image,
                                                         const ZUMImage<ZUMBool>& mask);
template <ZUMDiscretePixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMStdDeviation(const ZUMImage<PixT>& image,
                                                         const ZUMImage<ZUMLong>& weights);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMStdDeviation(const ZUMImage<PixT>& image,
                                                         const ZUMImage<ZUMReal>& weights);
template <ZUMDiscretePixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMStdDeviation(const ZUMImage<PixT>& image,
                                                         const ZUMKernel<ZUMLong>& kernel);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMStdDeviation(const ZUMImage<PixT>& image,
                                                         const ZUMKernel<ZUMReal>& kernel);

template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMVariance(const ZUMImage<PixT>& image,
                                                     const ZUMImage<ZUMBool>& mask);
template <ZUMDiscretePixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMVariance(const ZUMImage<PixT>& image,
                                                     const ZUMImage<ZUMLong>& weights);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMVariance(const ZUMImage<PixT>& image,
                                                     const ZUMImage<ZUMReal>& weights);
template <ZUMDiscretePixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMVariance(const ZUMImage<PixT>& image,
                                                     const ZUMKernel<ZUMLong>& kernel);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMVariance(const ZUMImage<PixT>& image,
                                                     const ZUMKernel<ZUMReal>& kernel);
