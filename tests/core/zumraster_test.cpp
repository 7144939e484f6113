#include "zuml/core/zumraster.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/core/zumrodrect.h"

namespace {

using zuml_test::MessageOf;
using zuml_test::Random;
using Point = ZUMBasePoint<int>;

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();

// The pixel's place in the block by the sizes alone.
int Element(const ZUMRaster& r, int x, int y, int z, int t, int c) {
  int e = c - r.GetMPC();
  e = e * r.GetTSz() + t - r.GetMPT();
  e = e * r.GetZSz() + z - r.GetMPZ();
  e = e * r.GetYSz() + y - r.GetMPY();
  return e * r.GetXSz() + x - r.GetMPX();
}

TEST(ZUMRaster, IsMadeOverRegionsFramesAndBoxes) {
  const ZUMRect box(-3, 4, 1, -2, 1, 6, 2, 0), frame(1, 2, 0, 3, 4, 0, 5, 6);
  std::vector<ZUMShort> data(10 * 5 * 7 * 12 * 2);
  const auto check = [](const ZUMRaster& r, const Point& mp, const Point& sizes, void* pixels) {
    EXPECT_EQ(Point(r.GetMPX(), r.GetMPY(), r.GetMPZ(), r.GetMPT()), mp);
    EXPECT_EQ(Point(r.GetXSz(), r.GetYSz(), r.GetZSz(), r.GetTSz()), sizes);
    EXPECT_EQ(r.GetMPC(), 0);
    EXPECT_EQ(r.GetCSz(), 2);
    const long long plane = 1LL * sizes.x * sizes.y, channel = plane * sizes.z * sizes.t;
    EXPECT_EQ(r.GetLineSz(), sizes.x);
    EXPECT_EQ(r.GetPlaneSz(), plane);
    EXPECT_EQ(r.GetFrameSz(), plane * sizes.z);
    EXPECT_EQ(r.GetChannelSz(), channel);
    EXPECT_EQ(r.GetRasterSz(), 2 * channel);
    EXPECT_EQ(r.GetSimpleRaster()->GetSimpleRasterSz(), 2 * channel);
    EXPECT_TRUE(r.GetData() == pixels || (!pixels && channel != 0));
    const char* const begin = static_cast<char*>(r.GetData());
    EXPECT_FALSE(r.InRaster(nullptr));
    EXPECT_EQ(r.InRaster(begin), channel != 0);
    if (channel != 0) {
      EXPECT_TRUE(r.InRaster(begin + 4 * channel - 1));
      EXPECT_FALSE(r.InRaster(begin + 4 * channel));
    }
  };
  const ZUMRoDRect rod(box);
  for (void* d : {static_cast<void*>(data.data()), static_cast<void*>(nullptr)}) {
    check(ZUMRaster(rod, 2, ZUMShortPixel, d), box.begin, {5, 3, 2, 3}, d);
    check(ZUMRaster(box, 2, ZUMShortPixel, d), box.begin, {5, 3, 2, 3}, d);
    check(ZUMRaster(rod, frame, 2, ZUMShortPixel, d), {-4, 2, 1, -5}, {10, 5, 7, 12}, d);
    const ZUMRect empty(2, 5, 3, 4, 6, 4, 9, 9);
    check(ZUMRaster(ZUMRoDRect(empty), 2, ZUMShortPixel, d), {}, {}, nullptr);
    check(ZUMRaster(empty, 2, ZUMShortPixel, d), {}, {}, nullptr);
    EXPECT_EQ(MessageOf([&] { ZUMRaster(ZUMRoDRect(empty), frame, 2, ZUMShortPixel, d); }),
              "ZUMRaster: It is not allowed create a framed raster with an empty RoD");
  }
}

TEST(ZUMRaster, RefusesBlocksThatCannotBeAddressed) {
  const ZUMRect none, wide(0, 0, 0, 0, kMax, 0, 0, 0), ten(0, 0, 0, 0, 9, 9, 0, 0);
  const struct {
    ZUMRect box, frame;
    int csz;
    ZUMPixelType type;
    const char* reason;
  } cases[] = {
      {{0, 0, 0, 0, 65535, 65535, 0, 0}, none, 1, ZUMBytePixel, "65536 x 65536"},
      {{0, 0, 0, 0, 65535, 32767, 0, 0}, none, 1, ZUMBoolPixel, "65536 x 32768"},
      {{0, 0, 0, 0, 65535, 65535, 65535, 65535}, none, 65536, ZUMComplexPixel, "channels"},
      {{kMin, kMin, kMin, kMin, kMax, kMax, kMax, kMax}, none, 1, ZUMBytePixel, "4294967296"},
      {wide, none, 0, ZUMBytePixel, "2147483648 x 1 x"},
      {{0, 0, 0, 0, 9999, 9999, 0, 0}, none, 22, ZUMBytePixel, "limit of 2147483647 bytes"},
      {{0, 0, 0, 0, 9999, 9999, 0, 0}, none, 2, ZUMComplexPixel, "of 16 bytes"},
      {ten, {kMax, 0, 0, 0, kMax, 0, 0, 0}, 1, ZUMBytePixel, "4294967304 x 10"},
      {ten, {0, -6, 0, 0, 0, -6, 0, 0}, 1, ZUMBytePixel, "negative size -2"},
      {ten, none, -1, ZUMBytePixel, "negative size -1"}};
  for (const auto& test : cases) {
    const std::string text =
        MessageOf([&] { ZUMRaster(ZUMRoDRect(test.box), test.frame, test.csz, test.type); });
    EXPECT_NE(text.find(test.reason), std::string::npos) << text;
    if (test.frame != none) continue;
    EXPECT_EQ(MessageOf([&] { ZUMRaster(test.box, test.csz, test.type); }), text);
    EXPECT_EQ(MessageOf([&] { ZUMRaster(ZUMRoDRect(test.box), test.csz, test.type); }), text);
  }
  // What fits exactly is no error; the pixels are never touched.
  char byte;
  const ZUMRaster largest(ZUMRect(1, 0, 0, 0, kMax, 0, 0, 0), 1, ZUMBytePixel, &byte);
  EXPECT_EQ(largest.GetRasterSz(), kMax);
  EXPECT_EQ(ZUMRaster(ten, 0, ZUMBytePixel).GetData(), nullptr);
  EXPECT_EQ(ZUMRaster(ten, 1, static_cast<ZUMPixelType>(8)).GetData(), nullptr);
  EXPECT_EQ(ZUMSimpleRaster::PixelTypeToSz(static_cast<ZUMPixelType>(-1)), 0);
}

TEST(ZUMRaster, AddressesEveryPixelOfAView) {
  Random random(5);
  for (int i = 0; i < 24; ++i) {
    const ZUMRoDRef rod = zuml_test::MakeRandomBox(random, 5, 4, 3, 3);
    const ZUMRaster whole(rod.RoD(), ZUMRect(i % 3, 1, 0, 2, 0, i % 2, 1, 0), 5,
                          static_cast<ZUMPixelType>(i % 8));
    ZUMRaster view(ZUMRaster(whole, 1, 4), 1, 2);
    EXPECT_EQ(view.GetMPC(), -2);
    EXPECT_EQ(view.GetData(), whole.GetData());
    for (const ZUMRaster& r : {whole, view}) {
      zuml_test::ForEachPoint(rod, r.GetCSz(), [&](int x, int y, int z, int t, int c) {
        char* const p = static_cast<char*>(r.PixelAddress(x, y, z, t, c));
        ASSERT_EQ(p - static_cast<char*>(r.GetData()), Element(r, x, y, z, t, c) * r.GetPixSz());
        ASSERT_EQ(r.PixelAddress(Point(x, y, z, t), c), p);
        int channel = -1;
        ASSERT_EQ(r.AddressCoord(p, channel), Point(x, y, z, t));
        ASSERT_EQ(channel, c);
        ASSERT_EQ(r.AddressCoord(p + r.GetPixSz() - 1), Point(x, y, z, t));
      });
    }
    // A step is the distance between two pixels.
    const auto any = [&] { return random.Int(-3, 3); };
    const Point d(any(), any(), any(), any());
    const int c = any(),
              distance = Element(view, d.x, d.y, d.z, d.t, c) - Element(view, 0, 0, 0, 0, 0);
    const int bytes = distance * view.GetPixSz();
    EXPECT_EQ(view.Displacement(d, c), distance);
    EXPECT_EQ(view.Displacement(d.x, d.y, d.z, d.t, c), distance);
    EXPECT_EQ(view.ByteDisplacement(d, c), bytes);
    EXPECT_EQ(view.SymmetricDisplacement(d, c), -distance);
    EXPECT_EQ(view.ByteSymmetricDisplacement(d.x, d.y, d.z, d.t, c), -bytes);
    // Moving the origin moves the coordinates of all pixels; the channel stays.
    const Point b = rod.Begin();
    void* const p = view.PixelAddress(b, 1);
    view.AddMP(d);
    EXPECT_EQ(view.PixelAddress(b.x + d.x, b.y + d.y, b.z + d.z, b.t + d.t, 1), p);
    view.SubMP(d);
    EXPECT_EQ(view.PixelAddress(b, 1), p);
    view.SetMP(Point(7, 8, 9, 10));
    EXPECT_EQ(view.AddressCoord(view.GetData()), Point(7, 8, 9, 10));
  }
}

TEST(ZUMRaster, CutsChannels) {
  const ZUMRaster raster(ZUMRect(0, 0, 0, 0, 1, 1, 0, 0), 3, ZUMBytePixel);
  for (const int c : {kMin, -1, 0, 1, 2, 3, kMax}) {
    for (const int csz : {kMin, -1, 0, 1, 2, 3, 4, kMax}) {
      const bool allowed = c >= 0 && csz >= 1 && c + std::int64_t{csz} <= 3;
      const std::string message = "ZUMRaster: channel cut not allowed c=" + std::to_string(c) +
                                  ", csz=" + std::to_string(csz) + ", raster CSz=3";
      EXPECT_EQ(MessageOf([&] { ZUMRaster(raster, c, csz); }), allowed ? "" : message);
    }
  }
}

TEST(ZUMRaster, FlipYReversesTheLinesOfEachChannel) {
  Random random(6);
  for (int i = 0; i < 40; ++i) {
    ZUMRaster raster(zuml_test::MakeRandomBox(random, 4, 4, 3, 3), 3,
                     i % 2 ? ZUMComplexPixel : ZUMShortPixel);
    const auto line = raster.GetXSz() * raster.GetPixSz();
    const auto lines = static_cast<std::ptrdiff_t>(raster.GetChannelSz() / raster.GetXSz());
    std::vector<unsigned char> bytes(static_cast<std::size_t>(3 * lines * line)), flipped;
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(i));
    std::memcpy(raster.GetData(), bytes.data(), bytes.size());
    ZUMRaster(raster, 1, 1).FlipY();  // the whole block, whatever the view
    for (std::ptrdiff_t c = 0; c < 3; ++c) {
      for (std::ptrdiff_t l = lines; l-- > 0;) {
        const auto from = bytes.begin() + (c * lines + l) * line;
        flipped.insert(flipped.end(), from, from + line);
      }
    }
    EXPECT_EQ(std::memcmp(raster.GetData(), flipped.data(), flipped.size()), 0);
  }
  ZUMRaster(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 0, ZUMBytePixel).FlipY();
  ZUMRaster(ZUMRoDRect(), 2, ZUMBytePixel).FlipY();
}

}  // namespace
