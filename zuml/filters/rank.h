/// Rank filters and medians: of the pixels under a mask, or of a whole image, in ascending order.
///
/// Of N values a percentile p asks for the one at the index k = trunc((N p) 0.01 - 0.5), counted
/// from 0 and cut toward zero: 0 is the least value, 100 the greatest, and 50 the middle one. A
/// median is the value at the index (N - 1) / 2, the lower one of two. Of reals -0.0 comes before
/// 0.0, and NaNs come after all numbers.
///
/// A mask has one channel; result(p) selects from source(p + k) over its true pixels k, for the
/// points p at which its whole box lies inside the source, in each channel by itself. A mask
/// without a true pixel is refused as ZUMDisplacementArray::FromNonZeroPixels does.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The value of that rank under a mask. A bool result is true where at most k pixels are false.
///
/// Throws XQException "ZUMRankOrder: Multichannel mask elements are not allowed", "ZUMRankOrder:
/// the percentile is out of domain [0..100]" for a percentile below 0, above 100 or NaN; for bools
/// for one of 0 or below, of 101 or above, or NaN. Tasks: CTaskRankOrderBool, CTaskRankOrderByte,
/// CTaskRankOrder.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMRankOrder(const ZUMImage<PixT>& image,
                                                   const ZUMImage<ZUMBool>& mask,
                                                   double percentile);

/// The value of that rank among all pixels of all channels. Throws XQException as above for the
/// percentile, and "ZUMRankOrder: empty image is not allowed" for an image without pixels. Runs on
/// the calling thread, in linear time on average.
template <ZUMGreyPixel PixT>
[[nodiscard]] ZUML_API PixT ZUMRankOrder(const ZUMImage<PixT>& image, double percentile);

/// The median under a mask. Throws XQException "ZUMMedian: Multichannel mask elements are not
/// allowed". Tasks: CTaskMedian; for bools and bytes those of ZUMRankOrder.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMMedian(const ZUMImage<PixT>& image,
                                                const ZUMImage<ZUMBool>& mask);

/// The median of all pixels of all channels. Throws XQException "ZUMMedian: empty image is not
/// allowed" for an image without pixels. Runs on the calling thread, in linear time on average.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API PixT ZUMMedian(const ZUMImage<PixT>& image);
