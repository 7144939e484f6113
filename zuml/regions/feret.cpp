#include "zuml/regions/feret.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "zuml/core/xqmemory.h"
#include "zuml/regions/detail/labelruns.h"

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
      const double y = run.y * sine[i];
      const double v = run.x * cosine[i] - y, w = run.EndX() * cosine[i] - y;
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
  const auto extents = MeasureExtents(image, 1, 1, n);
  return ZUMImage<ZUMReal>(ZUMRect(0, 0, 0, 0, n - 1, 0, 0, 0), 1, extents.get());
}

ZUMImage<ZUMReal> ZUMRegionFeretDiameters(const ZUMImage<ZUMLong>& labels, int n) {
  const zuml_detail::LabelRange range = zuml_detail::FindLabelRange(labels);
  if (range.EmptyP()) return {};
  n = std::max(n, 0);
  const ZUMImage<ZUMReal> table(ZUMRect(range.first, 0, 0, 0, range.last, n - 1, 0, 0), 1, nullptr);
  const auto extents = MeasureExtents(labels, range.first, range.Length(), n);
  const double* extent = extents.get();
  for (ZUMLong i = 0; i < static_cast<ZUMLong>(range.Length()); ++i) {
    for (int direction = 0; direction < n; ++direction) {
      table(range.first + i, direction) = *extent++;
    }
  }
  return table;
}
