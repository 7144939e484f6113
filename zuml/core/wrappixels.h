/// Images of pixels that an application holds already: a camera's buffer, another library's
/// picture.
///
/// Planar buffers, whose channels follow each other, become images without a copy. Such an image
/// and all its copies and views use the caller's memory: the buffer must live, unmoved, until the
/// last of them is gone, and nothing tells its owner when that is. ZUMCopy gives an image that
/// needs the buffer no longer. What writes into the image writes into the buffer. A bool buffer may
/// hold any byte; every one but 0 is true.
///
/// Interleaved buffers, whose pixels hold the values of all channels next to each other, are copied
/// into planes, and are not needed after the call.
///
///   ZUMImage<ZUMByte> view = ZUMWrapPixels(std::span(grey), ZUMPlaneBox(0, 0, 639, 479));
///   ZUMImage<ZUMByte> picture =
///       ZUMCopyInterleavedPixels(std::span(rgb), ZUMPlaneBox(0, 0, 639, 479), 3);
///
/// All of them throw XQException "<name>: <reason>", with the reason
///   "no point in the box (%d,%d,%d,%d)-(%d,%d,%d,%d)",
///   "%d channels" if these are fewer than 1,
///   "a buffer of %zu pixels is too small, %lld are needed",
///   "pixels of %d bytes lie at an odd address" if they do not lie as their type must,
///   "lines of %lld bytes do not hold %lld pixels of %d bytes", or
///   "lines of %lld bytes end within a pixel of %d bytes";
/// and the error of a raster above 2^31 - 1 bytes.
#pragma once

#include <cstddef>
#include <span>
#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/pixeltypes.h"
#include "zuml/core/zumbasepoint.h"
#include "zuml/core/zumimage.h"

/// An image over the box on the caller's pixels: X fastest, then Y, Z, T and the channels, without
/// gaps.
template <ZUMAnyPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMWrapPixels(std::span<PixT> pixels, const ZUMRect& box,
                                                    int csz = 1);

/// The same where each line is followed by padding: a line begins `line_bytes` after the one
/// before it, also from plane to plane and from channel to channel. The buffer holds the padding of
/// the last line, too. Where it does not, as in a window of a larger picture, wrap the whole and
/// cut the window.
template <ZUMAnyPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<PixT> ZUMWrapPaddedPixels(std::span<PixT> pixels,
                                                          const ZUMRect& box, int csz,
                                                          std::ptrdiff_t line_bytes);

/// A new image over the box with the caller's interleaved pixels: the values of all channels next
/// to each other, then X, Y, Z and T. A line begins `line_bytes` after the one before it, or, with
/// 0, after its last pixel; the last line needs no padding.
template <class Q>
requires ZUMAnyPixel<std::remove_const_t<Q>>
[[nodiscard]] ZUML_API ZUMImage<std::remove_const_t<Q>> ZUMCopyInterleavedPixels(
    std::span<Q> pixels, const ZUMRect& box, int csz, std::ptrdiff_t line_bytes = 0);
