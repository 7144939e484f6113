/// Sums of a pixel's surroundings without weights: under a mask, in a box, where a second mask
/// allows it, and counts above a threshold per pixel.
///
/// As in a correlation, result(p) sums source(p + k) over the true pixels k of the mask, for the
/// points p at which the mask's whole box lies inside the source. Results are `long`, which wraps,
/// for bool, byte, short and long pixels; double for double; complex for complex. A mask without a
/// true pixel, or a channel of one, is refused as ZUMDisplacementArray::FromNonZeroPixels does.
///
/// A mask or a box may lie anywhere and be larger than the image, which leaves an empty result. An
/// image of no channel has sums of no channel. ZUMSum(image, box) and its kin without a result type
/// return the type that follows from the image's.
#pragma once

#include <concepts>
#include <type_traits>

#include "zuml/algebra/statistics.h"
#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The type of sums of such pixels: `long`, double or complex.
template <class InT>
using ZUMNaturalSum = std::conditional_t<ZUMDiscretePixel<InT>, ZUMLong, InT>;

/// ZUMSum<ZUMLong>(image, mask): the sum under a mask of one channel; with two, the sum under
/// channel 0 less that under channel 1. Each channel of the image is summed alike.
///
/// With A true pixels in the mask and I of them at the right ends of their runs, both counted over
/// all channels: for A <= 2 I each sum is taken directly, in the mask's sweep order. For A > 2 I it
/// slides along X: after the first pixel of a row, the pixels that leave are taken from the sum
/// before and those that enter are added, in this order, so that rounding errors of reals run along
/// the row. Channel 1 changes after channel 0 in each of the two steps. Rows are never cut.
///
/// Throws XQException "ZUMSum only allows a mask with one or two channels". Tasks for A <= 2 I:
/// CTaskSum1 for one channel, CTaskSum2 for two. For A > 2 I: CTaskSumSC1 and CTaskSumSC2; but
/// `long` sums under a mask of one channel that is true all over its box are taken as those of the
/// box, by CTaskSumX and CTaskSumT.
template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMSum(const ZUMImage<InT>& image,
                                             const ZUMImage<ZUMBool>& mask);
// Template arguments of a deducing form are no types, so that ZUMSum<ZUMLong>(...) is never one.
template <int = 0, class InT>
requires ZUMSumPixels<ZUMNaturalSum<InT>, InT>
[[nodiscard]] ZUMImage<ZUMNaturalSum<InT>> ZUMSum(const ZUMImage<InT>& image,
                                                  const ZUMImage<ZUMBool>& mask) {
  return ZUMSum<ZUMNaturalSum<InT>>(image, mask);
}

/// The sum over a box, axis by axis in the order X, Y, Z, T: each pass sums the result of the one
/// before, from the low end of the box to the high one. The box may lie to one side of the origin;
/// that of the origin alone makes a copy.
/// The time is proportional to the sum of its sides, and for integers to those on Z and T.
///
/// Throws XQException "ZUMSum: empty rectangle is not allowed". Tasks: CTaskSumX, CTaskSumT.
template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMSum(const ZUMImage<InT>& image, const ZUMRect& rect);
template <int = 0, class InT>
requires ZUMSumPixels<ZUMNaturalSum<InT>, InT>
[[nodiscard]] ZUMImage<ZUMNaturalSum<InT>> ZUMSum(const ZUMImage<InT>& image, const ZUMRect& rect) {
  return ZUMSum<ZUMNaturalSum<InT>>(image, rect);
}

/// The sum over a region: its box, or a mask that is true on it.
template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMSum(const ZUMImage<InT>& image, const ZUMRoDRef& rod);
template <int = 0, class InT>
requires ZUMSumPixels<ZUMNaturalSum<InT>, InT>
[[nodiscard]] ZUMImage<ZUMNaturalSum<InT>> ZUMSum(const ZUMImage<InT>& image,
                                                  const ZUMRoDRef& rod) {
  return ZUMSum<ZUMNaturalSum<InT>>(image, rod);
}

/// The sum under a kernel of one or two channels where the mask is true, and `value` where it is
/// false; over the region of ZUMSum that the mask's region shares. Sums are direct ones.
///
/// Throws XQException "ZUMSum only allows a kernel with one or two channels", "ZUMSumMasked: It
/// don't allows image and mask with different number of channels". Tasks: CTaskSumMasked1,
/// CTaskSumMasked2.
template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT> &&
    (!std::same_as<OutT, ZUMComplex>)ZUML_API ZUMImage<OutT> ZUMSumMasked(
        const ZUMImage<InT>& image, const ZUMImage<ZUMBool>& kernel, const ZUMImage<ZUMBool>& mask,
        std::type_identity_t<OutT> value);
template <int = 0, ZUMScalarPixel InT>
[[nodiscard]] ZUMImage<ZUMNaturalSum<InT>> ZUMSumMasked(
    const ZUMImage<InT>& image, const ZUMImage<ZUMBool>& kernel, const ZUMImage<ZUMBool>& mask,
    std::type_identity_t<ZUMNaturalSum<InT>> value) {
  return ZUMSumMasked<ZUMNaturalSum<InT>>(image, kernel, mask, value);
}

/// The number of true pixels k of the mask for which image(p + k) is not less than threshold(p);
/// over the region that both images share, less the mask's reach, as far as the threshold has
/// pixels there: under a mask away from the origin there may be nothing to compare with. The result
/// has the image's channels, and where the threshold has fewer, its last
/// one serves the others. Runs on the calling thread.
///
/// Throws XQException "ZUMSumThr only allows a mask with one channel".
template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT> && ZUMGreyPixel<InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMSumThr(const ZUMImage<InT>& image,
                                                const ZUMImage<InT>& threshold,
                                                const ZUMImage<ZUMBool>& mask);
template <int = 0, ZUMGreyPixel InT>
[[nodiscard]] ZUMImage<ZUMNaturalSum<InT>> ZUMSumThr(const ZUMImage<InT>& image,
                                                     const ZUMImage<InT>& threshold,
                                                     const ZUMImage<ZUMBool>& mask) {
  return ZUMSumThr<ZUMNaturalSum<InT>>(image, threshold, mask);
}
