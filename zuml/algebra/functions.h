/// Functions of a pixel: elementary functions, squares and roots, and the parts of a complex image.
///
/// Each result covers the operand's region with the operand's channels. No pixel is refused: out of
/// its domain a function gives a NaN or an infinity. ZUMSqrt and ZUMSqr run with tasks, all others
/// on the calling thread.
#pragma once

#include <concepts>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Logarithms in single precision: the pixel is rounded to `float`, and the `float` logarithm is
/// widened. 0 gives minus infinity, a negative pixel a NaN.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMLog(const ZUMImage<P>& image);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMLog10(const ZUMImage<P>& image);

/// The function of the pixel, taken as a `double`. Angles are in radians.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMExp(const ZUMImage<P>& image);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMSin(const ZUMImage<P>& image);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMCos(const ZUMImage<P>& image);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMSinh(const ZUMImage<P>& image);
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMCosh(const ZUMImage<P>& image);
template <std::same_as<ZUMReal> P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMTan(const ZUMImage<P>& image);
template <std::same_as<ZUMReal> P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMTanh(const ZUMImage<P>& image);
template <std::same_as<ZUMReal> P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMAsin(const ZUMImage<P>& image);
template <std::same_as<ZUMReal> P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMAcos(const ZUMImage<P>& image);
template <std::same_as<ZUMReal> P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMAtan(const ZUMImage<P>& image);

/// The angle of the vector (x, y), -pi to pi. The result covers the region that both share and has
/// the channels of y; of x, the channels of the same numbers count. Throws XQException "ZUMAtan2:
/// Diferent number of channels %d!=%d" where x has fewer.
template <std::same_as<ZUMReal> P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMAtan2(const ZUMImage<P>& y, const ZUMImage<P>& x);

/// The square root, a NaN for a negative pixel. Tasks: CTaskSqrt.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMSqrt(const ZUMImage<P>& image);

/// The pixel types of squares: `long` ones that wrap of the discrete types, `double` ones of those
/// and of doubles.
template <class OutT, class P>
concept ZUMSquarePixels = (std::same_as<OutT, ZUMLong> && ZUMDiscretePixel<P>) ||
                          (std::same_as<OutT, ZUMReal> && ZUMScalarPixel<P>);

/// The pixel times itself, computed in the result's type: ZUMSqr<ZUMReal>(image) does not wrap, as
/// the `long` square of more than 46340 does. Tasks: CTaskSqr.
template <class OutT, class P>
requires ZUMSquarePixels<OutT, P>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMSqr(const ZUMImage<P>& image);

/// The parts of complex pixels. The module does not overflow before its own value does; the phase
/// lies between -pi and pi.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMRealComponent(const ZUMImage<ZUMComplex>& image);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMImagComponent(const ZUMImage<ZUMComplex>& image);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMComplexModule(const ZUMImage<ZUMComplex>& image);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMPhase(const ZUMImage<ZUMComplex>& image);
/// The conjugate (re, -im).
[[nodiscard]] ZUML_API ZUMImage<ZUMComplex> ZUMConjg(const ZUMImage<ZUMComplex>& image);
