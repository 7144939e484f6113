/// Quotients and remainders of images and numbers of one pixel type, pixel by pixel. What
/// arithmetic.h says of regions, channels and wrapping holds here too.
#pragma once

#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The quotient a / b. Of two images, the second has one channel, by which every channel of the
/// first is divided, one pass of tasks for each; otherwise throws XQException "operator/: second
/// multichannel image is not allowed image (%d,%d)".
///
/// Integers divide toward zero; a zero divisor gives 0, and the least value divided by -1 stays as
/// it is. A zero divisor of a double gives infinities or NaN. Complex values divide by Smith's
/// scaled method; a divisor that is 0 or has a NaN gives NaN in both parts. Tasks: CTaskDivII,
/// CTaskDivIN, CTaskDivNI.
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator/(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator/(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMArithmeticPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator/(std::type_identity_t<P> n, const ZUMImage<P>& a);

/// The remainder of a / b, with the sign of the dividend; a zero divisor gives 0. Two images have
/// the same number of channels; otherwise throws XQException "operator%: Diferent number of
/// channels %d!=%d". Tasks: CTaskModII, CTaskModIN, CTaskModNI.
template <ZUMIntegerPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator%(const ZUMImage<P>& a, const ZUMImage<P>& b);
template <ZUMIntegerPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator%(const ZUMImage<P>& a, std::type_identity_t<P> n);
template <ZUMIntegerPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> operator%(std::type_identity_t<P> n, const ZUMImage<P>& a);
