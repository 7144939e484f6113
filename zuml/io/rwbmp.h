/// BMP files of byte images, grey or in three colours.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Writes an image of one plane and 1 or 3 channels (red, green, blue): with a grey palette and 8
/// bits a pixel, or with 24 bits. The rows go out bottom first. Pixels of the region's box that the
/// region does not hold are 0.
///
/// Throws XQException "No se puede escribir una imagen BMP con las dimensiones XSz=%d YSz=%d ZSz=%d
/// TSz=%d CSz=%d" (also for a file of 4 GiB, which its header cannot tell), "error when open file
/// \"%s\"", or "ZUMWriteBMP: Error writing image to file %s", for example on a full disk.
ZUML_API void ZUMWriteBMP(const ZUMImage<ZUMByte>& image, const char* path);

/// Reads an uncompressed BMP of 1, 8, 24 or 32 bits a pixel into an image at (0,0): one channel for
/// 1 and 8 bits, three (red, green, blue) for 24 and 32. A bit gives 0 or 255 and 8 bits the index
/// itself: palettes are not consulted. Rows of bits follow one another without a gap, unless the
/// image size in the header, divided by the height, is more than a row takes. The fourth byte of 32
/// bits is dropped. With a negative height the file has the top row first. Pixels that a short file
/// does not hold are 0; a width or height of 0 gives an image without pixels.
///
/// Throws XQException "error \"%s\" not found" if the file cannot be opened, "error reading file
/// \"%s\"" if a header is short, "error \"%s\" is not a BMP file", "error \"%s\" is a not readable
/// BMP file" for other depths, compressions, header sizes and sizes below 0, with the header's
/// fields in the diagnostics, "ZUMReadBMP: \"%s\": %d x %d pixels with %d channels are beyond the
/// limits", and "ZUMReadBMP: \"%s\" is too short for %d x %d pixels with %d channels", where the
/// file has less than a sixteenth of the bytes of a picture of more than 64 MiB. A pipe has no
/// length, and is never too short.
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMReadBMP(const char* path);
