// Reading and writing JPEG, PNG and TIFF files of 1024 x 1024 pixels, against the codec called
// directly on pixels whose channels lie side by side already. Both go through files.

#include <png.h>
#include <tiffio.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

// Needs the types of <cstdio>.
#include <jpeglib.h>

#include "benchmarks/support/pairs.h"
#include "zuml/io/jpeg.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/tiff.h"

namespace {

constexpr int kSize = 1024;

struct Bare {
  int channels;
  std::vector<unsigned char> bytes;

  unsigned char* Row(int y) { return &bytes[static_cast<std::size_t>(y) * kSize * channels]; }
};

// A smooth picture with a little noise, as cameras give.
ZUMImage<ZUMByte> MakePicture(int channels) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, kSize - 1, kSize - 1, 0, 0), channels,
                                ZUMByte{0});
  unsigned noise = 1;
  for (int c = 0; c < channels; ++c) {
    for (int y = 0; y < kSize; ++y) {
      for (int x = 0; x < kSize; ++x) {
        noise = noise * 1664525u + 1013904223u;
        image(x, y, 0, 0, c) = static_cast<ZUMByte>(
            120 + 90 * std::sin(x / (40. + 9 * c)) * std::cos(y / 55.) + (noise >> 29));
      }
    }
  }
  return image;
}

std::shared_ptr<Bare> MakeBare(const ZUMImage<ZUMByte>& image) {
  auto bare = std::make_shared<Bare>();
  bare->channels = image.GetCSz();
  for (int y = 0; y < kSize; ++y) {
    for (int x = 0; x < kSize; ++x) {
      for (int c = 0; c < image.GetCSz(); ++c) bare->bytes.push_back(image(x, y, 0, 0, c));
    }
  }
  return bare;
}

void WriteBareJpeg(Bare& bare, const char* path) {
  std::FILE* file = std::fopen(path, "wb");
  jpeg_compress_struct codec{};
  jpeg_error_mgr errors;
  codec.err = jpeg_std_error(&errors);
  jpeg_create_compress(&codec);
  jpeg_stdio_dest(&codec, file);
  codec.image_width = codec.image_height = kSize;
  codec.input_components = bare.channels;
  codec.in_color_space = bare.channels == 1 ? JCS_GRAYSCALE : JCS_RGB;
  jpeg_set_defaults(&codec);
  jpeg_set_quality(&codec, 90, TRUE);
  jpeg_start_compress(&codec, TRUE);
  for (int y = 0; y < kSize; ++y) {
    JSAMPROW row = bare.Row(y);
    jpeg_write_scanlines(&codec, &row, 1);
  }
  jpeg_finish_compress(&codec);
  jpeg_destroy_compress(&codec);
  std::fclose(file);
}

void ReadBareJpeg(Bare& bare, const char* path) {
  std::FILE* file = std::fopen(path, "rb");
  jpeg_decompress_struct codec{};
  jpeg_error_mgr errors;
  codec.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&codec);
  jpeg_stdio_src(&codec, file);
  jpeg_read_header(&codec, TRUE);
  jpeg_start_decompress(&codec);
  for (int y = 0; y < kSize; ++y) {
    JSAMPROW row = bare.Row(y);
    jpeg_read_scanlines(&codec, &row, 1);
  }
  jpeg_finish_decompress(&codec);
  jpeg_destroy_decompress(&codec);
  std::fclose(file);
}

void WriteBarePng(Bare& bare, const char* path) {
  std::FILE* file = std::fopen(path, "wb");
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_init_io(png, file);
  png_set_IHDR(png, info, kSize, kSize, 8,
               bare.channels == 1 ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (int y = 0; y < kSize; ++y) png_write_row(png, bare.Row(y));
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  std::fclose(file);
}

void ReadBarePng(Bare& bare, const char* path) {
  std::FILE* file = std::fopen(path, "rb");
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_init_io(png, file);
  png_read_info(png, info);
  for (int y = 0; y < kSize; ++y) png_read_row(png, bare.Row(y), nullptr);
  png_read_end(png, info);
  png_destroy_read_struct(&png, &info, nullptr);
  std::fclose(file);
}

// Contiguous samples, as ZUMWriteByteTIFF stores them.
void WriteBareTiff(Bare& bare, const char* path) {
  TIFF* tiff = TIFFOpen(path, "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kSize);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kSize);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, bare.channels);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, bare.channels == 1 ? 1 : 2);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  for (int y = 0; y < kSize; ++y) TIFFWriteScanline(tiff, bare.Row(y), y, 0);
  TIFFClose(tiff);
}

void ReadBareTiff(Bare& bare, const char* path) {
  TIFF* tiff = TIFFOpen(path, "r");
  for (int y = 0; y < kSize; ++y) TIFFReadScanline(tiff, bare.Row(y), y, 0);
  TIFFClose(tiff);
}

void ReadBareTiffPicture(Bare& bare, const char* path) {
  TIFF* tiff = TIFFOpen(path, "r");
  bare.bytes.resize(std::size_t{4} * kSize * kSize);
  TIFFReadRGBAImage(tiff, kSize, kSize, reinterpret_cast<std::uint32_t*>(bare.bytes.data()), 0);
  TIFFClose(tiff);
}

// Files in memory, where there is such a folder; each process has its own.
std::string GetPath(const char* name) {
  std::error_code error;
  const std::filesystem::path shared = "/dev/shm";
  const auto folder = std::filesystem::is_directory(shared, error)
                          ? shared
                          : std::filesystem::temp_directory_path();
  return (folder / ("zuml_bench_" + std::to_string(getpid()) + name)).string();
}

// Each file is there from the start, for the reader, and removed when the program ends.
struct BenchFile {
  explicit BenchFile(const std::string& name) : path(GetPath(name.c_str())) {}
  ~BenchFile() {
    std::error_code error;
    std::filesystem::remove(path, error);
  }
  std::string path;
};

void Register(int channels) {
  const ZUMImage<ZUMByte> image = MakePicture(channels);
  const auto pair = [&](const std::string& name, const std::shared_ptr<BenchFile>& file, auto ours,
                        auto bare) {
    const auto bytes = MakeBare(image);
    zuml_bench::Pair(
        name + "/1024/" + std::to_string(channels) + "c", kSize * kSize, 1,
        [=] { ours(image, file->path.c_str()); }, [=] { bare(*bytes, file->path.c_str()); });
  };
  const auto make_file = [&](const char* name) {
    return std::make_shared<BenchFile>(std::to_string(channels) + name);
  };
  const auto jpeg = make_file(".jpg"), png = make_file(".png"), tiff = make_file(".tif");
  ZUMWriteJPEG(image, jpeg->path.c_str(), 90);
  ZUMWritePNG(image, png->path.c_str());
  ZUMWriteByteTIFF(image, tiff->path.c_str());
  const auto read = [](auto function) {
    return [=](const ZUMImage<ZUMByte>&, const char* path) {
      benchmark::DoNotOptimize(function(path).GetData());
    };
  };
  pair(
      "jpeg/write", jpeg, [](const auto& i, const char* p) { ZUMWriteJPEG(i, p, 90); },
      WriteBareJpeg);
  pair("jpeg/read", jpeg, read(ZUMReadJPEG), ReadBareJpeg);
  pair("png/write", png, ZUMWritePNG, WriteBarePng);
  pair("png/read", png, read(ZUMReadPNG), ReadBarePng);
  pair("tiff/write", tiff, ZUMWriteByteTIFF, WriteBareTiff);
  pair("tiff/read", tiff, read(ZUMReadTIFF), ReadBareTiff);
  pair("tiff/readpicture", tiff, read(ZUMReadByteTIFF), ReadBareTiffPicture);
}

const bool registered = [] {
  Register(1);
  Register(3);
  return true;
}();

}  // namespace
