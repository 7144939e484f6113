#include "zuml/io/tiff.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <mutex>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/xqdiagnostics.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/io/detail/interleave.h"
#include "zuml/io/detail/picturelimits.h"
#include "zuml/io/detail/tifffile.h"
#include "zuml/io/detail/tiffsamples.h"

namespace {

using zuml_detail::MakeZeroedScratch;
using zuml_detail::TiffFile;

struct SampleLayout {
  int bits;
  int format;
};

SampleLayout GetSampleLayout(ZUMPixelType type) {
  switch (type) {
    case ZUMBoolPixel:
    case ZUMBytePixel:
      return {8, SAMPLEFORMAT_UINT};
    case ZUMShortPixel:
      return {16, SAMPLEFORMAT_INT};
    case ZUMLongPixel:
      return {32, SAMPLEFORMAT_INT};
    case ZUMSRealPixel:
      return {32, SAMPLEFORMAT_IEEEFP};
    case ZUMRealPixel:
      return {64, SAMPLEFORMAT_IEEEFP};
    default:
      throw XQException("ZUMWriteTIFF: don't accept ZUMComplex images");
  }
}

void RequireOpen(const TiffFile& file, const char* path) {
  if (!file.get()) throw XQException("Error opening TIFF %s", path);
}

[[noreturn]] void ThrowWriteError(const char* path) {
  throw XQExcepIOError("Error writing TIFF %s", path);
}

void WriteRow(TiffFile& file, const void* row, int i, int sample, const char* path) {
  // The codec does not write to rows of native byte order.
  if (TIFFWriteScanline(file.get(), const_cast<void*>(row), static_cast<std::uint32_t>(i),
                        static_cast<std::uint16_t>(sample)) != 1) {
    ThrowWriteError(path);
  }
}

void Finish(TiffFile& file, const char* path) {
  file.Close();
  if (file.FailedP()) ThrowWriteError(path);
}

/// The rows of one channel of an image of any type, as they go to the file.
class ChannelRows {
 public:
  explicit ChannelRows(const ZUMGenericImage& image)
      : image_(image),
        plane_(zuml_detail::GetFlatPlane(image)),
        box_(zuml_detail::IsBox(image)),
        pixel_bytes_(static_cast<std::size_t>(image.GetPixSz())),
        buffer_(MakeZeroedScratch<unsigned char>(static_cast<std::size_t>(image.RoDXSz()) *
                                                 pixel_bytes_)) {}

  const void* Get(int y, int channel) {
    const auto* row = static_cast<const unsigned char*>(
        image_.PixelAddress(image_.BeginX(), y, plane_.z, plane_.t, channel));
    const bool is_bool = image_.GetType() == ZUMBoolPixel;
    if (box_ && !is_bool) return row;
    unsigned char* to = buffer_.get();
    for (int i = 0; i < image_.RoDXSz(); ++i, row += pixel_bytes_, to += pixel_bytes_) {
      if (!box_ && !image_.InP(image_.BeginX() + i, y, plane_.z, plane_.t)) {
        std::memset(to, 0, pixel_bytes_);
      } else if (is_bool) {
        *to = *row != 0;  // wrapped memory may hold other bytes than 0 and 1
      } else {
        std::memcpy(to, row, pixel_bytes_);
      }
    }
    return buffer_.get();
  }

 private:
  const ZUMGenericImage& image_;
  zuml_detail::FlatPlane plane_;
  bool box_;
  std::size_t pixel_bytes_;
  zuml_detail::ScratchBlock<unsigned char> buffer_;
};

[[noreturn]] void ThrowTiffError(const char* module, const char* format, std::va_list arguments) {
  char text[4608];
  zuml_detail::FormatTiffError(text, sizeof text, module, format, arguments);
  throw XQException("TIFF Error: %s", text);
}

// For calls of libtiff by the application: the files of this library have handlers of their own.
void SetProcessHandlers() {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  TIFFSetErrorHandler(ThrowTiffError);
  TIFFSetWarningHandler(nullptr);
}

}  // namespace

void ZUMWriteByteTIFF(const ZUMImage<ZUMByte>& image, const char* path) {
  zuml_detail::RequireFlatImage("TIFF", image);
  TiffFile file(path, "w");
  RequireOpen(file, path);
  TIFF* const tiff = file.get();
  const int channels = image.GetCSz(), width = image.RoDXSz();
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(width));
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(image.RoDYSz()));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, channels == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  const auto buffer =
      MakeZeroedScratch<ZUMByte>(static_cast<std::size_t>(width) * static_cast<unsigned>(channels));
  for (int i = 0; i < image.RoDYSz(); ++i) {
    const ZUMByte* row = zuml_detail::PackRow(image, image.BeginY() + i, buffer.get());
    WriteRow(file, row, i, 0, path);
  }
  Finish(file, path);
}

ZUMImage<ZUMByte> ZUMReadByteTIFF(const char* path) {
  TIFFSetWarningHandler(nullptr);
  // Mapped into memory: without that, the codec cannot make pictures of tiles that are not packed.
  TiffFile file(path, "r");
  TIFF* const tiff = file.get();
  if (!tiff) throw XQException("Error opening TIFF file %s", path);
  const auto width = file.GetField<std::uint32_t>(TIFFTAG_IMAGEWIDTH, 0);
  const auto height = file.GetField<std::uint32_t>(TIFFTAG_IMAGELENGTH, 0);
  const int channels = file.GetField<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
  if (channels != 1 && channels != 3) throw XQException("TIFF channels not accepted %d", channels);
  file.RequirePicture("ZUMReadByteTIFF", path, channels, sizeof(std::uint32_t));

  const ZUMImage<ZUMByte> image(
      ZUMRoDRef(0, 0, 0, 0, static_cast<int>(width) - 1, static_cast<int>(height) - 1, 0, 0),
      channels, ZUMByte{0});
  if (image.EmptyP()) return image;
  const auto pixels = MakeZeroedScratch<std::uint32_t>(std::size_t{width} * height);
  if (TIFFReadRGBAImage(tiff, width, height, pixels.get(), 0) != 1) return image;
  const std::ptrdiff_t step = image.GetChannelSz();
  for (std::uint32_t y = 0; y < height; ++y) {
    const std::uint32_t* from = &pixels[std::size_t{height - 1 - y} * width];
    ZUMByte* to = &image(0, static_cast<int>(y));
    for (std::uint32_t x = 0; x < width; ++x) {
      for (int c = 0; c < channels; ++c) {
        to[c * step + x] = static_cast<ZUMByte>(from[x] >> (8 * c));
      }
    }
  }
  return image;
}

void ZUMWriteTIFF(const ZUMGenericImage& image, const char* path) {
  zuml_detail::RequireFlatImage("TIFF", image);
  const SampleLayout sample = GetSampleLayout(image.GetType());
  TiffFile file(path, "w");
  RequireOpen(file, path);
  TIFF* const tiff = file.get();
  const int channels = image.GetCSz(), width = image.RoDXSz();
  const std::int64_t row_bytes = std::int64_t{width} * image.GetPixSz();
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(width));
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(image.RoDYSz()));
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(row_bytes / 8192 + 1));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, sample.bits);
  TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, sample.format);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, channels == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
  TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  ChannelRows rows(image);
  for (int c = 0; c < channels; ++c) {
    for (int i = 0; i < image.RoDYSz(); ++i) {
      WriteRow(file, rows.Get(image.BeginY() + i, c), i, c, path);
    }
  }
  Finish(file, path);
}

ZUMGenericImage ZUMReadTIFF(const char* path) {
  SetProcessHandlers();
  const TiffFile file(path, "rhm");
  if (!file.get()) throw XQException("Error opening TIFF file %s", path);
  try {
    return zuml_detail::ReadSamples(file, path);
  } catch (...) {
    XQMessageBox("Excepcion");
    throw;
  }
}
