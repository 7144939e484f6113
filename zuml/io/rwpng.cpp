#include "zuml/io/rwpng.h"

#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <type_traits>

#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/io/detail/files.h"
#include "zuml/io/detail/interleave.h"
#include "zuml/io/detail/picturelimits.h"

namespace {

using zuml_detail::FileHandle;
using zuml_detail::MakeZeroedScratch;
using zuml_detail::OpenFile;

constexpr int kMostChannels = 4;
constexpr int kColorTypes[kMostChannels] = {PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_GRAY_ALPHA,
                                            PNG_COLOR_TYPE_RGB, PNG_COLOR_TYPE_RGB_ALPHA};

[[noreturn]] void LeaveCodec(png_structp png, png_const_charp) { png_longjmp(png, 1); }

void DropWarning(png_structp, png_const_charp) {}

// Whether the call came back by itself. The codec leaves failed calls by longjmp, so nothing
// between here and the codec may need a destructor. A function of its own, since a function that
// calls setjmp keeps nothing in registers.
template <class Call>
[[gnu::noinline]] bool TryCall(png_structp png, const Call& call) {
  static_assert(std::is_trivially_destructible_v<Call>);
  if (setjmp(png_jmpbuf(png)) != 0) return false;
  call();
  return true;
}

/// The codec's two structures in one direction; given back on every path.
class CodecState {
 public:
  using Destroy = void (*)(png_structp*, png_infop*);

  CodecState(png_structp codec, Destroy destroy)
      : png(codec), info(codec ? png_create_info_struct(codec) : nullptr), destroy_(destroy) {
    // A block is what limits a picture, not one of its axes.
    if (png) png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
  }
  ~CodecState() { destroy_(&png, &info); }
  CodecState(const CodecState&) = delete;
  CodecState& operator=(const CodecState&) = delete;

  png_structp png;
  png_infop info;

 private:
  Destroy destroy_;
};

void DestroyReader(png_structp* png, png_infop* info) {
  if (*png) png_destroy_read_struct(png, info, nullptr);
}

void DestroyWriter(png_structp* png, png_infop* info) {
  if (*png) png_destroy_write_struct(png, info);
}

int GetChannels(int color_type, const char* path) {
  const int* found = std::find(kColorTypes, kColorTypes + kMostChannels, color_type);
  if (found == kColorTypes + kMostChannels) {
    throw XQException("error color type %d of \"%s\" not supported", color_type, path);
  }
  return static_cast<int>(found - kColorTypes) + 1;
}

}  // namespace

void ZUMWritePNG(const ZUMImage<ZUMByte>& image, const char* path) {
  const int channels = image.GetCSz();
  if (channels > kMostChannels) {
    throw XQException("WritePNG: Image with more of4 channeles are not allowed");
  }
  if (image.RoDZSz() > 1) throw XQException("WritePNG: 3D images are not allowed");
  if (image.RoDTSz() > 1) throw XQException("WritePNG: multiframe images are not allowed");
  const auto fail = [] { throw XQException("png_write failed"); };
  // The codec would refuse it too, but leave an empty file.
  if (image.EmptyP() || channels < 1) fail();
  FileHandle file = OpenFile(path, "wb");
  if (!file) throw XQException("error opening \"%s\"", path);
  CodecState state(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, LeaveCodec, DropWarning),
                   DestroyWriter);
  const png_structp png = state.png;
  if (!png) throw XQException("png_create_write_struct failed");
  if (!state.info) throw XQException("png_create_info_struc failed");
  const auto run = [&](const auto& call) {
    if (!TryCall(png, call)) fail();
  };

  const auto width = static_cast<png_uint_32>(image.RoDXSz());
  const auto height = static_cast<png_uint_32>(image.RoDYSz());
  run([&] {
    png_init_io(png, file.get());
    png_set_IHDR(png, state.info, width, height, 8, kColorTypes[channels - 1], PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, state.info);
  });
  const auto buffer =
      MakeZeroedScratch<ZUMByte>(std::size_t{width} * static_cast<unsigned>(channels));
  for (int i = 0; i < image.RoDYSz(); ++i) {
    const ZUMByte* row = zuml_detail::PackRow(image, image.BeginY() + i, buffer.get());
    run([&] { png_write_row(png, row); });
  }
  run([&] { png_write_end(png, state.info); });
  if (!zuml_detail::FinishFile(file)) fail();
}

ZUMImage<ZUMByte> ZUMReadPNG(const char* path) {
  const FileHandle file = OpenFile(path, "rb");
  const auto fail = [path] { throw XQException("error \"%s\" not found", path); };
  if (!file) fail();
  CodecState state(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, LeaveCodec, DropWarning),
                   DestroyReader);
  const png_structp png = state.png;
  const png_infop info = state.info;
  if (!png) throw XQException("error reading \"%s\"", path);
  if (!info) fail();
  const auto run = [&](const auto& call) {
    if (!TryCall(png, call)) fail();
  };

  std::size_t packed_row_bytes = 0;
  int passes = 1;
  run([&] {
    png_init_io(png, file.get());
    // Texts, profiles and the like are passed over: each would take the memory that it announces.
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_read_info(png, info);
    packed_row_bytes = png_get_rowbytes(png, info);
    png_set_strip_16(png);
    png_set_expand(png);
    passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
  });
  const int channels = GetChannels(png_get_color_type(png, info), path);
  const std::int64_t width = png_get_image_width(png, info);
  const std::int64_t height = png_get_image_height(png, info);
  const auto packed_bytes = static_cast<std::int64_t>(packed_row_bytes) * height;
  zuml_detail::RequirePicture("ZUMReadPNG", path, {width, height, channels, channels, packed_bytes},
                              zuml_detail::GetFileSize(file.get()));

  const ZUMImage<ZUMByte> image(
      ZUMRoDRef(0, 0, 0, 0, static_cast<int>(width) - 1, static_cast<int>(height) - 1, 0, 0),
      channels, ZUMByte{0});
  // Each pass of an interlaced picture adds pixels to the rows of those before. One channel grows
  // in the image itself; several need all rows beside it.
  const auto row_bytes = static_cast<std::size_t>(width * channels);
  const bool keeps_rows = passes > 1 && channels > 1;
  const std::size_t rows = channels == 1 ? 0 : keeps_rows ? static_cast<std::size_t>(height) : 1;
  const auto buffer = MakeZeroedScratch<ZUMByte>(rows * row_bytes);
  for (int pass = 0; pass < passes; ++pass) {
    for (int y = 0; y < image.RoDYSz(); ++y) {
      ZUMByte* const row = channels == 1 ? &image(0, y)
                           : keeps_rows  ? &buffer[static_cast<std::size_t>(y) * row_bytes]
                                         : buffer.get();
      run([&] { png_read_row(png, row, nullptr); });
      if (channels > 1 && pass == passes - 1) {
        zuml_detail::SplitPixels(row, image.RoDXSz(), channels, &image(0, y), image.GetChannelSz());
      }
    }
  }
  run([&] { png_read_end(png, info); });
  return image;
}
