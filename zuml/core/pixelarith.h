/// Pixel arithmetic: the few functions that carry the library's number rules. Integers wrap at
/// their width, a floating value becomes an integer by truncation toward zero and keeps the low
/// bits of that integer, shift counts are taken modulo 32. C++ leaves all three undefined when
/// written naively; every other source calls these.
#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "zuml/core/pixeltypes.h"

namespace zuml_detail {

/// The unsigned type in which P's arithmetic cannot overflow: 32 bits for the narrow types, which
/// the language would otherwise promote to int.
template <std::integral P>
using WrapType = std::conditional_t<(sizeof(P) < 8), std::uint32_t, std::uint64_t>;

template <class P>
inline constexpr bool kIsComplex = std::same_as<P, ZUMComplex>;

}  // namespace zuml_detail

/// a + b in the pixel type; integers wrap.
template <class P>
constexpr P ZUMWrapAdd(P a, P b) {
  if constexpr (std::integral<P>) {
    using W = zuml_detail::WrapType<P>;
    const W low_bits = static_cast<W>(a) + static_cast<W>(b);
    return static_cast<P>(low_bits);
  } else {
    return a + b;
  }
}

/// a - b in the pixel type; integers wrap.
template <class P>
constexpr P ZUMWrapSub(P a, P b) {
  if constexpr (std::integral<P>) {
    using W = zuml_detail::WrapType<P>;
    const W low_bits = static_cast<W>(a) - static_cast<W>(b);
    return static_cast<P>(low_bits);
  } else {
    return a - b;
  }
}

/// a * b in the pixel type; integers keep the low bits of the product. Complex values multiply as
/// (ac - bd, ad + bc), without the rescue of infinities that the standard operator makes.
template <class P>
constexpr P ZUMWrapMul(P a, P b) {
  if constexpr (std::integral<P>) {
    using W = zuml_detail::WrapType<P>;
    const W low_bits = static_cast<W>(a) * static_cast<W>(b);
    return static_cast<P>(low_bits);
  } else if constexpr (zuml_detail::kIsComplex<P>) {
    return P(a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real());
  } else {
    return a * b;
  }
}

/// -a in the pixel type; integers wrap.
template <class P>
constexpr P ZUMWrapNeg(P a) {
  if constexpr (std::integral<P>) {
    using W = zuml_detail::WrapType<P>;
    return static_cast<P>(W{0} - static_cast<W>(a));
  } else {
    return -a;
  }
}

/// a / b in the pixel type. Integers divide toward zero; a zero divisor gives 0, and the least
/// value divided by -1 wraps to itself. Complex values divide by the scaled method of R. L. Smith,
/// "Algorithm 116: Complex division", CACM 5 (1962), which does not square the divisor; a divisor
/// that is 0 or has a NaN gives NaN in both parts.
template <class P>
constexpr P ZUMWrapDiv(P a, P b) {
  if constexpr (std::integral<P>) {
    // Through a floating type, whose division processors have for whole vectors. The quotient is
    // exact: one that is not an integer is at least 1 / |b| away from the next integer, and the
    // rounding error is far below that. The special cases become 0 / 1 and least / 1 by arithmetic:
    // a division on one side of a branch is not vectorised.
    static_assert(sizeof(P) <= 4);
    using F = std::conditional_t<(sizeof(P) < 4), float, double>;
    const std::int32_t dividend = a & -std::int32_t{b != 0};
    std::int32_t divisor = b + std::int32_t{b == 0};
    if constexpr (sizeof(P) == 4) {
      divisor += 2 * (std::int32_t{a == std::numeric_limits<P>::min()} & std::int32_t{b == -1});
    }
    return static_cast<P>(
        static_cast<std::int32_t>(static_cast<F>(dividend) / static_cast<F>(divisor)));
  } else if constexpr (zuml_detail::kIsComplex<P>) {
    const double c = b.real(), d = b.imag();
    if (std::fabs(d) >= std::fabs(c)) {
      const double r = c / d, s = r * c + d;
      return P((a.real() * r + a.imag()) / s, (a.imag() * r - a.real()) / s);
    }
    const double r = d / c, s = r * d + c;
    return P((a.real() + a.imag() * r) / s, (a.imag() - a.real() * r) / s);
  } else {
    return a / b;
  }
}

/// The remainder of a / b, with the sign of the dividend; a zero divisor gives 0.
template <std::integral P>
constexpr P ZUMWrapRem(P a, P b) {
  const P remainder = ZUMWrapSub(a, ZUMWrapMul(ZUMWrapDiv(a, b), b));
  return static_cast<P>(remainder & -std::int32_t{b != 0});
}

/// The low bits of a 64-bit integer.
template <std::integral P>
constexpr P ZUMLowBits(std::int64_t value) {
  if constexpr (std::same_as<P, bool>) {
    return value != 0;
  } else {
    return static_cast<P>(static_cast<std::uint64_t>(value));
  }
}

/// A floating value truncated toward zero, as a 64-bit integer. NaN and what 64 bits do not hold
/// give the least 64-bit integer, whose low bits are 0: such a value is 0 in every integer pixel.
constexpr std::int64_t ZUMTruncate64(double value) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  return value >= -kLimit && value < kLimit ? static_cast<std::int64_t>(value)
                                            : std::numeric_limits<std::int64_t>::min();
}

/// A floating value as an integer pixel: truncation toward zero, then the low bits. To bool it is
/// value != 0; to a floating type, the plain conversion.
template <class Q>
constexpr Q ZUMTruncate(double value) {
  if constexpr (std::same_as<Q, bool>) {
    return value != 0;
  } else if constexpr (std::integral<Q>) {
    return ZUMLowBits<Q>(ZUMTruncate64(value));
  } else {
    return static_cast<Q>(value);
  }
}

/// Complex magnitude sqrt(re*re + im*im), without overflow of the squares.
inline double ZUMMagnitude(const ZUMComplex& value) {
  return std::hypot(value.real(), value.imag());
}

/// One pixel of type P as a pixel of type Q, by the rules of image conversion.
template <class Q, class P>
constexpr Q ZUMConvertPixel(const P& value) {
  if constexpr (std::same_as<P, Q>) {
    return value;
  } else if constexpr (zuml_detail::kIsComplex<Q>) {
    return ZUMComplex(static_cast<double>(value), 0.0);
  } else if constexpr (zuml_detail::kIsComplex<P>) {
    if constexpr (std::same_as<Q, bool>) {
      return value.real() != 0 || value.imag() != 0;
    } else {
      // The plain formula: large squares overflow only where the truncation keeps no bit anyway.
      const double re = value.real(), im = value.imag();
      return static_cast<Q>(ZUMTruncate<ZUMLong>(std::sqrt(re * re + im * im)));
    }
  } else if constexpr (std::same_as<Q, bool>) {
    return value != 0;
  } else if constexpr (std::floating_point<P> && std::integral<Q>) {
    return ZUMTruncate<Q>(static_cast<double>(value));
  } else {
    return static_cast<Q>(value);
  }
}

/// a << count, computed in 32 bits with the count modulo 32, then truncated to the pixel type.
template <std::integral P>
constexpr P ZUMShiftLeft(P a, std::int32_t count) {
  return static_cast<P>(static_cast<std::uint32_t>(a) << (static_cast<std::uint32_t>(count) & 31u));
}

/// a >> count with the count modulo 32: logical for bytes, arithmetic for the signed types.
template <std::integral P>
constexpr P ZUMShiftRight(P a, std::int32_t count) {
  return static_cast<P>(static_cast<std::int32_t>(a) >> (static_cast<std::uint32_t>(count) & 31u));
}
