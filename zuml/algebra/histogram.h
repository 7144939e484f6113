/// Histograms: how often pixel values, or tuples of the values of several channels, occur.
///
/// A histogram is an image of `long` with one channel in which each source channel is an axis:
/// channel 0 is X, channel 1 is Y, channel 2 is Z, channel 3 is T; axes beyond the channels hold
/// the single coordinate 0. All of it runs on the calling thread.
#pragma once

#include <concepts>
#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The histogram of the pixels from `min` to `max` in `levels` bins for each channel.
///
/// - `levels` 0, for integer pixels: one bin for each value, and the axes run from min to max.
/// - `levels` given: the axes run from 0 to levels - 1. If levels is max - min + 1, and the pixels
///   are integers, the bin is the pixel value itself. Otherwise it is (v - min) * ((levels - 1) /
///   (max - min)), computed in `double` and truncated toward zero: a value slightly below min goes
///   to bin 0, and with min = max nothing is counted.
/// - A byte or short image with min > max takes the full range of its type: ZUMHistogram(image, 0,
///   1, 0) has a bin for each possible value.
///
/// A tuple whose bins do not all lie on the axes is not counted; with levels given, negative values
/// of a short image of full range do not. An image of no channel has no
/// tuples: its histogram is one cell with 0.
///
/// Throws XQException "ZUMHistogram only allows images with 1,2,3, or 4 channels" (with "1,2,3 or
/// 4" for reals); "ZUMHistogram: Histogram too big" for long and real images with min > max, and
/// for a histogram beyond what a raster holds; "ZUMHistogram: Histogram with 0 level is not
/// allowed" for reals.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMHistogram(const ZUMImage<P>& image, unsigned levels,
                                                      std::type_identity_t<P> min,
                                                      std::type_identity_t<P> max);

/// The number of pixels with each value, or tuple of values in up to three channels; the axes run
/// from the least to the greatest value of their channel.
///
/// Throws XQException "ZUMPixelValueCnt: number of channels not allowed", "ZUMMinMax:Valor
/// indefinido por imagen vacia" for an image without pixels, "ZUMPixelValueCnt: Histogram too big"
/// for a range of values beyond what a raster holds.
template <ZUMDiscretePixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMPixelValueCnt(const ZUMImage<PixT>& image);

/// The pixel types of sums per bin: `long` ones, which wrap, of discrete values, `double` ones of
/// doubles.
template <class OutT, class BinT, class ValT>
concept ZUMBinSumPixels = ZUMDiscretePixel<BinT> &&
    ((std::same_as<OutT, ZUMLong> && ZUMDiscretePixel<ValT>) ||
     (std::same_as<OutT, ZUMReal> && std::same_as<ValT, ZUMReal>));

/// As above over the region that both images share, with the sum of the first channel of `values`
/// in place of the count: of a label image and a grey image it makes the sum of each region,
/// ZUMPixelValueCnt<ZUMLong>(labels, grey). A `long` sum wraps, where ZUMSum does;
/// ZUMPixelValueCnt<ZUMReal>(labels, ZUMImage<ZUMReal>(grey)) does not. The axes fit the part of
/// `bins` that is shared.
///
/// Throws XQException "ZUMPixelValueCnt: Binds and value image don't have the same number of
/// channels" before anything else, and then as above.
template <class OutT, class BinT, class ValT>
requires ZUMBinSumPixels<OutT, BinT, ValT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMPixelValueCnt(const ZUMImage<BinT>& bins,
                                                       const ZUMImage<ValT>& values);
