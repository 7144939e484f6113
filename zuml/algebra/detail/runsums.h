/// Sums of a run of pixels. Integer sums are exact and may be taken in any order; sums of reals go
/// from left to right, so that every build gives the same.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "zuml/core/detail/mapped.h"

namespace zuml_detail {

/// The largest number up to which `double` holds every integer: as long as a sum of integers stays
/// below, it is the same in whatever order and type it is taken.
inline constexpr double kExactIntegers = 9007199254740992.0;  // 2^53

/// The sum of n integer pixels. Narrow ones are added in 32 bits, a stretch at a time.
template <ZUMDiscretePixel P>
std::int64_t SumRun(const P* x, std::ptrdiff_t n) {
  std::int64_t total = 0;
  if constexpr (sizeof(P) == 4) {
    for (std::ptrdiff_t i = 0; i < n; ++i) total += x[i];
  } else if constexpr (std::is_same_v<P, ZUMByte>) {
    // Eight bytes a word, added in four lanes of 16 bits; 128 words of 2 * 255 fill a lane.
    constexpr std::ptrdiff_t kWords = 128;
    constexpr std::uint64_t kBytes = 0x00FF00FF00FF00FFu, kLanes = 0x0000FFFF0000FFFFu;
    std::ptrdiff_t begin = 0;
    while (n - begin >= 8) {
      const std::ptrdiff_t words = std::min(kWords, (n - begin) / 8);
      std::uint64_t lanes = 0;
      for (std::ptrdiff_t i = 0; i < words; ++i) {
        std::uint64_t word;
        std::memcpy(&word, x + begin + 8 * i, 8);
        lanes += (word & kBytes) + ((word >> 8) & kBytes);
      }
      const std::uint64_t pairs = (lanes & kLanes) + ((lanes >> 16) & kLanes);
      total += static_cast<std::int64_t>((pairs & 0xFFFFFFFFu) + (pairs >> 32));
      begin += 8 * words;
    }
    for (; begin < n; ++begin) total += x[begin];
  } else {
    constexpr std::ptrdiff_t kStretch = 32768;  // times 2^15, the largest magnitude: 2^30
    for (std::ptrdiff_t begin = 0; begin < n; begin += kStretch) {
      const std::ptrdiff_t count = std::min(kStretch, n - begin);
      const P* from = x + begin;
      std::int32_t sum = 0;
      for (std::ptrdiff_t i = 0; i < count; ++i) sum += ValueAt(from, i);
      total += sum;
    }
  }
  return total;
}

/// The sum of squares of n integer pixels of up to 16 bits.
template <ZUMDiscretePixel P>
std::int64_t SumSquaresRun(const P* x, std::ptrdiff_t n) {
  static_assert(sizeof(P) <= 2);
  // So few squares that their sum fits in 32 bits: bytes, at most 255 * 255 each; shorts, one.
  constexpr std::ptrdiff_t kStretch = sizeof(P) == 1 ? 32768 : 1;
  std::int64_t total = 0;
  for (std::ptrdiff_t begin = 0; begin < n; begin += kStretch) {
    const std::ptrdiff_t count = std::min(kStretch, n - begin);
    const P* from = x + begin;
    std::int32_t sum = 0;
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      const std::int32_t v = ValueAt(from, i);
      sum += v * v;
    }
    total += sum;
  }
  return total;
}

}  // namespace zuml_detail
