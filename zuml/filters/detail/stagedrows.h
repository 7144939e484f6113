/// Two stages of a separable filter at once: the rows of the first are made as the second one needs
/// them, and stay in the cache.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "zuml/core/xqmemory.h"
#include "zuml/filters/detail/rowband.h"
#include "zuml/filters/detail/rowsum.h"
#include "zuml/filters/detail/weightedsum.h"

namespace zuml_detail {

/// The sums by `second` of the sums by `first`, both lists with offsets in the raster of a source
/// of pixels InT, in type T. `first` lies on one line, and neither is empty.
template <class T, class InT>
class StagedRows {
 public:
  /// For results of at most `width` pixels a line, over a raster with lines of `line` pixels.
  StagedRows(const Terms<T>& first, const Terms<T>& second, long long line, std::ptrdiff_t width)
      : first_(first),
        second_(second),
        band_(second.offsets, line, width),
        pointers1_(first.offsets.size()),
        pointers2_(second.offsets.size()) {
    const auto [low, high] = std::minmax_element(first.offsets.begin(), first.offsets.end());
    begin_ = *low;
    reach_ = static_cast<std::ptrdiff_t>(*high - *low);
    // A row of the first sums reaches as far beyond the results as the second ones do on a line.
    row_ = MakeScratch<T>(static_cast<std::size_t>(width + line + reach_));
  }

  /// Writes the n sums whose source pixels begin at `start`.
  void Write(const InT* start, std::ptrdiff_t n, T* to) {
    band_.MoveTo(
        start, n, pointers2_.data(),
        [this](T* sums, const InT* from, std::ptrdiff_t count) { WriteFirst(sums, from, count); });
    SumRow<T>(to, {pointers2_.data(), second_.weights.data(), second_.weights.size()}, n, false);
  }

 private:
  void WriteFirst(T* sums, const InT* from, std::ptrdiff_t n) {
    const T* pixels = row_.get();
    if constexpr (std::is_same_v<T, InT>) {
      pixels = from + begin_;
    } else {
      WidenRow(row_.get(), from + begin_, n + reach_);
    }
    for (std::size_t k = 0; k < pointers1_.size(); ++k) {
      pointers1_[k] = pixels + (first_.offsets[k] - begin_);
    }
    SumRow<T>(sums, {pointers1_.data(), first_.weights.data(), first_.weights.size()}, n, false);
  }

  const Terms<T>& first_;
  const Terms<T>& second_;
  RowBand<T> band_;
  std::vector<const T*> pointers1_;
  std::vector<const T*> pointers2_;
  long long begin_;
  std::ptrdiff_t reach_;
  ScratchBlock<T> row_;
};

}  // namespace zuml_detail
