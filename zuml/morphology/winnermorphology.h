/// Dilation and erosion that tell which pixel of the element won: by its coordinates, or by a
/// number that a second image gives it.
///
/// The value is that of ZUMDilateEx and ZUMErodeEx, with their starting value, mirrored element and
/// border: see mathmorph.h. A pixel of the element takes the lead where its source pixel is
/// strictly greater (in an erosion smaller) than the leader so far. A tie stays with the first one
/// in the element's sweep order, and with the pixel's own value if the element is true at the
/// origin.
///
/// All throw XQException "ZUMDilateCoordsEx: Multichannel structuring elements are not allowed"
/// with the function's own name, and what the `Ex` forms throw for an empty image. The cost is one
/// step for each pixel of the element. Tasks: CTaskDilateCoordsEx, CTaskErodeCoordsEx,
/// CTaskDilateAndDistanceEx.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Four channels over the image's region: X, Y, Z and T of the source pixel that won, or the
/// pixel's own where none did. The image has one channel; of several the first one is taken, and
/// without one no pixel wins.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMDilateCoordsEx(const ZUMImage<PixT>& image,
                                                           const ZUMImage<ZUMBool>& element);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMErodeCoordsEx(const ZUMImage<PixT>& image,
                                                          const ZUMImage<ZUMBool>& element);

/// Two channels over the image's region: the dilated value, and `distance` at the winning pixel of
/// the element. Where none won, the second one holds `distance` at the origin if the element is
/// true there, otherwise -90000000.
///
/// Throws XQException "ZUMDilateAndDistanceEx: Multichannel distance elements are not allowed",
/// "ZUMDilateAndDistanceEx: Multichannel images are not allowed", and then, where the regions of
/// element and distances differ, "ZUMDilateAndDistanceEx: structuring element and distance have
/// differents RoDs".
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMDilateAndDistanceEx(const ZUMImage<ZUMReal>& image,
                                                                const ZUMImage<ZUMBool>& element,
                                                                const ZUMImage<ZUMReal>& distance);
