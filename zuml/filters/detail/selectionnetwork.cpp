#include "zuml/filters/detail/selectionnetwork.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "zuml/core/detail/vectors.h"

namespace zuml_detail {

SelectionNetwork::SelectionNetwork(int n, int k) : n_(n), k_(k) {
  int top = 1;
  while (2 * top < n) top *= 2;
  for (int p = top; p > 0; p /= 2) {
    int q = top, r = 0, d = p;
    for (;;) {
      for (int i = 0; i + d < n; ++i) {
        if ((i & p) == r) steps_.push_back({i, i + d, false, false});
      }
      if (q == p) break;
      d = q - p;
      q /= 2;
      r = p;
    }
  }
  // Backwards from the place of the result, only what is used stays.
  std::vector<bool> used(static_cast<std::size_t>(n), false);
  used[static_cast<std::size_t>(k)] = true;
  const auto is_used = [&](int place) { return used[static_cast<std::size_t>(place)]; };
  std::vector<Step> kept;
  for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
    step->keeps_low = is_used(step->low);
    step->keeps_high = is_used(step->high);
    if (!step->keeps_low && !step->keeps_high) continue;
    kept.push_back(*step);
    used[static_cast<std::size_t>(step->low)] = used[static_cast<std::size_t>(step->high)] = true;
  }
  steps_.assign(kept.rbegin(), kept.rend());
}

template <class S>
void SelectionNetwork::Select(S* values, S* to) const {
  using V = Vector<S>;
  constexpr std::ptrdiff_t kLanes = VectorOf<S>::kLanes;
  for (const Step& step : steps_) {
    S* const a = values + step.low * kWidth<S>;
    S* const b = values + step.high * kWidth<S>;
    for (std::ptrdiff_t i = 0; i < kWidth<S>; i += kLanes) {
      const V x = LoadVector<V>(a + i), y = LoadVector<V>(b + i);
      // One comparison for both: a pair stays a pair.
      const auto ordered = x < y;
      if (step.keeps_low) StoreVector<V>(a + i, ordered ? x : y);
      if (step.keeps_high) StoreVector<V>(b + i, ordered ? y : x);
    }
  }
  std::copy_n(values + k_ * kWidth<S>, kWidth<S>, to);
}

template void SelectionNetwork::Select(ZUMByte*, ZUMByte*) const;
template void SelectionNetwork::Select(ZUMShort*, ZUMShort*) const;
template void SelectionNetwork::Select(ZUMLong*, ZUMLong*) const;
template void SelectionNetwork::Select(ZUMReal*, ZUMReal*) const;

}  // namespace zuml_detail
