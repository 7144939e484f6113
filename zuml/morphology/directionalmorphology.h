/// Directional accumulators: one number from what the sectors around a pixel hold.
///
/// The element is a labelled image of one channel: the value of a non-zero pixel is its sector,
/// from 1 to the greatest value L. Values below 0 do not count, and a sector without a pixel counts
/// 0. An element without a pixel other than 0 throws XQException
/// "ZUMDisplacementValueArray<PixT>::SymmetricFromNonZeroPixels Un elemento estructurante ha de
/// tener como mínimo un pixel", in ZUMDilateGradAcum that of FromNonZeroPixels; a multichannel one
/// "ZUMDilateWMAcum: Multichannel structuring elements are not allowed" with the function's own
/// name.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The median of the sectors' maxima, each weakened where its distance does not fit those in the
/// sectors beside it. The form is plain and mirrored, with the image's channels.
///
/// For each sector i, M[i] is the greatest pixel under it and D[i] the Euclidean length of the
/// first element pixel, in sweep order, that has it. W[i] is the median of D over the sectors i -
/// half_window to i + half_window, around the circle; a negative half_window counts as 0. M[i] is
/// divided by |D[i] - W[i]| / max(W[i], 1) * gain + 1, and the result is the median of the
/// quotients. Of n values, the median is the one at (n - 1) / 2 in ascending order. Tasks:
/// CTaskDilateWMAcum.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMDilateWMAcum(const ZUMImage<ZUMReal>& image,
                                                         const ZUMImage<ZUMLong>& element,
                                                         int half_window, double gain);
/// The same with a gain of 1.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMDilateWMAcum2(const ZUMImage<ZUMReal>& image,
                                                          const ZUMImage<ZUMLong>& element,
                                                          int half_window);

/// How much a gradient field points towards a pixel from all sectors. The gradient has two
/// channels, X and Y; the element lies in one plane.
///
/// For the element's pixel at (x, y) the gradient at p + (x, y) is projected on the direction (-x,
/// -y) / sqrt(x * x + y * y), which is computed in single precision. The result, of one channel, is
/// the sum over the sectors of the greatest projection, where that is above 0, divided by L. It
/// covers [B + ke, E + kb] for the gradient's box [B, E] and the element's [kb, ke]. This is the
/// region of a mirrored form while the element is read directly, so that an element that is not
/// symmetric reads outside the gradient; what lies there contributes nothing. Tasks:
/// CTaskDilateGradAcum.
///
/// Throws XQException "ZUMDilateGradAcum: it only allows two channels images", also where Z or T of
/// the element has an extent.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMDilateGradAcum(const ZUMImage<ZUMReal>& gradient,
                                                           const ZUMImage<ZUMLong>& element);
