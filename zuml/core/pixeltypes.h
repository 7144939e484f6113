/// Pixel types: the eight element types, their run-time tags, and, once for the whole library, the
/// lists of types that families of operations are offered for.
///
/// Each list is a macro that applies another macro to its types, for explicit instantiation in a
/// source, and a concept of the same members, so that a call with a type outside the list fails at
/// the call with the concept's name in the message.
#pragma once

#include <complex>
#include <concepts>
#include <cstdint>
#include <type_traits>

#include "zuml/core/export.h"

using ZUMBool = bool;
using ZUMByte = unsigned char;
using ZUMShort = std::int16_t;
using ZUMLong = std::int32_t;
using ZUMSReal = float;
using ZUMReal = double;
using ZUMComplex = std::complex<double>;
using ZUMPointer = void*;

/// The run-time tag of a raster's pixel type. Its width is fixed so that a value read from
/// elsewhere may be none of these.
enum ZUMPixelType : int {
  ZUMBoolPixel = 0,
  ZUMBytePixel = 1,
  ZUMShortPixel = 2,
  ZUMLongPixel = 3,
  ZUMSRealPixel = 4,
  ZUMRealPixel = 5,
  ZUMComplexPixel = 6,
  ZUMPointerPixel = 7
};

// The lists, from the widest to the narrowest. B bool, E byte, F short, J long, M float, N double.
#define ZUML_DISCRETE_TYPES(APPLY) APPLY(ZUMBool) APPLY(ZUMByte) APPLY(ZUMShort) APPLY(ZUMLong)
#define ZUML_INTEGER_TYPES(APPLY) APPLY(ZUMByte) APPLY(ZUMShort) APPLY(ZUMLong)
#define ZUML_GREY_TYPES(APPLY) ZUML_INTEGER_TYPES(APPLY) APPLY(ZUMReal)
#define ZUML_NUMERIC_TYPES(APPLY) ZUML_INTEGER_TYPES(APPLY) APPLY(ZUMSReal) APPLY(ZUMReal)
#define ZUML_SIGNED_TYPES(APPLY) APPLY(ZUMShort) APPLY(ZUMLong) APPLY(ZUMReal)
#define ZUML_REAL_COMPLEX_TYPES(APPLY) APPLY(ZUMReal) APPLY(ZUMComplex)
#define ZUML_SCALAR_TYPES(APPLY) ZUML_DISCRETE_TYPES(APPLY) APPLY(ZUMReal)
#define ZUML_ORDERED_TYPES(APPLY) ZUML_DISCRETE_TYPES(APPLY) APPLY(ZUMSReal) APPLY(ZUMReal)
#define ZUML_ARITHMETIC_TYPES(APPLY) ZUML_GREY_TYPES(APPLY) APPLY(ZUMComplex)
#define ZUML_ALGEBRA_TYPES(APPLY) ZUML_SCALAR_TYPES(APPLY) APPLY(ZUMComplex)
#define ZUML_VALUE_TYPES(APPLY) ZUML_ORDERED_TYPES(APPLY) APPLY(ZUMComplex)
#define ZUML_ALL_TYPES(APPLY) ZUML_VALUE_TYPES(APPLY) APPLY(ZUMPointer)

#define ZUML_OR_SAME_AS_P(TYPE) || std::same_as<P, TYPE>

/// bool, byte, short, long.
template <class P>
concept ZUMDiscretePixel = false ZUML_DISCRETE_TYPES(ZUML_OR_SAME_AS_P);
/// byte, short, long.
template <class P>
concept ZUMIntegerPixel = false ZUML_INTEGER_TYPES(ZUML_OR_SAME_AS_P);
/// byte, short, long, double.
template <class P>
concept ZUMGreyPixel = false ZUML_GREY_TYPES(ZUML_OR_SAME_AS_P);
/// byte, short, long, float, double.
template <class P>
concept ZUMNumericPixel = false ZUML_NUMERIC_TYPES(ZUML_OR_SAME_AS_P);
/// short, long, double.
template <class P>
concept ZUMSignedPixel = false ZUML_SIGNED_TYPES(ZUML_OR_SAME_AS_P);
/// double, complex.
template <class P>
concept ZUMRealComplexPixel = false ZUML_REAL_COMPLEX_TYPES(ZUML_OR_SAME_AS_P);
/// bool, byte, short, long, double.
template <class P>
concept ZUMScalarPixel = false ZUML_SCALAR_TYPES(ZUML_OR_SAME_AS_P);
/// bool, byte, short, long, float, double.
template <class P>
concept ZUMOrderedPixel = false ZUML_ORDERED_TYPES(ZUML_OR_SAME_AS_P);
/// byte, short, long, double, complex.
template <class P>
concept ZUMArithmeticPixel = false ZUML_ARITHMETIC_TYPES(ZUML_OR_SAME_AS_P);
/// bool, byte, short, long, double, complex.
template <class P>
concept ZUMAlgebraPixel = false ZUML_ALGEBRA_TYPES(ZUML_OR_SAME_AS_P);
/// All types but the pointer.
template <class P>
concept ZUMValuePixel = false ZUML_VALUE_TYPES(ZUML_OR_SAME_AS_P);
/// All eight types. Made of the concept before it, so that an overload for the values is preferred
/// to one for all.
template <class P>
concept ZUMAnyPixel = ZUMValuePixel<P> || std::same_as<P, ZUMPointer>;

#undef ZUML_OR_SAME_AS_P

/// The run-time tag and the C++ name of each pixel type.
template <class P>
struct ZUMPixelTraits;

#define ZUML_PIXEL_TRAITS(TYPE)                        \
  template <>                                          \
  struct ZUMPixelTraits<TYPE> {                        \
    static constexpr ZUMPixelType kType = TYPE##Pixel; \
    static constexpr const char* kName = #TYPE;        \
  };
ZUML_ALL_TYPES(ZUML_PIXEL_TRAITS)
#undef ZUML_PIXEL_TRAITS
