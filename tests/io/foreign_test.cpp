// Files of other programs. What needs a program that is missing is skipped.

#include <cstdlib>

#include "tests/io/filetest.h"
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
  // Writes a random PNM file "p" with `most` for white, and returns it with 255 for white. Of 16
  // bits, the high byte counts.
  Image WritePnm(int channels, int most) const {
    Random random(static_cast<std::uint64_t>(channels * most));
    std::string text = (channels == 1 ? "P5 37 23 " : "P6 37 23 ") + std::to_string(most) + "\n";
    const auto next = [&] {
      const int value = random.Int(0, most);
      if (most > 255) text += static_cast<char>(value >> 8);
      text += static_cast<char>(value);
      return static_cast<ZUMByte>(most > 255 ? value >> 8 : value * 255 / most);
    };
    const Image picture(PictureBox(37, 23), channels, 0);
    for (int y = 0; y < 23; ++y) {
      for (int x = 0; x < 37; ++x) {
        for (int c = 0; c < channels; ++c) picture(x, y, 0, 0, c) = next();
      }
    }
    folder_.Write("p", text);
    return picture;
  }
};

TEST_F(Foreign, FilesAreRead) {
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
    if (!RunHere("command -v " + command.substr(0, command.find(' ')))) continue;
    const Image picture = WritePnm(channels, most);
    ASSERT_TRUE(RunHere(command)) << command;
    EXPECT_TRUE(SameImage(read(Path().c_str()), picture)) << command;
  }
}

}  // namespace
