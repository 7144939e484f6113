/// Dilation and erosion that tell which pixel of the element won: by its coordinates, or by a
/// number that a second image gives it.
///
/// The value is that of ZUMDilateEx and ZUMErodeEx, with its starting value, its mirrored element
/// and its border: see mathmorph.h. An element's pixel takes the lead where its source pixel is
/// strictly greater (of an erosion: smaller) than what led before, so that ties stay with the first
/// one in the element's sweep order, and with the pixel's own value if the element holds the
/// origin.
///
/// All throw XQException "ZUMDilateCoordsEx: Multichannel structuring elements are not allowed"
/// with the function's own name, and what the `Ex` forms throw for an empty image. The cost is one
/// step for each pixel of the element. Tasks: CTaskDilateCoordsEx, CTaskErodeCoordsEx,
/// CTaskDilateAndDistanceEx.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Four channels over the image's region, the X, Y, Z and T of the source pixel that won: the own
/// coordinates where none did. The image has one channel; of others the first one is taken.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMDilateCoordsEx(const ZUMImage<PixT>& image,
                                                           const ZUMImage<ZUMBool>& element);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMErodeCoordsEx(const ZUMImage<PixT>& image,
                                                          const ZUMImage<ZUMBool>& element);

/// Two channels over the image's region: the dilated value, and `distance` at the winning pixel of
/// the element. Where none won, the second one holds `distance` at the origin if the element holds
/// it, otherwise -90000000.
///
/// Throws XQException "ZUMDilateAndDistanceEx: Multichannel distance elements are not allowed",
/// "ZUMDilateAndDistanceEx: Multichannel images are not allowed", or, where the element and the
/// distances differ in their regions, "ZUMDilateAndDistanceEx: structuring element and distance
/// have differents RoDs".
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMDilateAndDistanceEx(const ZUMImage<ZUMReal>& image,
                                                                const ZUMImage<ZUMBool>& element,
                                                                const ZUMImage<ZUMReal>& distance);
