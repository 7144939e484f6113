/// ZMG, the library's own image file: the only one that keeps pixel type, region and coordinates.
#pragma once

#include <iosfwd>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Writes one image of any pixel type, with its region and its channels.
///
/// With `wholeRaster` false, the file holds the pixels of the region alone: margins of the raster
/// and channels outside the view stay behind. With true, it holds the raster's whole block and the
/// view on it, margins with undefined pixels included.
///
/// The file is a header of 105 bytes and the pixels as they lie in memory: X fastest, then Y, Z, T,
/// channels outermost, no compression. All its fields are little-endian 32-bit integers: the name
/// "ZUMLImage" and the version 1, the name "ZUMRoDRect" and the region (begin X, Y, Z, T, end X, Y,
/// Z, T), the pixel type, the coordinates of the first stored pixel (X, Y, Z, T), the channel
/// offset, the image's channels, and the stored extents (X, Y, Z, T, channels).
///
/// Throws XQException "ZUMRegionOfDefinitionWrite for %s not yet implemeted" with the class of a
/// region that is no box; magic and version are written by then. A failed write is not reported:
/// whoever must know looks at the stream's state.
ZUML_API void ZUMWriteZMG(const ZUMGenericImage& image, std::ostream& stream, bool wholeRaster);

/// The same into a new file. Throws XQException "ZUMWriteZMG: Error opening file %s".
ZUML_API void ZUMWriteZMG(const ZUMGenericImage& image, const char* path, bool wholeRaster);

/// Reads one image and leaves the stream at the first byte behind it, where another may follow.
/// Assign the result to the typed image that is expected; it tests the pixel type.
///
/// Throws XQException "ZUMReadZMG format error", "ZUMReadZMG version %d not readable" for a version
/// above 1, "ZUMRegionOfDefinitionRead for %s not yet implemeted", and, for a header that describes
/// no image that could be used:
///   - "ZUMReadZMG: unknown pixel type %d"
///   - "ZUMReadZMG: a raster of %d x %d x %d x %d pixels with %d channels is beyond the limits"
///   - "ZUMReadZMG: the region or the channels are outside the raster"
///   - "ZUMReadZMG: the file is too short for %lld bytes of pixels", where it holds less than a
///     sixteenth of more than 64 MiB
///
/// A stream that ends early gives no message otherwise: missing pixels are 0, and a header that is
/// cut behind the region's name gives an image without pixels. Bytes other than 0 of a ZUMBool
/// image are read as 1.
[[nodiscard]] ZUML_API ZUMGenericImage ZUMReadZMG(std::istream& stream);

/// The same from a file. Throws XQException "ZUMReadZMG: Error opening file %s".
[[nodiscard]] ZUML_API ZUMGenericImage ZUMReadZMG(const char* path);
