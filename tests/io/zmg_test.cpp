#include "zuml/io/zmg.h"

#include <sstream>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/geometry/gridmoves.h"

namespace {

using namespace zuml_test;
using Ints = std::vector<std::int32_t>;

std::string Bytes(const Ints& ints) {
  return {reinterpret_cast<const char*>(ints.data()), ints.size() * sizeof(std::int32_t)};
}

// The fields are region, type, origin, channel origin and channels, stored extents and channels.
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

std::string Block(const ZUMGenericImage& image) {
  const ZUMSimpleRaster& block = *image.GetSimpleRaster();
  return {static_cast<const char*>(block.GetData()),
          static_cast<std::size_t>(block.GetSimpleRasterSz() * block.GetPixSz())};
}

// A view of channels 2 and 3 of 5, in a raster with margins.
TEST(ZMG, FilesAreLaidOutAsDocumented) {
  Random random(1);
  const ZUMRect box(1, 2, 3, 4, 2, 4, 3, 5);
  const auto view = MakeRandomImage<ZUMShort>(random, box, 5, Layout::kFramed).Channels(2, 3);
  EXPECT_EQ(Written(view, true),
            Header({1, 2, 3, 4, 2, 4, 3, 5, 2, -1, 1, 2, 4, -2, 2, 5, 7, 2, 3, 5}) + Block(view));
  EXPECT_EQ(
      Written(view, false),
      Header({1, 2, 3, 4, 2, 4, 3, 5, 2, 1, 2, 3, 4, 0, 2, 2, 3, 1, 2, 2}) + Block(ZUMCopy(view)));
  // Margins before the least coordinate have the greatest ones.
  constexpr int kLeast = std::numeric_limits<int>::min();
  const auto low = ZUMTranslate(ZUMTranslate(view, -1, -2, 0, 0), kLeast, kLeast, 0, 0);
  EXPECT_TRUE(SameImage(ZUMImage<ZUMShort>(Read(Written(low, true))), low));
}

// Several images in one stream, of all layouts and in both forms, and one without pixels.
template <class P>
void ExpectBackFromOneStream() {
  Random random(2);
  std::vector<ZUMImage<P>> images = {ZUMImage<P>()};
  for (const Layout layout : kLayouts) {
    images.push_back(MakeRandomImage<P>(random, MakeRandomBox(random, 9, 5, 3, 2), 2, layout));
  }
  for (const bool whole_raster : {false, true}) {
    std::stringstream stream;
    for (const auto& image : images) ZUMWriteZMG(image, stream, whole_raster);
    for (const auto& image : images) {
      const ZUMImage<P> read = ZUMReadZMG(stream);
      EXPECT_TRUE(SameImage(read, image));
      EXPECT_TRUE(image.EmptyP() || Written(read, true) == Written(image, whole_raster));
    }
    EXPECT_EQ(stream.get(), EOF);
  }
}

TEST(ZMG, ImagesComeBackFromOneStream) {
#define ZUML_EXPECT(TYPE) ExpectBackFromOneStream<TYPE>();
  ZUML_ALL_TYPES(ZUML_EXPECT)
#undef ZUML_EXPECT
}

// A large block is made once its beginning has come, and filled as far as the stream goes.
TEST(ZMG, LargeBlocksAreReadInPieces) {
  std::string bytes =
      Header({0, 0, 0, 0, 1 << 27, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, (1 << 27) + 1, 1, 1, 1, 1});
  for (int i = 0; i < 3'000'000; ++i) bytes += Bytes({i});
  const ZUMGenericImage image = Read(bytes);
  EXPECT_EQ(std::memcmp(image.GetData(), &bytes[105], 12'000'000), 0);
  EXPECT_EQ(Block(image).find_first_not_of('\0', 12'000'000), std::string::npos);
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
      {{{4, 4}}, outside},  // a region wider than the raster
      {{{9, 1}}, outside},  // a raster that begins behind the region
      {{{0, kLeast}}, beyond},
      {{{14, 2}}, outside},             // more channels than stored
      {{{13, -1}}, outside},            // a view behind them
      {{{13, 1}}, outside},             // or before them
      {{{15, -4}, {16, -4}}, outside},  // a raster without pixels
      {{{15, kMost}, {16, kMost}, {17, kMost}, {18, kMost}, {19, kMost}}, beyond},
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
}

TEST(ZMG, NamesAndVersionAreTested) {
  const Ints fields = {0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 4, 1, 1, 1, 1};
  const std::string old = Header(fields, -7), endless(1000, 'Z'),
                    region = "ZUMRegionOfDefinitionRead for ", missing = " not yet implemeted";
  const std::pair<std::string, std::string> cases[] = {
      {Header(fields, 2), "ZUMReadZMG version 2 not readable"},
      {endless, "ZUMReadZMG format error"},
      {old.substr(0, 9), "ZUMReadZMG format error"},
      {old.substr(0, 14), region + missing},
      {old.substr(0, 24), region + "ZUMRoDRect" + missing},
      {old.substr(0, 14) + endless, region + endless.substr(0, 64) + missing}};
  for (const auto& [bytes, message] : cases) {
    EXPECT_EQ(MessageOf([&, &text = bytes] { Read(text); }), message);
  }
  EXPECT_EQ(Read(old.substr(0, 104)).NPixels(), 0);
  // Bytes that are no value of a bool become one; what the file lacks is 0.
  EXPECT_EQ(Block(Read(old + "\2\1\xFF")), std::string("\1\1\1\0", 4));
}

}  // namespace
