/// Encapsulated PostScript of byte images, for documents; written only.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Writes an image of one plane and 1 or 3 channels (red, green, blue) as a level 1 picture in
/// hexadecimal text. The picture has the size of the raster, and its scale makes it 504 points wide
/// at most, 280 in colour. Pixels of the raster outside the region are white: ZUMCopy makes an
/// image whose raster is its region.
///
/// Throws XQException "No se puede escribir una imagen EPS con las dimensiones XSz=%d YSz=%d ZSz=%d
/// TSz=%d CSz=%d", "Error opening EPS %s", or "ZUMWriteEPS: Error writing image to file %s", for
/// example on a full disk.
ZUML_API void ZUMWriteEPS(const ZUMImage<ZUMByte>& image, const char* path);
