/// Weighted means over an image's whole region, where only the part of the kernel that lies inside
/// the image counts.
#pragma once

#include <vector>

#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// Where a pixel looks, as distances from itself, each with its weight.
template <class W>
struct PlacedTerms {
  std::vector<ZUMBasePoint<int>> places;
  std::vector<W> weights;

  void Add(const ZUMBasePoint<int>& place, W weight) {
    places.push_back(place);
    weights.push_back(weight);
  }
};

/// What a pixel is of which no term lies inside the image.
enum class Unreached { kZero, kQuotient };

/// result(q) = sum of w(k) source(q + place k) / sum of w(k), over the terms k that lie inside the
/// source, both sums from 0 in the order of the terms. Real results are of doubles; `long` ones
/// wrap, divide toward zero with 0 for a divisor 0, and truncate each product with a double. The
/// result has the source's region and channels. Tasks: CTaskSmoothEx.
template <class OutT, class InT>
ZUMImage<OutT> MakeClippedMeans(const ZUMImage<InT>& source, const PlacedTerms<OutT>& terms,
                                Unreached unreached);

}  // namespace zuml_detail
