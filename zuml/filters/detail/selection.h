/// The value of a rank among others.
#pragma once

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstddef>

namespace zuml_detail {

/// The order of ranks: for reals -0.0 comes before 0.0, and NaNs after all numbers.
template <class V>
struct RankOrder {
  bool operator()(V a, V b) const {
    if constexpr (std::floating_point<V>) {
      if (a != a || b != b) return a == a;
      if (a == 0 && b == 0) return std::signbit(a) && !std::signbit(b);
    }
    return a < b;
  }
};

/// The value at index k of n values in ascending order; they change their places.
template <class V>
V SelectRank(V* values, std::ptrdiff_t n, std::ptrdiff_t k) {
  std::nth_element(values, values + k, values + n, RankOrder<V>());
  return values[k];
}

}  // namespace zuml_detail
