// Inputs to start from for the formats without a codec: imagefile_seeds FOLDER

#include <filesystem>
#include <fstream>

#include "zuml/io/rwbmp.h"
#include "zuml/io/textimage.h"
#include "zuml/io/zmg.h"

namespace {

namespace fs = std::filesystem;

fs::path MakeFolder(const fs::path& parent, const char* reader) {
  fs::create_directories(parent / reader);
  return parent / reader;
}

template <class P>
ZUMImage<P> MakeRamp(int width, int height, int depth, int channels) {
  const ZUMImage<P> image(ZUMRoDRef(-2, 1, 0, 0, width - 3, height, depth - 1, 0),
                          ZUMRect(1, 0, 0, 0, 0, 1, 0, 0), channels, P());
  auto* bytes = static_cast<unsigned char*>(image.GetData());
  const long long n = image.GetSimpleRaster()->GetSimpleRasterSz() * image.GetPixSz();
  for (long long i = 0; i < n; ++i) bytes[i] = static_cast<unsigned char>(i & 1);
  return image;
}

// Each type in both forms, and three images in one stream.
template <class P>
void WriteZMG(const fs::path& folder, const std::string& name) {
  const auto image = MakeRamp<P>(3, 2, 2, 3);
  const auto view = image.Channels(1, 2);
  ZUMWriteZMG(view, (folder / (name + "_cropped.zmg")).c_str(), false);
  ZUMWriteZMG(view, (folder / (name + "_raster.zmg")).c_str(), true);
  std::ofstream several(folder / (name + "_several.zmg"), std::ios::binary);
  for (int i = 0; i < 3; ++i) ZUMWriteZMG(image.Channel(i), several, i == 1);
}

// The depths that the writer has not are made of its 8 and 24 bits: only fields differ.
void WriteBMP(const fs::path& folder) {
  for (const int channels : {1, 3}) {
    const std::string path = folder / (channels == 1 ? "8.bmp" : "24.bmp");
    ZUMWriteBMP(MakeRamp<ZUMByte>(7, 5, 1, channels), path.c_str());
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    bytes[28] = channels == 1 ? 1 : 32;
    std::ofstream(folder / (channels == 1 ? "1.bmp" : "32.bmp"), std::ios::binary) << bytes;
    bytes[28] = channels == 1 ? 8 : 24;
    for (int i = 22; i < 26; ++i) bytes[static_cast<std::size_t>(i)] = static_cast<char>(-1);
    std::ofstream(folder / (channels == 1 ? "8_down.bmp" : "24_down.bmp"), std::ios::binary)
        << bytes;
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const fs::path folder = MakeFolder(argv[1], "zmg");
#define ZUML_WRITE(TYPE) WriteZMG<TYPE>(folder, #TYPE);
  ZUML_ALL_TYPES(ZUML_WRITE)
#undef ZUML_WRITE
  WriteBMP(MakeFolder(argv[1], "bmp"));
  const fs::path text = MakeFolder(argv[1], "textimage");
  const double numbers[] = {0, -1.5, 1e300, 123456, 1e-7, 2};
  ZUMWriteTxtImage(ZUMImage<ZUMReal>(ZUMRect(0, 0, 0, 0, 2, 1, 0, 0), 1, numbers),
                   (text / "numbers.txt").c_str());
  std::ofstream(text / "commas.txt") << "1,5;2.5\r\n\n3 4";
  return 0;
}
