/// Projections along an axis: all pixels of a line along the axis become one.
///
/// The result has the source's region with the axis reduced to the single coordinate 0, wherever
/// the source lies, and the source's channels; a point of it with no pixel in its line keeps the
/// value that the line starts from. An empty image gives an empty one. All of it runs on the
/// calling thread.
#pragma once

#include <concepts>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The pixel types of projected sums: `long` ones that wrap of the discrete types, `double` ones of
/// doubles.
template <class OutT, class InT>
concept ZUMProjectionPixels = (std::same_as<OutT, ZUMLong> && ZUMDiscretePixel<InT>) ||
                              (std::same_as<OutT, ZUMReal> && std::same_as<InT, ZUMReal>);

/// The sum of each line: ZUMProjectX<ZUMLong>(image). Reals are added toward higher coordinates. A
/// `long` sum wraps, where ZUMSum does: lines of more than 65536 shorts, or of two `long` pixels.
/// ZUMProjectX<ZUMReal>(ZUMImage<ZUMReal>(image)) does not.
template <class OutT, class InT>
requires ZUMProjectionPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMProjectX(const ZUMImage<InT>& image);
template <class OutT, class InT>
requires ZUMProjectionPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMProjectY(const ZUMImage<InT>& image);
template <class OutT, class InT>
requires ZUMProjectionPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMProjectZ(const ZUMImage<InT>& image);
template <class OutT, class InT>
requires ZUMProjectionPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMProjectT(const ZUMImage<InT>& image);

/// The maximum and the minimum of each line, by strict comparison with the least and the greatest
/// finite value of the type and then with each pixel: a NaN is passed over, and a line of
/// infinities can give that finite value.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMProjectMaxX(const ZUMImage<PixT>& image);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMProjectMaxY(const ZUMImage<PixT>& image);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMProjectMaxZ(const ZUMImage<PixT>& image);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMProjectMaxT(const ZUMImage<PixT>& image);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMProjectMinX(const ZUMImage<PixT>& image);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMProjectMinY(const ZUMImage<PixT>& image);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMProjectMinZ(const ZUMImage<PixT>& image);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMProjectMinT(const ZUMImage<PixT>& image);
