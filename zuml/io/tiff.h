/// TIFF files: of bytes, and of every pixel type that the format knows.
///
/// Reading and writing report to their own handlers, file by file, and may run in several threads.
/// Two handlers of libtiff belong to the whole process. Both readers set the one for warnings to
/// none, and ZUMReadTIFF sets the one for errors to a function that throws XQException "TIFF Error:
/// %s %s". Both stay set. An application that calls libtiff itself, in any thread, then gets the
/// exception out of its own calls, through frames of C that release nothing. It should set a
/// handler of its own after the first ZUMReadTIFF, or open its files with handlers of their own.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Writes an image of one plane and 1 or 3 channels (red, green, blue) with 8 bits a sample,
/// contiguous samples and LZW compression. Pixels of the region's box that the region does not hold
/// are 0.
///
/// Throws XQException "No se puede escribir una imagen TIFF con las dimensiones XSz=%d YSz=%d
/// ZSz=%d TSz=%d CSz=%d" and "Error opening TIFF %s", and XQExcepIOError "Error writing TIFF %s"
/// for a file that cannot be finished, for example on a full disk.
ZUML_API void ZUMWriteByteTIFF(const ZUMImage<ZUMByte>& image, const char* path);

/// Reads a TIFF picture of 1 or 3 samples a pixel as it looks: 8 bits a sample, palettes, "white is
/// zero", other colour spaces and orientations resolved. The image is at (0,0); one of 1 channel
/// has the red of the colours. Where the codec cannot do that, for lack of data or because the
/// samples are no colours, the pixels are 0, and nothing is reported.
///
/// Throws XQException "Error opening TIFF file %s", also for a directory that the codec refuses,
/// "TIFF channels not accepted %d", "ZUMReadByteTIFF: \"%s\" is beyond the limits with %lld x %lld
/// pixels with %d channels" for a picture that takes 2 GiB with 4 bytes a pixel, and
/// "ZUMReadByteTIFF: \"%s\" is too short for %lld x %lld pixels with %d channels" and
/// "ZUMReadByteTIFF: the parts of \"%s\" overlap" as ZUMReadTIFF does.
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMReadByteTIFF(const char* path);

/// Writes an image of one plane and 1 or 3 channels, of any pixel type but complex and pointer:
/// bool and byte as 8 bits unsigned (bool as 0 and 1), short and long as 16 and 32 bits signed,
/// float and double as such. Samples stand in separate planes, LZW compressed, in strips of about 8
/// KiB. Pixels of the region's box that the region does not hold are 0.
///
/// Throws as ZUMWriteByteTIFF, and XQException "ZUMWriteTIFF: don't accept ZUMComplex images".
ZUML_API void ZUMWriteTIFF(const ZUMGenericImage& image, const char* path);

/// Reads a TIFF file with its samples as they stand, strips or tiles, contiguous or in planes, with
/// any number of channels. The pixel type comes from sample format and bits:
///
///   | format      | bits | pixels                        |
///   |-------------|------|-------------------------------|
///   | 1, unsigned | 1    | ZUMBool                       |
///   |             | 8    | ZUMByte                       |
///   |             | 16   | ZUMLong                       |
///   |             | 32   | ZUMLong, the bits as they are |
///   | 2, signed   | 16   | ZUMShort                      |
///   |             | 32   | ZUMLong                       |
///   | 3, floating | 32   | ZUMSReal                      |
///   |             | 64   | ZUMReal                       |
///
/// Palettes and "white is zero" are not looked at. The image is at (0,0); orientations 2, 3 and 4
/// mirror it through ZUMSymmetryX, ZUMSymmetry and ZUMSymmetryY, so that it ends at 0 on the
/// mirrored axes.
///
/// Throws XQException:
///   - "Error opening TIFF file %s" if there is no such file, or it does not begin as TIFF does
///   - "TIFFTAG_IMAGEWIDTH not found" if width or length is missing or 0
///   - "TIFFTAG_SAMPLEFORMAT not accepted %d", "TIFFTAG_BITSPERSAMPLE not accepted %d",
///     "TIFFTAG_PLANARCONFIG not accepted %d" (also for contiguous bits of several channels),
///     "TIFFTAG_ORIENTATION not accepted %d" (above 4)
///   - "TIFF Error: %s %s", module and message, for what the codec reports, such as missing data
///   - "ZUMReadTIFF: \"%s\" is beyond the limits with %lld x %lld pixels with %d channels"
///   - "ZUMReadTIFF: \"%s\" is too short for %lld x %lld pixels with %d channels", for more than
///     64 MiB out of a file of less than a 2048th of that (a 65536th for fax and rarer codecs); a
///     row counts as 256 bytes at least
///   - "ZUMReadTIFF: the parts of \"%s\" overlap", where strips or tiles together claim more than
///     64 MiB and 16 times the file
///   - "ZUMReadTIFF: the samples of \"%s\" do not lie pixel by pixel", for subsampled colours
/// Whatever is thrown behind the opening, the message box "Excepcion" is shown first.
[[nodiscard]] ZUML_API ZUMGenericImage ZUMReadTIFF(const char* path);
