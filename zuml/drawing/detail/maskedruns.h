/// Runs of pixels under a mask: set to a value, or blended with one. A mask is mostly false or true
/// over long stretches, so whole blocks of it are asked at once.
#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/pixelarith.h"

namespace zuml_detail {

/// What pixels become: the value, whatever they were.
template <class P>
struct Paint {
  Stored<P> value;

  explicit Paint(P v) : value(static_cast<Stored<P>>(v)) {}
  Stored<P> operator()(Stored<P>) const { return value; }
};

/// pixel (1 - alpha) + value alpha, in double.
template <class P>
struct Blend {
  P value;
  double alpha;

  Blend(P v, double a) : value(v), alpha(a) {}
  Stored<P> operator()(Stored<P> pixel) const {
    const auto blend = [this](double a, double b) { return a * (1 - alpha) + b * alpha; };
    if constexpr (std::same_as<P, ZUMComplex>) {
      return {blend(pixel.real(), value.real()), blend(pixel.imag(), value.imag())};
    } else if constexpr (std::same_as<P, ZUMBool>) {
      return blend(pixel != 0, value) != 0;
    } else {
      return ZUMTruncate<P>(blend(static_cast<double>(pixel), static_cast<double>(value)));
    }
  }
};

/// Of bytes, by a table.
template <>
struct Blend<ZUMByte> {
  std::array<ZUMByte, 256> table;

  Blend(ZUMByte value, double alpha) {
    for (int v = 0; v < 256; ++v) {
      table[static_cast<std::size_t>(v)] = ZUMTruncate<ZUMByte>(v * (1 - alpha) + value * alpha);
    }
  }
  ZUMByte operator()(ZUMByte pixel) const { return table[pixel]; }
};

/// to = op(to) where the mask is true. The runs do not overlap.
template <class P, class Op>
void ApplyMaskedRun(P* to, const ZUMBool* mask, std::ptrdiff_t n, const Op& op) {
  constexpr std::ptrdiff_t kBlock = 64;
  Stored<P>* __restrict r = StoredPixels(to);
  const ZUMByte* __restrict m = StoredPixels(mask);
  for (; n > 0; n -= kBlock, r += kBlock, m += kBlock) {
    const std::ptrdiff_t count = std::min(n, kBlock);
    if (count == kBlock) {
      std::uint64_t words[kBlock / 8], any = 0, all = ~std::uint64_t{0};
      std::memcpy(words, m, sizeof(words));
      for (const std::uint64_t word : words) {
        any |= word;
        all &= word;
      }
      if (any == 0) continue;
      if (all == 0x0101010101010101u) {
        for (std::ptrdiff_t i = 0; i < kBlock; ++i) r[i] = op(r[i]);
        continue;
      }
    }
    for (std::ptrdiff_t i = 0; i < count; ++i) r[i] = m[i] ? op(r[i]) : r[i];
  }
}

}  // namespace zuml_detail
