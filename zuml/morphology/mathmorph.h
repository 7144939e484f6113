/// Flat dilation and erosion by a structuring element.
///
/// An element is a bool image of one channel whose region lies around the origin (0,0,0,0), which
/// it need not hold; its true pixels k are the element. A mirrored form takes the pixels p - k of
/// the source for the result's pixel p, a direct form the pixels p + k; a form keeps its direction
/// for all pixel types but where it says otherwise. Boxes as elements: boxmorphology.h.
///
/// - A plain form has no border rule: with [B, E] the source's box and [kb, ke] that of the
///   element's region, the result covers [B + ke, E + kb] (mirrored) or [B - kb, E - ke] (direct).
///   An image smaller than the element gives an empty one. An element without a true pixel throws
///   XQException "ZUMDisplacementArray::SymmetricFromNonZeroPixels Un elemento estructurante ha de
///   tener como mínimo un pixel" (mirrored), "ZUMDisplacementArray::FromNonZeroPixels ..."
///   (direct).
/// - An `Ex` form keeps the source's region, and pixels outside it contribute nothing. If the
///   element holds the origin, a pixel begins with its own value; otherwise with the least value of
///   the image and its channels (of an erosion: the greatest), which stays where nothing is reached
///   and needs an image that is not empty: XQException "ZUMMin:Valor indefinido por imagen vacia",
///   "ZUMMax:Valor indefinido por imagen vacia".
///
/// The result has the source's channels, each for itself. Reals are compared strictly in the order
/// of the element's pixels: a NaN stays where it comes first, and elsewhere is passed over.
///
/// All throw XQException "ZUMDilate: Multichannel structuring elements are not allowed" with the
/// function's own name. The cost a pixel is a vector's share of one step for each pixel of the
/// element, for integer types of at most two for each run of them along X; an element that fills
/// its box costs what the box does. Tasks: CTaskDilate, CTaskErode, for bool and byte images under
/// elements of long runs along X CTaskDilateBool, CTaskErodeBool, CTaskDilateByte, CTaskErodeByte;
/// CTaskDilateEx, CTaskErodeEx, CTaskMinAddEx, CTaskMinSubEx.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The greatest pixel under the mirrored element; of a bool image, under the direct element.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMDilate(const ZUMImage<PixT>& image,
                                                const ZUMImage<ZUMBool>& element);
/// The least pixel under the mirrored element; of a bool image, under the direct element.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMErode(const ZUMImage<PixT>& image,
                                               const ZUMImage<ZUMBool>& element);
/// The greatest pixel under the direct element.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMMinAdd(const ZUMImage<PixT>& image,
                                                const ZUMImage<ZUMBool>& element);
/// The least pixel under the direct element.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMMinSub(const ZUMImage<PixT>& image,
                                                const ZUMImage<ZUMBool>& element);

/// The same over the source's region: mirrored for all types, and direct.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMDilateEx(const ZUMImage<PixT>& image,
                                                  const ZUMImage<ZUMBool>& element);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMErodeEx(const ZUMImage<PixT>& image,
                                                 const ZUMImage<ZUMBool>& element);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMMinAddEx(const ZUMImage<PixT>& image,
                                                  const ZUMImage<ZUMBool>& element);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMMinSubEx(const ZUMImage<PixT>& image,
                                                  const ZUMImage<ZUMBool>& element);
