#include "zuml/io/tiff.h"

#include <map>

#include "tests/io/filetest.h"
#include "tests/support/oddregion.h"

namespace {

using namespace zuml_test;

class Tiff : public FileTest {
 protected:
  std::string Refusal() const {
    return MessageOf([&] { ZUMReadTIFF(Path().c_str()); });
  }
};

template <class P>
class TiffOf : public Tiff {};
using Types = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal>;
TYPED_TEST_SUITE(TiffOf, Types);

TYPED_TEST(TiffOf, KeepsEveryPixelAndItsTypeButBool) {
  using P = TypeParam;
  using Q = std::conditional_t<std::same_as<P, ZUMBool>, ZUMByte, P>;
  Random random(1);
  for (const int channels : {1, 3}) {
    for (const Layout layout : kLayouts) {
      const auto image =
          MakeRandomImage<P>(random, MakeRandomBox(random, 70, 30), channels, layout);
      ZUMWriteTIFF(image, this->Path().c_str());
      const ZUMGenericImage read = ZUMReadTIFF(this->Path().c_str());
      ASSERT_EQ(read.GetType(), ZUMPixelTraits<Q>::kType);
      EXPECT_TRUE(SameImage(ZUMImage<Q>(read), ZUMImage<Q>(AtOrigin(image))));
      if constexpr (std::same_as<P, ZUMByte>) {
        ZUMWriteByteTIFF(image, this->Path().c_str());
        EXPECT_TRUE(SameImage(ZUMReadByteTIFF(this->Path().c_str()), AtOrigin(image)));
        EXPECT_TRUE(SameImage(ZUMImage<P>(ZUMReadTIFF(this->Path().c_str())), AtOrigin(image)));
      }
    }
  }
}

// Wrapped memory may hold any byte for true; a region that is no box has 0 beside its pixels.
TEST_F(Tiff, BoolsAre0Or1AndPixelsOutsideTheRegion0) {
  unsigned char memory[] = {0, 7, 1, 255};
  const ZUMRect box(0, 0, 0, 0, 1, 1, 0, 0);
  ZUMWriteTIFF(ZUMGenericImage(ZUMRoDRef(box), ZUMRaster(box, 1, ZUMBoolPixel, memory)),
               Path().c_str());
  const ZUMImage<ZUMByte> bools = ZUMReadTIFF(Path().c_str());
  const ZUMByte expected[] = {0, 1, 1, 1};
  EXPECT_TRUE(SameImage(bools, ZUMImage<ZUMByte>(box, 1, expected)));
  const ZUMImage<ZUMShort> odd(ZUMRoDRef(new OddRegion(box)), ZUMImage<ZUMShort>(box, 1, -5));
  ZUMWriteTIFF(odd, Path().c_str());
  const ZUMShort beside[] = {0, -5, -5, 0};
  EXPECT_TRUE(SameImage(ZUMImage<ZUMShort>(ZUMReadTIFF(Path().c_str())),
                        ZUMImage<ZUMShort>(box, 1, beside)));
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
  const auto read = [&](const std::string& file) {
    folder_.Write("a", file);
    return ZUMReadTIFF(Path().c_str());
  };
  EXPECT_TRUE(SameImage(ZUMImage<ZUMBool>(read(MakeTiff("\xa0\x7f", {{258, 1}}))),
                        Make3x2<ZUMBool>({1, 0, 1, 0, 1, 1})));
  const auto words = Make3x2<ZUMLong>({65535, 1, 256, 0x4142, 0, 32768});
  const std::string low("\xff\xff\x01\x00\x00\x01\x42\x41\0\0\0\x80", 12);
  const std::string high("\xff\xff\x00\x01\x01\x00\x41\x42\0\0\x80\0", 12);
  EXPECT_TRUE(SameImage(ZUMImage<ZUMLong>(read(MakeTiff(low, {{258, 16}}))), words));
  EXPECT_TRUE(SameImage(ZUMImage<ZUMLong>(read(MakeTiff(high, {{258, 16}}, true))), words));
  EXPECT_TRUE(SameImage(ZUMImage<ZUMShort>(read(MakeTiff(low, {{258, 16}, {339, 2}}))),
                        ZUMImage<ZUMShort>(words)));
  const std::string longs = std::string("\xff\xff\xff\xff", 4) + std::string(20, '\0');
  for (const unsigned format : {1u, 2u}) {
    EXPECT_TRUE(SameImage(ZUMImage<ZUMLong>(read(MakeTiff(longs, {{258, 32}, {339, format}}))),
                          Make3x2<ZUMLong>({-1, 0, 0, 0, 0, 0})));
  }
  // Channels side by side, more than a picture has.
  EXPECT_TRUE(
      SameImage(ZUMImage<ZUMByte>(read(MakeTiff("abcdefghijkl", {{277, 2}}))),
                Make3x2<ZUMByte>({'a', 'c', 'e', 'g', 'i', 'k', 'b', 'd', 'f', 'h', 'j', 'l'})));
}

TEST_F(Tiff, OrientationMirrorsTheRegionWithThePixels) {
  const char text[] = "abcdef";
  for (const auto& [orientation, x, y] :
       {std::tuple{1u, 1, 1}, {2u, -1, 1}, {3u, -1, -1}, {4u, 1, -1}}) {
    folder_.Write("a", MakeTiff(text, {{274, orientation}}));
    const ZUMImage<ZUMByte> read = ZUMReadTIFF(Path().c_str());
    EXPECT_EQ(read.Rect(),
              ZUMRect(x < 0 ? -2 : 0, y < 0 ? -1 : 0, 0, 0, x < 0 ? 0 : 2, y < 0 ? 0 : 1, 0, 0));
    for (int i = 0; i < 6; ++i) EXPECT_EQ(read(x * (i % 3), y * (i / 3)), text[i]);
    // The reader of pictures turns them upright, at (0,0).
    const auto upright = ZUMReadByteTIFF(Path().c_str());
    EXPECT_EQ(upright.Rect(), ZUMRect(0, 0, 0, 0, 2, 1, 0, 0));
    EXPECT_EQ(upright(x < 0 ? 2 : 0, y < 0 ? 1 : 0), 'a');
  }
}

TEST_F(Tiff, RefusesTagsWithTheToldTexts) {
  CapturedDiagnostics diagnostics;
  const auto handles = CountHandles();
  const struct {
    Tags changes;
    const char* message;
  } cases[] = {
      {{{256, 0}}, "TIFFTAG_IMAGEWIDTH not found"},
      {{{257, 0}}, "TIFFTAG_IMAGEWIDTH not found"},
      {{{256, 0}, {257, 0}}, "TIFFTAG_IMAGEWIDTH not found"},
      {{{339, 4}}, "TIFFTAG_SAMPLEFORMAT not accepted 4"},
      {{{258, 12}}, "TIFFTAG_BITSPERSAMPLE not accepted 12"},
      {{{339, 2}}, "TIFFTAG_BITSPERSAMPLE not accepted 8"},
      {{{339, 3}, {258, 16}}, "TIFFTAG_BITSPERSAMPLE not accepted 16"},
      {{{258, 1}, {277, 3}}, "TIFFTAG_PLANARCONFIG not accepted 1"},
      {{{274, 5}}, "TIFFTAG_ORIENTATION not accepted 5"},
      {{{257, 900}, {278, 900}}, "TIFF Error: "},
      {{{273, 5000}}, "TIFF Error: "},
      {{{256, 0x7fffffff}, {257, 0x7fffffff}, {278, 0x7fffffff}}, "ZUMReadTIFF: "},
      {{{256, 30000}, {257, 30000}, {278, 30000}}, "ZUMReadTIFF: "},
  };
  for (const auto& [changes, message] : cases) {
    folder_.Write("a", MakeTiff("abcdef", changes));
    EXPECT_EQ(Refusal().substr(0, std::string(message).size()), message) << Refusal();
  }
  EXPECT_EQ(diagnostics.Text().substr(0, 10), "Excepcion\n");
  EXPECT_EQ(CountHandles(), handles);
}

TEST_F(Tiff, ThePictureReaderLeavesWhatItCannotRead0) {
  // Doubles are no colours; the strip of the other file is outside of it.
  ZUMWriteTIFF(ZUMImage<ZUMReal>(ZUMRect(0, 0, 0, 0, 2, 1, 0, 0), 1, 0.5), Path().c_str());
  ZUMReadTIFF(Path().c_str());  // sets the handlers of the process, which must not matter
  const auto zero = Make3x2<ZUMByte>({0, 0, 0, 0, 0, 0});
  EXPECT_TRUE(SameImage(ZUMReadByteTIFF(Path().c_str()), zero));
  folder_.Write("a", MakeTiff("abcdef", {{273, 5000}}));
  EXPECT_TRUE(SameImage(ZUMReadByteTIFF(Path().c_str()), zero));
  folder_.Write("a", MakeTiff("abcdefabcdef", {{277, 2}}));
  EXPECT_EQ(MessageOf([&] { ZUMReadByteTIFF(Path().c_str()); }), "TIFF channels not accepted 2");
}

TEST_F(Tiff, RefusesComplexPixels) {
  const ZUMImage<ZUMComplex> image(PictureBox(3, 2), 1, 0.);
  EXPECT_EQ(MessageOf([&] { ZUMWriteTIFF(image, Path().c_str()); }),
            "ZUMWriteTIFF: don't accept ZUMComplex images");
}

}  // namespace
