#include "zuml/regions/feret.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

#include "zuml/core/detail/axes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqmemory.h"
#include "zuml/regions/detail/labelruns.h"

using zuml_detail::kX;
using zuml_detail::kY;

namespace {

// The extents of the labels from `first` on: the one of direction i and label first + k is at
// k * n + i.
template <class P>
zuml_detail::ScratchBlock<double> MeasureExtents(const ZUMImage<P>& image, ZUMLong first,
                                                 std::size_t labels, int n) {
  const auto size = static_cast<std::size_t>(n);
  const auto cosine = zuml_detail::MakeScratch<double>(size);
  const auto sine = zuml_detail::MakeScratch<double>(size);
  for (std::size_t i = 0; i < size; ++i) {
    const double angle = static_cast<double>(i) * std::numbers::pi / n;
    cosine[i] = std::cos(angle);
    sine[i] = std::sin(angle);
  }
  constexpr double kGreatest = std::numeric_limits<double>::max();
  auto least = zuml_detail::MakeScratch<double>(labels * size);
  const auto greatest = zuml_detail::MakeScratch<double>(labels * size);
  std::fill_n(least.get(), labels * size, kGreatest);
  std::fill_n(greatest.get(), labels * size, -kGreatest);
  // The rounded values rise or fall along a line, so that the ends of a run have its extremes.
  zuml_detail::ForEachLabelRun(image, [&](const zuml_detail::LabelRun& run) {
    double* const low = &least[static_cast<std::size_t>(run.label - first) * size];
    double* const high = &greatest[static_cast<std::size_t>(run.label - first) * size];
    for (std::size_t i = 0; i < size; ++i) {
      const double y = run.First(kY) * sine[i];
      const double v = run.First(kX) * cosine[i] - y, w = run.Last(kX) * cosine[i] - y;
      low[i] = std::min(low[i], std::min(v, w));
      high[i] = std::max(high[i], std::max(v, w));
    }
  });
  for (std::size_t i = 0; i < labels * size; ++i) least[i] = greatest[i] - least[i];
  return least;
}

}  // namespace

ZUMImage<ZUMReal> ZUMRegionFeretDiameters(const ZUMImage<ZUMBool>& image, int n) {
  n = std::max(n, 0);
  // Made first: it refuses more directions than a block holds.
  ZUMImage<ZUMReal> widths(ZUMRect(0, 0, 0, 0, n - 1, 0, 0, 0), 1, nullptr);
  widths.SetPixels(MeasureExtents(image, 1, 1, n).get());
  return widths;
}

ZUMImage<ZUMReal> ZUMRegionFeretDiameters(const ZUMImage<ZUMLong>& labels, int n) {
  const zuml_detail::LabelRange range = zuml_detail::FindLabelRange(labels);
  if (range.EmptyP()) return {};
  n = std::max(n, 0);
  const ZUMImage<ZUMReal> table(ZUMRect(range.first, 0, 0, 0, range.last, n - 1, 0, 0), 1, nullptr);
  const auto extents = MeasureExtents(labels, range.first, range.Length(), n);
  ZUMForEachPlacedRun(
      table,
      [&extents, step = static_cast<std::size_t>(n)](const ZUMRunPlace& place, ZUMReal* row,
                                                     std::ptrdiff_t labels_of_row) {
        const double* extent = &extents[static_cast<std::size_t>(place.y)];
        for (std::ptrdiff_t k = 0; k < labels_of_row; ++k, extent += step) row[k] = *extent;
      },
      table);
  return table;
}
