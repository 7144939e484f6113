#include "zuml/io/eps.h"

#include <sstream>

#include "tests/support/oddregion.h"
#include "tests/support/tempfiles.h"
#include "tests/support/testimages.h"

namespace {

using namespace zuml_test;

class EPS : public testing::Test {
 protected:
  std::string Written(const ZUMImage<ZUMByte>& image) const {
    ZUMWriteEPS(image, path_.c_str());
    return ReadFile(path_);
  }
  std::vector<std::string> Lines(const ZUMImage<ZUMByte>& image) const {
    std::istringstream text(Written(image));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  }
  static ZUMImage<ZUMByte> MakeGrey(int width, int height, int channels) {
    return {ZUMRect(2, 3, 0, 0, width + 1, height + 2, 0, 0), channels, ZUMByte{0xAB}};
  }

  TempFolder folder_;
  std::string path_ = folder_.Path("out.eps");
};

TEST_F(EPS, FilesAreWrittenLineForLine) {
  const ZUMByte pixels[] = {0, 1, 0x7F, 0xFF, 0xA0, 0x0B};
  const auto expected = [&](const std::string& corner, const std::string& scale,
                            const std::string& rest) {
    return "% !PS - Adobe - 3.0 EPSF - 3.0\n%%Creator: (ZUML)\n%%Title : (" + path_ +
           ")\n%%BoundingBox: 36 36 " + corner + "\n%%HiResBoundingBox: 36 36 " + corner +
           "\n%%DocumentData : Clean7Bit\n%%LanguageLevel : 1\n%%Pages : 1\n%%EndComments\n\n"
           "gsave\n36 36 translate\n" +
           scale + " " + scale + " scale\n/picstr 3 string def\n" + rest + "\ngrestore\nshowpage\n";
  };
  EXPECT_EQ(Written(ZUMImage<ZUMByte>(ZUMRect(-1, 4, 0, 0, 1, 5, 0, 0), 1, pixels)),
            expected("540 372", "168",
                     "3 2 scale\n3 2 8 [3 0 0 -2 0 2]{currentfile picstr readhexstring pop}image\n"
                     "00017fffa00b"));
  EXPECT_EQ(Written(ZUMImage<ZUMByte>(ZUMRect(0, 0, 0, 0, 0, 1, 0, 0), 3, pixels)),
            expected("316 596", "280",
                     "1 2 scale\n1 2 8 [1 0 0 -2 0 2]{currentfile picstr readhexstring pop}false 3 "
                     "colorimage\n007fa001ff0b"));
  // 504 / 11 in single precision lies below the quotient, so the box is cut to 539.
  EXPECT_EQ(Lines(MakeGrey(11, 1, 1))[3], "%%BoundingBox: 36 36 539 81");
  EXPECT_EQ(Lines(MakeGrey(11, 1, 1))[4], "%%HiResBoundingBox: 36 36 540 81.8182");
  EXPECT_EQ(Lines(MakeGrey(1100, 3, 3))[12], "0.254545 0.254545 scale");
}

TEST_F(EPS, LinesBreakBehindFortyValues) {
  const auto values = [&](int width, int height, int channels) {
    std::vector<std::size_t> sizes;
    const auto lines = Lines(MakeGrey(width, height, channels));
    for (std::size_t i = 16; i + 2 < lines.size(); ++i) sizes.push_back(lines[i].size() / 2);
    return sizes;
  };
  using Sizes = std::vector<std::size_t>;
  EXPECT_EQ(values(41, 1, 1), (Sizes{41}));
  EXPECT_EQ(values(42, 2, 1), (Sizes{41, 41, 2}));
  EXPECT_EQ(values(5, 6, 3), (Sizes{42, 42, 6}));
  EXPECT_EQ(values(700, 410, 1), Sizes(7000, 41));
}

// The picture is the raster's: what the region leaves of it is white.
TEST_F(EPS, PixelsOutsideTheRegionAreWhite) {
  Random random(1);
  const ZUMRect box(1, 1, 2, -1, 4, 3, 2, -1);
  for (const int channels : {1, 3}) {
    for (const Layout layout : kLayouts) {
      const auto image = MakeRandomImage<ZUMByte>(random, box, channels, layout);
      for (const auto& written : {image, ZUMImage<ZUMByte>(new OddRegion(box), image)}) {
        const ZUMRect raster(image.GetMPX(), image.GetMPY(), 2, -1,
                             image.GetMPX() + image.GetXSz() - 1,
                             image.GetMPY() + image.GetYSz() - 1, 2, -1);
        const auto full = MakeByPoint<ZUMByte>(
            ZUMRoDRef(raster), channels, [&](int x, int y, int z, int t, int c) {
              return written.InP(x, y, z, t) ? image(x, y, z, t, c) : 255;
            });
        EXPECT_EQ(Written(written), Written(full));
      }
    }
  }
}

}  // namespace
