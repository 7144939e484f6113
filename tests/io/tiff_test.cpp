#include "zuml/io/tiff.h"

#include <map>

#include "tests/io/filetest.h"

namespace {

using namespace zuml_test;

using Tags = std::map<std::uint16_t, std::uint32_t>;

class Tiff : public FileTest {
 protected:
  // The file of an image with other values for some of its tags.
  std::string File(const ZUMGenericImage& image, const Tags& changes) const {
    ZUMWriteTIFF(image, Path().c_str());
    std::string file = ReadFile(Path());
    std::uint32_t at = 0, tag = 0, tags = 0;
    std::memcpy(&at, &file[4], 4);
    std::memcpy(&tags, &file[at], 2);
    for (at += 2; tags > 0; --tags, at += 12) {
      std::memcpy(&tag, &file[at], 2);
      const auto change = changes.find(static_cast<std::uint16_t>(tag));
      if (change == changes.end()) continue;
      const std::uint32_t entry[] = {tag | 4 << 16, 1, change->second};
      std::memcpy(&file[at], entry, 12);
    }
    return file;
  }
  template <class P, class Q = P>
  void ExpectKept() const {
    Random random(1);
    for (const Layout layout : kLayouts) {
      const auto image = MakeRandomImage<P>(random, MakeRandomBox(random, 70, 30), 3, layout);
      const ZUMImage<P> odd(ZUMRoDRef(new OddRegion(image.Rect())), image);
      for (const auto& written : {image, odd}) {
        const auto kept = [&](int x, int y, int z, int t, int c) {
          return written.InP(x, y, z, t) ? image(x, y, z, t, c) : P();
        };
        const ZUMGenericImage read = ReadBytes(ZUMReadTIFF, File(written, {}));
        EXPECT_TRUE(
            SameImage(ZUMImage<Q>(read), ZUMImage<Q>(AtOrigin(MakeByPoint<P>(image, 3, kept)))));
      }
    }
  }
  template <class P, class Q>
  void ExpectRead(const ZUMGenericImage& image, const Tags& changes,
                  std::initializer_list<Q> pixels) const {
    const ZUMImage<P> read = ReadBytes(ZUMReadTIFF, File(image, changes));
    EXPECT_TRUE(SameImage(
        read, ZUMImage<P>(PictureBox(3, 2), static_cast<int>(pixels.size() / 6), pixels.begin())));
  }

  const ZUMByte text_[13] = "abcdefghijkl";
  const ZUMImage<ZUMByte> letters_{PictureBox(3, 2), 1, text_};
};

TEST_F(Tiff, KeepsEveryPixelAndItsTypeButBool) {
  ExpectKept<ZUMBool, ZUMByte>();
  ExpectKept<ZUMByte>();
  ExpectKept<ZUMShort>();
  ExpectKept<ZUMLong>();
  ExpectKept<ZUMSReal>();
  ExpectKept<ZUMReal>();
}

TEST_F(Tiff, SampleFormatAndBitsGiveThePixelType) {
  const ZUMByte bits[] = {0xA0, 0x7F};
  ExpectRead<ZUMBool>(ZUMImage<ZUMByte>(PictureBox(1, 2), 1, bits), {{256, 3}, {258, 1}},
                      {true, false, true, false, true, true});
  const ZUMShort words[] = {-1, 1, 256, -32768, 0, 9};
  ExpectRead<ZUMLong>(ZUMImage<ZUMShort>(PictureBox(3, 2), 1, words), {{339, 1}},
                      {65535, 1, 256, 32768, 0, 9});
  const ZUMLong longs[] = {-1, 1, 256, -32768, 0, 9};
  ExpectRead<ZUMLong>(ZUMImage<ZUMLong>(PictureBox(3, 2), 1, longs), {{339, 1}},
                      {-1, 1, 256, -32768, 0, 9});
  // Channels side by side, another number than a picture has.
  ExpectRead<ZUMByte, ZUMByte>(ZUMImage<ZUMByte>(PictureBox(6, 2), 1, text_),
                               {{256, 3}, {277, 2}, {284, 1}},
                               {'a', 'c', 'e', 'g', 'i', 'k', 'b', 'd', 'f', 'h', 'j', 'l'});
  // Wrapped memory may hold any byte for true.
  ZUMByte memory[] = {0, 7, 1, 0, 1, 255};
  const ZUMRect box = PictureBox(3, 2);
  ExpectRead<ZUMByte, ZUMByte>(
      ZUMGenericImage(ZUMRoDRef(box), ZUMRaster(box, 1, ZUMBoolPixel, memory)), {},
      {0, 1, 1, 0, 1, 1});
}

TEST_F(Tiff, OrientationMirrorsTheRegionWithThePixels) {
  for (const auto& [orientation, x, y] :
       {std::tuple{1u, 1, 1}, {2u, -1, 1}, {3u, -1, -1}, {4u, 1, -1}}) {
    const std::string file = File(letters_, {{274, orientation}});
    const ZUMImage<ZUMByte> read = ReadBytes(ZUMReadTIFF, file);
    EXPECT_EQ(read.Rect(),
              ZUMRect(x < 0 ? -2 : 0, y < 0 ? -1 : 0, 0, 0, x < 0 ? 0 : 2, y < 0 ? 0 : 1, 0, 0));
    for (int i = 0; i < 6; ++i) EXPECT_EQ(read(x * (i % 3), y * (i / 3)), text_[i]);
    // The reader of pictures turns them upright, at (0,0).
    EXPECT_EQ(ReadBytes(ZUMReadByteTIFF, file)(x < 0 ? 2 : 0, y < 0 ? 1 : 0), 'a');
  }
}

TEST_F(Tiff, RefusesTagsWithTheToldTexts) {
  const std::string start = "ZUMReadTIFF: \"" + Path() + "\" is ";
  const std::pair<Tags, std::string> cases[] = {
      {{{256, 0}}, "TIFFTAG_IMAGEWIDTH not found"},
      {{{257, 0}}, "TIFFTAG_IMAGEWIDTH not found"},
      {{{339, 4}}, "TIFFTAG_SAMPLEFORMAT not accepted 4"},
      {{{258, 12}}, "TIFFTAG_BITSPERSAMPLE not accepted 12"},
      {{{339, 2}}, "TIFFTAG_BITSPERSAMPLE not accepted 8"},
      {{{258, 1}, {277, 3}, {284, 1}}, "TIFFTAG_PLANARCONFIG not accepted 1"},
      {{{274, 5}}, "TIFFTAG_ORIENTATION not accepted 5"},
      {{{257, 900}, {278, 900}}, "TIFF Error: *"},
      {{{273, 5000}}, "TIFF Error: *"},
      {{{256, 60000}, {257, 60000}, {278, 60000}},
       start + "beyond the limits with 60000 x 60000 pixels with 1 channels"},
      {{{256, 30000}, {257, 30000}, {278, 30000}},
       start + "too short for 30000 x 30000 pixels with 1 channels"},
      {{{256, 1}, {257, 900000}, {278, 900000}},
       start + "too short for 1 x 900000 pixels with 1 channels"}};
  for (const auto& [tags, message] : cases) {
    ExpectMessages(ZUMReadTIFF, {{File(letters_, tags), message}});
    EXPECT_EQ(diagnostics_.Take(), "Excepcion\n");
  }
}

// Doubles are no colours, and a strip may lie outside of its file. The handlers that the other
// reader has set must not matter.
TEST_F(Tiff, ThePictureReaderLeavesWhatItCannotRead0) {
  const ZUMImage<ZUMByte> zero(PictureBox(3, 2), 1, ZUMByte{0});
  for (const std::string& file :
       {File(ZUMImage<ZUMReal>(letters_), {}), File(letters_, {{273, 5000}})}) {
    MessageOf([&] { ReadBytes(ZUMReadTIFF, file); });
    EXPECT_TRUE(SameImage(ReadBytes(ZUMReadByteTIFF, file), zero));
  }
  ExpectMessages(ZUMReadByteTIFF, {{File(letters_, {{277, 2}}), "TIFF channels not accepted 2"}});
}

}  // namespace
