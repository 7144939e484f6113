// What holds for the files of every format.

#include <sys/stat.h>

#include <thread>

#include "tests/io/filetest.h"
#include "zuml/geometry/gridmoves.h"
#include "zuml/io/eps.h"
#include "zuml/io/jpeg.h"
#include "zuml/io/readimage.h"
#include "zuml/io/rwbmp.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/textimage.h"
#include "zuml/io/tiff.h"
#include "zuml/io/zmg.h"

namespace {

using namespace zuml_test;
using Image = ZUMImage<ZUMByte>;

void WriteZMG(const Image& image, const char* path) { ZUMWriteZMG(image, path, false); }
Image ReadZMG(const char* path) { return ZUMReadZMG(path); }
void WriteText(const Image& image, const char* path) {
  ZUMWriteTxtImage(ZUMImage<ZUMReal>(image), path);
}
Image ReadText(const char* path) { return ZUMReadTxtImage(path); }
void WriteJPEG(const Image& image, const char* path) { ZUMWriteJPEG(image, path, 100); }
void WriteTIFF(const Image& image, const char* path) { ZUMWriteTIFF(image, path); }
Image ReadTIFF(const char* path) { return ZUMReadTIFF(path); }

struct Format {
  std::string name;
  int most_channels;
  void (*write)(const Image&, const char*);
  Image (*read)(const char*);
  // With % for the path; "*" stands for words of the codec's own.
  const char *not_written, *disk_full, *not_read, *zeros_read;
};
const Format kFormats[] = {
    {"ZMG", 3, WriteZMG, ReadZMG, "ZUMWriteZMG: Error opening file %", "",
     "ZUMReadZMG: Error opening file %", "ZUMReadZMG format error"},
    {"BMP", 3, ZUMWriteBMP, ZUMReadBMP, "error when open file \"%\"",
     "ZUMWriteBMP: Error writing image to file %", "error \"%\" not found",
     "error \"%\" is not a BMP file"},
    {"text", 1, WriteText, ReadText, "ZUMWriteTxtImage: Error opening file %",
     "ZUMWriteTxtImage: Error writing image to file %", "ZUMReadTxtImage: Error opening file %",
     "Error al leer imagen Txt % "},
    {"EPS", 3, ZUMWriteEPS, nullptr, "Error opening EPS %",
     "ZUMWriteEPS: Error writing image to file %", "", ""},
    {"PNG", 4, ZUMWritePNG, ZUMReadPNG, "error opening \"%\"", "png_write failed",
     "error \"%\" not found", "error \"%\" not found"},
    {"JPEG", 3, WriteJPEG, ZUMReadJPEG, "No se ha podido escribir la imagen %", "*",
     "Error opening %", "*"},
    {"TIFF", 3, WriteTIFF, ReadTIFF, "Error opening TIFF %", "*", "Error opening TIFF file %", "*"},
    {"TIFF", 3, ZUMWriteByteTIFF, ZUMReadByteTIFF, "Error opening TIFF %", "*",
     "Error opening TIFF file %", "*"}};

class ImageFiles : public FileTest {
 protected:
  // Calls f(format, channels) for all pictures that the formats take.
  template <class F>
  static void ForEachPicture(F f) {
    for (const Format& format : kFormats) {
      for (int channels = 1; channels <= format.most_channels; ++channels) {
        if (channels != 2 || format.most_channels == 4) f(format, channels);
      }
    }
  }
  std::string Written(const Format& format, const Image& image) const {
    std::filesystem::remove(Path());
    format.write(image, Path().c_str());
    return ReadFile(Path());
  }
};

// Planes off Z 0 and T 0 too, as a view of a volume has them, and a picture of several buffers.
TEST_F(ImageFiles, PixelsComeBackFromEveryLayout) {
  Random random(1);
  ForEachPicture([&](const Format& format, int channels) {
    for (const Layout layout : kLayouts) {
      const ZUMRect small = MakeRandomBox(random, 70, 30), large(-3, 4, 2, -1, 697, 403, 2, -1);
      const ZUMRect box = layout == Layout::kFramed ? large : small;
      const Image image = MakeRandomImage<ZUMByte>(random, box, channels, layout);
      // Slopes are what JPEG keeps nearly; channels that change places are far off.
      const int tolerance = format.name == "JPEG" ? 6 : 0;
      ForEachPoint(image, tolerance == 0 ? 0 : channels, [&](int x, int y, int z, int t, int c) {
        image(x, y, z, t, c) = static_cast<ZUMByte>(60 * c + (x + y) / 11 + 20);
      });
      const std::string written = Written(format, image);
      if (layout == Layout::kCut && format.name != "ZMG") {
        // The coordinates do not matter, also at their ends.
        constexpr int kMost = std::numeric_limits<int>::max();
        const Image at_0 = ZUMTranslate(image, -image.BeginX(), -image.BeginY(), 0, 0);
        const Image high = ZUMTranslate(at_0, kMost - at_0.EndX(), kMost - at_0.EndY(), 0, 0);
        EXPECT_TRUE(Written(format, high) == written) << format.name;
        const Image low = ZUMTranslate(at_0, -kMost - 1, -kMost - 1, 0, 0);
        EXPECT_TRUE(Written(format, low) == written) << format.name;
      }
      if (!format.read) continue;
      const Image read = format.read(Path().c_str());
      const Image expected = format.name == "ZMG" ? image : AtOrigin(image);
      ASSERT_EQ(read.Rect(), expected.Rect()) << format.name;
      ASSERT_EQ(read.GetCSz(), channels) << format.name;
      int worst = 0;
      ForEachPoint(expected, channels, [&](int x, int y, int z, int t, int c) {
        worst = std::max(worst, std::abs(read(x, y, z, t, c) - expected(x, y, z, t, c)));
      });
      EXPECT_LE(worst, tolerance) << format.name << channels;
    }
  });
}

TEST_F(ImageFiles, PixelsOutsideTheRegionAreBlackOrPaper) {
  const ZUMRect box(1, 1, 0, 0, 20, 30, 0, 0);
  ForEachPicture([&](const Format& format, int channels) {
    if (format.name == "ZMG" || format.name == "text") return;
    const Image full(box, channels, ZUMByte{9});
    const int blank = format.name == "EPS" ? 255 : 0;
    const auto masked = MakeByPoint<ZUMByte>(
        full, channels, [&](int x, int y, int, int, int) { return (x + y) % 2 ? 9 : blank; });
    EXPECT_EQ(Written(format, Image(ZUMRoDRef(new OddRegion(box)), full)), Written(format, masked))
        << format.name << channels;
  });
}

// Noise is of no use to a compression, so that the disk is full in the middle of the large picture.
TEST_F(ImageFiles, FailuresTellTheFile) {
  Random random(2);
  const auto large =
      MakeRandomImage<ZUMByte>(random, ZUMRect(0, 0, 0, 0, 799, 799, 0, 0), 1, Layout::kTight);
  const auto expect = [](const auto& call, std::string text, const std::string& path) {
    const std::string message = MessageOf([&] { call(path.c_str()); });
    if (const auto at = text.find('%'); at != text.npos) text.replace(at, 1, path);
    EXPECT_TRUE(text == "*" ? !message.empty() : message == text) << message << "\n" << text;
  };
  for (const Format& format : kFormats) {
    for (const Image& image : {large, large.Row(3)}) {
      const auto write = [&](const char* path) { format.write(image, path); };
      expect(write, format.not_written, Path("no/file"));
      expect(write, format.not_written, Path(""));
      expect(write, format.disk_full, "/dev/full");
    }
    if (!format.read) continue;
    expect(format.read, format.not_read, Path("no/file"));
    expect(format.read, format.not_read, Path(""));
    expect(format.read, format.zeros_read, "/dev/full");
  }
  EXPECT_THROW(ZUMWriteJPEG(large, Path("").c_str(), 90), XQExcepIOError);
  EXPECT_THROW(ZUMReadJPEG(Path("no").c_str()), XQExcepNotFound);
}

TEST_F(ImageFiles, ImagesThatDoNotFitAreRefusedBeforeAnyFile) {
  const struct {
    int channels, z, t;
    const char *sizes, *png;
  } cases[] = {
      {5, 2, 2, "XSz=5 YSz=3 ZSz=2 TSz=2 CSz=5",
       "WritePNG: Image with more of4 channeles are not allowed"},
      {1, 2, 2, "XSz=5 YSz=3 ZSz=2 TSz=2 CSz=1", "WritePNG: 3D images are not allowed"},
      {3, 1, 2, "XSz=5 YSz=3 ZSz=1 TSz=2 CSz=3", "WritePNG: multiframe images are not allowed"},
      {3, 0, 1, "XSz=0 YSz=3 ZSz=0 TSz=1 CSz=3", "png_write failed"},
      {2, 1, 1, "XSz=5 YSz=3 ZSz=1 TSz=1 CSz=2", ""}};
  for (const auto& [channels, z, t, sizes, png] : cases) {
    const Image image(ZUMRect(0, 0, 0, 0, 4, 2, z - 1, t - 1), channels, ZUMByte{1});
    for (const Format& format : kFormats) {
      if (format.name == "ZMG" || format.name == "text") continue;
      const bool is_png = format.name == "PNG";
      EXPECT_EQ(MessageOf([&] { Written(format, image); }),
                is_png ? png
                       : "No se puede escribir una imagen " + format.name +
                             " con las dimensiones " + sizes);
      EXPECT_EQ(std::filesystem::exists(Path()), is_png && *png == '\0');
    }
  }
  const ZUMRect box(0, 0, 0, 0, 4, 2, 0, 0);
  const ZUMImage<ZUMReal> odd(ZUMRoDRef(new OddRegion(box)), ZUMImage<ZUMReal>(box, 2, 1.0));
  const std::string path = Path("none");
  EXPECT_EQ(MessageOf([&] { ZUMWriteTxtImage(odd, path.c_str()); }),
            "ZUMWriteTxtImage: It don't accept multichannel images");
  EXPECT_EQ(MessageOf([&] { ZUMWriteTxtImage(odd.Channel(1), path.c_str()); }),
            "ZUMWriteTxtImage: It olny accepts rectagular images");
  EXPECT_EQ(MessageOf([&] { ZUMWriteTIFF(ZUMImage<ZUMComplex>(box, 1, 0.), path.c_str()); }),
            "ZUMWriteTIFF: don't accept ZUMComplex images");
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(MessageOf([&] { ZUMWriteZMG(odd, path.c_str(), false); }),
            "ZUMRegionOfDefinitionWrite for zuml_test::OddRegion not yet implemeted");
  EXPECT_EQ(ReadFile(path), std::string("ZUMLImage\0\1\0\0\0", 14));
}

// Whatever is wrong with a file, its reader gives an image or an XQException, the same each time:
// bytes that nobody wrote would differ. The sanitizers see the rest.
TEST_F(ImageFiles, DamagedFilesAreReadOrRefused) {
  Random random(3);
  const auto noise = MakeRandomImage<ZUMByte>(random, PictureBox(9, 7), 3, Layout::kTight);
  for (const Format& format : kFormats) {
    if (!format.read) continue;
    const std::string whole = Written(format, format.name == "text" ? noise.Channel(0) : noise);
    const auto read = [&](const std::string& bytes) {
      folder_.Write("a", bytes);
      std::pair<Image, std::string> results[2];
      for (auto& [image, message] : results) {
        message = MessageOf([&, &to = image] { to = format.read(Path().c_str()); });
      }
      EXPECT_TRUE(results[0].second == results[1].second &&
                  SameImage(results[0].first, results[1].first));
      return results[0];
    };
    for (std::size_t n = 0; n < whole.size(); n += 1 + n / 40) {
      const Image image = read(whole.substr(0, n)).first;
      // What is missing is 0 where pixels have their places in the file.
      if (format.name == "BMP" ? n >= 54 : format.name == "ZMG" && n >= 105) {
        std::string filled = whole.substr(0, n);
        filled.resize(whole.size());
        EXPECT_TRUE(SameImage(image, read(filled).first)) << format.name << n;
      }
    }
    ForEachCorruption(whole, whole.size(), read);
  }
}

// A pipe tells no length, so that a picture cannot be too large for it. TIFF files are positioned.
TEST_F(ImageFiles, LargePicturesComeThroughPipes) {
  const Image image(PictureBox(8200, 8200), 1, 77);
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  for (const Format& format : kFormats) {
    if (!format.read || format.name == "text" || format.name == "TIFF") continue;
    const std::string file = Written(format, image);
    std::thread writer([&] { std::ofstream(Path("pipe"), std::ios::binary) << file; });
    Image read;
    EXPECT_EQ(MessageOf([&] { read = format.read(Path("pipe").c_str()); }), "") << format.name;
    writer.join();
    EXPECT_TRUE(read.GetRasterSz() == image.GetRasterSz() &&
                std::memcmp(read.GetData(), image.GetData(), 8200 * 8200) == 0);
  }
}

TEST_F(ImageFiles, TheExtensionNamesTheReader) {
  const Image image(PictureBox(21, 11), 3, 77);
  const std::pair<int, const char*> names[] = {{0, "a.zmg"},    {1, "B.BMP"},  {4, ".png"},
                                               {5, "c.v2.jpg"}, {5, "d.JPeG"}, {6, "e.tif"},
                                               {7, "f.Tiff"}};
  for (const auto& [format, name] : names) {
    kFormats[format].write(image, Path(name).c_str());
    EXPECT_TRUE(SameImage(ZUMReadImage(Path(name).c_str()), image)) << name;
  }
  // The contents do not count, and pixels are not converted.
  std::filesystem::rename(Path("B.BMP"), Path("B.png"));
  ZUMWriteZMG(ZUMImage<ZUMLong>(image), Path("a.zmg").c_str(), false);
  ZUMWriteTIFF(ZUMImage<ZUMLong>(image), Path("e.tif").c_str());
  const std::string type = "Type Error on construction ZUMImage<ZUMByte>";
  const std::string unknown = "ZUMReadImage: Image file extension not recognized ";
  const std::pair<std::string, std::string> cases[] = {
      {Path("B.png"), "error \"" + Path("B.png") + "\" not found"},
      {Path("a.zmg"), type},
      {Path("e.tif"), type},
      {"a.JPE", unknown + ".jpe"},
      {"x.png/image", unknown},
      {"a.png ", unknown + ".png "},
      {"a.tif.gz", unknown + ".gz"}};
  for (const auto& [path, message] : cases) {
    EXPECT_EQ(MessageOf([&, &file = path] { ZUMReadImage(file.c_str()); }), message);
  }
}

}  // namespace
