/// One call for every image file format.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Reads an image of bytes with the reader that the file's extension names, in small or capital
/// letters: ".zmg" ZUMReadZMG, ".bmp" ZUMReadBMP, ".jpg" and ".jpeg" ZUMReadJPEG, ".tif" and
/// ".tiff" ZUMReadTIFF, ".png" ZUMReadPNG. The file's contents are not looked at. The extension
/// runs from the last dot of the file's name to its end; a name that is all extension has one.
///
/// Throws XQException "ZUMReadImage: Image file extension not recognized %s" with the extension in
/// small letters, "Type Error on construction ZUMImage<ZUMByte>" if a ZMG or TIFF file holds other
/// pixels than bytes, since pixels are not converted, and what the readers throw.
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMReadImage(const char* path);
