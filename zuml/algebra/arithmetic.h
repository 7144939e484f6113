/// Pixel-wise arithmetic: sums, differences, absolute values, signs and extremes of images and
/// numbers of one pixel type. Products and quotients stand in product.h and division.h.
///
/// An operation on two operands takes two images, an image and a number, or a number and an image.
/// Two images need not have the same region: the result covers what they share, and pixels at equal
/// coordinates meet. With a number the result has the image's region. The channels are those of the
/// image; two images have the same number of them. Integers wrap at their width; nothing saturates.
/// `float` images have no arithmetic: convert them to `double` first.
#pragma once

#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The sum: integers wrap, complex values add by components. Throws XQException "operator+:
/// Diferent number of channels %d!=%d". Tasks: CTaskAddII, CTaskAddIN.
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator+(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator+(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator+(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// The difference a - b: integers wrap, complex values subtract by components; for bool, a and not
/// b. Throws XQException "operator-: Diferent number of channels %d!=%d". Tasks: CTaskSubII,
/// CTaskSubIN, CTaskSubNI.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator-(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator-(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator-(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// The opposite: integers wrap, so that the least value stays; for bool, not a. Tasks: CTaskNeg.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator-(const ZUMImage<P>& a);

/// The larger minus the smaller, wrapped at the type's width; for bool, a != b. Throws XQException
/// "ZUMSymmetricSubtraction: Diferent number of channels %d!=%d". Tasks: CTaskSymSubII,
/// CTaskSymSubIN, CTaskSymSubNI.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMSymmetricSubtraction(const ZUMImage<P>& a,
                                                           const ZUMImage<P>& b);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMSymmetricSubtraction(const ZUMImage<P>& a,
                                                           std::type_identity_t<P> n);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMSymmetricSubtraction(std::type_identity_t<P> n,
                                                           const ZUMImage<P>& a);

/// The absolute value; the least integer stays as it is. A complex pixel becomes its magnitude,
/// found without squares that overflow, with the imaginary part 0. Tasks: CTaskAbs.
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> abs(const ZUMImage<P>& a);
/// The same.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMAbs(const ZUMImage<P>& a);

/// The sign: -1, 0 or 1; -1 for a NaN. Tasks: CTaskSign.
template <ZUMSignedPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMSign(const ZUMImage<P>& a);

/// The greater of the two: a > b ? a : b, so that a NaN in `a` yields b and one in `b` a NaN. A
/// number stands for b on either side. Throws XQException "ZUMMax: Diferent number of channels
/// %d!=%d". Tasks: CTaskMaxII, CTaskMaxIN.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMMax(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMMax(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMMax(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// The smaller of the two: a < b ? a : b, with the rules of ZUMMax. Throws XQException "ZUMMin:
/// Diferent number of channels %d!=%d". Tasks: CTaskMinII, CTaskMinIN.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMMin(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMMin(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMMin(std::type_identity_t<P> n, const ZUMImage<P>& a);
