#include "zuml/core/zumraster.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/core/zumrodrect.h"

using namespace zuml_test;

namespace {

using Point = ZUMBasePoint<int>;

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();

TEST(ZUMRaster, IsMadeOverRegionsFramesAndBoxes) {
  const ZUMRect box(-3, 4, 1, -2, 1, 6, 2, 0), frame(1, 2, 0, 3, 4, 0, 5, 6);
  const ZUMRect empty(2, 5, 3, 4, 6, 4, 9, 9);
  std::vector<ZUMShort> data(10 * 5 * 7 * 12 * 2);
  const auto check = [](const ZUMRaster& r, const Point& mp, const Point& s, void* pixels) {
    EXPECT_EQ(Point(r.GetMPX(), r.GetMPY(), r.GetMPZ(), r.GetMPT()), mp);
    EXPECT_EQ(Point(r.GetXSz(), r.GetYSz(), r.GetZSz(), r.GetTSz()), s);
    EXPECT_EQ(r.GetFrameSz(), r.GetZSz() * r.GetPlaneSz());
    EXPECT_EQ(r.GetRasterSz(), 2LL * s.x * s.y * s.z * s.t);
    EXPECT_EQ(r.GetSimpleRaster()->GetSimpleRasterSz(), r.GetRasterSz());
    EXPECT_TRUE(r.GetData() == pixels || (!pixels && s.x != 0));
    const char* const begin = static_cast<char*>(r.GetData());
    EXPECT_EQ(r.InRaster(begin) && r.InRaster(begin + 2 * r.GetRasterSz() - 1), s.x != 0);
    EXPECT_FALSE(r.InRaster(begin + 2 * r.GetRasterSz()));
  };
  for (void* d : {static_cast<void*>(data.data()), static_cast<void*>(nullptr)}) {
    const auto make = [d](auto... shape) { return ZUMRaster(shape..., 2, ZUMShortPixel, d); };
    check(make(ZUMRoDRect(box)), box.begin, {5, 3, 2, 3}, d);
    check(make(box), box.begin, {5, 3, 2, 3}, d);
    check(make(ZUMRoDRect(box), frame), {-4, 2, 1, -5}, {10, 5, 7, 12}, d);
    check(make(ZUMRoDRect(empty)), {}, {}, nullptr);
    check(make(empty), {}, {}, nullptr);
    EXPECT_EQ(MessageOf([&] { make(ZUMRoDRect(empty), frame); }),
              "ZUMRaster: It is not allowed create a framed raster with an empty RoD");
  }
}

TEST(ZUMRaster, RefusesBlocksThatCannotBeAddressed) {
  const auto check = [](const ZUMRect& box, const ZUMRect& frame, int csz, ZUMPixelType type,
                        const char* reason) {
    const auto text = MessageOf([&] { ZUMRaster(ZUMRoDRect(box), frame, csz, type); });
    EXPECT_NE(text.find(reason), std::string::npos) << text << reason;
  };
  const ZUMRect none, ten(0, 0, 0, 0, 9, 9, 0, 0);
  check({0, 0, 0, 0, 65535, 32767, 0, 0}, none, 1, ZUMBoolPixel, "65536 x 32768");
  check({kMin, 0, 0, 0, kMax, 0, 0, 0}, none, 0, ZUMBytePixel, "4294967296");
  check({0, 0, 0, 0, 65535, 65535, 65535, 65535}, none, 1, ZUMBoolPixel, "2147483647 bytes");
  check(ten, {kMax, 0, 0, 0, kMax, 0, 0, 0}, 1, ZUMBytePixel, "4294967304 x 10");
  check(ten, {0, -6, 0, 0, 0, -6, 0, 0}, 1, ZUMBytePixel, "negative size -2");
  check(ten, none, -1, ZUMBytePixel, "negative size -1");
  // What fits exactly is no error; the pixels are never touched.
  char byte;
  const ZUMRaster largest(ZUMRect(1, 0, 0, 0, kMax, 0, 0, 0), 1, ZUMBytePixel, &byte);
  EXPECT_EQ(largest.GetRasterSz(), kMax);
  EXPECT_EQ(ZUMRaster(ten, 0, ZUMBytePixel).GetData(), nullptr);
  EXPECT_EQ(ZUMRaster(ten, 1, static_cast<ZUMPixelType>(8)).GetData(), nullptr);
}

TEST(ZUMRaster, AddressesEveryPixelOfAView) {
  Random random(5);
  for (int i = 0; i < 24; ++i) {
    const ZUMRoDRef rod = MakeRandomBox(random, 5, 4, 3, 3);
    const auto type = static_cast<ZUMPixelType>(i % 8);
    const ZUMRaster whole(rod.RoD(), ZUMRect(i % 3, 1, 0, 2, 0, i % 2, 1, 0), 5, type);
    ZUMRaster view(ZUMRaster(whole, 1, 4), 1, 2);
    // The distance of two pixels by the sizes of the block alone.
    const auto distance = [&r = view](int x, int y, int z, int t, int c) {
      return (((c * r.GetTSz() + t) * r.GetZSz() + z) * r.GetYSz() + y) * r.GetXSz() + x;
    };
    ForEachPoint(rod, 2, [&](int x, int y, int z, int t, int c) {
      char* const p = static_cast<char*>(view.PixelAddress(x, y, z, t, c));
      const auto pixels = distance(x - view.GetMPX(), y - view.GetMPY(), z - view.GetMPZ(),
                                   t - view.GetMPT(), c + 2);
      ASSERT_EQ(p - static_cast<char*>(whole.GetData()), pixels * view.GetPixSz());
      int channel = -1;
      ASSERT_EQ(view.AddressCoord(p + view.GetPixSz() - 1, channel), Point(x, y, z, t));
      ASSERT_EQ(channel, c);
    });
    const auto any = [&] { return random.Int(-3, 3); };
    const Point d(any(), any(), any(), any());
    const int c = any(), step = distance(d.x, d.y, d.z, d.t, c), bytes = step * view.GetPixSz();
    EXPECT_EQ(view.Displacement(d, c), step);
    EXPECT_EQ(view.ByteDisplacement(d, c), bytes);
    EXPECT_EQ(view.SymmetricDisplacement(d, c), -step);
    EXPECT_EQ(view.ByteSymmetricDisplacement(d.x, d.y, d.z, d.t, c), -bytes);
    // Moving the origin moves the coordinates of all pixels.
    void* const p = view.PixelAddress({}, 1);
    view.AddMP(d);
    EXPECT_EQ(view.PixelAddress(d, 1), p);
  }
}

TEST(ZUMRaster, CutsChannels) {
  const ZUMRaster raster(ZUMRect(0, 0, 0, 0, 1, 1, 0, 0), 3, ZUMBytePixel);
  for (const auto& [c, csz] : {std::pair{-1, 1}, {0, 0}, {3, 1}, {2, 2}, {2, kMax}, {kMax, kMax}}) {
    EXPECT_EQ(MessageOf([&, first = c, n = csz] { ZUMRaster(raster, first, n); }),
              "ZUMRaster: channel cut not allowed c=" + std::to_string(c) +
                  ", csz=" + std::to_string(csz) + ", raster CSz=3");
  }
}

TEST(ZUMRaster, FlipYReversesTheLinesOfEachChannel) {
  Random random(6);
  for (const int lines : {1, 2, 3}) {
    const ZUMRect box(-1, 3, 0, 2, 4, 2 + lines, 2, 4);
    const auto image = MakeRandomImage<ZUMShort>(random, box, 3, Layout::kTight);
    const auto before = ZUMCopy(image);
    image.Channel(1).FlipY();  // the whole block, whatever the view
    EXPECT_TRUE(
        SameImage(image, MakeByPoint<ZUMShort>(box, 3, [&](int x, int y, int z, int t, int c) {
                    return before(x, box.begin.y + box.end.y - y, box.begin.z + box.end.z - z,
                                  box.begin.t + box.end.t - t, c);
                  })));
  }
  ZUMRaster(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 0, ZUMBytePixel).FlipY();
  ZUMRaster(ZUMRoDRect(), 2, ZUMBytePixel).FlipY();
}

}  // namespace
