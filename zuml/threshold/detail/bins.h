/// The bins of a histogram as the threshold selections walk them.
#pragma once

#include <cstddef>
#include <vector>

#include "zuml/core/pixelarith.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// The X axis of a histogram at Y, Z and T 0: the bins Begin to End, of which there may be none.
class Bins {
 public:
  explicit Bins(const ZUMImage<ZUMLong>& histogram)
      : begin_(histogram.BeginX()),
        end_(histogram.EndX()),
        counts_(begin_ <= end_ ? &histogram(begin_) : nullptr) {}

  int Begin() const { return begin_; }
  int End() const { return end_; }
  ZUMLong Count(int i) const { return counts_[i - begin_]; }
  /// i h(i), as a 32-bit product.
  double Moment(int i) const { return ZUMWrapMul<ZUMLong>(i, Count(i)); }

  /// The counts of all bins, as a 32-bit sum.
  ZUMLong Total() const {
    ZUMLong total = 0;
    for (int i = begin_; i <= end_; ++i) total = ZUMWrapAdd(total, Count(i));
    return total;
  }
  double TotalMoment() const {
    double total = 0;
    for (int i = begin_; i <= end_; ++i) total += Moment(i);
    return total;
  }

 private:
  int begin_, end_;
  const ZUMLong* counts_;
};

}  // namespace zuml_detail
