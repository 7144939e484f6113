/// Thresholds by the variance between classes, after N. Otsu, "A threshold selection method from
/// gray-level histograms", IEEE Trans. SMC 9 (1979).
///
/// A threshold t puts the bins below t in the lower class, as ZUMThr does with pixels. Selections
/// run in the caller's thread. Histograms are those of ZUMHistogram: bins are X coordinates, which
/// need not begin at 0, and serve as grey levels; each product of a level and a count is a 32-bit
/// one. A histogram without pixels at Y, Z and T 0 has no bins.
///
/// The forms for images build ZUMHistogram(image, levels, min, max), with its errors. With levels 0
/// the bin is the threshold. Otherwise, with min > max replaced by the image's least and greatest
/// pixel, it is (max - min) bin / (levels - 1) + min, cut toward zero on integers; levels 1, with
/// its only bin, gives min.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumarray.h"
#include "zuml/core/zumimage.h"

/// The bin t with the greatest n0 n1 (m1 - m0)^2, of the classes' counts and means; 0 when no bin
/// splits the histogram. The criterion is computed in double, and the first bin with the greatest
/// number is taken. Bins between which the histogram is 0 have exactly the same number; splits that
/// tie on paper only may differ in the last digit, and then the first need not be the one. This
/// holds for all selections here.
[[nodiscard]] ZUML_API int ZUMHistogramOtsu(const ZUMImage<ZUMLong>& histogram);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API P ZUMOtsu(const ZUMImage<P>& image, unsigned levels,
                                 std::type_identity_t<P> min, std::type_identity_t<P> max);

/// The same with the criterion times (n - h(t)), which prefers thresholds in valleys (H. Ng,
/// "Automatic thresholding for defect detection", 2006).
[[nodiscard]] ZUML_API int ZUMHistogramValleyOtsu(const ZUMImage<ZUMLong>& histogram);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API P ZUMValleyOtsu(const ZUMImage<P>& image, unsigned levels,
                                       std::type_identity_t<P> min, std::type_identity_t<P> max);

/// Two thresholds t1 and t2 for three classes, below t1, from t1 to below t2, and from t2 on, by
/// the greatest sum of w_k (m - m_k)^2 over the classes; the first of equals, t1 before t2. (0, 0)
/// when there are no three classes. A class is empty when its count is 0. The time
/// grows with the square of the number of bins.
[[nodiscard]] ZUML_API ZUMArray<ZUMLong> ZUMHistogramTrimodalOtsu(
    const ZUMImage<ZUMLong>& histogram);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMArray<P> ZUMTrimodalOtsu(const ZUMImage<P>& image, unsigned levels,
                                                   std::type_identity_t<P> min,
                                                   std::type_identity_t<P> max);

/// Otsu's criterion on the sorted pixels instead of a histogram: the value of the pixel that begins
/// the upper class; the first of equals, 0 for fewer than two pixels or equal ones, and for an
/// image with a NaN, since its sum is a NaN. Throws XQException "ZUMPixelOtsu does not allow
/// multichannel images".
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API P ZUMPixelOtsu(const ZUMImage<P>& image);
