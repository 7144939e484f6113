#include "zuml/regions/regionshape.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqmemory.h"
#include "zuml/regions/detail/labelruns.h"
#include "zuml/regions/medidas.h"
#include "zuml/regions/regionmoments.h"

namespace {

// The perimeters of the range's labels.
ZUMImage<ZUMLong> MeasurePerimeters(const ZUMImage<ZUMLong>& labels,
                                    const zuml_detail::LabelRange& range) {
  const ZUMImage<ZUMLong> table = zuml_detail::MakeTable<ZUMLong>(range, 1, 0);
  const zuml_detail::TableEntries<ZUMLong> perimeter(table);
  const std::ptrdiff_t width = labels.RoDXSz(), step = labels.GetLineSz();
  // One line of zeros stands for what is above and below, a pixel each for left and right.
  const auto zeros = zuml_detail::MakeZeroedScratch<ZUMLong>(static_cast<std::size_t>(width));
  const auto columns = zuml_detail::MakeZeroedScratch<ZUMLong>(static_cast<std::size_t>(width) + 2);
  ZUMLong* const column = columns.get() + 1;
  ZUMForEachPlacedRun(
      labels,
      [&](const ZUMRunPlace& place, const ZUMLong* line, std::ptrdiff_t n) {
        const ZUMLong* above = place.y == labels.BeginY() ? zeros.get() : line - step;
        const ZUMLong* below = place.y == labels.EndY() ? zeros.get() : line + step;
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          column[i] = std::min(line[i], std::min(above[i], below[i]));
        }
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          const ZUMLong least = std::min(column[i], std::min(column[i - 1], column[i + 1]));
          const ZUMLong part = ZUMWrapSub(line[i], least);
          if (part >= range.first && part <= range.last) ++perimeter[part];
        }
      },
      labels);
  return table;
}

}  // namespace

ZUMImage<ZUMReal> ZUMRegionCircularity(const ZUMImage<ZUMLong>& labels) {
  const zuml_detail::LabelRange range = zuml_detail::FindLabelRange(labels);
  if (range.EmptyP()) return {};
  const ZUMImage<ZUMLong> areas = ZUMRegionArea(labels);
  const ZUMImage<ZUMLong> perimeters = MeasurePerimeters(labels, range);
  const ZUMImage<ZUMReal> result(areas, 1, nullptr);
  const ZUMLong* area = &areas(areas.Begin());
  const ZUMLong* perimeter = &perimeters(areas.Begin());
  ZUMReal* entry = &result(areas.Begin());
  for (std::size_t i = 0; i < range.Length(); ++i) {
    const double p = std::max(perimeter[i], 1);
    entry[i] = 4 * std::numbers::pi * area[i] / (p * p);
  }
  return result;
}

ZUMImage<ZUMReal> ZUMRegionElongation(const ZUMImage<ZUMLong>& labels) {
  const ZUMImage<ZUMReal> m11 = ZUMRegionCenteredMoment(labels, 1, 1);
  if (m11.EmptyP()) return {};
  const ZUMImage<ZUMReal> m20 = ZUMRegionCenteredMoment(labels, 2, 0);
  const ZUMImage<ZUMReal> m02 = ZUMRegionCenteredMoment(labels, 0, 2);
  const ZUMImage<ZUMLong> areas = ZUMRegionArea(labels);
  const ZUMImage<ZUMReal> result(m11, 1, nullptr);
  const ZUMBasePoint<int> begin = result.Begin();
  const auto n = static_cast<std::ptrdiff_t>(result.GetLineSz());
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const double area = (&areas(begin))[i];
    const double u11 = (&m11(begin))[i] / area;
    const double u20 = (&m20(begin))[i] / area, u02 = (&m02(begin))[i] / area;
    const double s = std::sqrt(4 * u11 * u11 + (u20 - u02) * (u20 - u02));
    (&result(begin))[i] = std::sqrt(1 - (u20 + u02 - s) / (u20 + u02 + s));
  }
  return result;
}
