#include "zuml/io/eps.h"

#include "tests/io/filetest.h"

namespace {

using namespace zuml_test;

class EPS : public FileTest {
 protected:
  std::string Written(const ZUMImage<ZUMByte>& image) const {
    ZUMWriteEPS(image, Path().c_str());
    return ReadFile(Path());
  }
};

TEST_F(EPS, FilesAreWrittenLineForLine) {
  const auto expect = [&](int width, int height, int channels, const std::string& sizes,
                          const std::string& corner, const std::string& exact_corner,
                          const std::string& scale, const std::string& values) {
    const ZUMImage<ZUMByte> image(ZUMRect(-1, 4, 0, 0, width - 2, height + 3, 0, 0), channels, 0);
    for (int i = 0; i < 6; ++i)
      static_cast<ZUMByte*>(image.GetData())[i] = "\0\1\x7F\xFF\xA0\x0B"[i];
    EXPECT_EQ(Written(image), "% !PS - Adobe - 3.0 EPSF - 3.0\n%%Creator: (ZUML)\n%%Title : (" +
                                  Path() + ")\n%%BoundingBox: 36 36 " + corner +
                                  "\n%%HiResBoundingBox: 36 36 " + exact_corner +
                                  "\n%%DocumentData : Clean7Bit\n%%LanguageLevel : 1\n%%Pages : 1\n"
                                  "%%EndComments\n\ngsave\n36 36 translate\n" +
                                  scale + " " + scale + " scale\n/picstr " +
                                  std::to_string(width * channels) + " string def\n" + sizes +
                                  "{currentfile picstr readhexstring pop}" +
                                  (channels == 1 ? "image\n" : "false 3 colorimage\n") + values +
                                  "\ngrestore\nshowpage\n");
  };
  expect(3, 2, 1, "3 2 scale\n3 2 8 [3 0 0 -2 0 2]", "540 372", "540 372", "168", "00017fffa00b");
  expect(1, 2, 3, "1 2 scale\n1 2 8 [1 0 0 -2 0 2]", "316 596", "316 596", "280", "007fa001ff0b");
  // 504 / 11 in single precision lies below the quotient, so that the box is cut to 539. Lines
  // break between pixels, behind more than 40 values.
  const std::string zeros(200, '0'), start = "00017fffa00b";
  expect(11, 8, 1, "11 8 scale\n11 8 8 [11 0 0 -8 0 8]", "539 402", "540 402.545", "45.8182",
         start + zeros.substr(0, 70) + "\n" + zeros.substr(0, 82) + "\n" + zeros.substr(0, 12));
}

// The picture is the raster's: what the region leaves of it is white.
TEST_F(EPS, PixelsOutsideTheRegionAreWhite) {
  Random random(1);
  const ZUMRect box(1, 1, 2, -1, 4, 300, 2, -1), raster(-1, 0, 2, -1, 5, 303, 2, -1);
  const auto image = MakeRandomImage<ZUMByte>(random, box, 3, Layout::kFramed);
  const auto paper = [&](int x, int y, int z, int t, int c) {
    return image.InP(x, y, z, t) ? image(x, y, z, t, c) : 255;
  };
  EXPECT_EQ(Written(image), Written(MakeByPoint<ZUMByte>(ZUMRoDRef(raster), 3, paper)));
}

}  // namespace
