/// Products and powers of images and numbers of one pixel type, pixel by pixel. What arithmetic.h
/// says of regions, channels and wrapping holds here too.
#pragma once

#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The product, in which channels interact. Of two images with the same number of channels it is
/// the scalar product over the channels, an image of one channel: the sum of a(c) * b(c) in the
/// order of the channels, without conjugation; of two images of no channel, 0. An image of one
/// channel multiplies every channel of the other, one pass of tasks for each. Integers keep the low
/// bits; complex values multiply as (ac - bd, ad + bc). Throws XQException "operator*: Diferent
/// number of channels and no one channel image %d!=%d". Tasks: CTaskMulII, CTaskMulIIC2,
/// CTaskMulIIC3, CTaskMulIICN.
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator*(const ZUMImage<P>& a, const ZUMImage<P>& b);
/// Every channel times the number. Tasks: CTaskMulIN.
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator*(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator*(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// The product channel by channel: like operator*, but images with the same number of channels give
/// that number of channels. Throws XQException "ZUMPointProduct: Diferent number of channels and no
/// one channel image %d!=%d". Tasks: CTaskPointMulII.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPointProduct(const ZUMImage<P>& a, const ZUMImage<P>& b);
/// Every channel times the number. Tasks: CTaskPointMulIN.
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPointProduct(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPointProduct(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// The base `a` to the power of the exponent `b`, by the power function of the standard library.
/// Two images have the same number of channels; otherwise throws XQException "Diferent number of
/// channels". Runs in the calling thread.
template <ZUMRealComplexPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPow(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMRealComplexPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPow(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMRealComplexPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPow(std::type_identity_t<P> n, const ZUMImage<P>& b);
