/// PNG files of byte images with up to four channels.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Writes an image of one plane with 8 bits a sample: grey (1 channel), grey and alpha (2), red,
/// green, blue (3), or these and alpha (4). No pixel changes. Pixels of the region's box that the
/// region does not hold are 0 in all channels.
///
/// Throws XQException "WritePNG: Image with more of4 channeles are not allowed", "WritePNG: 3D
/// images are not allowed", "WritePNG: multiframe images are not allowed", "error opening \"%s\"",
/// "png_create_write_struct failed", "png_create_info_struc failed", and "png_write failed", for
/// example for an empty image or on a full disk.
ZUML_API void ZUMWritePNG(const ZUMImage<ZUMByte>& image, const char* path);

/// Reads a PNG file into an image at (0,0) with the channels of ZUMWritePNG. Samples of 16 bits
/// keep their high 8, palettes become colours, grey of less than 8 bits is spread over 0 to 255,
/// and a transparent colour or a palette with transparency becomes an alpha channel.
///
/// Throws XQException "error \"%s\" not found" for a file that cannot be opened or that the codec
/// refuses, cut short ones included; "error reading \"%s\""; "error color type %d of \"%s\" not
/// supported"; "ZUMReadPNG: \"%s\" is beyond the limits with %lld x %lld pixels with %d channels"
/// for a picture that no block can hold, and "ZUMReadPNG: \"%s\" is too short for %lld x %lld
/// pixels with %d channels" for one of more than 64 MiB whose file cannot hold its samples at the
/// best compression; a row counts as 256 bytes at least, and a pipe is never too short.
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMReadPNG(const char* path);
