#include "zuml/io/zmg.h"

#include <sstream>
#include <vector>

#include "tests/support/tempfiles.h"
#include "tests/support/testimages.h"

namespace {

using namespace zuml_test;
using Ints = std::vector<std::int32_t>;

std::string Bytes(const Ints& ints) {
  return {reinterpret_cast<const char*>(ints.data()), ints.size() * sizeof(std::int32_t)};
}

// The header's fields behind the region class: region, type, origin, channel origin and channels,
// stored extents and channels.
std::string Header(const Ints& fields, int version = 1) {
  return std::string("ZUMLImage\0", 10) + Bytes({version}) + std::string("ZUMRoDRect\0", 11) +
         Bytes(fields);
}

std::string Written(const ZUMGenericImage& image, bool whole_raster) {
  std::ostringstream stream;
  ZUMWriteZMG(image, stream, whole_raster);
  return stream.str();
}

ZUMGenericImage Read(const std::string& bytes) {
  std::istringstream stream(bytes);
  return ZUMReadZMG(stream);
}

// The pixels' bytes in sweep order.
std::string PixelBytes(const ZUMGenericImage& image) {
  std::string bytes;
  ForEachPoint(image, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    bytes.append(static_cast<const char*>(image.PixelAddress(x, y, z, t, c)),
                 static_cast<std::size_t>(image.GetPixSz()));
  });
  return bytes;
}

TEST(ZMG, FilesAreLaidOutAsDocumented) {
  Random random(1);
  const auto bytes =
      MakeRandomImage<ZUMByte>(random, ZUMRect(10, 20, 0, 0, 19, 29, 0, 0), 1, Layout::kCut);
  EXPECT_EQ(Written(bytes, false),
            Header({10, 20, 0, 0, 19, 29, 0, 0, 1, 10, 20, 0, 0, 0, 1, 10, 10, 1, 1, 1}) +
                PixelBytes(bytes));

  // The raster form of a view of channels 2 and 3 of 5: all five, and the view on them.
  const ZUMImage<ZUMShort> framed(ZUMRoDRef(1, 2, 3, 4, 2, 4, 3, 5),
                                  ZUMRect(1, 0, 2, 0, 1, 1, 0, 0), 5, ZUMShort{7});
  const auto view = framed.Channels(2, 3);
  const std::string block(static_cast<const char*>(view.GetData()), 4 * 4 * 3 * 2 * 5 * 2);
  EXPECT_EQ(Written(view, true),
            Header({1, 2, 3, 4, 2, 4, 3, 5, 2, 0, 2, 1, 4, -2, 2, 4, 4, 3, 2, 5}) + block);
  EXPECT_EQ(
      Written(view, false),
      Header({1, 2, 3, 4, 2, 4, 3, 5, 2, 1, 2, 3, 4, 0, 2, 2, 3, 1, 2, 2}) + PixelBytes(view));

  const double parts[] = {3.5, -2};
  EXPECT_EQ(Written(ZUMImage<ZUMComplex>(ZUMRoDRef(0, 0, 0, 0, 0, 0, 0, 0), 1, {3.5, -2}), false)
                .substr(105),
            std::string(reinterpret_cast<const char*>(parts), 16));
}

template <class P>
class ZMGTypes : public testing::Test {};
using AllTypes =
    testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal, ZUMComplex, ZUMPointer>;
TYPED_TEST_SUITE(ZMGTypes, AllTypes);

// Several images in one stream, of all layouts and in both forms, and one without pixels.
TYPED_TEST(ZMGTypes, ImagesComeBackFromOneStream) {
  Random random(2);
  std::vector<ZUMImage<TypeParam>> images = {ZUMImage<TypeParam>()};
  for (const Layout layout : kLayouts) {
    images.push_back(
        MakeRandomImage<TypeParam>(random, MakeRandomBox(random, 9, 5, 3, 2), 2, layout));
  }
  for (const bool whole_raster : {false, true}) {
    std::stringstream stream;
    for (const auto& image : images) ZUMWriteZMG(image, stream, whole_raster);
    stream << "end";
    for (const auto& image : images) {
      const ZUMImage<TypeParam> read = ZUMReadZMG(stream);
      EXPECT_TRUE(SameImage(read, image));
      if (image.EmptyP()) continue;
      const ZUMRaster tight(image.Rect(), 2, image.GetType());
      const ZUMRaster& expected = whole_raster ? static_cast<const ZUMRaster&>(image) : tight;
      EXPECT_EQ(read.GetSimpleRaster()->GetSimpleRasterSz(),
                expected.GetSimpleRaster()->GetSimpleRasterSz());
      EXPECT_EQ(read.AddressCoord(read.GetData()), expected.AddressCoord(expected.GetData()));
      EXPECT_EQ(read.GetMPC(), expected.GetMPC());
    }
    std::string rest;
    stream >> rest;
    EXPECT_EQ(rest, "end");
  }
}

TEST(ZMG, ShortStreamsGiveNoMessageBehindTheNames) {
  Random random(3);
  const auto image =
      MakeRandomImage<ZUMShort>(random, ZUMRect(-2, 3, 0, 0, 4, 5, 1, 0), 2, Layout::kTight);
  const std::string whole = Written(image, false);
  const std::string pixels = PixelBytes(image);
  for (std::size_t n = 0; n <= whole.size(); ++n) {
    const std::string part = whole.substr(0, n);
    if (n < 10) {
      EXPECT_EQ(MessageOf([&] { Read(part); }), "ZUMReadZMG format error");
    } else if (n < 25) {
      EXPECT_EQ(MessageOf([&] { Read(part); }), "ZUMRegionOfDefinitionRead for " +
                                                    std::string("ZUMRoDRect", n < 14 ? 0 : n - 14) +
                                                    " not yet implemeted");
    } else if (n < 105) {
      EXPECT_TRUE(Read(part).EmptyP());
    } else {
      std::string expected = pixels;
      std::fill(expected.begin() + static_cast<std::ptrdiff_t>(n - 105), expected.end(), '\0');
      EXPECT_EQ(PixelBytes(Read(part)), expected) << n;
    }
  }
}

// A large block is made once its beginning has come, and filled as far as the stream goes.
TEST(ZMG, LargeBlocksAreReadInPieces) {
  std::string bytes =
      Header({0, 0, 0, 0, 8191, 8299, 0, 0, 1, 0, 0, 0, 0, 0, 1, 8192, 8300, 1, 1, 1});
  bytes.resize(105 + (std::size_t{8192} * 8300));
  for (std::size_t i = 105; i < bytes.size(); ++i)
    bytes[i] = static_cast<char>(i * 2654435761u >> 24);
  const auto missing = static_cast<std::ptrdiff_t>(bytes.size()) - 5000000;
  for (const bool whole : {true, false}) {
    const ZUMGenericImage image = Read(whole ? bytes : bytes.substr(0, 5000000));
    if (!whole) std::fill_n(bytes.end() - missing, missing, '\0');
    EXPECT_EQ(std::memcmp(image.GetData(), bytes.data() + 105, bytes.size() - 105), 0);
  }
}

TEST(ZMG, HeadersThatDescribeNoImageAreRefused) {
  constexpr int kMost = std::numeric_limits<int>::max(), kLeast = std::numeric_limits<int>::min();
  const Ints good = {0, 0, 0, 0, 3, 3, 0, 0, 1, 0, 0, 0, 0, 0, 1, 4, 4, 1, 1, 1};
  const std::string outside = "the region or the channels are outside the raster";
  const std::string beyond = "is beyond the limits";
  struct Case {
    std::vector<std::pair<int, int>> fields;  // changed fields and their values
    std::string message;
  };
  const Case cases[] = {
      {{}, ""},
      {{{8, 8}}, "unknown pixel type 8"},
      {{{8, -1}}, "unknown pixel type -1"},
      {{{4, 4}}, outside},   // a region wider than the raster
      {{{9, 1}}, outside},   // a raster that begins behind the region
      {{{9, -1}}, outside},  // or ends before it
      {{{0, kLeast}}, beyond},
      {{{14, 2}}, outside},   // more channels than stored
      {{{13, -1}}, outside},  // a view behind them
      {{{13, 1}}, outside},   // or before them
      {{{14, kMost}, {13, kLeast}}, outside},
      {{{15, -4}, {16, -4}}, outside},  // a raster without pixels
      {{{19, -1}}, outside},
      {{{15, kMost}, {16, kMost}, {17, kMost}, {18, kMost}, {19, kMost}}, beyond},
      {{{15, kMost}, {16, kMost}, {19, 0}, {14, 0}}, beyond},
      {{{9, 1}, {15, kMost}}, beyond},  // coordinates past the last one
      {{{15, 1 << 14}, {16, 1 << 14}}, "too short for 268435456 bytes of pixels"},
      // Without pixels the region is free, within what sizes can tell.
      {{{4, -1}, {14, 9}, {15, -3}, {19, -9}}, ""},
      {{{4, -1}, {15, 0}, {14, kMost}, {13, -1}}, outside},
      {{{4, -1}, {15, 0}, {1, kLeast}, {5, kMost}}, beyond},
  };
  for (const Case& c : cases) {
    Ints fields = good;
    for (const auto& [field, value] : c.fields) fields[static_cast<std::size_t>(field)] = value;
    const std::string message = MessageOf([&] { Read(Header(fields) + std::string(16, 'x')); });
    EXPECT_TRUE(c.message.empty() ? message.empty() : message.ends_with(c.message)) << message;
  }

  EXPECT_EQ(MessageOf([&] { Read(Header(good, 2)); }), "ZUMReadZMG version 2 not readable");
  EXPECT_EQ(Read(Header(good, -7)).NPixels(), 16);
  const std::string endless(1000, 'Z'), start = Header({}).substr(0, 14);
  EXPECT_EQ(MessageOf([&] { Read(endless); }), "ZUMReadZMG format error");
  for (const std::string& name : {endless, std::string("ZUMRoD\0", 7)}) {
    EXPECT_EQ(MessageOf([&] { Read(start + name); }),
              ("ZUMRegionOfDefinitionRead for " + name.substr(0, 64)).c_str() +
                  std::string(" not yet implemeted"));
  }
}

TEST(ZMG, DamagedPixelsAndHeadersGiveAUsableImageOrAMessage) {
  const std::string pixels("\0\1\2\xFF", 4);
  EXPECT_EQ(PixelBytes(Read(Header({0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 4, 1, 1, 1, 1}) +
                            pixels)),
            std::string("\0\1\1\1", 4));
  Random random(4);
  const ZUMRect box(-1, 0, 0, 0, 1, 1, 1, 0);
  const auto image = MakeRandomImage<ZUMReal>(random, box, 2, Layout::kChannels);
  for (const bool whole_raster : {false, true}) {
    ForEachCorruption(Written(image, whole_raster), 105, [](const std::string& damaged) {
      MessageOf([&] { PixelBytes(Read(damaged)); });
    });
  }
}

}  // namespace
