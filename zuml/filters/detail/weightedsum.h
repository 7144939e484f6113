/// Weighted sums of displaced pixels over a part of a result: what the tasks of linear filters run.
///
/// The terms of a pixel are taken in the order of the list, the first one starting the sum. With w
/// the weight and s the source's pixel:
///
///   long from byte, short, long      32-bit products and sums that wrap
///   long from float, double          each product w s in the source's type, truncated to 32 bits;
///                                    these are added as integers
///   double from any type             products and sums in double
///   float from other than double     s in float, products and sums in float
///   float from double                each product in double, rounded to float; sums in float
///   complex from complex             real weights; each part like a double
///
/// A bool pixel is 0 or 1. Without a term the sum is 0.
#pragma once

#include <type_traits>
#include <vector>

#include "zuml/core/zumimage.h"
#include "zuml/filters/detail/displacedruns.h"

namespace zuml_detail {

/// The weights of results of type OutT.
template <class OutT>
using WeightOf = std::conditional_t<std::is_same_v<OutT, ZUMComplex>, ZUMReal, OutT>;

/// Offsets in the source's raster, each with its weight. They count from the source's pixel at the
/// distance from a result's.
template <class W>
struct Terms {
  Distance distance;
  std::vector<long long> offsets;
  std::vector<W> weights;

  void Add(long long offset, W weight) {
    offsets.push_back(offset);
    weights.push_back(weight);
  }
};

/// Writes the sums of a part, or with `onto` adds them to what the result holds; `onto` is not
/// offered for `long` from floating types.
template <class OutT, class InT>
void WriteWeightedSums(const ZUMRoDRef& part, const ZUMImage<OutT>& result,
                       const ZUMImage<InT>& source, const Terms<WeightOf<OutT>>& terms,
                       bool onto = false);

/// The sums by `second` of the sums by `first`, both lists with offsets in the source's raster, as
/// if the latter were written to an image of type OutT in between. They are made row by row
/// instead. `first` must lie on one line. Not offered for complex results, nor for `long` from
/// floating types.
template <class OutT, class InT>
void WriteSumsOfSums(const ZUMRoDRef& part, const ZUMImage<OutT>& result,
                     const ZUMImage<InT>& source, const Terms<OutT>& first,
                     const Terms<OutT>& second);

}  // namespace zuml_detail
