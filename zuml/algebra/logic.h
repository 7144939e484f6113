/// Boolean algebra on masks, and bit operations and shifts on integers, pixel by pixel. What
/// arithmetic.h says of regions and channels holds here too.
#pragma once

#include <concepts>
#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// True where both are true; both sides are always evaluated. Throws XQException "operator&&:
/// Diferent number of channels %d!=%d". Tasks: CTaskAndLogicII, CTaskAndLogicIN.
template <std::same_as<ZUMBool> P>
[[nodiscard]] ZUML_API ZUMImage<P> operator&&(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <std::same_as<ZUMBool> P>
[[nodiscard]] ZUML_API ZUMImage<P> operator&&(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <std::same_as<ZUMBool> P>
[[nodiscard]] ZUML_API ZUMImage<P> operator&&(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// True where one or both are true. Throws XQException "operator||: Diferent number of channels
/// %d!=%d". Tasks: CTaskOrLogicII, CTaskOrLogicIN.
template <std::same_as<ZUMBool> P>
[[nodiscard]] ZUML_API ZUMImage<P> operator||(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <std::same_as<ZUMBool> P>
[[nodiscard]] ZUML_API ZUMImage<P> operator||(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <std::same_as<ZUMBool> P>
[[nodiscard]] ZUML_API ZUMImage<P> operator||(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// True where the mask is false. Tasks: CTaskNotLogicII.
template <std::same_as<ZUMBool> P>
[[nodiscard]] ZUML_API ZUMImage<P> operator!(const ZUMImage<P>& a);

/// The bits set in both. Throws XQException "operator&: Diferent number of channels %d!=%d". Tasks:
/// CTaskAndII, CTaskAndIN.
template <ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator&(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator&(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator&(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// The bits set in one or both. Throws XQException "operator|: Diferent number of channels %d!=%d".
/// Tasks: CTaskOrII, CTaskOrIN.
template <ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator|(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator|(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator|(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// The bits set in one of the two. Throws XQException "operator^: Diferent number of channels
/// %d!=%d". Tasks: CTaskXorII, CTaskXorIN.
template <ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator^(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator^(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator^(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// All bits inverted; for bool, operator!. Tasks: CTaskNotII.
template <ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator~(const ZUMImage<P>& a);

/// a shifted left by b bits, computed in 32 bits and then truncated to the pixel type; the count is
/// taken modulo 32, also a negative one. A number on the left is shifted by the pixels. Throws
/// XQException "operator<<: Diferent number of channels %d!=%d". Tasks: CTaskShiftLII,
/// CTaskShiftLIN, CTaskShiftLNI.
template <ZUMIntegerPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator<<(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMIntegerPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator<<(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMIntegerPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator<<(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// a shifted right by b bits: bytes take in zeros, the signed types copies of their sign. Counts
/// and numbers as in operator<<. Throws XQException "operator>>: Diferent number of channels
/// %d!=%d". Tasks: CTaskShiftRII, CTaskShiftRIN, CTaskShiftRNI.
template <ZUMIntegerPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator>>(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMIntegerPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator>>(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMIntegerPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator>>(std::type_identity_t<P> n, const ZUMImage<P>& a);
