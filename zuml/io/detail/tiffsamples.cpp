#include "zuml/io/detail/tiffsamples.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/geometry/gridmoves.h"
#include "zuml/io/detail/interleave.h"

namespace zuml_detail {
namespace {

/// What the directory says about the samples.
struct Samples {
  const char* path;
  int width;
  int height;
  int channels;
  int bits;
  bool planes;
  int orientation;

  // The samples of a pixel that stand side by side.
  int Together() const { return planes ? 1 : channels; }
};

// Rows of colours at lower resolution are shorter than rows of pixels.
void RequireRow(std::int64_t row_bytes, std::int64_t pixels, const Samples& samples) {
  if (row_bytes < (pixels * samples.Together() * samples.bits + 7) / 8) {
    throw XQException("ZUMReadTIFF: the samples of \"%s\" do not lie pixel by pixel", samples.path);
  }
}

// Calls put(run, n, x, y, channel) for n pixels of a row that stand side by side in the file,
// beginning at (x, y), until all pixels are done.
template <class Put>
void ReadStrips(const TiffFile& file, const Samples& samples, const Put& put) {
  const std::int64_t row_bytes = TIFFScanlineSize64(file.get());
  file.RequireNoError();
  RequireRow(row_bytes, samples.width, samples);
  const auto row = MakeZeroedScratch<unsigned char>(static_cast<std::size_t>(row_bytes));
  const int planes = samples.planes ? samples.channels : 1;
  for (int c = 0; c < planes; ++c) {
    for (int y = 0; y < samples.height; ++y) {
      TIFFReadScanline(file.get(), row.get(), static_cast<std::uint32_t>(y),
                       static_cast<std::uint16_t>(c));
      file.RequireNoError();
      put(row.get(), samples.width, 0, y, c);
    }
  }
}

template <class Put>
void ReadTiles(const TiffFile& file, const Samples& samples, const Put& put) {
  TIFF* const tiff = file.get();
  const std::int64_t wide = file.GetField<std::uint32_t>(TIFFTAG_TILEWIDTH, 0);
  const std::int64_t high = file.GetField<std::uint32_t>(TIFFTAG_TILELENGTH, 0);
  const std::int64_t row_bytes = static_cast<std::int64_t>(TIFFTileRowSize64(tiff));
  const std::int64_t bytes = TIFFTileSize(tiff);
  file.RequireNoError();
  RequireRow(row_bytes, std::max<std::int64_t>(wide, 1), samples);
  RequireRow(bytes / std::max<std::int64_t>(high, 1), wide, samples);
  const auto tile = MakeZeroedScratch<unsigned char>(static_cast<std::size_t>(bytes));
  const int planes = samples.planes ? samples.channels : 1;
  for (int c = 0; c < planes; ++c) {
    for (std::int64_t y = 0; y < samples.height; y += high) {
      for (std::int64_t x = 0; x < samples.width; x += wide) {
        const std::uint32_t index =
            TIFFComputeTile(tiff, static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 0,
                            static_cast<std::uint16_t>(c));
        TIFFReadEncodedTile(tiff, index, tile.get(), bytes);
        file.RequireNoError();
        const std::int64_t n = std::min(wide, samples.width - x);
        const std::int64_t rows = std::min(high, samples.height - y);
        for (std::int64_t i = 0; i < rows; ++i) {
          put(&tile[static_cast<std::size_t>(i * row_bytes)], n, static_cast<int>(x),
              static_cast<int>(y + i), c);
        }
      }
    }
  }
}

// Eight pixels to a byte, the first in the highest bit.
void UnpackBits(const unsigned char* from, std::ptrdiff_t n, ZUMBool* to) {
  for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = (from[i / 8] >> (7 - i % 8) & 1) != 0;
}

template <class P>
ZUMImage<P> Orient(const ZUMImage<P>& image, int orientation) {
  switch (orientation) {
    case ORIENTATION_TOPRIGHT:
      return ZUMSymmetryX(image);
    case ORIENTATION_BOTRIGHT:
      return ZUMSymmetry(image);
    case ORIENTATION_BOTLEFT:
      return ZUMSymmetryY(image);
    default:
      return image;
  }
}

struct Bit;  // stands for samples of one bit, which are no type

// S is a sample in the file, P the pixel made of it.
template <class S, class P>
ZUMGenericImage ReadPixels(const TiffFile& file, const Samples& samples) {
  file.RequirePicture("ZUMReadTIFF", samples.path, samples.channels,
                      samples.channels * static_cast<int>(sizeof(P)));
  file.RequireNoError();
  const ZUMImage<P> image(ZUMRoDRef(0, 0, 0, 0, samples.width - 1, samples.height - 1, 0, 0),
                          samples.channels, P());
  const std::ptrdiff_t step = image.GetChannelSz();
  const auto put = [&](const unsigned char* run, std::ptrdiff_t n, int x, int y, int channel) {
    P* to = &image(x, y, 0, 0, channel);
    if constexpr (std::is_same_v<S, Bit>) {
      UnpackBits(run, n, to);
    } else {
      SplitPixels(reinterpret_cast<const S*>(run), n, samples.Together(), to, step);
    }
  };
  if (TIFFIsTiled(file.get())) {
    ReadTiles(file, samples, put);
  } else {
    ReadStrips(file, samples, put);
  }
  return Orient(image, samples.orientation);
}

using ReadFunction = ZUMGenericImage (*)(const TiffFile&, const Samples&);

struct Reader {
  int format;
  int bits;
  ReadFunction read;
};

constexpr Reader kReaders[] = {
    {SAMPLEFORMAT_UINT, 1, ReadPixels<Bit, ZUMBool>},
    {SAMPLEFORMAT_UINT, 8, ReadPixels<ZUMByte, ZUMByte>},
    {SAMPLEFORMAT_UINT, 16, ReadPixels<std::uint16_t, ZUMLong>},
    {SAMPLEFORMAT_UINT, 32, ReadPixels<ZUMLong, ZUMLong>},
    {SAMPLEFORMAT_INT, 16, ReadPixels<ZUMShort, ZUMShort>},
    {SAMPLEFORMAT_INT, 32, ReadPixels<ZUMLong, ZUMLong>},
    {SAMPLEFORMAT_IEEEFP, 32, ReadPixels<ZUMSReal, ZUMSReal>},
    {SAMPLEFORMAT_IEEEFP, 64, ReadPixels<ZUMReal, ZUMReal>},
};

[[noreturn]] void RefuseTag(const char* tag, int value) {
  throw XQException("TIFFTAG_%s not accepted %d", tag, value);
}

ReadFunction GetReadFunction(int format, int bits) {
  if (format < SAMPLEFORMAT_UINT || format > SAMPLEFORMAT_IEEEFP) RefuseTag("SAMPLEFORMAT", format);
  const auto* found = std::find_if(std::begin(kReaders), std::end(kReaders), [&](const Reader& r) {
    return r.format == format && r.bits == bits;
  });
  if (found == std::end(kReaders)) RefuseTag("BITSPERSAMPLE", bits);
  return found->read;
}

}  // namespace

ZUMGenericImage ReadSamples(const TiffFile& file, const char* path) {
  // The sizes are looked at even if the directory is refused, for that may be the reason.
  TIFFReadDirectory(file.get());
  const auto width = file.GetField<std::uint32_t>(TIFFTAG_IMAGEWIDTH, 0);
  const auto height = file.GetField<std::uint32_t>(TIFFTAG_IMAGELENGTH, 0);
  if (width == 0 || height == 0) throw XQException("TIFFTAG_IMAGEWIDTH not found");
  file.RequireNoError();
  const auto field = [&](std::uint32_t tag) -> int { return file.GetField<std::uint16_t>(tag, 1); };

  const int bits = field(TIFFTAG_BITSPERSAMPLE);
  const ReadFunction read = GetReadFunction(field(TIFFTAG_SAMPLEFORMAT), bits);
  const int channels = field(TIFFTAG_SAMPLESPERPIXEL);
  const int planar = field(TIFFTAG_PLANARCONFIG);
  if (planar != PLANARCONFIG_SEPARATE &&
      (planar != PLANARCONFIG_CONTIG || (bits == 1 && channels != 1))) {
    RefuseTag("PLANARCONFIG", planar);
  }
  const int orientation = field(TIFFTAG_ORIENTATION);
  if (orientation > ORIENTATION_BOTLEFT) RefuseTag("ORIENTATION", orientation);
  return read(file, {path, static_cast<int>(width), static_cast<int>(height), channels, bits,
                     planar == PLANARCONFIG_SEPARATE, orientation});
}

}  // namespace zuml_detail
