#include "zuml/geometry/scaling.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/otherregion.h"
#include "tests/support/testimages.h"
#include "zuml/core/pixelarith.h"

namespace {

using namespace zuml_test;

// The mean of the block's pixels that the image's region holds, by the rule of the factor.
template <class P>
P BlockMean(const ZUMImage<P>& image, int nx, int ny, int x, int y, int z, int t, int c) {
  double sum = 0;
  ZUMLong whole = 0;
  int count = 0;
  ForEachPoint(ZUMRoDRef(nx * x, ny * y, z, t, nx * x + nx - 1, ny * y + ny - 1, z, t), 1,
               [&](int sx, int sy, int, int, int) {
                 if (!image.InP(sx, sy, z, t)) return;
                 const P p = image(sx, sy, z, t, c);
                 sum += static_cast<double>(p);
                 if constexpr (std::integral<P>) whole = ZUMWrapAdd<ZUMLong>(whole, p);
                 ++count;
               });
  if (count == nx * ny && nx == ny && nx <= 3) {
    if constexpr (std::integral<P>) return static_cast<P>(nx == 2 ? whole >> 2 : whole / 9);
    return static_cast<P>(nx == 2 ? sum * 0.25 : sum / 9);
  }
  return ZUMTruncate<P>(sum * (1 / static_cast<double>(count)));
}

template <class P>
class Scaling : public testing::Test {};
using OrderedTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal>;
TYPED_TEST_SUITE(Scaling, OrderedTypes);

TYPED_TEST(Scaling, BinsAndZooms) {
  using P = TypeParam;
  Random random(4);
  constexpr int kFactors[][2] = {{2, 2}, {3, 3}, {2, 3}, {1, 4}, {5, 1}, {7, 6}};
  for (int round = 0; round < 6 * 20; ++round) {
    const int nx = kFactors[round % 6][0], ny = kFactors[round % 6][1];
    const WithThreads threads(kThreadCounts[round % 5]);
    // Aligned and unaligned regions, on both sides of 0; some so wide and low that tasks cut them
    // along X, inside repeated pixels.
    const int x = random.Int(-9, 9), y = random.Int(-9, 9), ex = x + random.Int(7, 150);
    const ZUMRect box(x, y, -1, 0, ex, y + random.Int(ny - 1, 14), 0, round % 2);
    const auto image = MakeRandomImage<P>(random, box, 2, kLayouts[round % 4]);
    const auto floor = [](int a, int n) { return (a - (a % n + n) % n) / n; };
    const ZUMRect zoomed(x * nx, y * ny, -1, 0, (ex + 1) * nx - 1, (box.end.y + 1) * ny - 1, 0,
                         box.end.t);
    const auto source = [&](int px, int py, int z, int t, int c) {
      return image(floor(px, nx), floor(py, ny), z, t, c);
    };
    ASSERT_TRUE(SameImage(ZUMZoom2D(image, nx, ny), MakeByPoint<P>(zoomed, 2, source)))
        << nx << "x" << ny;
    if constexpr (!std::same_as<P, ZUMBool>) {
      const ZUMRect binned(x / nx, y / ny, -1, 0, x / nx + image.RoDXSz() / nx - 1,
                           y / ny + image.RoDYSz() / ny - 1, 0, box.end.t);
      const auto mean = [&](int px, int py, int z, int t, int c) {
        return BlockMean(image, nx, ny, px, py, z, t, c);
      };
      ASSERT_TRUE(SameImage(ZUMBinning2D(image, nx, ny), MakeByPoint<P>(binned, 2, mean)))
          << nx << "x" << ny;
    }
  }
}

template <class P>
class Interlaced : public testing::Test {};
using ScalarTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(Interlaced, ScalarTypes);

TYPED_TEST(Interlaced, TakesEveryOtherRow) {
  using P = TypeParam;
  const auto mean = [](P a, P b) {
    if constexpr (std::same_as<P, bool>) return a && b;
    if constexpr (std::integral<P>) return static_cast<P>(ZUMWrapAdd<ZUMLong>(a, b) >> 1);
    return static_cast<P>(0.5 * (a + b));
  };
  Random random(6);
  for (int round = 0; round < 6 * 4 * 4; ++round) {
    const int width = 1 + round % 6, height = 1 + round / 16;
    const ZUMRect box(-2, 3, 4, 5, width - 3, height + 2, 4, 5);
    const auto image = MakeRandomImage<P>(random, box, 2, kLayouts[round % 4]);
    for (int field = 0; field < 6; ++field) {
      const int parity = field % 2;
      const bool paired = field == 2 || field == 3;
      ZUMRect region = box;
      if (field < 4) region.end.y = 3 + (height - 1 - parity) / 2;
      if (paired) region.end.x = -2 + (width - 1) / 2;
      const auto source = [&](int x, int y, int z, int t, int c) {
        int row = 3 + 2 * (field < 4 ? y - 3 : (y - 3) / 2) + parity;
        while (row > box.end.y) row -= row - 2 >= 3 ? 2 : 1;
        const int left = paired ? -2 + 2 * (x + 2) : x;
        const P a = image(left, row, z, t, c);
        return paired && left < box.end.x ? mean(a, image(left + 1, row, z, t, c)) : a;
      };
      ASSERT_TRUE(SameImage(ZUMInterlacedField(image, field), MakeByPoint<P>(region, 2, source)))
          << width << "x" << height << " field " << field;
    }
  }
}

// Bool pixels in wrapped memory may hold any byte.
TEST(Scale, ZoomsWrappedBools) {
  ZUMByte bytes[] = {0, 2, 1};
  const ZUMRect box(0, 0, 0, 0, 2, 0, 0, 0);
  const ZUMImage<ZUMBool> image(ZUMRoDRef(box), ZUMRaster(box, 1, ZUMBoolPixel, bytes));
  for (const int n : {2, 3, 4}) {
    const ZUMImage<ZUMBool> zoomed = ZUMZoom2D(image, n, n);
    const auto* pixels = static_cast<const ZUMByte*>(zoomed.GetData());
    for (int i = 0; i < 3 * n * n; ++i) EXPECT_EQ(pixels[i] != 0, i / n % 3 != 0) << n << " " << i;
  }
}

TEST(Scale, RefusesInOrderAndSharesWhatItLeaves) {
  const ZUMRect box(0, 0, 0, 0, 2, 1, 0, 0);
  const ZUMImage<ZUMByte> none, image(box, 1, 0), deep(ZUMRect(0, 0, 0, 0, 2, 1, 1, 0), 1, 0);
  const ZUMImage<ZUMByte> odd(ZUMRoDRef(new OddRegion(box)), image);
  const std::string binning = "Solo puede hacerse binning ", zoom = "Solo puede hacerse zoom ";
  const std::string field = "ZUMInterlacedField";
  const auto refused = [](const std::string& text, auto f) { EXPECT_EQ(MessageOf(f), text); };
  refused(binning + "para números positivos", [&] { ZUMBinning2D(odd, 9, 0); });
  refused(binning + "NxN para rectangulares", [&] { ZUMBinning2D(odd, 9, 9); });
  refused(binning + "NxN para imágenes con ancho mayor o igual que N",
          [&] { ZUMBinning2D(image, 4, 4); });
  refused(binning + "NxN para imágenes con alto mayor o igual que N",
          [&] { ZUMBinning2D(image, 3, 3); });
  refused(zoom + "para números positivos", [&] { ZUMZoom2D(odd, 1, 0); });
  refused(zoom + "NxN para rectangulares", [&] { ZUMZoom2D(odd, 1, 1); });
  refused("ZUMZoom2D: coordinate 3 times 2000000000 is beyond 32 bits",
          [&] { ZUMZoom2D(image, 2000000000, 2); });
  refused(field + " only allows 2D images", [&] { ZUMInterlacedField(deep, 6); });
  refused(field + ": Fields allowed are 0 (odd lines), 1 (even lines)",
          [&] { ZUMInterlacedField(image, 6); });
  EXPECT_EQ(ZUMBinning2D(image, 1, 1).GetData(), image.GetData());
  EXPECT_EQ(ZUMZoom2D(image, 1, 1).GetData(), image.GetData());
  EXPECT_EQ(ZUMInterlacedField(none, 9).GetSimpleRaster(), none.GetSimpleRaster());
}

}  // namespace
