#include "zuml/regions/detail/labelruns.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace zuml_detail {

LabelRange FindLabelRange(const ZUMImage<ZUMLong>& labels) {
  // Less 1 and unsigned, positive labels come first; and there are instructions for both lines of
  // the loop.
  std::uint32_t first = INT32_MAX - 1u;
  ZUMLong last = 0;
  ZUMForEachRun(
      labels,
      [&first, &last](const ZUMLong* x, std::ptrdiff_t n) {
        std::uint32_t least = first;
        ZUMLong greatest = last;
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          least = std::min(least, static_cast<std::uint32_t>(x[i]) - 1);
          greatest = std::max(greatest, x[i]);
        }
        first = least;
        last = greatest;
      },
      labels);
  return {static_cast<ZUMLong>(first + 1), last};
}

void CountLabels(const ZUMImage<ZUMLong>& labels, ZUMLong* counts) {
  ZUMForEachRun(
      labels,
      [counts](const ZUMLong* x, std::ptrdiff_t n) {
        const auto entry = [&](std::ptrdiff_t i) -> ZUMLong& { return counts[std::max(x[i], 0)]; };
        std::ptrdiff_t i = 0;
        // Where neighbours are equal one addition does for all; else each increment would wait for
        // the one before.
        constexpr std::ptrdiff_t kStep = 8;
        for (; i + kStep <= n; i += kStep) {
          ZUMLong differ = 0;
          for (std::ptrdiff_t k = 1; k < kStep; ++k) differ |= x[i + k] ^ x[i];
          if (differ == 0) {
            entry(i) += kStep;
          } else {
            for (std::ptrdiff_t k = 0; k < kStep; ++k) ++entry(i + k);
          }
        }
        for (; i < n; ++i) ++entry(i);
      },
      labels);
}

}  // namespace zuml_detail
