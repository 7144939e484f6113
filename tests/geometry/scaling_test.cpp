#include "zuml/geometry/scaling.h"

#include <gtest/gtest.h>

#include <algorithm>

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
  for (int j = 0; j < ny; ++j) {
    for (int i = 0; i < nx; ++i) {
      if (!image.InP(nx * x + i, ny * y + j, z, t)) continue;
      const P p = image(nx * x + i, ny * y + j, z, t, c);
      sum += static_cast<double>(p);
      if constexpr (std::integral<P>) whole = ZUMWrapAdd<ZUMLong>(whole, p);
      ++count;
    }
  }
  if (count == nx * ny && nx == ny && (nx == 2 || nx == 3)) {
    if constexpr (std::integral<P>) return static_cast<P>(nx == 2 ? whole >> 2 : whole / 9);
    return static_cast<P>(nx == 2 ? sum * 0.25 : sum / 9);
  }
  return ZUMTruncate<P>(sum * (1 / static_cast<double>(count)));
}

template <class P>
class Binning : public testing::Test {};
using NumericTypes = testing::Types<ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal>;
TYPED_TEST_SUITE(Binning, NumericTypes);

TYPED_TEST(Binning, AveragesBlocks) {
  using P = TypeParam;
  Random random(4);
  constexpr int kFactors[][2] = {{2, 2}, {3, 3}, {2, 3}, {1, 4}, {5, 1}, {7, 6}};
  for (const auto& factors : kFactors) {
    const int nx = factors[0], ny = factors[1];
    for (const Layout layout : kLayouts) {
      // Aligned and unaligned regions, on both sides of 0.
      const int x = random.Int(-9, 9), y = random.Int(-9, 9);
      const ZUMRect box(x, y, -1, 0, x + random.Int(7, 30), y + random.Int(6, 20), 0, 1);
      const auto image = MakeRandomImage<P>(random, box, 2, layout);
      const ZUMRoDRef rod(x / nx, y / ny, -1, 0, x / nx + image.RoDXSz() / nx - 1,
                          y / ny + image.RoDYSz() / ny - 1, 0, 1);
      const auto expected = MakeByPoint<P>(rod, 2, [&](int px, int py, int z, int t, int c) {
        return BlockMean(image, nx, ny, px, py, z, t, c);
      });
      for (const int threads : kThreadCounts) {
        const WithThreads with(threads);
        ASSERT_TRUE(SameImage(ZUMBinning2D(image, nx, ny), expected)) << nx << "x" << ny;
      }
    }
  }
}

TEST(Binning, WorkedByHand) {
  const ZUMByte nine[] = {1, 1, 1, 1, 2, 1, 1, 1, 1};
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 2, 2, 0, 0), 1, nine);
  EXPECT_EQ(ZUMBinning2D(image, 3, 3)(0), 1);  // 10 / 9
  EXPECT_EQ(ZUMBinning2D(image, 2, 2).NPixels(), 1);
  EXPECT_EQ(ZUMBinning2D(image, 1, 1).GetData(), image.GetData());
  const ZUMShort negative[] = {-1, -1, -1, 0};
  const ZUMImage<ZUMShort> shorts(ZUMRect(0, 0, 0, 0, 1, 1, 0, 0), 1, negative);
  EXPECT_EQ(ZUMBinning2D(shorts, 2, 2)(0), -1);  // -3 >> 2
  const ZUMLong large[] = {2147483647, 2147483647, 2, 0};
  const ZUMImage<ZUMLong> longs(ZUMRect(0, 0, 0, 0, 1, 1, 0, 0), 1, large);
  EXPECT_EQ(ZUMBinning2D(longs, 2, 2)(0), 0);  // the sum wraps
}

TEST(Binning, RefusesInOrder) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 2, 1, 0, 0), 1, 0);
  EXPECT_EQ(MessageOf([&] { ZUMBinning2D(image, 9, 0); }),
            "Solo puede hacerse binning para números positivos");
  EXPECT_EQ(MessageOf([&] { ZUMBinning2D(image, 4, 4); }),
            "Solo puede hacerse binning NxN para imágenes con ancho mayor o igual que N");
  EXPECT_EQ(MessageOf([&] { ZUMBinning2D(image, 3, 3); }),
            "Solo puede hacerse binning NxN para imágenes con alto mayor o igual que N");
}

template <class P>
class Zoom : public testing::Test {};
using OrderedTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal>;
TYPED_TEST_SUITE(Zoom, OrderedTypes);

TYPED_TEST(Zoom, RepeatsPixels) {
  using P = TypeParam;
  Random random(5);
  constexpr int kFactors[][2] = {{2, 2}, {3, 3}, {2, 3}, {1, 2}, {5, 1}};
  for (const auto& factors : kFactors) {
    const int nx = factors[0], ny = factors[1];
    for (const Layout layout : kLayouts) {
      // Wide and low, so that many tasks cut it along X, inside repeated pixels.
      const ZUMRect box = MakeRandomBox(random, 25, random.Int(1, 2) == 1 ? 2 : 9);
      const auto image = MakeRandomImage<P>(random, box, 2, layout);
      const auto floor = [](int a, int n) { return (a - (a % n + n) % n) / n; };
      const ZUMRoDRef rod(box.begin.x * nx, box.begin.y * ny, 0, 0, (box.end.x + 1) * nx - 1,
                          (box.end.y + 1) * ny - 1, 0, 0);
      const auto expected = MakeByPoint<P>(rod, 2, [&](int x, int y, int z, int t, int c) {
        return image(floor(x, nx), floor(y, ny), z, t, c);
      });
      for (const int threads : kThreadCounts) {
        const WithThreads with(threads);
        ASSERT_TRUE(SameImage(ZUMZoom2D(image, nx, ny), expected)) << nx << "x" << ny;
      }
    }
  }
}

TEST(Zoom, RefusesAndShares) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 1, 1, 0, 0), 1, 7);
  EXPECT_EQ(MessageOf([&] { ZUMZoom2D(image, 1, 0); }),
            "Solo puede hacerse zoom para números positivos");
  EXPECT_EQ(MessageOf([&] { ZUMZoom2D(image, 2000000000, 2); }),
            "ZUMZoom2D: coordinate 2 times 2000000000 is beyond 32 bits");
  EXPECT_EQ(ZUMZoom2D(image, 1, 1).GetData(), image.GetData());
  EXPECT_EQ(ZUMZoom2D(image, 2, 3).Rect(), ZUMRect(0, 0, 0, 0, 3, 5, 0, 0));
}

template <class P>
class Interlaced : public testing::Test {};
using ScalarTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(Interlaced, ScalarTypes);

TYPED_TEST(Interlaced, TakesEveryOtherRow) {
  using P = TypeParam;
  Random random(6);
  for (int height = 1; height <= 6; ++height) {
    for (int width = 1; width <= 4; ++width) {
      for (const Layout layout : kLayouts) {
        const ZUMRect box(-2, 3, 4, 5, width - 3, height + 2, 4, 5);
        const auto image = MakeRandomImage<P>(random, box, 2, layout);
        for (int field = 0; field < 6; ++field) {
          const int parity = field % 2;
          ZUMRect region = box;
          if (field < 4) region.end.y = 3 + (height - 1 - parity) / 2;
          if (field == 2 || field == 3) region.end.x = -2 + (width - 1) / 2;
          const auto expected = MakeByPoint<P>(region, 2, [&](int x, int y, int z, int t, int c) {
            int row = 3 + 2 * (field < 4 ? y - 3 : (y - 3) / 2) + parity;
            while (row > box.end.y) row -= row - 2 >= 3 ? 2 : 1;
            if (field != 2 && field != 3) return image(x, row, z, t, c);
            const int left = -2 + 2 * (x + 2), right = std::min(left + 1, box.end.x);
            const P a = image(left, row, z, t, c), b = image(right, row, z, t, c);
            if (left == right) return a;
            if constexpr (std::same_as<P, bool>) {
              return static_cast<P>(a && b);
            } else if constexpr (std::integral<P>) {
              return static_cast<P>(ZUMWrapAdd<ZUMLong>(a, b) >> 1);
            } else {
              return 0.5 * (a + b);
            }
          });
          ASSERT_TRUE(SameImage(ZUMInterlacedField(image, field), expected))
              << width << "x" << height << " field " << field;
        }
      }
    }
  }
}

TEST(Interlaced, Refuses) {
  const ZUMImage<ZUMByte> flat(ZUMRect(0, 0, 0, 0, 3, 4, 0, 0), 1, 0);
  const ZUMImage<ZUMByte> deep(ZUMRect(0, 0, 0, 0, 3, 4, 1, 0), 1, 0);
  EXPECT_EQ(MessageOf([&] { ZUMInterlacedField(flat, 6); }),
            "ZUMInterlacedField: Fields allowed are 0 (odd lines), 1 (even lines)");
  EXPECT_EQ(MessageOf([&] { ZUMInterlacedField(deep, 6); }),
            "ZUMInterlacedField only allows 2D images");
  const ZUMImage<ZUMByte> none;
  EXPECT_EQ(ZUMInterlacedField(none, 9).GetSimpleRaster(), none.GetSimpleRaster());
  EXPECT_EQ(ZUMInterlacedField(flat, 0).RoDYSz(), 3);
  EXPECT_EQ(ZUMInterlacedField(flat, 1).RoDYSz(), 2);
}

}  // namespace
