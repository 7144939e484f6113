/// Unknown pixels filled by diffusion: in the end each is the mean of its neighbours, the smooth
/// surface through the known pixels around a hole.
///
/// A mask says which pixels of an image are unknown: true is to compute, false is known. Image and
/// mask have one channel each, and the result covers what all operands cover. Neighbours are the
/// 3^k
/// - 1 pixels around on the k axes on which that region extends: 8 in a plane, 26 in a volume, 2 on
/// a line. Work and means are in `double`; results are cut toward zero on integer pixels, and a
/// bool is true where the value is not 0.
///
/// Throw XQException "ZUMExtendDiffuse: It only accepts images with one channel (%d)",
/// "ZUMExtendDiffuse: Diferent number of channels %d!=%d", and "ZUMExtendDiffuse: Tolerance %g not
/// allowed" for one that is not above 0. Run on the calling thread.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The hole is filled first, front by front from the known pixels: the pixels of a front are means
/// of the known ones and of earlier fronts. Then all unknown pixels become the means of their
/// neighbours, all at once and again and again, until no pixel changes by more than the tolerance.
/// A pixel that no known one reaches is 0, of reals a NaN.
///
/// The time grows with the pixels of the hole times the square of its width.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMExtendDiffuse(const ZUMImage<P>& image,
                                                    const ZUMImage<ZUMBool>& mask,
                                                    double tolerance);

/// The same with a weight for each neighbour of each pixel: channel k of the anisotropy belongs to
/// the k-th neighbour in sweep order. In each pass over the image in sweep order, an unknown pixel
/// becomes the weighted mean of its neighbours with a value, which later pixels of the pass see; a
/// pixel that gets its first value counts for others from the next pass on. Where the weights do
/// not add up to more than 0, nothing happens: a pixel that is never reached keeps the image's own
/// value. Passes end when no pixel changes by more than the tolerance. Each writes a line "1:1.5"
/// to the diagnostic output, its number and the largest change (the tolerance and 1 after first
/// values).
///
/// Throws "ZUMExtendDiffuse: Diferent number of channels %d!=%d" also where image and anisotropy
/// differ in their regions, and "ZUMExtendDiffuse: Anisotropy don't have %d channels".
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMExtendDiffuse(const ZUMImage<P>& image,
                                                    const ZUMImage<ZUMBool>& mask, double tolerance,
                                                    const ZUMImage<ZUMReal>& anisotropy);
