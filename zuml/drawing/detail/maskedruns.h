/// Runs of pixels under a mask: set to a value, or blended with one. A mask is mostly false or true
/// over long stretches, so whole blocks of it are asked at once.
#pragma once

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/detail/vectors.h"
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

/// The unsigned integer of as many bytes.
template <std::size_t Bytes>
using BitsOf = std::conditional_t<
    Bytes == 1, std::uint8_t,
    std::conditional_t<Bytes == 2, std::uint16_t,
                       std::conditional_t<Bytes == 4, std::uint32_t, std::uint64_t>>>;

/// One of two pixels, chosen among their bits: a branch would be a coin toss in a mask of noise,
/// and a conditional store keeps the compiler from making vectors.
template <class S>
S Choose(bool first, S a, S b) {
  if constexpr (sizeof(S) > 8) {
    return first ? a : b;
  } else {
    using Bits = BitsOf<sizeof(S)>;
    const auto of_a = static_cast<Bits>(-static_cast<Bits>(first));
    const auto of_b = static_cast<Bits>(~of_a);
    return std::bit_cast<S>(
        static_cast<Bits>((std::bit_cast<Bits>(a) & of_a) | (std::bit_cast<Bits>(b) & of_b)));
  }
}

/// to = op(to) where the mask is true. The runs do not overlap.
template <class P, class Op>
void ApplyMaskedRun(P* to, const ZUMBool* mask, std::ptrdiff_t n, const Op& op) {
  using V = Vector<std::uint64_t>;
  constexpr std::ptrdiff_t kBlock = 64;
  const auto choose = [&op](Stored<P>* __restrict r, const ZUMByte* __restrict m,
                            std::ptrdiff_t count) {
    for (std::ptrdiff_t i = 0; i < count; ++i) r[i] = Choose(m[i] != 0, op(r[i]), r[i]);
  };
  Stored<P>* r = StoredPixels(to);
  const ZUMByte* m = StoredPixels(mask);
  for (; n >= kBlock; n -= kBlock, r += kBlock, m += kBlock) {
    V any = LoadVector<V>(m), all = any;
    for (std::ptrdiff_t i = sizeof(V); i < kBlock; i += sizeof(V)) {
      any |= LoadVector<V>(m + i);
      all &= LoadVector<V>(m + i);
    }
    std::uint64_t some = 0, every = ~std::uint64_t{0};
    for (std::size_t i = 0; i < sizeof(V) / 8; ++i) {
      some |= any[i];
      every &= all[i];
    }
    if (some == 0) continue;
    if (every == 0x0101010101010101u) {
      for (std::ptrdiff_t i = 0; i < kBlock; ++i) r[i] = op(r[i]);
    } else {
      choose(r, m, kBlock);
    }
  }
  choose(r, m, n);
}

}  // namespace zuml_detail
