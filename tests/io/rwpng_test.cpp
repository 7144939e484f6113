#include "zuml/io/rwpng.h"

#include <sys/resource.h>

#include "tests/io/filetest.h"
#include "tests/support/oddregion.h"

namespace {

using namespace zuml_test;

class Png : public FileTest {
 protected:
  ZUMImage<ZUMByte> WriteAndRead(const ZUMImage<ZUMByte>& image) const {
    ZUMWritePNG(image, Path().c_str());
    return ZUMReadPNG(Path().c_str());
  }
};

// The picture comes back at (0,0), whatever the layout and the coordinates it had.
TEST_F(Png, KeepsEveryPixelOfOneToFourChannels) {
  Random random(1);
  for (int channels = 1; channels <= 4; ++channels) {
    for (const Layout layout : kLayouts) {
      const auto image =
          MakeRandomImage<ZUMByte>(random, MakeRandomBox(random, 40, 20), channels, layout);
      EXPECT_TRUE(SameImage(WriteAndRead(image), AtOrigin(image)));
    }
  }
}

TEST_F(Png, PixelsOutsideTheRegionAre0AndAPlaneOfAVolumeIsAPicture) {
  const ZUMRect box(0, 0, 0, 0, 4, 2, 0, 0);
  const ZUMImage<ZUMByte> odd(ZUMRoDRef(new OddRegion(box)), ZUMImage<ZUMByte>(box, 2, 9));
  ForEachPoint(box, 2, [read = WriteAndRead(odd)](int x, int y, int, int, int c) {
    EXPECT_EQ(read(x, y, 0, 0, c), (x + y) % 2 ? 9 : 0);
  });
  Random random(2);
  const auto volume =
      MakeRandomImage<ZUMByte>(random, ZUMRect(0, 0, 3, 0, 4, 2, 5, 0), 1, Layout::kTight);
  EXPECT_EQ(WriteAndRead(volume.Plane(4))(2, 1), volume(2, 1, 4));
}

TEST_F(Png, RefusesWithTheToldTexts) {
  const auto image = [](int channels, int z, int t) {
    return ZUMImage<ZUMByte>(ZUMRect(0, 0, 0, 0, 3, 3, z, t), channels, 0);
  };
  const auto write = [&](const ZUMImage<ZUMByte>& what, const std::string& path) {
    return MessageOf([&] { ZUMWritePNG(what, path.c_str()); });
  };
  const auto handles = CountHandles();
  EXPECT_EQ(write(image(5, 1, 1), Path()),
            "WritePNG: Image with more of4 channeles are not allowed");
  EXPECT_EQ(write(image(1, 1, 1), Path()), "WritePNG: 3D images are not allowed");
  EXPECT_EQ(write(image(1, 0, 1), Path()), "WritePNG: multiframe images are not allowed");
  EXPECT_EQ(write(ZUMNullImageByte(), Path()), "png_write failed");

  const auto read = [](const std::string& path) {
    return MessageOf([&] { ZUMReadPNG(path.c_str()); });
  };
  ZUMWritePNG(image(3, 0, 0), Path().c_str());
  const std::string bytes = ReadFile(Path());
  for (std::size_t n = 0; n < bytes.size(); ++n) {
    folder_.Write("a", bytes.substr(0, n));
    EXPECT_EQ(read(Path()), "error \"" + Path() + "\" not found") << n;
  }
  EXPECT_EQ(CountHandles(), handles);
}

// A text of 1.6 gigabytes is announced between the header and the end of the file.
TEST_F(Png, ATextTakesNoMemory) {
  ZUMWritePNG(ZUMImage<ZUMByte>(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 1, 5), Path().c_str());
  constexpr std::size_t kBehindHeader = 33;
  folder_.Write("a", ReadFile(Path()).insert(kBehindHeader, "\x64\x64\x64\x64zTXtfew bytes"));
  const auto get_peak_kilobytes = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
  };
  const auto peak = get_peak_kilobytes();
  EXPECT_EQ(MessageOf([&] { ZUMReadPNG(Path().c_str()); }), "error \"" + Path() + "\" not found");
  EXPECT_LT(get_peak_kilobytes() - peak, 200'000);
}

// A header alone, of 30000 x 30000 pixels of one bit, with a right checksum.
TEST_F(Png, RefusesAPictureThatItsFileCannotHold) {
  folder_.Write("a", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x75\x30\0\0\x75\x30\x01\0\0\0\0"
                                 "\x4e\x5c\xc5\x17\0\0\0\0IDAT\x35\xaf\x06\x1e",
                                 45));
  EXPECT_EQ(MessageOf([&] { ZUMReadPNG(Path().c_str()); }),
            "ZUMReadPNG: \"" + Path() + "\" is too short for 30000 x 30000 pixels with 1 channels");
}

}  // namespace
