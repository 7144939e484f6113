/// Thresholds by other properties of the histogram: the classes' deviations, valleys, and the
/// normal distribution of the low end.
///
/// A threshold t puts the bins below t in the lower class. Histograms are those of ZUMHistogram:
/// bins are X coordinates, which need not begin at 0, and serve as grey levels; each product of a
/// level and a count is a 32-bit one. A histogram without pixels at Y, Z and T 0 has no bins. The
/// forms for byte images work on the histogram of all 256
/// values. Everything runs in the caller's thread. Where no bin qualifies, the threshold is 0.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumarray.h"
#include "zuml/core/zumimage.h"

/// The bin with the least sum of the two classes' standard deviations; the first of equals.
[[nodiscard]] ZUML_API int ZUMHistogramMinVarianceThr(const ZUMImage<ZUMLong>& histogram);
[[nodiscard]] ZUML_API ZUMByte ZUMMinVarianceThr(const ZUMImage<ZUMByte>& image);

/// The bin t for which the smaller of two areas is greatest: those of the histogram above h(t),
/// left and right of t, the last bin left out; the first of equals.
[[nodiscard]] ZUML_API int ZUMHistogramValleyMinSumThr(const ZUMImage<ZUMLong>& histogram);
[[nodiscard]] ZUML_API ZUMByte ZUMValleyMinSumThr(const ZUMImage<ZUMByte>& image);

/// The bin in the deepest valley, by how far it lies below the lower of the peaks of both sides,
/// the last bin left out. Of equally deep bins it is the one further from the nearer class mean,
/// and then the first. A bin with no pixel on one of its sides is no candidate.
[[nodiscard]] ZUML_API int ZUMHistogramValleyThr(const ZUMImage<ZUMLong>& histogram);
[[nodiscard]] ZUML_API ZUMByte ZUMValleyThr(const ZUMImage<ZUMByte>& image);

/// The local minimum of the histogram, plateaus included, with the highest weighted score: `a` for
/// the difference of the classes' moments, `b` for the depth below the lower of both peaks, `c` for
/// the balance of the classes, each brought to about 0 to 1; the first of equals.
[[nodiscard]] ZUML_API ZUMByte ZUMValleyParametricThr(const ZUMImage<ZUMByte>& image, ZUMReal a,
                                                      ZUMReal b, ZUMReal c);

/// Mean, standard deviation and threshold, in this order, of the normal distribution that fits the
/// low end of the histogram best: for each bin i from 6 on, the bins up to i against the normal
/// density of their own mean and deviation, by the sum of squared differences; the first of equals.
/// Three zeros where no bin qualifies.
[[nodiscard]] ZUML_API ZUMArray<ZUMReal> ZUMHistogramLowGaussianThr(
    const ZUMImage<ZUMLong>& histogram);
