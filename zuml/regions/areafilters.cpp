#include "zuml/regions/areafilters.h"

#include <algorithm>

#include "zuml/core/xqmemory.h"
#include "zuml/regions/detail/labelruns.h"
#include "zuml/regions/detail/selectlabels.h"
#include "zuml/regions/labelling.h"

namespace {

// The components that choose(counts, chosen, n) marks; counts[0], the background's, is 0.
template <class Choose>
ZUMImage<ZUMBool> SelectByArea(const ZUMImage<ZUMBool>& image,
                               const ZUMImage<ZUMBool>& connectivity, Choose choose) {
  ZUMLong next = 1;
  const ZUMImage<ZUMLong> labels = ZUMRegionLabel(image, connectivity, next);
  const auto n = static_cast<std::size_t>(next);
  const auto counts = zuml_detail::MakeZeroedScratch<ZUMLong>(n);
  zuml_detail::CountLabels(labels, counts.get());
  counts[0] = 0;
  const auto chosen = zuml_detail::MakeZeroedScratch<bool>(n);
  choose(counts.get(), chosen.get(), n);
  return zuml_detail::SelectLabels(labels, labels, chosen.get());
}

}  // namespace

ZUMImage<ZUMBool> ZUMBigRegion(const ZUMImage<ZUMBool>& image,
                               const ZUMImage<ZUMBool>& connectivity) {
  return SelectByArea(image, connectivity, [](const ZUMLong* counts, bool* chosen, std::size_t n) {
    chosen[std::max_element(counts, counts + n) - counts] = true;
  });
}

ZUMImage<ZUMBool> ZUMAreaFilter(const ZUMImage<ZUMBool>& image, int min_area, int max_area,
                                const ZUMImage<ZUMBool>& connectivity) {
  return SelectByArea(image, connectivity, [=](const ZUMLong* counts, bool* chosen, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) chosen[i] = counts[i] >= min_area && counts[i] <= max_area;
  });
}
