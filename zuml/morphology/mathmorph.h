/// Flat dilation and erosion by a structuring element.
///
/// An element is a bool image of one channel; its true pixels k are the element. Its region need
/// not hold the origin (0,0,0,0) and may be larger than the image. For the result's pixel p a
/// mirrored form takes the source's pixels p - k, a direct form the pixels p + k. A form has the
/// same direction for all pixel types unless it says otherwise. Boxes as elements: boxmorphology.h.
///
/// - A plain form has no border rule: with [B, E] the source's box and [kb, ke] that of the
///   element's region, the result covers [B + ke, E + kb] (mirrored) or [B - kb, E - ke] (direct).
///   An image smaller than the element gives an empty one. An element without a true pixel throws
///   XQException "ZUMDisplacementArray::SymmetricFromNonZeroPixels Un elemento estructurante ha de
///   tener como mínimo un pixel" (mirrored), "ZUMDisplacementArray::FromNonZeroPixels ..."
///   (direct).
/// - An `Ex` form keeps the source's region, and pixels outside it contribute nothing. If the
///   element is true at the origin, a pixel begins with its own value. Otherwise it begins with the
///   least value of all channels (in an erosion the greatest), which stays where nothing is
///   reached; an image without pixels has none: XQException "ZUMMin:Valor indefinido por imagen
///   vacia", "ZUMMax:Valor indefinido por imagen vacia". An element without a true pixel is
///   allowed.
///
/// Channels are independent, and the result has as many. Reals are compared strictly in the order
/// of the element's pixels: a NaN stays if it comes first and is ignored elsewhere.
///
/// All throw XQException "ZUMDilate: Multichannel structuring elements are not allowed" with the
/// function's own name. Each pixel costs a vector's share of one step for each pixel of the
/// element; for integer types at most two steps for each of its runs along X, and an element that
/// fills its box costs what the box does. Tasks: CTaskDilate, CTaskErode, for bool and byte images
/// under elements of long runs along X CTaskDilateBool, CTaskErodeBool, CTaskDilateByte,
/// CTaskErodeByte; CTaskDilateEx, CTaskErodeEx, CTaskMinAddEx, CTaskMinSubEx.
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
