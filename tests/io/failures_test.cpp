// Readers and writers with files that cannot be opened or are full.

#include <functional>

#include "tests/support/oddregion.h"
#include "tests/support/tempfiles.h"
#include "tests/support/testimages.h"
#include "zuml/io/eps.h"
#include "zuml/io/jpeg.h"
#include "zuml/io/rwbmp.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/textimage.h"
#include "zuml/io/tiff.h"
#include "zuml/io/zmg.h"

namespace {

using namespace zuml_test;

std::string With(std::string text, const std::string& path) {
  const std::size_t at = text.find('%');
  return at == std::string::npos ? text : text.replace(at, 1, path);
}

TEST(ImageFiles, FailuresTellTheFileAndCloseIt) {
  struct Case {
    std::function<void(const char* path)> call;
    const char* not_opened;
    const char* full;  // for /dev/full, which reads as zeros; "*": the codec's own text
  };
  const TempFolder folder;
  const CapturedDiagnostics diagnostics;
  const auto handles = CountHandles();
  // Large, and of no use to a compression, so that the disk is full in the middle.
  Random random(5);
  const auto large =
      MakeRandomImage<ZUMByte>(random, ZUMRect(0, 0, 0, 0, 799, 799, 0, 0), 1, Layout::kTight);
  for (const auto& bytes : {large, large.Row(3)}) {
    const ZUMImage<ZUMReal> reals = bytes;
    const Case cases[] = {
        {[&](auto path) { ZUMWriteZMG(bytes, path, false); }, "ZUMWriteZMG: Error opening file %",
         ""},
        {[&](auto path) { ZUMWriteBMP(bytes, path); }, "error when open file \"%\"",
         "ZUMWriteBMP: Error writing image to file %"},
        {[&](auto path) { ZUMWriteTxtImage(reals, path); },
         "ZUMWriteTxtImage: Error opening file %",
         "ZUMWriteTxtImage: Error writing image to file %"},
        {[&](auto path) { ZUMWriteEPS(bytes, path); }, "Error opening EPS %",
         "ZUMWriteEPS: Error writing image to file %"},
        {[&](auto path) { ZUMWritePNG(bytes, path); }, "error opening \"%\"", "png_write failed"},
        {[&](auto path) { ZUMWriteJPEG(bytes, path, 90); }, "No se ha podido escribir la imagen %",
         "*"},
        {[&](auto path) { ZUMWriteTIFF(bytes, path); }, "Error opening TIFF %", "*"},
        {[&](auto path) { ZUMWriteByteTIFF(bytes, path); }, "Error opening TIFF %", "*"},
        {[](auto path) { ZUMReadPNG(path); }, "error \"%\" not found", "error \"%\" not found"},
        {[](auto path) { ZUMReadJPEG(path); }, "Error opening %", "*"},
        {[](auto path) { ZUMReadTIFF(path); }, "Error opening TIFF file %", "*"},
        {[](auto path) { ZUMReadByteTIFF(path); }, "Error opening TIFF file %", "*"},
        {[](auto path) { ZUMReadZMG(path); }, "ZUMReadZMG: Error opening file %",
         "ZUMReadZMG format error"},
        {[](auto path) { ZUMReadBMP(path); }, "error \"%\" not found",
         "error \"%\" is not a BMP file"},
        {[](auto path) { ZUMReadTxtImage(path); }, "ZUMReadTxtImage: Error opening file %",
         "Error al leer imagen Txt % "}};
    for (const Case& c : cases) {
      for (const std::string& path : {folder.Path("no/file"), folder.Path()}) {
        EXPECT_EQ(MessageOf([&] { c.call(path.c_str()); }), With(c.not_opened, path));
      }
      const std::string message = MessageOf([&] { c.call("/dev/full"); });
      EXPECT_EQ(message, c.full[0] == '*' && message != "" ? message : With(c.full, "/dev/full"));
    }
  }
  EXPECT_EQ(CountHandles(), handles);
}

TEST(ImageFiles, ImagesThatDoNotFitAreRefusedBeforeAnyFile) {
  const TempFolder folder;
  const std::string path = folder.Path("file");
  using Image = ZUMImage<ZUMByte>;
  const std::pair<std::string, void (*)(const Image&, const char*)> kWriters[] = {
      {"BMP", ZUMWriteBMP},
      {"EPS", ZUMWriteEPS},
      {"JPEG", [](const Image& image, const char* file) { ZUMWriteJPEG(image, file, 90); }},
      {"TIFF", [](const Image& image, const char* file) { ZUMWriteTIFF(image, file); }},
      {"TIFF", ZUMWriteByteTIFF}};
  struct Case {
    ZUMRect box;
    int channels;
    const char* sizes;
  };
  const Case cases[] = {{ZUMRect(0, 0, 0, 0, 4, 2, 0, 0), 2, "XSz=5 YSz=3 ZSz=1 TSz=1 CSz=2"},
                        {ZUMRect(0, 0, 0, 0, 4, 2, 1, 0), 1, "XSz=5 YSz=3 ZSz=2 TSz=1 CSz=1"},
                        {ZUMRect(0, 0, 0, 0, 4, 2, 0, 1), 3, "XSz=5 YSz=3 ZSz=1 TSz=2 CSz=3"},
                        {ZUMRect(0, 0, 0, 0, -1, 0, 0, 0), 1, "XSz=0 YSz=1 ZSz=1 TSz=1 CSz=1"}};
  for (const Case& c : cases) {
    const ZUMImage<ZUMByte> image(c.box, c.channels, ZUMByte{1});
    const std::string start = "No se puede escribir una imagen ";
    for (const auto& [format, write] : kWriters) {
      EXPECT_EQ(MessageOf([&, &call = write] { call(image, path.c_str()); }),
                start + format + " con las dimensiones " + c.sizes);
    }
  }
  const ZUMImage<ZUMReal> image(cases[0].box, 2, 1.0);
  const ZUMImage<ZUMReal> odd(ZUMRoDRef(new OddRegion(image.Rect())), image);
  EXPECT_EQ(MessageOf([&] { ZUMWriteTxtImage(odd, path.c_str()); }),
            "ZUMWriteTxtImage: It don't accept multichannel images");
  EXPECT_EQ(MessageOf([&] { ZUMWriteTxtImage(odd.Channel(1), path.c_str()); }),
            "ZUMWriteTxtImage: It olny accepts rectagular images");
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(MessageOf([&] { ZUMWriteZMG(odd, path.c_str(), false); }),
            "ZUMRegionOfDefinitionWrite for zuml_test::OddRegion not yet implemeted");
  EXPECT_EQ(ReadFile(path), std::string("ZUMLImage\0\1\0\0\0", 14));
}

}  // namespace
