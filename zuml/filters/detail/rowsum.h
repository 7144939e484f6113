/// Sums along a row: r[x] = w0 p0[x] + w1 p1[x] + ..., the loop that linear filters end in.
///
/// A stretch of results stays in vector registers while all terms are added to it in their order,
/// so that each result is the same sum in the same order whatever the width of the vectors.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "zuml/core/detail/vectors.h"

namespace zuml_detail {

/// The terms of a row sum: for each, the pixel that goes with r[0], and its weight. There is at
/// least one.
template <class T>
struct RowTerms {
  const T* const* pixels;
  const T* weights;
  std::size_t count;
};

/// N vectors of results from r[x] on. V is a vector of T, or T itself.
template <class V, int N, class T>
[[gnu::always_inline]] inline void SumBlock(T* r, const RowTerms<T>& terms, std::ptrdiff_t x,
                                            bool onto) {
  // NOLINTNEXTLINE(bugprone-sizeof-expression): V may be T itself.
  constexpr std::ptrdiff_t kLanes = sizeof(V) / sizeof(T);
  // Constant indices throughout, without which the sums would live in memory.
  [&]<std::size_t... K>(std::index_sequence<K...>) {
    V sums[N];
    std::size_t k = 0;
    if (onto) {
      ((sums[K] = LoadVector<V>(r + x + K * kLanes)), ...);
    } else {
      const T* p = terms.pixels[0] + x;
      const T w = terms.weights[0];
      ((sums[K] = w * LoadVector<V>(p + K * kLanes)), ...);
      k = 1;
    }
    for (; k < terms.count; ++k) {
      const T* p = terms.pixels[k] + x;
      const T w = terms.weights[k];
      ((sums[K] += w * LoadVector<V>(p + K * kLanes)), ...);
    }
    (StoreVector(r + x + K * kLanes, sums[K]), ...);
  }
  (std::make_index_sequence<N>{});
}

/// A whole row of n results; the first term starts the sum, or what r holds already if `onto`.
/// T is an unsigned integer, whose sums wrap, or a floating type.
template <class T>
void SumRow(T* r, const RowTerms<T>& terms, std::ptrdiff_t n, bool onto) {
  using V = Vector<T>;
  // NOLINTNEXTLINE(bugprone-sizeof-expression): V may be T itself.
  constexpr std::ptrdiff_t kLanes = sizeof(V) / sizeof(T);
  std::ptrdiff_t x = 0;
  for (; n - x >= 8 * kLanes; x += 8 * kLanes) SumBlock<V, 8>(r, terms, x, onto);
  if (n - x >= 4 * kLanes) {
    SumBlock<V, 4>(r, terms, x, onto);
    x += 4 * kLanes;
  }
  for (; n - x >= kLanes; x += kLanes) SumBlock<V, 1>(r, terms, x, onto);
  for (; x < n; ++x) SumBlock<T, 1>(r, terms, x, onto);
}

/// The same for 16-bit pixels and weights, with 32-bit sums that wrap; there are `count` terms, an
/// even number. The processor multiplies and adds two terms at once.
void SumRow16(std::uint32_t* r, const std::int16_t* const* pixels, const std::int16_t* weights,
              std::size_t count, std::ptrdiff_t n);

}  // namespace zuml_detail
