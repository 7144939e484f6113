#include "zuml/io/tiff.h"

#include <map>

#include "tests/io/filetest.h"

namespace {

using namespace zuml_test;

using Tiff = FileTest;

template <class P>
class TiffOf : public Tiff {};
using Types = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal>;
TYPED_TEST_SUITE(TiffOf, Types);

TYPED_TEST(TiffOf, KeepsEveryPixelAndItsTypeButBool) {
  using P = TypeParam;
  using Q = std::conditional_t<std::same_as<P, ZUMBool>, ZUMByte, P>;
  Random random(1);
  for (const Layout layout : kLayouts) {
    const auto image = MakeRandomImage<P>(random, MakeRandomBox(random, 70, 30), 3, layout);
    const auto odd = MakeByPoint<P>(image, 3, [&](int x, int y, int z, int t, int c) {
      return (x + y) % 2 ? image(x, y, z, t, c) : P();
    });
    for (const bool box : {true, false}) {
      ZUMWriteTIFF(box ? image : ZUMImage<P>(ZUMRoDRef(new OddRegion(image.Rect())), image),
                   this->Path().c_str());
      const ZUMGenericImage read = ZUMReadTIFF(this->Path().c_str());
      EXPECT_TRUE(SameImage(ZUMImage<Q>(read), ZUMImage<Q>(AtOrigin(box ? image : odd))));
    }
  }
}

using Tags = std::map<int, unsigned>;

// An uncompressed file of 3 x 2 pixels in one strip, with the tags changed; 0 drops a tag.
std::string MakeTiff(const std::string& data, const Tags& changes, bool big_endian = false) {
  Tags tags = {{256, 3}, {257, 2}, {258, 8}, {259, 1}, {262, 1}, {273, 8}, {277, 1}, {278, 2}};
  tags[279] = static_cast<unsigned>(data.size());
  for (const auto& [tag, value] : changes) tags[tag] = value;
  std::erase_if(tags, [](const auto& tag) { return tag.second == 0; });
  std::string file;
  const auto put = [&](unsigned value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
      file += static_cast<char>(value >> 8 * (big_endian ? bytes - 1 - i : i));
    }
  };
  file += big_endian ? "MM" : "II";
  put(42, 2);
  put(static_cast<unsigned>(8 + (data.size() + 1) / 2 * 2), 4);
  file += data;
  if (data.size() % 2) file += '\0';
  put(static_cast<unsigned>(tags.size()), 2);
  for (const auto& [tag, value] : tags) {
    const bool wide = tag == 256 || tag == 257 || tag == 273 || tag == 278 || tag == 279;
    put(static_cast<unsigned>(tag), 2);
    put(wide ? 4 : 3, 2);
    put(1, 4);
    put(value, wide ? 4 : 2);
    if (!wide) put(0, 2);
  }
  put(0, 4);
  return file;
}

template <class P>
ZUMImage<P> Make3x2(std::initializer_list<P> pixels) {
  return MakeByPoint<P>(
      ZUMRoDRef(0, 0, 0, 0, 2, 1, 0, 0), static_cast<int>(pixels.size()) / 6,
      [&](int x, int y, int, int, int c) { return pixels.begin()[c * 6 + y * 3 + x]; });
}

TEST_F(Tiff, SampleFormatAndBitsGiveThePixelType) {
  const auto read = [&](const std::string& data, const Tags& tags, bool big_endian = false) {
    return ReadBytes(ZUMReadTIFF, MakeTiff(data, tags, big_endian));
  };
  EXPECT_TRUE(SameImage(ZUMImage<ZUMBool>(read("\xa0\x7f", {{258, 1}})),
                        Make3x2<ZUMBool>({1, 0, 1, 0, 1, 1})));
  const auto words = Make3x2<ZUMLong>({65535, 1, 256, 0x4142, 0, 32768});
  const std::string low("\xff\xff\x01\x00\x00\x01\x42\x41\0\0\0\x80", 12);
  const std::string high("\xff\xff\x00\x01\x01\x00\x41\x42\0\0\x80\0", 12);
  EXPECT_TRUE(SameImage(ZUMImage<ZUMLong>(read(low, {{258, 16}})), words));
  EXPECT_TRUE(SameImage(ZUMImage<ZUMLong>(read(high, {{258, 16}}, true)), words));
  EXPECT_TRUE(SameImage(ZUMImage<ZUMLong>(read(std::string(24, '\xff'), {{258, 32}})),
                        Make3x2<ZUMLong>({-1, -1, -1, -1, -1, -1})));
  // Channels side by side, more than a picture has.
  EXPECT_TRUE(
      SameImage(ZUMImage<ZUMByte>(read("abcdefghijkl", {{277, 2}})),
                Make3x2<ZUMByte>({'a', 'c', 'e', 'g', 'i', 'k', 'b', 'd', 'f', 'h', 'j', 'l'})));
  // Wrapped memory may hold any byte for true.
  unsigned char memory[] = {0, 7, 1, 0, 1, 255};
  const ZUMRect box = PictureBox(3, 2);
  ZUMWriteTIFF(ZUMGenericImage(ZUMRoDRef(box), ZUMRaster(box, 1, ZUMBoolPixel, memory)),
               Path().c_str());
  EXPECT_TRUE(SameImage(ZUMImage<ZUMByte>(ZUMReadTIFF(Path().c_str())),
                        Make3x2<ZUMByte>({0, 1, 1, 0, 1, 1})));
}

TEST_F(Tiff, OrientationMirrorsTheRegionWithThePixels) {
  const std::string text = "abcdef";
  for (const auto& [orientation, x, y] :
       {std::tuple{1u, 1, 1}, {2u, -1, 1}, {3u, -1, -1}, {4u, 1, -1}}) {
    const std::string file = MakeTiff(text, {{274, orientation}});
    const ZUMImage<ZUMByte> read = ReadBytes(ZUMReadTIFF, file);
    EXPECT_EQ(read.Rect(),
              ZUMRect(x < 0 ? -2 : 0, y < 0 ? -1 : 0, 0, 0, x < 0 ? 0 : 2, y < 0 ? 0 : 1, 0, 0));
    for (int i = 0; i < 6; ++i) EXPECT_EQ(read(x * (i % 3), y * (i / 3)), text[i]);
    // The reader of pictures turns them upright, at (0,0).
    EXPECT_EQ(ReadBytes(ZUMReadByteTIFF, file)(x < 0 ? 2 : 0, y < 0 ? 1 : 0), 'a');
  }
}

TEST_F(Tiff, RefusesTagsWithTheToldTexts) {
  const auto file = [](const Tags& changes) { return MakeTiff("abcdef", changes); };
  ExpectMessages(
      ZUMReadTIFF,
      {{file({{256, 0}}), "TIFFTAG_IMAGEWIDTH not found"},
       {file({{257, 0}}), "TIFFTAG_IMAGEWIDTH not found"},
       {file({{339, 4}}), "TIFFTAG_SAMPLEFORMAT not accepted 4"},
       {file({{258, 12}}), "TIFFTAG_BITSPERSAMPLE not accepted 12"},
       {file({{339, 2}}), "TIFFTAG_BITSPERSAMPLE not accepted 8"},
       {file({{258, 1}, {277, 3}}), "TIFFTAG_PLANARCONFIG not accepted 1"},
       {file({{274, 5}}), "TIFFTAG_ORIENTATION not accepted 5"},
       {file({{257, 900}, {278, 900}}), "TIFF Error: *"},
       {file({{273, 5000}}), "TIFF Error: *"},
       {file({{256, 0x7fffffff}, {257, 0x7fffffff}, {278, 0x7fffffff}}),
        "ZUMReadTIFF: \"" + Path() +
            "\" is beyond the limits with 2147483647 x 2147483647 pixels with 1 channels"},
       {file({{256, 30000}, {257, 30000}, {278, 30000}}),
        "ZUMReadTIFF: \"" + Path() + "\" is too short for 30000 x 30000 pixels with 1 channels"},
       {file({{256, 1}, {257, 900000}, {278, 900000}}),
        "ZUMReadTIFF: \"" + Path() + "\" is too short for 1 x 900000 pixels with 1 channels"}});
  EXPECT_TRUE(diagnostics_.Take().starts_with("Excepcion\nExcepcion\n"));
}

// Doubles are no colours, and a strip may lie outside of its file. The handlers that the other
// reader has set must not matter.
TEST_F(Tiff, ThePictureReaderLeavesWhatItCannotRead0) {
  const auto zero = Make3x2<ZUMByte>({0, 0, 0, 0, 0, 0});
  for (const std::string& file :
       {MakeTiff(std::string(48, '1'), {{258, 64}, {339, 3}}), MakeTiff("abcdef", {{273, 5000}})}) {
    MessageOf([&] { ReadBytes(ZUMReadTIFF, file); });
    EXPECT_TRUE(SameImage(ReadBytes(ZUMReadByteTIFF, file), zero));
  }
  ExpectMessages(ZUMReadByteTIFF,
                 {{MakeTiff("abcdefabcdef", {{277, 2}}), "TIFF channels not accepted 2"}});
}

}  // namespace
