// Writes JPEG, PNG and TIFF files to start from.

#include <filesystem>
#include <string>

#include "zuml/io/jpeg.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/tiff.h"

namespace {

ZUMImage<ZUMByte> MakePicture(int size, int channels) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, size - 1, size / 2, 0, 0), channels,
                                ZUMByte{0});
  auto* pixels = static_cast<ZUMByte*>(image.GetData());
  for (int i = 0; i < image.GetRasterSz(); ++i) pixels[i] = static_cast<ZUMByte>(i * i / 7);
  return image;
}

}  // namespace

int main(int, char** argv) {
  const auto path = [&](const char* reader, int size, int channels, const char* kind = "") {
    const std::filesystem::path folder = std::filesystem::path(argv[1]) / reader;
    std::filesystem::create_directories(folder);
    return (folder / (std::to_string(size) + "x" + std::to_string(channels) + kind)).string();
  };
  for (const int size : {1, 9, 40}) {
    for (int channels = 1; channels <= 4; ++channels) {
      const ZUMImage<ZUMByte> picture = MakePicture(size, channels);
      ZUMWritePNG(picture, path("png", size, channels).c_str());
      if (channels % 2 == 0) continue;
      ZUMWriteJPEG(picture, path("jpeg", size, channels).c_str(), 75);
      ZUMWriteByteTIFF(picture, path("tiff", size, channels, "contiguous").c_str());
      const auto write = [&](const ZUMGenericImage& image, const char* type) {
        ZUMWriteTIFF(image, path("tiff", size, channels, type).c_str());
      };
      write(picture, "byte");
      write(ZUMImage<ZUMShort>(picture), "short");
      write(ZUMImage<ZUMSReal>(picture), "float");
      write(ZUMImage<ZUMReal>(picture), "double");
    }
  }
}
