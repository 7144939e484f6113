/// Sums, mean, deviation and variance of an image. Every channel's pixels belong to the same
/// population: n is the number of pixels of the region times the number of channels.
///
/// All but ZUMSumChannels run on the calling thread in one walk. Sums of reals are taken in sweep
/// order, so that every build gives the same.
#pragma once

#include <concepts>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The pixel types of sums: `long` ones that wrap of the discrete types, `double` ones of doubles,
/// complex ones of complex pixels.
template <class OutT, class InT>
concept ZUMSumPixels = (std::same_as<OutT, ZUMLong> && ZUMDiscretePixel<InT>) ||
                       (std::same_as<OutT, ZUMReal> && std::same_as<InT, ZUMReal>) ||
                       (std::same_as<OutT, ZUMComplex> && std::same_as<InT, ZUMComplex>);

/// The sum of all pixels: ZUMSum<ZUMLong>(image). A `long` sum is a 32-bit integer that wraps: up
/// to 8.4 million pixels of bytes or 65536 of shorts it cannot, two pixels of `long` can make it do
/// so. ZUMSumWide does not wrap.
template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT>
[[nodiscard]] ZUML_API OutT ZUMSum(const ZUMImage<InT>& image);

/// The channels added up, from channel 0 on: an image of one channel over the same region, in the
/// arithmetic of OutT; 0 where there is no channel. Tasks: CTaskSumChannels.
template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMSumChannels(const ZUMImage<InT>& image);

/// The mean, in `double`; the sum of integers behind it does not wrap. A NaN for an image without
/// pixels.
template <ZUMGreyPixel PixT>
[[nodiscard]] ZUML_API ZUMReal ZUMMean(const ZUMImage<PixT>& image);

/// The standard deviation and the variance. With S the sum of the pixels and Q that of their
/// squares, they are sqrt(max(nQ - SS, 0)) (1 / n) and (Q - SS / n) / n; rounding can take the
/// variance below 0. A NaN for an image without pixels, or with a NaN among them.
///
/// Q is a `double`. S is one for real pixels; for integer pixels it is the 32-bit integer that
/// ZUMSum gives. Where that wraps, both results are meaningless: from 8.4 million bytes of 255 on,
/// 16.9 million of 127, 65538 shorts near the end of their range. The Wide forms hold at any size.
template <ZUMGreyPixel PixT>
[[nodiscard]] ZUML_API ZUMReal ZUMStdDeviation(const ZUMImage<PixT>& image);
template <ZUMGreyPixel PixT>
[[nodiscard]] ZUML_API ZUMReal ZUMVariance(const ZUMImage<PixT>& image);

/// The sum of all pixels in 64 bits, which no image can fill.
template <ZUMDiscretePixel PixT>
[[nodiscard]] ZUML_API long long ZUMSumWide(const ZUMImage<PixT>& image);

/// The standard deviation and the variance of integer pixels at any size: n, S and Q are exact, and
/// only (nQ - SS) / nn and its root are rounded. Neither is below 0; a constant image has exactly
/// 0. A NaN for an image without pixels.
template <ZUMIntegerPixel PixT>
[[nodiscard]] ZUML_API ZUMReal ZUMStdDeviationWide(const ZUMImage<PixT>& image);
template <ZUMIntegerPixel PixT>
[[nodiscard]] ZUML_API ZUMReal ZUMVarianceWide(const ZUMImage<PixT>& image);
