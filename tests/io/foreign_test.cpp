// Our files in other programs, and theirs in ours. What needs a program that is missing is skipped.

#include <cstdlib>

#include "tests/io/filetest.h"
#include "zuml/algebra/conditional.h"
#include "zuml/algebra/division.h"
#include "zuml/io/eps.h"
#include "zuml/io/jpeg.h"
#include "zuml/io/rwbmp.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/tiff.h"

namespace {

using namespace zuml_test;
using Image = ZUMImage<ZUMByte>;

class Foreign : public FileTest {
 protected:
  // Runs a command of the shell in the folder; false if it fails.
  bool RunHere(const std::string& command) const {
    return std::system(("{ cd " + Path("") + " && " + command + "; } > /dev/null 2>&1").c_str()) ==
           0;
  }
  // Whether all of these programs are there.
  bool HasPrograms(const std::string& names) const {
    return RunHere("for p in " + names + "; do command -v $p || exit 1; done");
  }
  // Writes a random PNM file "p" with `most` for white, and returns it with 255 for white. Of 16
  // bits, the high byte counts.
  Image WritePnm(int channels, int most, int width = 37) const {
    Random random(static_cast<std::uint64_t>(channels * most + width));
    std::string text = (channels == 1 ? "P5 " : "P6 ") + std::to_string(width) + " 23 " +
                       std::to_string(most) + "\n";
    const auto next = [&] {
      const int value = random.Int(0, most);
      if (most > 255) text += static_cast<char>(value >> 8);
      text += static_cast<char>(value);
      return static_cast<ZUMByte>(most > 255 ? value >> 8 : value * 255 / most);
    };
    const Image picture(PictureBox(width, 23), channels, 0);
    for (int y = 0; y < 23; ++y) {
      for (int x = 0; x < width; ++x) {
        for (int c = 0; c < channels; ++c) picture(x, y, 0, 0, c) = next();
      }
    }
    folder_.Write("p", text);
    return picture;
  }
  // The pixels that the PNM file "p" ends with.
  Image ReadPnm(int width, int height, int channels) const {
    const std::string text = ReadFile(Path("p"));
    const std::size_t at = text.size() - static_cast<std::size_t>(width * height * channels);
    return MakeByPoint<ZUMByte>(
        ZUMRoDRef(PictureBox(width, height)), channels, [&](int x, int y, int, int, int c) {
          return text.at(at + static_cast<std::size_t>((y * width + x) * channels + c));
        });
  }
};

TEST_F(Foreign, ProgramsReadOurs) {
  const struct {
    const char* programs;
    void (*write)(const Image&, const char* path);
    const char* command;
  } cases[] = {
      {"bmptopnm", ZUMWriteBMP, "bmptopnm a > p"},
      {"pngcheck pngtopnm", ZUMWritePNG, "pngcheck a && pngtopnm a > p"},
      {"tifftopnm", ZUMWriteByteTIFF, "tifftopnm a > p"},
      {"tiffinfo tiffcp tifftopnm",
       [](const Image& image, const char* path) { ZUMWriteTIFF(image, path); },
       "tiffinfo a && tiffcp -p contig a c && tifftopnm c > p"},
      {"djpeg", [](const Image& image, const char* path) { ZUMWriteJPEG(image, path, 95); },
       "djpeg -pnm a > p"},
  };
  for (const auto& [programs, write, command] : cases) {
    if (!HasPrograms(programs)) continue;
    for (const int channels : {1, 3}) {
      for (int width = 29; width <= 32; ++width) {
        const Image picture = WritePnm(channels, 255, width);
        write(picture, Path().c_str());
        ASSERT_TRUE(RunHere(command)) << command;
        const bool lossy = programs[0] == 'd';
        EXPECT_TRUE(
            SameImage(ReadPnm(width, 23, channels), lossy ? ZUMReadJPEG(Path().c_str()) : picture))
            << command;
      }
    }
  }
}

// At a scale of one point a pixel, the page shows the picture behind a margin of 36 pixels.
TEST_F(Foreign, APageShowsOurEps) {
  if (!HasPrograms("gs")) GTEST_SKIP() << "gs is not installed";
  for (const int channels : {1, 3}) {
    const Image picture = WritePnm(channels, 255, channels == 1 ? 504 : 280);
    ZUMWriteEPS(picture, Path().c_str());
    ASSERT_TRUE(RunHere(std::string("gs -q -dBATCH -dNOPAUSE -r72 -g600x200 -sOutputFile=p ") +
                        (channels == 1 ? "-sDEVICE=pgmraw" : "-sDEVICE=ppmraw") + " a"));
    const Image page = ReadPnm(600, 200, channels);
    int worst = 0;  // colour management rounds by 1 now and then
    ForEachPoint(picture, channels, [&](int x, int y, int, int, int c) {
      const int shown = page(x + 36, y + 200 - 36 - 23, 0, 0, c);
      worst = std::max(worst, std::abs(shown - picture(x, y, 0, 0, c)));
    });
    EXPECT_LE(worst, 1);
  }
}

TEST_F(Foreign, TheirFilesAreRead) {
  const auto read_tiff = [](const char* path) -> Image { return ZUMReadTIFF(path); };
  const auto read_bits = [](const char* path) -> Image {
    return ZUMImIf<ZUMByte>(ZUMReadTIFF(path), 255, 0);
  };
  const auto read_words = [](const char* path) -> Image {
    return ZUMImage<ZUMLong>(ZUMReadTIFF(path)) / 256;
  };
  const auto read_reals = [](const char* path) -> Image {
    return ZUMImage<ZUMReal>(ZUMReadTIFF(path));
  };
  const std::string tiff = "pnmtotiff -truecolor p > b && tiffcp -p ", png = "pnmtopng -force ";
  const std::string gray = "pamtotiff -none -minisblack p > b && tiffcp ";
  const struct {
    Image (*read)(const char*);
    std::string command;
    int channels, most;
  } cases[] = {{ZUMReadBMP, "ppmtobmp -bpp 24 p > a", 3, 255},
               {ZUMReadPNG, png + "p > a", 1, 255},
               {ZUMReadPNG, png + "-interlace p > a", 3, 255},
               {ZUMReadPNG, png + "-interlace p > a", 1, 15},
               {ZUMReadPNG, png + "p > a", 1, 1},
               {ZUMReadPNG, png + "p > a", 3, 3},  // a palette
               {ZUMReadPNG, png + "p > a", 3, 65535},
               {read_tiff, tiff + "contig -s -r 4 -c none -B b a", 3, 255},
               {read_tiff, tiff + "contig -t -w 16 -l 32 -c none b a", 3, 255},
               {read_tiff, tiff + "separate -t -w 16 -l 32 -c lzw:2 b a", 3, 255},
               {read_tiff, tiff + "separate -t -w 32 -l 16 -c zip -B b a", 1, 255},
               {read_bits, gray + "-c none -f lsb2msb b a", 1, 1},
               {read_bits, gray + "-c g4 b a", 1, 1},
               {read_words, gray + "-c lzw -B b a", 1, 65535},
               {read_reals, "tiffcp -s -r 4 -c zip -B r a", 1, 255},
               {ZUMReadByteTIFF, tiff + "separate -t -w 16 -l 32 -c none b a", 3, 255},
               {ZUMReadByteTIFF, tiff + "contig -s -r 4 -c packbits b a", 1, 255}};
  for (const auto& [read, command, channels, most] : cases) {
    if (!HasPrograms(command.substr(0, command.find(' ')) + " tiffcp")) continue;
    const Image picture = WritePnm(channels, most);
    ZUMWriteTIFF(ZUMImage<ZUMReal>(picture), Path("r").c_str());
    ASSERT_TRUE(RunHere(command)) << command;
    EXPECT_TRUE(SameImage(read(Path().c_str()), picture)) << command;
  }

  // Few colours as a palette, and one of them transparent.
  if (!HasPrograms("pnmtopng")) return;
  const Image few = WritePnm(3, 1);
  ASSERT_TRUE(RunHere(png + "-transparent '=rgb:ff/00/ff' p > a"));
  EXPECT_TRUE(SameImage(
      ZUMReadPNG(Path().c_str()), MakeByPoint<ZUMByte>(few, 4, [&](int x, int y, int, int, int c) {
        if (c < 3) return int{few(x, y, 0, 0, c)};
        return few(x, y, 0, 0, 0) && !few(x, y, 0, 0, 1) && few(x, y, 0, 0, 2) ? 0 : 255;
      })));
}

TEST_F(Foreign, TheirJpegFilesAreRead) {
  if (!HasPrograms("cjpeg djpeg")) GTEST_SKIP() << "cjpeg is not installed";
  for (const std::string options : {"", "-progressive", "-arithmetic", "-restart 1", "-grayscale",
                                    "-sample 1x1", "-sample 2x1 -progressive"}) {
    WritePnm(3, 255);
    if (!RunHere("cjpeg " + options + " p > a")) continue;
    ASSERT_TRUE(RunHere("djpeg -pnm a > p"));
    const Image read = ZUMReadJPEG(Path().c_str());
    EXPECT_EQ(read.GetCSz(), options == "-grayscale" ? 1 : 3);
    EXPECT_TRUE(SameImage(read, ReadPnm(37, 23, read.GetCSz()))) << options;
  }
}

}  // namespace
