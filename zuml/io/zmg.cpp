#include "zuml/io/zmg.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <istream>
#include <iterator>
#include <limits>
#include <ostream>
#include <string>
#include <typeinfo>
#include <vector>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/typenames.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumrodrect.h"
#include "zuml/io/detail/files.h"

namespace {

using zuml_detail::CanFill;
using zuml_detail::GetBlockBytes;

// Both names stand in the file with their final zero.
constexpr char kMagic[] = "ZUMLImage";
constexpr char kRegionClass[] = "ZUMRoDRect";
constexpr std::int32_t kVersion = 1;

// A name without an end within so many characters is neither of the two.
constexpr std::size_t kLongestName = 64;

template <std::size_t N>
void WriteName(std::ostream& stream, const char (&name)[N]) {
  stream.write(name, N);
}

void WriteFields(std::ostream& stream, std::initializer_list<std::int32_t> fields) {
  stream.write(reinterpret_cast<const char*>(fields.begin()),
               static_cast<std::streamsize>(fields.size() * sizeof(std::int32_t)));
}

void WriteRegion(const ZUMRegionOfDefinition& rod, std::ostream& stream) {
  if (!zuml_detail::IsBox(rod)) {
    throw XQException("ZUMRegionOfDefinitionWrite for %s not yet implemeted",
                      zuml_detail::TypeName(typeid(rod)).c_str());
  }
  const ZUMRect box = rod.Rect();
  WriteName(stream, kRegionClass);
  WriteFields(stream, {box.begin.x, box.begin.y, box.begin.z, box.begin.t, box.end.x, box.end.y,
                       box.end.z, box.end.t});
}

void WriteRaster(const ZUMGenericImage& image, std::ostream& stream) {
  const ZUMSimpleRaster& block = *image.GetSimpleRaster();
  WriteFields(stream, {image.GetMPX(), image.GetMPY(), image.GetMPZ(), image.GetMPT(),
                       image.GetMPC(), image.GetCSz(), block.GetXSz(), block.GetYSz(),
                       block.GetZSz(), block.GetTSz(), block.GetCSz()});
  if (block.GetData()) {
    stream.write(static_cast<const char*>(block.GetData()),
                 static_cast<std::streamsize>(block.GetSimpleRasterSz() * block.GetPixSz()));
  }
}

// An axis of an empty region may have any corners, so its size wraps.
std::int32_t GetSize(int begin, int end) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(end) -
                                   static_cast<std::uint32_t>(begin) + 1);
}

void WriteCropped(const ZUMGenericImage& image, std::ostream& stream) {
  const ZUMBasePoint<int> b = image.Begin(), e = image.End();
  WriteFields(stream, {b.x, b.y, b.z, b.t, 0, image.GetCSz(), GetSize(b.x, e.x), GetSize(b.y, e.y),
                       GetSize(b.z, e.z), GetSize(b.t, e.t), image.GetCSz()});
  if (image.EmptyP()) return;
  std::int64_t bytes = std::int64_t{image.RoDXSz()} * image.GetPixSz();
  // Rows as wide as the raster lie side by side: a plane goes out at once.
  int rows = 1;
  if (image.RoDXSz() == image.GetXSz()) rows = image.RoDYSz();
  bytes *= rows;
  for (int c = 0; c < image.GetCSz(); ++c) {
    for (std::int64_t t = b.t; t <= e.t; ++t) {
      for (std::int64_t z = b.z; z <= e.z; ++z) {
        for (std::int64_t y = b.y; y <= e.y; y += rows) {
          const void* row = image.PixelAddress(b.x, static_cast<int>(y), static_cast<int>(z),
                                               static_cast<int>(t), c);
          stream.write(static_cast<const char*>(row), static_cast<std::streamsize>(bytes));
        }
      }
    }
  }
}

// The text up to a zero byte; false if the stream or the longest name ends before one.
bool ReadName(std::istream& stream, std::string& name) {
  char c;
  while (name.size() < kLongestName && stream.get(c)) {
    if (c == '\0') return true;
    name += c;
  }
  return false;
}

// Reads n bytes and returns how many came.
std::size_t ReadBytes(std::istream& stream, void* to, std::size_t n) {
  stream.read(static_cast<char*>(to), static_cast<std::streamsize>(n));
  return static_cast<std::size_t>(stream.gcount());
}

// What stands in the file behind the name of the region's class.
struct Header {
  std::int32_t region[8];
  std::int32_t type;
  std::int32_t origin[4];
  std::int32_t channel_origin;
  std::int32_t channels;
  std::int32_t stored[4];
  std::int32_t stored_channels;
};
static_assert(sizeof(Header) == 80);

bool HasStoredPoints(const Header& h) {
  return std::all_of(std::begin(h.stored), std::end(h.stored), [](int n) { return n > 0; }) &&
         h.stored_channels >= 0;
}

// Sizes have 32 bits. Where a raster has margins around a region at the end of the coordinates, its
// own coordinates go on at the other end.
void RequireLimits(const Header& h, int pix_sz) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  bool fits = true;
  for (int i = 0; i < 4; ++i) {
    const std::int64_t span = std::int64_t{h.region[i + 4]} - h.region[i] + 1;
    fits = fits && span >= -kMost && span <= kMost;
  }
  if (HasStoredPoints(h)) {
    fits = fits && GetBlockBytes({h.stored[0], h.stored[1], h.stored[2], h.stored[3],
                                  std::max(h.stored_channels, 1), pix_sz}) >= 0;
  }
  if (!fits) {
    throw XQException(
        "ZUMReadZMG: a raster of %d x %d x %d x %d pixels with %d channels is beyond the limits",
        h.stored[0], h.stored[1], h.stored[2], h.stored[3], h.stored_channels);
  }
}

// A region may be smaller than the raster, but every pixel of the image must be a stored one.
void RequireInside(const Header& h, bool empty) {
  bool inside = h.channel_origin <= 0 && h.channels >= 0;
  const std::int64_t last_channel = std::int64_t{h.channels} - h.channel_origin;
  if (empty) {
    inside = inside && last_channel <= std::numeric_limits<std::int32_t>::max();
  } else {
    inside = inside && HasStoredPoints(h) && last_channel <= h.stored_channels;
    for (int i = 0; i < 4; ++i) {
      const std::int64_t margin =
          static_cast<std::uint32_t>(h.region[i]) - static_cast<std::uint32_t>(h.origin[i]);
      inside = inside && margin + h.region[i + 4] - h.region[i] < h.stored[i];
    }
  }
  if (!inside) {
    throw XQException("ZUMReadZMG: the region or the channels are outside the raster");
  }
}

// The first bytes of a large block, read before the block is made: the stream must show that it is
// worth its memory. It need not be able to tell its length for that.
std::vector<char> ReadHead(std::istream& stream, std::int64_t bytes) {
  constexpr std::size_t kFirstPiece = std::size_t{1} << 20;
  std::vector<char> head;
  if (CanFill(bytes, 0)) return head;
  const auto wanted = static_cast<std::size_t>(bytes / zuml_detail::kMostFileFactor);
  while (head.size() < wanted) {
    const std::size_t had = head.size();
    head.resize(std::min(wanted, std::max(kFirstPiece, 2 * had)));
    if (ReadBytes(stream, head.data() + had, head.size() - had) < head.size() - had) {
      throw XQException("ZUMReadZMG: the file is too short for %lld bytes of pixels",
                        static_cast<long long>(bytes));
    }
  }
  return head;
}

ZUMRaster ReadRaster(std::istream& stream, const Header& h, ZUMPixelType type) {
  if (!HasStoredPoints(h)) return ZUMRaster(ZUMRect(0, 0, 0, 0, -1, -1, -1, -1), 0, type);
  const std::int64_t bytes =
      GetBlockBytes({h.stored[0], h.stored[1], h.stored[2], h.stored[3], h.stored_channels,
                     ZUMSimpleRaster::PixelTypeToSz(type)});
  const std::vector<char> head = ReadHead(stream, bytes);
  const ZUMRect box(0, 0, 0, 0, h.stored[0] - 1, h.stored[1] - 1, h.stored[2] - 1, h.stored[3] - 1);
  ZUMRaster raster(box, h.stored_channels, type);
  raster.SetMP({h.origin[0], h.origin[1], h.origin[2], h.origin[3]});
  if (bytes == 0) return raster;
  auto* const data = static_cast<unsigned char*>(raster.GetData());
  std::copy(head.begin(), head.end(), data);
  const std::size_t size = static_cast<std::size_t>(bytes);
  const std::size_t delivered =
      head.size() + ReadBytes(stream, data + head.size(), size - head.size());
  std::memset(data + delivered, 0, size - delivered);
  // A bool that is neither 0 nor 1 is no value of its type.
  if (type == ZUMBoolPixel) {
    std::transform(data, data + delivered, data, [](unsigned char byte) { return byte != 0; });
  }
  return raster;
}

// A stream of the file; in a failed state if there is none. A folder can be opened, but not read.
template <class Stream>
Stream OpenStream(const char* path) {
  Stream stream;
  std::error_code error;
  if (path && !std::filesystem::is_directory(path, error)) {
    stream.open(path, std::ios::binary);
  } else {
    stream.setstate(std::ios::failbit);
  }
  return stream;
}

}  // namespace

void ZUMWriteZMG(const ZUMGenericImage& image, std::ostream& stream, bool wholeRaster) {
  WriteName(stream, kMagic);
  WriteFields(stream, {kVersion});
  WriteRegion(image.RoD(), stream);
  WriteFields(stream, {image.GetType()});
  if (wholeRaster) {
    WriteRaster(image, stream);
  } else {
    WriteCropped(image, stream);
  }
}

void ZUMWriteZMG(const ZUMGenericImage& image, const char* path, bool wholeRaster) {
  auto stream = OpenStream<std::ofstream>(path);
  if (!stream) throw XQException("ZUMWriteZMG: Error opening file %s", path);
  ZUMWriteZMG(image, stream, wholeRaster);
}

ZUMGenericImage ZUMReadZMG(std::istream& stream) {
  std::string name;
  if (!ReadName(stream, name) || name != kMagic) throw XQException("ZUMReadZMG format error");
  std::int32_t version = 0;
  ReadBytes(stream, &version, sizeof version);
  if (version > kVersion) throw XQException("ZUMReadZMG version %d not readable", version);
  name.clear();
  if (!ReadName(stream, name) || name != kRegionClass) {
    throw XQException("ZUMRegionOfDefinitionRead for %s not yet implemeted", name.c_str());
  }
  Header h{};
  if (ReadBytes(stream, &h, sizeof h) < sizeof h) return ZUMGenericImage();

  if (h.type < ZUMBoolPixel || h.type > ZUMPointerPixel) {
    throw XQException("ZUMReadZMG: unknown pixel type %d", h.type);
  }
  const auto type = static_cast<ZUMPixelType>(h.type);
  RequireLimits(h, ZUMSimpleRaster::PixelTypeToSz(type));
  const ZUMRoDRef rod(h.region[0], h.region[1], h.region[2], h.region[3], h.region[4], h.region[5],
                      h.region[6], h.region[7]);
  RequireInside(h, rod.EmptyP());

  ZUMGenericImage image(rod, ReadRaster(stream, h, type));
  image.SetMPC(h.channel_origin);
  image.SetCSz(h.channels);
  return image;
}

ZUMGenericImage ZUMReadZMG(const char* path) {
  auto stream = OpenStream<std::ifstream>(path);
  if (!stream) throw XQException("ZUMReadZMG: Error opening file %s", path);
  return ZUMReadZMG(stream);
}
