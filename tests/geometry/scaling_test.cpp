#include "zuml/geometry/scaling.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/oddregion.h"
#include "tests/support/testimages.h"
#include "zuml/core/pixelarith.h"

namespace {

using namespace zuml_test;

// One threads' count after the other must give the expected image.
template <class P, class F>
void ExpectWithAnyThreads(F f, const ZUMImage<P>& expected, int nx, int ny) {
  for (const int threads : kThreadCounts) {
    const WithThreads with(threads);
    ASSERT_TRUE(SameImage(f(), expected)) << nx << "x" << ny << " with " << threads << " threads";
  }
}

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
class Binning : public testing::Test {};
using NumericTypes = testing::Types<ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal>;
TYPED_TEST_SUITE(Binning, NumericTypes);

TYPED_TEST(Binning, AveragesBlocks) {
  Random random(4);
  constexpr int kFactors[][2] = {{2, 2}, {3, 3}, {2, 3}, {1, 4}, {5, 1}, {7, 6}};
  for (const auto& [nx, ny] : kFactors) {
    for (const Layout layout : kLayouts) {
      // Aligned and unaligned regions, on both sides of 0.
      const int x = random.Int(-9, 9), y = random.Int(-9, 9);
      const ZUMRect box(x, y, -1, 0, x + random.Int(7, 150), y + random.Int(6, 20), 0, 1);
      const auto image = MakeRandomImage<TypeParam>(random, box, 2, layout);
      const ZUMRoDRef rod(x / nx, y / ny, -1, 0, x / nx + image.RoDXSz() / nx - 1,
                          y / ny + image.RoDYSz() / ny - 1, 0, 1);
      const auto mean = [&, w = nx, h = ny](int px, int py, int z, int t, int c) {
        return BlockMean(image, w, h, px, py, z, t, c);
      };
      ExpectWithAnyThreads([&, w = nx, h = ny] { return ZUMBinning2D(image, w, h); },
                           MakeByPoint<TypeParam>(rod, 2, mean), nx, ny);
    }
  }
}

template <class P>
class Zoom : public testing::Test {};
using OrderedTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal>;
TYPED_TEST_SUITE(Zoom, OrderedTypes);

TYPED_TEST(Zoom, RepeatsPixels) {
  Random random(5);
  constexpr int kFactors[][2] = {{2, 2}, {3, 3}, {2, 3}, {1, 2}, {5, 1}};
  for (const auto& [nx, ny] : kFactors) {
    for (const Layout layout : kLayouts) {
      // Wide and low, so that many tasks cut it along X, inside repeated pixels.
      const ZUMRect box = MakeRandomBox(random, 25, random.Int(1, 2) == 1 ? 2 : 9);
      const auto image = MakeRandomImage<TypeParam>(random, box, 2, layout);
      const auto floor = [](int a, int n) { return (a - (a % n + n) % n) / n; };
      const ZUMRoDRef rod(box.begin.x * nx, box.begin.y * ny, 0, 0, (box.end.x + 1) * nx - 1,
                          (box.end.y + 1) * ny - 1, 0, 0);
      const auto source = [&, w = nx, h = ny](int x, int y, int z, int t, int c) {
        return image(floor(x, w), floor(y, h), z, t, c);
      };
      ExpectWithAnyThreads([&, w = nx, h = ny] { return ZUMZoom2D(image, w, h); },
                           MakeByPoint<TypeParam>(rod, 2, source), nx, ny);
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

TEST(Scaling, RefusesInOrderAndSharesWhatItLeaves) {
  const ZUMRect box(0, 0, 0, 0, 2, 1, 0, 0);
  const ZUMImage<ZUMByte> none, image(box, 1, 0), deep(ZUMRect(0, 0, 0, 0, 2, 1, 1, 0), 1, 0);
  const ZUMImage<ZUMByte> odd(ZUMRoDRef(new OddRegion(box)), image);
  const std::string binning = "Solo puede hacerse binning ", zoom = "Solo puede hacerse zoom ";
  const std::string field = "ZUMInterlacedField";
  const std::pair<std::string, std::string> refused[] = {
      {binning + "para números positivos", MessageOf([&] { ZUMBinning2D(odd, 9, 0); })},
      {binning + "NxN para rectangulares", MessageOf([&] { ZUMBinning2D(odd, 9, 9); })},
      {binning + "NxN para imágenes con ancho mayor o igual que N",
       MessageOf([&] { ZUMBinning2D(image, 4, 4); })},
      {binning + "NxN para imágenes con alto mayor o igual que N",
       MessageOf([&] { ZUMBinning2D(image, 3, 3); })},
      {zoom + "para números positivos", MessageOf([&] { ZUMZoom2D(odd, 1, 0); })},
      {zoom + "NxN para rectangulares", MessageOf([&] { ZUMZoom2D(odd, 1, 1); })},
      {"ZUMZoom2D: coordinate 3 times 2000000000 is beyond 32 bits",
       MessageOf([&] { ZUMZoom2D(image, 2000000000, 2); })},
      {field + " only allows 2D images", MessageOf([&] { ZUMInterlacedField(deep, 6); })},
      {field + ": Fields allowed are 0 (odd lines), 1 (even lines)",
       MessageOf([&] { ZUMInterlacedField(image, 6); })},
  };
  for (const auto& [expected, message] : refused) EXPECT_EQ(message, expected);
  EXPECT_EQ(ZUMBinning2D(image, 1, 1).GetData(), image.GetData());
  EXPECT_EQ(ZUMZoom2D(image, 1, 1).GetData(), image.GetData());
  EXPECT_EQ(ZUMInterlacedField(none, 9).GetSimpleRaster(), none.GetSimpleRaster());
}

}  // namespace
