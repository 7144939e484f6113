/// Extrema of many pixels at once: the vector types, the two orders, and the inner loops that fold
/// lines of pixels. All are exact: an extremum is one of the pixels.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <limits>
#include <utility>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/detail/vectors.h"

namespace zuml_detail {

/// The maximum. The comparison is strict: what was first stays on equality, and with a NaN on
/// either side. kNeutral never displaces a value.
struct Greatest {
  template <class T>
  [[gnu::always_inline]] static T Fold(T kept, T value) {
    return value > kept ? value : kept;
  }
  template <class S>
  static constexpr S kNeutral = std::numeric_limits<S>::has_infinity
                                    ? -std::numeric_limits<S>::infinity()
                                    : std::numeric_limits<S>::lowest();
};

/// The minimum.
struct Least {
  template <class T>
  [[gnu::always_inline]] static T Fold(T kept, T value) {
    return value < kept ? value : kept;
  }
  template <class S>
  static constexpr S kNeutral = std::numeric_limits<S>::has_infinity
                                    ? std::numeric_limits<S>::infinity()
                                    : std::numeric_limits<S>::max();
};

/// U vectors of pixels of type P side by side; with U = 0 one pixel.
template <class P, int U>
struct Lanes {
  using S = Stored<P>;
  using V = Vector<S>;
  static constexpr int kLanes = VectorOf<S>::kLanes;

  V v[U];

  void Set(S value) {
    // Less 0 is any value itself; with 0 added, -0.0 would be 0.0.
    ForEach([&](auto u) { v[u] = value - V{}; });
  }
  void Load(const S* from) {
    ForEach([&](auto u) { v[u] = LoadVector<V>(from + u * kLanes); });
  }
  template <class Order>
  void Fold(const Lanes& other) {
    ForEach([&](auto u) { v[u] = Order::template Fold<V>(v[u], other.v[u]); });
  }
  template <class Order>
  void Fold(const S* from) {
    ForEach(
        [&](auto u) { v[u] = Order::template Fold<V>(v[u], LoadVector<V>(from + u * kLanes)); });
  }
  void Store(S* to) const {
    ForEach([&](auto u) {
      V out = v[u];
      if constexpr (std::same_as<P, ZUMBool>) out = Least::Fold<V>(out, V{} + S{1});
      StoreVector(to + u * kLanes, out);
    });
  }

 private:
  // Unrolled in the source: the compiler keeps the vectors in registers only where it sees no loop.
  template <class Body>
  [[gnu::always_inline]] static void ForEach(const Body& body) {
    [&]<int... K>(std::integer_sequence<int, K...>) __attribute__((always_inline)) {
      (body(std::integral_constant<int, K>{}), ...);
    }
    (std::make_integer_sequence<int, U>{});
  }
};

template <class P>
struct Lanes<P, 0> {
  using S = Stored<P>;

  S v;

  void Set(S value) { v = value; }
  void Load(const S* from) { v = *from; }
  template <class Order>
  void Fold(const Lanes& other) {
    v = Order::template Fold<S>(v, other.v);
  }
  template <class Order>
  void Fold(const S* from) {
    v = Order::template Fold<S>(v, *from);
  }
  void Store(S* to) const {
    if constexpr (std::same_as<P, ZUMBool>) {
      *to = v != 0;
    } else {
      *to = v;
    }
  }
};

/// Calls body.template operator()<Lanes<P, ...>>(i) for blocks that cover the pixels 0 to n - 1:
/// U vectors, then single ones, the last of which may overlap the one before, so that a body must
/// not write what it reads. Lines shorter than a vector go pixel by pixel.
template <class P, int U, class Body>
[[gnu::always_inline]] inline void ForEachBlock(std::ptrdiff_t n, const Body& body) {
  constexpr std::ptrdiff_t kLanes = Lanes<P, 1>::kLanes;
  std::ptrdiff_t i = 0;
  for (; i + U * kLanes <= n; i += U * kLanes) body.template operator()<Lanes<P, U>>(i);
  for (; i + kLanes <= n; i += kLanes) body.template operator()<Lanes<P, 1>>(i);
  if (i == n) return;
  if (n >= kLanes) {
    body.template operator()<Lanes<P, 1>>(n - kLanes);
  } else {
    for (; i < n; ++i) body.template operator()<Lanes<P, 0>>(i);
  }
}

/// out[i] = the fold of base[taps[k] + i] in the order of k, for n pixels; it begins with `start`
/// if that is not null, else with the first tap.
template <class P, class Order>
void FoldTaps(Stored<P>* out, const Stored<P>* base, const std::ptrdiff_t* taps, int count,
              const Stored<P>* start, std::ptrdiff_t n) {
  ForEachBlock<P, 4>(n, [=]<class Block>(std::ptrdiff_t i) {
    Block kept;
    int k = 0;
    if (start) {
      kept.Set(*start);
    } else {
      kept.Load(base + taps[k++] + i);
    }
    for (; k < count; ++k) kept.template Fold<Order>(base + taps[k] + i);
    kept.Store(out + i);
  });
}

/// The same for K taps at equal distances but for the last.
template <class P, class Order, int K>
void FoldWindows(Stored<P>* out, const Stored<P>* base, std::ptrdiff_t step, std::ptrdiff_t last,
                 std::ptrdiff_t n) {
  ForEachBlock<P, 4>(n, [=]<class Block>(std::ptrdiff_t i) {
    Block kept;
    kept.Load(base + i);
    for (int k = 1; k < K - 1; ++k) kept.template Fold<Order>(base + k * step + i);
    if constexpr (K > 1) kept.template Fold<Order>(base + last + i);
    kept.Store(out + i);
  });
}

}  // namespace zuml_detail
