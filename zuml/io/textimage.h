/// Images as plain text: a line for each row, its numbers separated by tabs.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Writes the plane at Z 0, T 0 of an image of one channel (the first plane of a region without
/// these) with six significant digits and a decimal point. An image without pixels gives an empty
/// file.
///
/// Throws XQException "ZUMWriteTxtImage: It don't accept multichannel images", "ZUMWriteTxtImage:
/// It olny accepts rectagular images" for a region that is no box, "ZUMWriteTxtImage: Error opening
/// file %s", or "ZUMWriteTxtImage: Error writing image to file %s", for example on a full disk.
ZUML_API void ZUMWriteTxtImage(const ZUMImage<ZUMReal>& image, const char* path);

/// Reads rows of numbers into an image at (0,0). Blanks, tabs, semicolons and carriage returns
/// separate numbers, a line feed ends a row that has any. A number is a run of digits, signs,
/// points, commas (read as decimal points), E and e, and has the value of its longest part that is
/// a number, or 0, whatever the language that the application speaks.
///
/// Throws XQException "ZUMReadTxtImage: Error opening file %s", "Error al leer imagen Txt %s %c"
/// with the path and a character that belongs to no number, "Error al leer imagen Txt %s" for a
/// number of more than 256 characters, "Error al leer imagen Txt por filas de diferente longitud
/// %s" for a row that is not as long as the first, "GetFront: List empty" for a file without a
/// number, and "ZUMReadTxtImage: the image of %s is beyond the limits".
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMReadTxtImage(const char* path);
