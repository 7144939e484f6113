/// The value of a rank found bit by bit, for many pixels side by side.
#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "zuml/core/detail/vectors.h"

namespace zuml_detail {

/// A pixel as an integer of the same order, for short, long and double; of doubles without NaNs and
/// zeros of both signs.
template <class S>
struct RankKey {
  using Key = std::conditional_t<sizeof(S) == 2, std::int16_t,
                                 std::conditional_t<sizeof(S) == 4, std::int32_t, std::int64_t>>;
  using Bits = std::make_unsigned_t<Key>;
  static constexpr Bits kSign = static_cast<Bits>(Bits{1} << (8 * sizeof(S) - 1));

  // With the sign exchanged, keys are in the order of unsigned integers.
  static Bits FromPixel(S pixel) {
    const Bits bits = std::bit_cast<Bits>(pixel);
    if constexpr (std::floating_point<S>) {
      return (bits & kSign) != 0 ? static_cast<Bits>(~bits) : static_cast<Bits>(bits | kSign);
    } else {
      return static_cast<Bits>(bits ^ kSign);
    }
  }
  static S ToPixel(Bits key) {
    if constexpr (std::floating_point<S>) {
      return std::bit_cast<S>((key & kSign) != 0 ? static_cast<Bits>(key ^ kSign)
                                                 : static_cast<Bits>(~key));
    } else {
      return std::bit_cast<S>(static_cast<Bits>(key ^ kSign));
    }
  }
};

/// Of `count` rows of kRankWidth values, one column for each pixel, writes the value of rank k of
/// each column. It is the greatest number with at most k values below it; its bits are tried from
/// the highest down, but for those in which no two values differ. `count` is below 2^15.
template <class S>
inline constexpr std::ptrdiff_t kRankWidth = 64 / sizeof(S);

template <class S>
void SelectByBits(const S* values, std::ptrdiff_t count, std::int64_t k, S* to) {
  using Bits = typename RankKey<S>::Bits;
  using V = Vector<S>;
  using C = Vector<typename RankKey<S>::Key>;
  constexpr std::ptrdiff_t kWidth = kRankWidth<S>, kLanes = VectorOf<S>::kLanes;
  constexpr std::ptrdiff_t kVectors = kWidth / kLanes;

  Bits varying = 0;
  const Bits first = RankKey<S>::FromPixel(values[0]);
  for (std::ptrdiff_t i = 0; i < count * kWidth; ++i) {
    varying = static_cast<Bits>(varying | (RankKey<S>::FromPixel(values[i]) ^ first));
  }
  Bits found[kWidth];
  for (Bits& key : found) key = static_cast<Bits>(first & ~varying);
  for (Bits rest = varying; rest != 0;) {
    const Bits bit = std::bit_floor(rest);
    rest = static_cast<Bits>(rest ^ bit);
    S tried[kWidth];
    for (std::ptrdiff_t i = 0; i < kWidth; ++i) {
      tried[i] = RankKey<S>::ToPixel(static_cast<Bits>(found[i] | bit));
    }
    V limits[kVectors];
    C below[kVectors] = {};
    for (std::ptrdiff_t v = 0; v < kVectors; ++v) limits[v] = LoadVector<V>(tried + v * kLanes);
    for (std::ptrdiff_t j = 0; j < count; ++j) {
      for (std::ptrdiff_t v = 0; v < kVectors; ++v) {
        below[v] -= LoadVector<V>(values + j * kWidth + v * kLanes) < limits[v];
      }
    }
    typename RankKey<S>::Key counts[kWidth];
    for (std::ptrdiff_t v = 0; v < kVectors; ++v) StoreVector(counts + v * kLanes, below[v]);
    for (std::ptrdiff_t i = 0; i < kWidth; ++i) {
      // What lies beyond infinity is no number, and no value is below it.
      if (counts[i] <= k && !(tried[i] != tried[i] && found[i] >= RankKey<S>::kSign)) {
        found[i] = static_cast<Bits>(found[i] | bit);
      }
    }
  }
  for (std::ptrdiff_t i = 0; i < kWidth; ++i) to[i] = RankKey<S>::ToPixel(found[i]);
}

}  // namespace zuml_detail
