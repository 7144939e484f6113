#include "zuml/io/detail/tifffile.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <limits>

#include "zuml/core/xqexception.h"
#include "zuml/io/detail/files.h"
#include "zuml/io/detail/picturelimits.h"

namespace zuml_detail {
namespace {

int DropWarning(TIFF*, void*, const char*, const char*, std::va_list) { return 1; }

// What all strips or tiles together unpack to.
std::int64_t GetDecodedBytes(TIFF* tiff, std::int64_t height) {
  if (TIFFIsTiled(tiff)) {
    return GetBlockBytes(
        {TIFFNumberOfTiles(tiff), static_cast<std::int64_t>(TIFFTileSize64(tiff))});
  }
  std::uint16_t samples = 1, planes = PLANARCONFIG_CONTIG;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &samples);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &planes);
  const std::int64_t times = planes == PLANARCONFIG_SEPARATE ? samples : 1;
  return GetBlockBytes({static_cast<std::int64_t>(TIFFScanlineSize64(tiff)), height, times});
}

// What the file says that all strips or tiles together take in it.
std::int64_t GetStoredBytes(TIFF* tiff, std::int64_t enough) {
  const std::uint32_t n = TIFFIsTiled(tiff) ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
  std::int64_t bytes = 0;
  for (std::uint32_t i = 0; i < n && bytes <= enough; ++i) {
    bytes += static_cast<std::int64_t>(
        std::min<std::uint64_t>(TIFFGetStrileByteCount(tiff, i), kMostBlockBytes));
  }
  return bytes;
}

// Fax, and newer codecs of general use, shrink blank pictures beyond what the older ones can.
std::int64_t GetMostExpansion(std::uint16_t compression) {
  switch (compression) {
    case COMPRESSION_NONE:
    case COMPRESSION_PACKBITS:
    case COMPRESSION_LZW:
    case COMPRESSION_ADOBE_DEFLATE:
    case COMPRESSION_DEFLATE:
      return kMostExpansion;
    default:
      return 32 * kMostExpansion;
  }
}

}  // namespace

void FormatTiffError(char* text, std::size_t size, const char* module, const char* format,
                     std::va_list arguments) {
  const int used = std::snprintf(text, size, "%s ", module ? module : "");
  if (used < 0 || static_cast<std::size_t>(used) >= size) return;
  std::vsnprintf(text + used, size - static_cast<std::size_t>(used), format, arguments);
}

int TiffFile::KeepError(TIFF*, void* file, const char* module, const char* format,
                        std::va_list arguments) {
  auto* self = static_cast<TiffFile*>(file);
  if (!self->FailedP()) {
    FormatTiffError(self->error_, sizeof self->error_, module, format, arguments);
  }
  return 1;  // the handlers of the process are not called
}

TiffFile::TiffFile(const char* path, const char* mode) {
  if (!path) return;
  TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
  if (!options) return;
  TIFFOpenOptionsSetErrorHandlerExtR(options, KeepError, this);
  TIFFOpenOptionsSetWarningHandlerExtR(options, DropWarning, nullptr);
  TIFFOpenOptionsSetMaxSingleMemAlloc(options, kMostBlockBytes);
  tiff_ = TIFFOpenExt(path, mode, options);
  TIFFOpenOptionsFree(options);
}

void TiffFile::Close() {
  if (tiff_) TIFFClose(tiff_);
  tiff_ = nullptr;
}

void TiffFile::RequireNoError() const {
  if (FailedP()) throw XQException("TIFF Error: %s", error_);
}

void TiffFile::RequirePicture(const char* operation, const char* path, int channels,
                              int pixel_bytes) const {
  const std::int64_t width = GetField<std::uint32_t>(TIFFTAG_IMAGEWIDTH, 0);
  const std::int64_t height = GetField<std::uint32_t>(TIFFTAG_IMAGELENGTH, 0);
  const std::int64_t file_bytes = GetFileSize(TIFFFileno(tiff_));
  std::int64_t decoded = GetDecodedBytes(tiff_, height);
  // More than a block is more than any picture needs.
  if (decoded < 0) decoded = std::numeric_limits<std::int64_t>::max();
  zuml_detail::RequirePicture(operation, path, {width, height, channels, pixel_bytes, decoded},
                              file_bytes,
                              GetMostExpansion(GetField<std::uint16_t>(TIFFTAG_COMPRESSION, 1)));
  if (file_bytes == kUnknownLength) return;
  const std::int64_t most_stored = kFreeBytes + kMostFileFactor * file_bytes;
  if (GetStoredBytes(tiff_, most_stored) > most_stored) {
    throw XQException("%s: the parts of \"%s\" overlap", operation, path);
  }
}

}  // namespace zuml_detail
