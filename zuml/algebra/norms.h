/// Norms across channels: each result has one channel, over the operand's region. With them a
/// gradient of two channels becomes its modulus.
///
/// The term of channel 0 comes first, then those of the last channel down to channel 1 are added.
/// An image of no channel has the norm 0.
#pragma once

#include <concepts>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The pixel types of the squared and the L1 norm: `long` of the integer types, `double` of
/// doubles.
template <class OutT, class P>
concept ZUMNormPixels = (std::same_as<OutT, ZUMLong> && ZUMIntegerPixel<P>) ||
                        (std::same_as<OutT, ZUMReal> && std::same_as<P, ZUMReal>);

/// The Euclidean norm: the root of the sum of squares, in `double`. Tasks: CTaskNorm.
template <ZUMGreyPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMNorm(const ZUMImage<P>& image);

/// The sum of squares; that of integers is a 32-bit integer that wraps, as a single square of more
/// than 46340 does. ZUMNorm does not wrap. Tasks: CTaskSqrNorm.
template <class OutT, class P>
requires ZUMNormPixels<OutT, P>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMSqrNorm(const ZUMImage<P>& image);

/// The sum of magnitudes; that of integers keeps the low 32 bits of the true sum. Tasks:
/// CTaskNormL1.
template <class OutT, class P>
requires ZUMNormPixels<OutT, P>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMNormL1(const ZUMImage<P>& image);
