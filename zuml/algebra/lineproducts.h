/// Products of an image with a line: every pixel is multiplied by the line's pixel at the same
/// coordinate of one axis, such as a correction of the gain along a row.
///
/// The line is a box that holds the single coordinate 0 on all axes but the named one, with the
/// image's channels. The result covers the part of the image that the line reaches on the named
/// axis; it has the image's channels, and products are computed in OutT: `long` ones wrap. Runs on
/// the calling thread.
///
/// Each throws, with its own name, XQException "ZUMYProduct: Two images don't have same number of
/// channels" or "ZUMYProduct: Line image isn't a Y line" ("ZUMXProduct: Line image isn't a  X
/// line").
#pragma once

#include <concepts>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The pixel types of the products: a `long` line with an image of a discrete type, a `double` line
/// with one of those or of doubles.
template <class OutT, class InT>
concept ZUMProductPixels = (std::same_as<OutT, ZUMLong> && ZUMDiscretePixel<InT>) ||
                           (std::same_as<OutT, ZUMReal> && ZUMScalarPixel<InT>);

template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMXProduct(const ZUMImage<OutT>& line,
                                                  const ZUMImage<InT>& image);
template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMYProduct(const ZUMImage<OutT>& line,
                                                  const ZUMImage<InT>& image);
template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMZProduct(const ZUMImage<OutT>& line,
                                                  const ZUMImage<InT>& image);
template <class OutT, class InT>
requires ZUMProductPixels<OutT, InT>
[[nodiscard]] ZUML_API ZUMImage<OutT> ZUMTProduct(const ZUMImage<OutT>& line,
                                                  const ZUMImage<InT>& image);
