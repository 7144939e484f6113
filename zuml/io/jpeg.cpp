#include "zuml/io/jpeg.h"

#include <csetjmp>
#include <cstdio>
#include <type_traits>

// Needs the types of <cstdio>.
#include <jpeglib.h>

#include "zuml/core/xqdiagnostics.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/io/detail/files.h"
#include "zuml/io/detail/interleave.h"
#include "zuml/io/detail/picturelimits.h"

namespace {

using zuml_detail::FileHandle;
using zuml_detail::MakeZeroedScratch;
using zuml_detail::OpenFile;

// Each pass of a progressive file goes over the whole picture, and may be a few bytes long. What
// encoders write has about ten.
constexpr int kMostScans = 100;
constexpr int kMostScansOfLargePictures = 20;

struct ErrorManager {
  jpeg_error_mgr standard;  // comes first: its address is what the codec knows
  std::jmp_buf out;
  char text[JMSG_LENGTH_MAX];
};

ErrorManager& GetErrors(j_common_ptr codec) { return *reinterpret_cast<ErrorManager*>(codec->err); }

[[noreturn]] void LeaveCodec(j_common_ptr codec) {
  codec->err->format_message(codec, GetErrors(codec).text);
  std::longjmp(GetErrors(codec).out, 1);
}

void DropWarning(j_common_ptr) {}

void StopAfterManyScans(j_common_ptr codec) {
  const auto& reader = *reinterpret_cast<j_decompress_ptr>(codec);
  const bool large =
      std::int64_t{reader.image_width} * reader.image_height * reader.num_components >
      zuml_detail::kFreeBytes;
  const int most = large ? kMostScansOfLargePictures : kMostScans;
  if (reader.input_scan_number <= most) return;
  ErrorManager& errors = GetErrors(codec);
  std::snprintf(errors.text, sizeof errors.text, "ReadJPEG: more than %d scans", most);
  std::longjmp(errors.out, 1);
}

// Whether the call came back by itself. The codec leaves failed calls by longjmp, so nothing
// between here and the codec may need a destructor. A function of its own, since a function that
// calls setjmp keeps nothing in registers.
template <class Call>
[[gnu::noinline]] bool TryCall(ErrorManager& errors, const Call& call) {
  static_assert(std::is_trivially_destructible_v<Call>);
  if (setjmp(errors.out) != 0) return false;
  call();
  return true;
}

/// The state of a codec in one direction; given back on every path.
template <class Codec>
class CodecState {
 public:
  CodecState() {
    codec.err = jpeg_std_error(&errors_.standard);
    codec.err->error_exit = LeaveCodec;
    codec.err->output_message = DropWarning;
  }
  ~CodecState() { jpeg_destroy(reinterpret_cast<j_common_ptr>(&codec)); }
  CodecState(const CodecState&) = delete;
  CodecState& operator=(const CodecState&) = delete;

  /// Makes calls of the codec; throws what it reports.
  template <class Call>
  void Run(const Call& call) {
    if (TryCall(errors_, call)) return;
    XQDiagnosticF("ERROR JPEG %s\n", errors_.text);
    throw XQException("%s", errors_.text);
  }

  Codec codec{};

 private:
  ErrorManager errors_{};
};

ZUMImage<ZUMByte> Read(const char* path) {
  const FileHandle file = OpenFile(path, "rb");
  if (!file) throw XQExcepNotFound("Error opening %s", path);
  CodecState<jpeg_decompress_struct> state;
  jpeg_decompress_struct& codec = state.codec;
  jpeg_progress_mgr progress{};
  progress.progress_monitor = StopAfterManyScans;
  state.Run([&] {
    jpeg_create_decompress(&codec);
    codec.progress = &progress;
    jpeg_stdio_src(&codec, file.get());
    jpeg_read_header(&codec, TRUE);
  });
  const int channels = codec.num_components;
  if (channels != 1 && channels != 3) throw XQException("ReadJPEG: Número de canales erroneo");
  const std::int64_t width = codec.image_width, height = codec.image_height;
  zuml_detail::RequirePicture("ZUMReadJPEG", path,
                              {width, height, channels, channels, width * height * channels},
                              zuml_detail::GetFileSize(file.get()));

  state.Run([&] { jpeg_start_decompress(&codec); });
  const ZUMImage<ZUMByte> image(ZUMRoDRef(0, 0, 0, 0, static_cast<int>(codec.output_width) - 1,
                                          static_cast<int>(codec.output_height) - 1, 0, 0),
                                channels, ZUMByte{0});
  // The row begins at an odd address: at an aligned one, the codec's vector code writes past the
  // caches, and to read the row back then takes longer than to decode it.
  const auto buffer = MakeZeroedScratch<ZUMByte>(
      std::size_t{codec.output_width} * static_cast<unsigned>(channels) + 1);
  for (int y = 0; y < image.RoDYSz(); ++y) {
    JSAMPROW row = channels == 1 ? &image(0, y) : buffer.get() + 1;
    state.Run([&] { jpeg_read_scanlines(&codec, &row, 1); });
    if (channels == 3) {
      zuml_detail::SplitPixels(row, image.RoDXSz(), 3, &image(0, y), image.GetChannelSz());
    }
  }
  state.Run([&] { jpeg_finish_decompress(&codec); });
  return image;
}

}  // namespace

void ZUMWriteJPEG(const ZUMImage<ZUMByte>& image, const char* path, int quality) {
  zuml_detail::RequireFlatImage("JPEG", image);
  FileHandle file = OpenFile(path, "wb");
  if (!file) throw XQExcepIOError("No se ha podido escribir la imagen %s", path);
  CodecState<jpeg_compress_struct> state;
  jpeg_compress_struct& codec = state.codec;
  const int channels = image.GetCSz();
  state.Run([&] {
    jpeg_create_compress(&codec);
    jpeg_stdio_dest(&codec, file.get());
    codec.image_width = static_cast<JDIMENSION>(image.RoDXSz());
    codec.image_height = static_cast<JDIMENSION>(image.RoDYSz());
    codec.input_components = channels;
    codec.in_color_space = channels == 1 ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, quality, TRUE);
    jpeg_start_compress(&codec, TRUE);
  });
  const auto buffer =
      MakeZeroedScratch<ZUMByte>(std::size_t{codec.image_width} * static_cast<unsigned>(channels));
  for (int i = 0; i < image.RoDYSz(); ++i) {
    // The codec does not write to the rows that it takes.
    JSAMPROW row =
        const_cast<JSAMPROW>(zuml_detail::PackRow(image, image.BeginY() + i, buffer.get()));
    state.Run([&] { jpeg_write_scanlines(&codec, &row, 1); });
  }
  state.Run([&] { jpeg_finish_compress(&codec); });
  if (!zuml_detail::FinishFile(file)) {
    throw XQExcepIOError("No se ha podido escribir la imagen %s", path);
  }
}

ZUMImage<ZUMByte> ZUMReadJPEG(const char* path) {
  try {
    return Read(path);
  } catch (const XQException&) {
    throw;
  } catch (...) {
    XQMessageBox("ERROR en JPEG");
    throw;
  }
}
