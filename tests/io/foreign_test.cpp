// Our files in other programs, and theirs in ours. A test is skipped where its program is missing.

#include "tests/io/filetest.h"
#include "zuml/io/eps.h"
#include "zuml/io/jpeg.h"
#include "zuml/io/rwbmp.h"
#include "zuml/io/rwpng.h"
#include "zuml/io/tiff.h"

namespace {

using namespace zuml_test;

class Foreign : public FileTest {
 protected:
  // Writes a random PNM file "p" with `most` for white, by one or two bytes a sample.
  ZUMImage<ZUMLong> WritePnm(int channels, int most, int width = 37) const {
    Random random(static_cast<std::uint64_t>(channels * most + width));
    const ZUMImage<ZUMLong> picture(PictureBox(width, 23), channels, 0);
    std::string text = (channels == 1 ? "P5 " : "P6 ") + std::to_string(width) + " 23 " +
                       std::to_string(most) + "\n";
    for (int i = 0; i < width * 23 * channels; ++i) {
      const int at = i / channels, value = random.Int(0, most);
      picture(at % width, at / width, 0, 0, i % channels) = value;
      if (most > 255) text += static_cast<char>(value >> 8);
      text += static_cast<char>(value);
    }
    folder_.Write("p", text);
    return picture;
  }
  // The pixels that the PNM file "p" ends with.
  ZUMImage<ZUMByte> ReadPnm(int width, int height, int channels) const {
    const std::string text = ReadFile(Path("p"));
    const std::size_t at = text.size() - static_cast<std::size_t>(width * height * channels);
    return MakeByPoint<ZUMByte>(
        ZUMRoDRef(PictureBox(width, height)), channels, [&](int x, int y, int, int, int c) {
          return text.at(at + static_cast<std::size_t>((y * width + x) * channels + c));
        });
  }
};

TEST_F(Foreign, OthersReadOurs) {
  const struct {
    const char* program;
    void (*write)(const ZUMImage<ZUMByte>&, const char* path);
    const char* command;
  } cases[] = {
      {"bmptopnm", ZUMWriteBMP, "bmptopnm a"},
      {"pngtopnm", ZUMWritePNG, "pngtopnm a"},
      {"pngcheck", ZUMWritePNG, "pngcheck a && pngtopnm a"},
      {"tifftopnm", ZUMWriteByteTIFF, "tifftopnm a"},
      {"tiffcp", [](const auto& image, const char* path) { ZUMWriteTIFF(image, path); },
       "tiffcp -p contig a c && tifftopnm c"},
      {"djpeg", [](const auto& image, const char* path) { ZUMWriteJPEG(image, path, 95); },
       "djpeg -pnm a"},
  };
  for (const auto& [program, write, command] : cases) {
    if (!RunCommand(std::string("command -v ") + program)) continue;
    for (const int channels : {1, 3}) {
      for (int width = 29; width <= 32; ++width) {
        const ZUMImage<ZUMByte> picture = WritePnm(channels, 255, width);
        write(picture, Path().c_str());
        ASSERT_TRUE(RunHere(std::string(command) + " > p")) << command;
        const bool lossy = program[0] == 'd';
        EXPECT_TRUE(
            SameImage(ReadPnm(width, 23, channels), lossy ? ZUMReadJPEG(Path().c_str()) : picture))
            << command;
      }
    }
  }
}

TEST_F(Foreign, WeReadTheirBmp) {
  REQUIRE_PROGRAM("ppmtobmp");
  for (int width = 29; width <= 36; ++width) {
    const ZUMImage<ZUMByte> colour = WritePnm(3, 255, width);
    ASSERT_TRUE(RunHere("ppmtobmp -bpp 24 p > a"));
    EXPECT_TRUE(SameImage(ZUMReadBMP(Path().c_str()), colour));
  }
  // It fills rows up but tells no image size, so its rows of bits have to fill themselves.
  const auto bits = WritePnm(1, 1, 32);
  ASSERT_TRUE(RunHere("pgmtopbm -threshold p | ppmtobmp > a"));
  EXPECT_TRUE(SameImage(ZUMReadBMP(Path().c_str()),
                        MakeByPoint<ZUMByte>(bits, 1, [&](int x, int y, int, int, int) {
                          return bits(x, y) ? 255 : 0;
                        })));
  // The older form of the header.
  ASSERT_TRUE(RunHere("ppmtobmp -os2 p > a"));
  const CapturedDiagnostics diagnostics;
  EXPECT_EQ(MessageOf([&] { ZUMReadBMP(Path().c_str()); }),
            "error \"" + Path() + "\" is a not readable BMP file");
}

TEST_F(Foreign, WeReadTheirPng) {
  REQUIRE_PROGRAM("pnmtopng");
  const struct {
    int channels, most;
    const char* options;
  } cases[] = {{1, 255, ""},
               {1, 255, "-interlace"},
               {3, 255, "-interlace"},
               {3, 255, ""},
               {1, 1, ""},
               {1, 3, ""},
               {1, 15, "-interlace"},
               {3, 3, ""},
               {3, 65535, ""}};
  const auto read = [&](const std::string& options) {
    EXPECT_TRUE(RunHere("pnmtopng -force " + options + " p > a")) << options;
    return ZUMReadPNG(Path().c_str());
  };
  for (const auto& [channels, most, options] : cases) {
    const auto picture = WritePnm(channels, most);
    // Of 16 bits, the high byte.
    const auto scale = [&, white = most](int x, int y, int, int, int c) {
      const int value = picture(x, y, 0, 0, c);
      return static_cast<ZUMByte>(white > 255 ? value >> 8 : value * 255 / white);
    };
    EXPECT_TRUE(SameImage(read(options), MakeByPoint<ZUMByte>(picture, channels, scale)))
        << channels << " " << most << options;
  }
  // Few colours as a palette, and one of them transparent.
  const auto few = WritePnm(3, 1);
  const auto alpha = [&](int x, int y, int, int, int c) {
    const bool clear = few(x, y, 0, 0, 0) && !few(x, y, 0, 0, 1) && few(x, y, 0, 0, 2);
    return (c < 3 ? few(x, y, 0, 0, c) != 0 : !clear) ? 255 : 0;
  };
  EXPECT_TRUE(SameImage(read("-transparent '=rgb:ff/00/ff'"), MakeByPoint<ZUMByte>(few, 4, alpha)));
}

TEST_F(Foreign, WeReadTheirJpeg) {
  REQUIRE_PROGRAM("cjpeg");
  REQUIRE_PROGRAM("djpeg");
  for (const char* options : {"", "-progressive", "-arithmetic", "-restart 1", "-grayscale",
                              "-sample 1x1", "-sample 2x1 -progressive"}) {
    WritePnm(3, 255);
    if (!RunHere(std::string("cjpeg ") + options + " p > a")) continue;
    ASSERT_TRUE(RunHere("djpeg -pnm a > p"));
    const auto read = ZUMReadJPEG(Path().c_str());
    EXPECT_EQ(read.GetCSz(), std::string(options) == "-grayscale" ? 1 : 3);
    EXPECT_TRUE(SameImage(read, ReadPnm(37, 23, read.GetCSz()))) << options;
  }
  REQUIRE_PROGRAM("gm");
  ASSERT_TRUE(RunHere("gm convert p -colorspace CMYK jpeg:a"));
  EXPECT_EQ(MessageOf([&] { ZUMReadJPEG(Path().c_str()); }), "ReadJPEG: Número de canales erroneo");
}

TEST_F(Foreign, WeReadTheirTiff) {
  REQUIRE_PROGRAM("tiffcp");
  const char* const kParts[] = {"-p contig -s -r 4", "-p contig -t -w 16 -l 32",
                                "-p separate -s -r 4", "-p separate -t -w 16 -l 32"};
  for (const int channels : {1, 3}) {
    const ZUMImage<ZUMByte> picture = WritePnm(channels, 255);
    const ZUMImage<ZUMReal> reals = picture;
    ZUMWriteTIFF(picture, Path("bytes").c_str());
    ZUMWriteTIFF(reals, Path("reals").c_str());
    for (const char* parts : kParts) {
      for (const std::string codec : {"none", "lzw", "lzw:2", "zip", "packbits"}) {
        for (const char* order : {" -L ", " -B "}) {
          const std::string command = std::string("tiffcp ") + parts + " -c " + codec + order;
          ASSERT_TRUE(RunHere(command + "bytes a")) << command;
          EXPECT_TRUE(SameImage(ZUMImage<ZUMByte>(ZUMReadTIFF(Path().c_str())), picture))
              << command;
          EXPECT_TRUE(SameImage(ZUMReadByteTIFF(Path().c_str()), picture)) << command;
          // For other samples than bytes, the program knows neither another configuration nor
          // tiles in planes.
          if (codec == "lzw:2" || parts[3] == 'c' || (channels > 1 && parts == kParts[3])) continue;
          ASSERT_TRUE(RunHere(command + "reals a")) << command;
          EXPECT_TRUE(SameImage(ZUMImage<ZUMReal>(ZUMReadTIFF(Path().c_str())), reals)) << command;
        }
      }
    }
  }
  REQUIRE_PROGRAM("pamtotiff");
  for (const int most : {1, 65535}) {
    const auto picture = WritePnm(1, most);
    ASSERT_TRUE(RunHere("pamtotiff -none -minisblack p > b") ||
                RunHere("pamtotiff -none -minisblack -output=b p"));
    for (const std::string options :
         {"-c none", "-c lzw -B", "-t -w 16 -l 16 -c zip", "-c none -f lsb2msb", "-c g4"}) {
      if (!RunHere("tiffcp " + options + " b a")) continue;
      const ZUMGenericImage read = ZUMReadTIFF(Path().c_str());
      EXPECT_TRUE(most == 1 ? SameImage(ZUMImage<ZUMBool>(read), ZUMImage<ZUMBool>(picture))
                            : SameImage(ZUMImage<ZUMLong>(read), picture))
          << options;
    }
  }
}

// At a scale of one point a pixel, the page shows the picture behind a margin of 36 pixels.
TEST_F(Foreign, GhostscriptShowsOurEps) {
  REQUIRE_PROGRAM("gs");
  for (const int channels : {1, 3}) {
    const ZUMImage<ZUMByte> picture = WritePnm(channels, 255, channels == 1 ? 504 : 280);
    ZUMWriteEPS(picture, Path().c_str());
    ASSERT_TRUE(RunHere(std::string("gs -q -dBATCH -dNOPAUSE -r72 -g600x200 -sOutputFile=p ") +
                        (channels == 1 ? "-sDEVICE=pgmraw" : "-sDEVICE=ppmraw") + " a"));
    const auto page = ReadPnm(600, 200, channels);
    int worst = 0;  // colour management rounds by 1 now and then
    ForEachPoint(picture, channels, [&](int x, int y, int, int, int c) {
      const int shown = page(x + 36, y + 200 - 36 - 23, 0, 0, c);
      worst = std::max(worst, std::abs(shown - picture(x, y, 0, 0, c)));
    });
    EXPECT_LE(worst, 1);
  }
}

}  // namespace
