/// Comparisons of images and numbers of one pixel type: pixel by pixel, with a bool image as the
/// result, and of whole images, with one bool.
///
/// The pixel-wise comparisons follow arithmetic.h: two images have the same number of channels and
/// the result covers their common region; with a number it covers the image. A number stands on the
/// side where it is written: 3 < image is true where a pixel is above 3. A NaN equals nothing and
/// is neither less nor greater than anything.
#pragma once

#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Whether two images have the same number of channels, equal regions (two empty regions are equal
/// if their stored boxes are) and equal pixels; with a number, whether all pixels equal it, which
/// holds for an empty image. Runs in the calling thread up to the first stretch with a difference.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API bool operator==(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API bool operator==(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API bool operator==(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// The opposite of operator==.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API bool operator!=(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API bool operator!=(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API bool operator!=(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// True where the pixels are equal; complex pixels are equal if both parts are. Throws XQException
/// "ZUMPointEqual: Diferent number of channels". Tasks: CTaskPointEqualII, CTaskPointEqualIN.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMPointEqual(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMPointEqual(const ZUMImage<P>& a,
                                                       std::type_identity_t<P> n);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMPointEqual(std::type_identity_t<P> n,
                                                       const ZUMImage<P>& a);

/// True where the pixels differ. Throws XQException "ZUMPointNotEqual: Diferent number of
/// channels". Tasks: CTaskPointNotEqualII, CTaskPointNotEqualIN.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMPointNotEqual(const ZUMImage<P>& a,
                                                          const ZUMImage<P>& b);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMPointNotEqual(const ZUMImage<P>& a,
                                                          std::type_identity_t<P> n);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> ZUMPointNotEqual(std::type_identity_t<P> n,
                                                          const ZUMImage<P>& a);

/// True where a < b. Throws XQException "operator<: Diferent number of channels". Tasks:
/// CTaskPointLessII, CTaskPointLessIN, CTaskPointLessNI.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator<(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator<(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator<(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// True where a > b. Throws XQException "operator>: Diferent number of channels". Tasks:
/// CTaskPointGreaterII, CTaskPointGreaterIN, CTaskPointGreaterNI.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator>(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator>(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator>(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// True where a <= b. Throws XQException "operator<=: Diferent number of channels". Tasks:
/// CTaskPointLessEqualII, CTaskPointLessEqualIN, CTaskPointLessEqualNI.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator<=(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator<=(const ZUMImage<P>& a,
                                                    std::type_identity_t<P> n);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator<=(std::type_identity_t<P> n,
                                                    const ZUMImage<P>& a);

/// True where a >= b. Throws XQException "operator>=: Diferent number of channels". Tasks:
/// CTaskPointGreaterEqualII, CTaskPointGreaterEqualIN, CTaskPointGreaterEqualNI.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator>=(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator>=(const ZUMImage<P>& a,
                                                    std::type_identity_t<P> n);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMBool> operator>=(std::type_identity_t<P> n,
                                                    const ZUMImage<P>& a);
