/// JPEG files of byte images, grey or in three colours.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Writes an image of one plane and 1 or 3 channels (red, green, blue) as baseline JPEG. `quality`
/// runs from 1 to 100 and is held to that range; the pixels that are read back are only near those
/// written. Pixels of the region's box that the region does not hold are 0.
///
/// Throws XQException "No se puede escribir una imagen JPEG con las dimensiones XSz=%d YSz=%d
/// ZSz=%d TSz=%d CSz=%d", XQExcepIOError "No se ha podido escribir la imagen %s" if the file cannot
/// be opened or finished, and XQException with the codec's own text for what the codec refuses,
/// such as an axis beyond 65500 pixels or a full disk; that text goes to the diagnostics too, as
/// "ERROR JPEG ...".
ZUML_API void ZUMWriteJPEG(const ZUMImage<ZUMByte>& image, const char* path, int quality);

/// Reads a JPEG file, baseline or progressive, into an image at (0,0) with 1 channel or 3 (red,
/// green, blue). A file that is cut short behind its headers gives no message: the codec fills the
/// missing part evenly.
///
/// Throws XQExcepNotFound "Error opening %s", XQException "ReadJPEG: Número de canales erroneo" for
/// other numbers of channels, such as the four of CMYK, XQException "ZUMReadJPEG: \"%s\" is beyond
/// the limits with %lld x %lld pixels with %d channels" for a picture that no block can hold,
/// "ZUMReadJPEG: \"%s\" is too short for %lld x %lld pixels with %d channels" for one of more than
/// 64 MiB whose file has less than a 2048th of its bytes (a pipe is never too short), and
/// "ReadJPEG: more than %d scans" for a progressive file of more than 100 passes, or 20 over a
/// picture of more than 64 MiB. The codec's own errors are as for ZUMWriteJPEG.
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMReadJPEG(const char* path);
