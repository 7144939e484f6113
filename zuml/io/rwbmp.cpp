#include "zuml/io/rwbmp.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "zuml/core/xqdiagnostics.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/io/detail/files.h"
#include "zuml/io/detail/interleave.h"

namespace {

using zuml_detail::FileHandle;
using zuml_detail::LoadField;
using zuml_detail::StoreField;

constexpr std::uint16_t kType = 'B' | 'M' << 8;
constexpr int kFileHeaderBytes = 14;
constexpr int kInfoHeaderBytes = 40;
constexpr int kHeaderBytes = kFileHeaderBytes + kInfoHeaderBytes;
constexpr int kPaletteBytes = 4 * 256;

// Rows go through a buffer of about this size.
constexpr std::int64_t kBandBytes = std::int64_t{256} << 10;

std::int64_t RoundUpToFour(std::int64_t bytes) { return (bytes + 3) / 4 * 4; }

// Writes both headers, and the palette of a grey image, to `at`; returns their number of bytes.
std::uint32_t StoreHeaders(const ZUMImage<ZUMByte>& image, std::uint32_t image_bytes,
                           unsigned char* at) {
  const bool grey = image.GetCSz() == 1;
  const std::uint32_t offset = kHeaderBytes + (grey ? kPaletteBytes : 0);
  at = StoreField<std::uint16_t>(at, kType);
  at = StoreField<std::uint32_t>(at, offset + image_bytes);
  at = StoreField<std::uint32_t>(at, 0);  // two reserved words
  at = StoreField<std::uint32_t>(at, offset);
  at = StoreField<std::uint32_t>(at, kInfoHeaderBytes);
  at = StoreField<std::int32_t>(at, image.RoDXSz());
  at = StoreField<std::int32_t>(at, image.RoDYSz());
  at = StoreField<std::uint16_t>(at, 1);  // planes
  at = StoreField<std::uint16_t>(at, grey ? 8 : 24);
  at = StoreField<std::uint32_t>(at, 0);  // compression
  at = StoreField<std::uint32_t>(at, image_bytes);
  std::memset(at, 0, 16);  // resolutions and numbers of colours
  at += 16;
  for (unsigned i = 0; grey && i < 256; ++i) at = StoreField<std::uint32_t>(at, i * 0x010101);
  return offset;
}

void WriteRows(const ZUMImage<ZUMByte>& image, std::int64_t row_bytes, std::FILE* file) {
  const std::int64_t rows = std::clamp<std::int64_t>(kBandBytes / row_bytes, 1, image.RoDYSz());
  // The bytes that fill a row up are never written, so they stay 0.
  const auto band =
      zuml_detail::MakeZeroedScratch<ZUMByte>(static_cast<std::size_t>(rows * row_bytes));
  for (std::int64_t left = image.RoDYSz(); left > 0;) {
    const std::int64_t n = std::min(rows, left);
    for (std::int64_t i = 0; i < n; ++i) {
      const int y = image.BeginY() + static_cast<int>(--left);
      zuml_detail::GatherRow(image, y, zuml_detail::ChannelOrder::kLastToFirst, 0,
                             &band[static_cast<std::size_t>(i * row_bytes)]);
    }
    std::fwrite(band.get(), 1, static_cast<std::size_t>(n * row_bytes), file);
  }
}

// The fields of both headers that a reader looks at.
struct Header {
  std::uint16_t type;
  std::uint32_t file_size;
  std::uint16_t reserved[2];
  std::uint32_t offset;
  std::uint32_t header_size;
  std::int32_t width;
  std::int32_t height;
  std::uint16_t planes;
  std::uint16_t bits;
  std::uint32_t compression;
  std::uint32_t image_bytes;
};

Header LoadHeader(const unsigned char* at) {
  return {LoadField<std::uint16_t>(at),
          LoadField<std::uint32_t>(at + 2),
          {LoadField<std::uint16_t>(at + 6), LoadField<std::uint16_t>(at + 8)},
          LoadField<std::uint32_t>(at + 10),
          LoadField<std::uint32_t>(at + 14),
          LoadField<std::int32_t>(at + 18),
          LoadField<std::int32_t>(at + 22),
          LoadField<std::uint16_t>(at + 26),
          LoadField<std::uint16_t>(at + 28),
          LoadField<std::uint32_t>(at + 30),
          LoadField<std::uint32_t>(at + 34)};
}

Header ReadHeader(std::FILE* file, const char* path) {
  unsigned char bytes[kHeaderBytes];
  const auto require = [&](unsigned char* to, std::size_t n) {
    if (std::fread(to, 1, n, file) < n) throw XQException("error reading file \"%s\"", path);
  };
  require(bytes, kFileHeaderBytes);
  if (LoadField<std::uint16_t>(bytes) != kType) {
    throw XQException("error \"%s\" is not a BMP file", path);
  }
  require(bytes + kFileHeaderBytes, kInfoHeaderBytes);
  return LoadHeader(bytes);
}

void RequireReadable(const Header& h, const char* path) {
  const bool depth = h.bits == 1 || h.bits == 8 || h.bits == 24 || h.bits == 32;
  const bool sizes = h.width >= 0 && h.height != std::numeric_limits<std::int32_t>::min();
  if (h.header_size == kInfoHeaderBytes && h.planes == 1 && depth && sizes &&
      (h.compression == 0 || h.compression == 3)) {
    return;
  }
  XQDiagnosticF(
      "type: %u\nfile size: %u\nreserved 1: %u\nreserved 2: %u\noffset of pixels: %u\n"
      "header size: %u\nplanes: %u\nbits per pixel: %u\ncompression: %u\n",
      unsigned{h.type}, h.file_size, unsigned{h.reserved[0]}, unsigned{h.reserved[1]}, h.offset,
      h.header_size, unsigned{h.planes}, unsigned{h.bits}, h.compression);
  throw XQException("error \"%s\" is a not readable BMP file", path);
}

// The bytes that a row of pixels takes, and those from one row to the next.
struct RowLayout {
  std::int64_t used;
  std::int64_t step;
};

// Rows of bits have no gap unless the header's image size tells one.
RowLayout GetRowLayout(const Header& h, std::int64_t rows) {
  const std::int64_t used = (std::int64_t{h.width} * h.bits + 7) / 8;
  return {used, h.bits == 1 ? std::max(used, h.image_bytes / rows) : RoundUpToFour(used)};
}

/// The rows of the file, one after the other, read many at a time.
class RowReader {
 public:
  RowReader(std::FILE* file, const RowLayout& layout, std::int64_t rows)
      : file_(file), layout_(layout), left_(rows) {
    // A step may be anything that 32 bits hold; a gap is read over only while it is small.
    buffered_step_ = layout.step - layout.used < kBandBytes ? layout.step : layout.used;
    per_band_ = std::clamp<std::int64_t>(kBandBytes / buffered_step_, 1, rows);
    band_ = zuml_detail::MakeScratch<unsigned char>(
        static_cast<std::size_t>(per_band_ * buffered_step_));
  }

  /// The next row; bytes that the file does not hold are 0. Null once it holds nothing more.
  const unsigned char* Next() {
    if (next_ == in_band_ && !Fill()) return nullptr;
    return &band_[static_cast<std::size_t>(next_++ * buffered_step_)];
  }

 private:
  bool Fill() {
    in_band_ = layout_.step == buffered_step_ ? std::min(per_band_, left_) : 1;
    next_ = 0;
    left_ -= in_band_;
    const std::size_t delivered = zuml_detail::ReadOrClear(
        file_, band_.get(), static_cast<std::size_t>(in_band_ * buffered_step_));
    if (layout_.step != buffered_step_) {
      zuml_detail::SkipBytes(file_, layout_.step - buffered_step_);
    }
    return delivered > 0;
  }

  std::FILE* file_;
  RowLayout layout_;
  std::int64_t left_;
  std::int64_t buffered_step_;
  std::int64_t per_band_;
  std::int64_t in_band_ = 0;
  std::int64_t next_ = 0;
  zuml_detail::ScratchBlock<unsigned char> band_;
};

// The first byte of a pixel is blue, the last channel; a fourth one is dropped.
void UnpackRow(const unsigned char* from, int bits, const ZUMImage<ZUMByte>& image, int y) {
  const std::ptrdiff_t width = image.RoDXSz();
  ZUMByte* const first = &image(0, y);
  switch (bits) {
    case 1:
      for (std::ptrdiff_t x = 0; x < width; ++x) {
        first[x] = (from[x / 8] >> (7 - x % 8) & 1) != 0 ? 255 : 0;
      }
      break;
    case 8:
      std::memcpy(first, from, static_cast<std::size_t>(width));
      break;
    case 24:
      zuml_detail::SplitChannels<3>(from, width, &image(0, y, 0, 0, 2), -image.GetChannelSz());
      break;
    default:
      zuml_detail::SplitChannels<4, 3>(from, width, &image(0, y, 0, 0, 2), -image.GetChannelSz());
  }
}

// Sets n rows from row y on to 0.
void ClearRows(const ZUMImage<ZUMByte>& image, int y, int n) {
  const std::size_t bytes = static_cast<std::size_t>(n) * static_cast<std::size_t>(image.RoDXSz());
  for (int c = 0; c < image.GetCSz(); ++c) std::memset(&image(0, y, 0, 0, c), 0, bytes);
}

}  // namespace

void ZUMWriteBMP(const ZUMImage<ZUMByte>& image, const char* path) {
  zuml_detail::RequireFlatImage("BMP", image);
  const std::int64_t row_bytes = RoundUpToFour(std::int64_t{image.RoDXSz()} * image.GetCSz());
  const std::int64_t image_bytes = row_bytes * image.RoDYSz();
  if (image_bytes > std::numeric_limits<std::uint32_t>::max() - kHeaderBytes - kPaletteBytes) {
    zuml_detail::ThrowBadDimensions("BMP", image);
  }
  FileHandle file = zuml_detail::OpenFile(path, "wb");
  if (!file) throw XQException("error when open file \"%s\"", path);
  unsigned char headers[kHeaderBytes + kPaletteBytes];
  const std::uint32_t n = StoreHeaders(image, static_cast<std::uint32_t>(image_bytes), headers);
  std::fwrite(headers, 1, n, file.get());
  WriteRows(image, row_bytes, file.get());
  if (!zuml_detail::FinishFile(file)) {
    throw XQException("ZUMWriteBMP: Error writing image to file %s", path);
  }
}

ZUMImage<ZUMByte> ZUMReadBMP(const char* path) {
  const FileHandle file = zuml_detail::OpenFile(path, "rb");
  if (!file) throw XQException("error \"%s\" not found", path);
  const Header h = ReadHeader(file.get(), path);
  RequireReadable(h, path);

  const int height = std::abs(h.height);
  const int channels = h.bits < 24 ? 1 : 3;
  const std::int64_t bytes = zuml_detail::GetBlockBytes({h.width, height, channels});
  if (bytes < 0) {
    throw XQException("ZUMReadBMP: \"%s\": %d x %d pixels with %d channels are beyond the limits",
                      path, h.width, height, channels);
  }
  const std::int64_t file_size = zuml_detail::GetFileSize(file.get());
  if (!zuml_detail::CanFill(bytes, file_size)) {
    throw XQException("ZUMReadBMP: \"%s\" is too short for %d x %d pixels with %d channels", path,
                      h.width, height, channels);
  }
  const ZUMImage<ZUMByte> image(ZUMRoDRef(0, 0, 0, 0, h.width - 1, height - 1, 0, 0), channels,
                                nullptr);
  if (bytes == 0) return image;

  if (h.offset >= kHeaderBytes) {
    zuml_detail::SkipBytes(file.get(), std::int64_t{h.offset} - kHeaderBytes);
  } else if (fseeko(file.get(), h.offset, SEEK_SET) != 0) {
    throw XQException("error reading file \"%s\"", path);
  }
  RowReader rows(file.get(), GetRowLayout(h, height), height);
  const bool top_first = h.height < 0;
  for (int i = 0; i < height; ++i) {
    const unsigned char* const row = rows.Next();
    if (!row) {
      ClearRows(image, top_first ? i : 0, height - i);
      break;
    }
    UnpackRow(row, h.bits, image, top_first ? i : height - 1 - i);
  }
  return image;
}
