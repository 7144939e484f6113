/// The bins of a histogram as the threshold selections walk them.
#pragma once

#include <cstdint>

#include "zuml/core/pixelarith.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// The X axis of a histogram at Y, Z and T 0: the bins Begin to End, in 64 bits, so that a loop
/// ends behind the last coordinate too. A histogram without pixels there has no bins.
class Bins {
 public:
  explicit Bins(const ZUMImage<ZUMLong>& histogram) {
    if (histogram.GetCSz() == 0 || !histogram.InP(histogram.BeginX(), 0, 0, 0)) return;
    begin_ = histogram.BeginX();
    end_ = histogram.EndX();
    counts_ = &histogram(histogram.BeginX());
  }

  std::int64_t Begin() const { return begin_; }
  std::int64_t End() const { return end_; }
  ZUMLong Count(std::int64_t i) const { return counts_[i - begin_]; }
  /// i h(i), as a 32-bit product.
  double Moment(std::int64_t i) const { return ZUMWrapMul(static_cast<ZUMLong>(i), Count(i)); }
  /// i^2 h(i), which would soon pass 32 bits.
  double SquareMoment(std::int64_t i) const {
    const double level = static_cast<double>(i);
    return level * level * Count(i);
  }

  /// The counts of all bins, as a 32-bit sum.
  ZUMLong Total() const {
    ZUMLong total = 0;
    for (std::int64_t i = begin_; i <= end_; ++i) total = ZUMWrapAdd(total, Count(i));
    return total;
  }
  double TotalMoment() const {
    double total = 0;
    for (std::int64_t i = begin_; i <= end_; ++i) total += Moment(i);
    return total;
  }

 private:
  std::int64_t begin_ = 0, end_ = -1;
  const ZUMLong* counts_ = nullptr;
};

}  // namespace zuml_detail
