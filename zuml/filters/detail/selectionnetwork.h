/// The value of a rank by a fixed sequence of comparisons, for many pixels side by side.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "zuml/core/detail/pixelvalue.h"

namespace zuml_detail {

/// The comparisons that bring the value of rank k of n values to place k: K. E. Batcher's merge
/// exchange (D. E. Knuth, The Art of Computer Programming, volume 3, algorithm 5.2.2 M) without
/// what does not reach that place. Every comparison exchanges two places or leaves them, so that
/// each result is one of the values.
class SelectionNetwork {
 public:
  SelectionNetwork(int n, int k);

  int Length() const { return n_; }
  std::size_t CountSteps() const { return steps_.size(); }

  /// How many pixels go side by side.
  template <class S>
  static constexpr std::ptrdiff_t kWidth = sizeof(S) == 1 ? 128 : 256 / sizeof(S);

  /// Writes the values of the rank of kWidth pixels. Row j of `values` has the j-th value of each
  /// pixel; the rows change.
  template <class S>
  void Select(S* values, S* to) const;

 private:
  struct Step {
    int low, high;
    bool keeps_low, keeps_high;  // whether what comes to the place is used
  };

  int n_, k_;
  std::vector<Step> steps_;
};

}  // namespace zuml_detail
