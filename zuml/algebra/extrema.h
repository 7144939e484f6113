/// Extreme values and where they are.
///
/// Values are compared strictly, in sweep order: among equal pixels the first one stays, and a NaN
/// never displaces a number. No number displaces a NaN that stands first in the image, so that an
/// image of reals that begins with a NaN has it as its maximum and its minimum. The number of tasks
/// changes nothing.
#pragma once

#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The greatest and the least pixel of all channels. Throw XQException "ZUMMax:Valor indefinido por
/// imagen vacia" and the like for an image without pixels. Tasks: CTaskMax, CTaskMin.
template <ZUMOrderedPixel PixT>
[[nodiscard]] ZUML_API PixT ZUMMax(const ZUMImage<PixT>& image);
template <ZUMOrderedPixel PixT>
[[nodiscard]] ZUML_API PixT ZUMMin(const ZUMImage<PixT>& image);

/// Both in one walk. Throws XQException "ZUMMinMax:Valor indefinido por imagen vacia" for an image
/// without pixels, and leaves the numbers as they are. Tasks: CTaskMinMax.
template <ZUMOrderedPixel PixT>
ZUML_API void ZUMMinMax(const ZUMImage<PixT>& image, std::type_identity_t<PixT>& min,
                        std::type_identity_t<PixT>& max);

/// The coordinates of the first pixel with the greatest value.
///
/// Throws XQException "ZUMSearchMax: It only allows single channel images", or "ZUMSearchMax: It
/// not works width empty images". Tasks: CTaskSearchMax.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMBasePoint<int> ZUMSearchMax(const ZUMImage<PixT>& image);

/// The coordinates of the first pixel with the least value.
///
/// Throws XQException "ZUMSearchMin: It only allows images of a one channel", or "ZUMSearchMin: It
/// not works width empty images". Tasks: CTaskSearchMin.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMBasePoint<int> ZUMSearchMin(const ZUMImage<PixT>& image);

/// Finds the first pixel equal to the value. If there is one, stores its x and y in the point, sets
/// z and t to 0 and returns true; otherwise returns false and leaves the point as it is. Runs on
/// the calling thread and ends at the pixel found.
///
/// Throws XQException "ZUMSearchEqual: only it allows images of a one channel".
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMBool ZUMSearchEqual(const ZUMImage<PixT>& image,
                                              std::type_identity_t<PixT> value,
                                              ZUMBasePoint<int>& point);
