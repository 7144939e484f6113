/// Flat dilation and erosion by a box: all k with lo <= k <= hi on every axis.
///
/// The forms, directions and border rules are those of mathmorph.h, the same for all pixel types.
/// The box may be larger than the image. It is taken axis by axis in the order X, Y, Z, T:
///
/// - An axis on which lo equals hi is left alone. A box that lies at one coordinate away from 0
///   neither shifts the image on that axis nor shrinks its region.
/// - In the `Ex` forms a pixel begins with its own value. In ZUMDilateEx it begins with the least
///   value of the type (of reals -1.7976931348623157e308), which stays where no pixel is reached.
/// - Reals are compared strictly along each axis, from its least coordinate on in the plain forms
///   and from its greatest in the `Ex` forms: a NaN stays where it comes first.
///
/// For integer types the cost of a pixel does not depend on the box. Tasks: CTaskDilateX,
/// CTaskDilateY, CTaskDilateZ, CTaskDilateT and the same with CTaskErode; in the `Ex` forms
/// CTaskDilateExX and so on, CTaskErodeExX and so on. For integer types the tasks of Y fold along X
/// too.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The greatest pixel under the mirrored box. Throws XQException "ZUMDilate: empty rectangle is not
/// allowed" where lo is above hi.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMDilate(const ZUMImage<PixT>& image, const ZUMRect& box);
/// The least pixel under the mirrored box, which has to hold the origin. Throws XQException
/// "ZUMErode: empty rectangle is not allowed or origin is out of rectange".
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMErode(const ZUMImage<PixT>& image, const ZUMRect& box);
/// The greatest pixel under the direct box, which has to hold the origin. Throws XQException
/// "ZUMMinAdd: empty rectangle is not allowed or origin is out of rectange".
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMMinAdd(const ZUMImage<PixT>& image, const ZUMRect& box);
/// The least pixel under the direct box, which has to hold the origin. Throws XQException
/// "ZUMMinSub: empty rectangle is not allowed or origin is out of rectange".
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMMinSub(const ZUMImage<PixT>& image, const ZUMRect& box);

/// The same over the source's region. The errors name these functions, except that ZUMErodeEx
/// throws "ZUMErode: empty rectangle is not allowed or origin is out of rectange".
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMDilateEx(const ZUMImage<PixT>& image, const ZUMRect& box);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMErodeEx(const ZUMImage<PixT>& image, const ZUMRect& box);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMMinAddEx(const ZUMImage<PixT>& image, const ZUMRect& box);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMMinSubEx(const ZUMImage<PixT>& image, const ZUMRect& box);
