// Our files in other programs, and theirs in ours. What needs a program that is missing is skipped.

#include <cstdlib>

#include "tests/io/filetest.h"
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
  bool HasProgram(const std::string& command) const {
    return RunHere("command -v " + command.substr(0, command.find(' ')));
  }
  // Writes a random PNM file "p" with `most` for white, and returns it with 255 for white. Of 16
  // bits, the high byte counts.
  Image WritePnm(int channels, int most, int width) const {
    Random random(static_cast<std::uint64_t>(channels * most + width));
    std::string text = (channels == 1 ? "P5 " : "P6 ") + std::to_string(width) + " 23 " +
                       std::to_string(most) + "\n";
    const Image picture(PictureBox(width, 23), channels, 0);
    for (int i = 0; i < width * 23 * channels; ++i) {
      const int at = i / channels, value = random.Int(0, most);
      picture(at % width, at / width, 0, 0, i % channels) =
          static_cast<ZUMByte>(most > 255 ? value >> 8 : value * 255 / most);
      if (most > 255) text += static_cast<char>(value >> 8);
      text += static_cast<char>(value);
    }
    folder_.Write("p", text);
    return picture;
  }
};

TEST_F(Foreign, OthersReadOurs) {
  const struct {
    void (*write)(const Image&, const char* path);
    const char* command;
  } cases[] = {
      {ZUMWriteBMP, "bmptopnm a"},
      {ZUMWritePNG, "pngtopnm a"},
      {ZUMWritePNG, "pngcheck a && pngtopnm a"},
      {ZUMWriteByteTIFF, "tifftopnm a"},
      {[](auto& image, auto path) { ZUMWriteTIFF(image, path); },
       "tiffcp -p contig a c && tifftopnm c"},
      {[](auto& image, auto path) { ZUMWriteJPEG(image, path, 95); }, "djpeg -pnm a"},
  };
  for (const auto& [write, command] : cases) {
    if (!HasProgram(command)) continue;
    for (const int channels : {1, 3}) {
      Image picture = WritePnm(channels, 255, 31);
      write(picture, Path().c_str());
      if (command[0] == 'd') picture = ZUMReadJPEG(Path().c_str());
      ASSERT_TRUE(RunHere("{ " + std::string(command) + "; } > p")) << command;
      std::string pixels;
      for (int i = 0; i < 31 * 23 * channels; ++i) {
        const int at = i / channels;
        pixels += static_cast<char>(picture(at % 31, at / 31, 0, 0, i % channels));
      }
      EXPECT_TRUE(ReadFile(Path("p")).ends_with(pixels)) << command;
    }
  }
}

TEST_F(Foreign, WeReadTheirs) {
  const auto read_tiff = [](const char* path) -> Image { return ZUMReadTIFF(path); };
  const std::string tiff = "pnmtotiff -truecolor p > b && tiffcp -p ", png = "pnmtopng -force ";
  const struct {
    Image (*read)(const char*);
    std::string command;
    int channels, most;
  } cases[] = {{ZUMReadBMP, "ppmtobmp -bpp 24 p > a", 3, 255},
               {ZUMReadPNG, png + "-interlace p > a", 3, 255},
               {ZUMReadPNG, png + "-interlace p > a", 1, 15},
               {ZUMReadPNG, png + "p > a", 1, 1},
               {ZUMReadPNG, png + "p > a", 3, 3},  // a palette
               {ZUMReadPNG, png + "p > a", 3, 65535},
               {read_tiff, tiff + "contig -s -r 4 -c none -B b a", 3, 255},
               {read_tiff, tiff + "contig -t -w 16 -l 32 -c none b a", 3, 255},
               {read_tiff, tiff + "separate -t -w 16 -l 32 -c lzw:2 b a", 3, 255},
               {read_tiff, tiff + "separate -t -w 32 -l 16 -c zip -B b a", 1, 255},
               {ZUMReadByteTIFF, tiff + "separate -t -w 16 -l 32 -c none b a", 3, 255},
               {ZUMReadByteTIFF, tiff + "contig -s -r 4 -c packbits b a", 1, 255}};
  for (const auto& [read, command, channels, most] : cases) {
    if (!HasProgram(command)) continue;
    const Image picture = WritePnm(channels, most, 37);
    ASSERT_TRUE(RunHere(command)) << command;
    EXPECT_TRUE(SameImage(read(Path().c_str()), picture)) << command;
  }
}

}  // namespace
