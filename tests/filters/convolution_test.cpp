#include "zuml/filters/convolution.h"

#include <algorithm>
#include <cmath>

#include "tests/support/testimages.h"
#include "tests/support/weightedsums.h"
#include "zuml/algebra/channels.h"
#include "zuml/filters/convolutionex.h"

namespace {

using namespace zuml_test;

// Calls f(OutT(), InT()) for all pixel types of a convolution.
template <class F>
void ForEachPair(F f) {
#define ZUML_TEST_INPUT(IN) f(ZUMLong(), IN()), f(ZUMReal(), IN()), f(ZUMSReal(), IN());
  ZUML_ORDERED_TYPES(ZUML_TEST_INPUT)
#undef ZUML_TEST_INPUT
}

// Kernels around the origin, away from it, with borders of zeros, in three and four dimensions.
constexpr Box kBoxes[] = {{-1, -1, 0, 0, 1, 1, 0, 0},  {0, 0, 0, 0, 4, 2, 0, 0},
                          {2, -3, 0, 0, 4, -1, 0, 0},  {-6, 0, 0, 0, 6, 0, 0, 0},
                          {-1, -1, -1, 0, 0, 1, 1, 1}, {-3, -3, 0, 0, 3, 3, 0, 0}};

template <class P>
ZUMImage<P> MakeKernel(Random& random, const Box& b, int csz, bool narrow = false) {
  const auto kernel = MakeFilterImage<P>(random, MakeRect(b), csz, Layout::kCut);
  ForEachPoint(kernel, csz, [&](int x, int y, int z, int t, int c) {
    P& w = kernel(x, y, z, t, c);
    if (narrow) w = static_cast<P>(random.Int(-40, 40));
    if (random.Int(0, 3) == 0) w = 0;
    if (x == b[0] && y == b[1]) w = P(3);
  });
  return kernel;
}

// The sums over what lies inside the image.
template <class OutT, class InT>
ZUMImage<OutT> SumsInside(const ZUMImage<InT>& image, const ZUMImage<OutT>& kernel) {
  return MakeByPoint<OutT>(image, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    OutT value = 0;
    ForEachPoint(kernel, 1, [&](int kx, int ky, int kz, int kt, int) {
      const OutT w = kernel(kx, ky, kz, kt);
      if (w == 0 || !image.InP(x - kx, y - ky, z, t)) return;
      const InT s = image(x - kx, y - ky, z, t, c);
      if constexpr (std::integral<OutT> && std::floating_point<InT>) {
        const InT sum = static_cast<InT>(w) * s + static_cast<InT>(value);
        value = ZUMTruncate<OutT>(static_cast<double>(sum));
      } else {
        value = ZUMWrapAdd(value, Product(w, s));
      }
    });
    return value;
  });
}

TEST(Convolution, EqualsTheSumByCoordinates) {
  Random random(1);
  ForEachPair([&]<class OutT, class InT>(OutT, InT) {
    constexpr int kChannels[][2] = {{1, 1}, {3, 1}, {1, 2}, {3, 3}};
    const auto expect = [&](const ZUMRect& box, int round, const Box& b, Layout layout) {
      const int channels = kChannels[round % 4][0], kernel_channels = kChannels[round % 4][1];
      const WithThreads threads(kThreadCounts[round % 5]);
      const auto image = MakeFilterImage<InT>(random, box, channels, layout);
      const auto kernel = MakeKernel<OutT>(random, b, kernel_channels, round % 2 == 0);
      EXPECT_TRUE(SameImage(ZUMConv(image, kernel), WeightedSums(image, kernel, -1))) << round;
      if constexpr (ZUMCorrPixels<OutT, InT>) {
        EXPECT_TRUE(SameImage(ZUMCorr(image, kernel), WeightedSums(image, kernel, 1))) << round;
      }
      if (box.end.x > 200) return;
      const auto first = kernel.Channel(0);
      EXPECT_TRUE(SameImage(ZUMConvEx(image, first), SumsInside(image, first))) << round;
    };
    int round = 0;
    for (const auto& b : kBoxes) {
      const ZUMRect box(-3, 2, 0, 5, b[6] ? 20 : 150, 23, b[6] ? 4 : 1, b[6] ? 7 : 5);
      expect(box, round, b, kLayouts[(round + round / 4) % 4]);
      ++round;
    }
    // Every pairing of channels, the source larger than what a strip holds.
    for (; round < 10; ++round) {
      expect(ZUMRect(0, 0, 0, 0, 4700, 9, 0, 0), round, kBoxes[5], Layout::kCut);
    }
    // A kernel larger than the source.
    expect(ZUMRect(0, 0, 0, 0, 4, 9, 0, 0), round, kBoxes[5], Layout::kCut);
  });
}

TEST(Convolution, PixelRulesByHand) {
  const double pixels[] = {0.75, -1.5, 2.5};
  const ZUMLong weights[] = {1, 3}, opposite[] = {1, -1};
  const ZUMImage<ZUMReal> image(ZUMRect(0, 0, 0, 0, 2, 0, 0, 0), 1, pixels);
  const ZUMImage<ZUMLong> kernel(ZUMRect(0, 0, 0, 0, 1, 0, 0, 0), 1, weights);
  EXPECT_EQ(ZUMConv(image, kernel)(1), -1 + 2);  // -1.5 and 3 * 0.75, each truncated
  EXPECT_EQ(ZUMCorr(image, kernel)(0), 0 - 4);
  EXPECT_EQ(ZUMConvEx(image, kernel)(1), 1);                     // -1, then -1 + 2.25
  EXPECT_EQ(ZUMConv(image, ZUMKernel<ZUMLong>(kernel))(1), -1);  // the source is first 0, -1, 2
  // On a short line, weights that sum to 0 give 0.
  EXPECT_EQ(ZUMDeriveEx(image.Cut(kernel), ZUMImage<ZUMLong>(kernel, 1, opposite))(0), 0);
  // The first product starts the sum, so that -0.0 stays.
  const ZUMRect point(0, 0, 0, 0, 0, 0, 0, 0);
  const ZUMImage<ZUMReal> zero(point, 1, -0.0), one(point, 1, 1.0);
  EXPECT_TRUE(std::signbit(ZUMConv(zero, one)(0)));
  // Bool pixels of wrapped memory are ones. A line's last pixel stands for those beyond it.
  unsigned char bytes[] = {0, 1, 2, 255};
  const ZUMRoDRef rod(0, 0, 0, 0, 3, 0, 0, 0);
  const ZUMImage<bool> wrapped(rod, ZUMRaster(rod.RoD(), 1, ZUMBoolPixel, bytes));
  EXPECT_EQ(ZUMCorr(wrapped, ZUMImage<ZUMLong>(rod, 1, 100000))(0), 300000);
  EXPECT_EQ(ZUMDeriveEx(wrapped, kernel)(3), 4);
}

TEST(KernelConvolution, EqualsItsStagesOneByOne) {
  Random random(3);
  const auto run = [&]<class OutT, class InT>(OutT, InT) {
    for (int round = 0; round < 16; ++round) {
      constexpr int kChannels[][2] = {{1, 1}, {2, 1}, {1, 3}, {3, 3}};
      const int channels = kChannels[round % 4][0], kernel_channels = kChannels[round % 4][1];
      const WithThreads threads(kThreadCounts[round % 5]);
      const auto image = MakeFilterImage<InT>(random, ZUMRect(-2, 3, 1, 0, 60, 30, 4, 2), channels,
                                              kLayouts[round / 4]);
      const bool narrow = round / 2 % 2 == 0;
      const auto line = [&](bool there, int axis, int begin, int end) {
        if (!there || round == 15) return ZUMImage<OutT>();  // no stage is the conversion
        Box b = {};
        b[axis] = begin;
        b[4 + axis] = end;
        auto kernel = MakeKernel<OutT>(random, b, kernel_channels, narrow);
        // Off the plane the coefficients tell the reach, not the box.
        kernel(b[4], b[5], b[6], b[7], 0) = 2;
        if (axis == 1 && round > 11) kernel.Channel(kernel_channels - 1).SetPixels(0);
        return kernel;
      };
      // With a first stage that is no row, or without weights in one of its channels.
      const auto kx = line(round % 6 != 5, 0, -6, 6 - round % 12);
      const auto ky = line(true, 1, round % 5 - 2, 3);
      const auto kz = line(round % 3 != 0, 2, -1, 1), kt = line(round % 5 == 0, 3, 0, 1);
      const ZUMKernel<OutT> kernel(kx, ky, kz, kt);
      for (const int sign : {-1, 1}) {
        ZUMImage<OutT> expected = image;
        for (const auto& k : {kx, ky, kz, kt}) {
          if (k.EmptyP()) continue;
          // All channels of a further stage filter the sum of those of the one before.
          if (channels == 3 && expected.GetCSz() == 1) {
            expected = ZUMAppendChannels(expected, expected, expected);
          }
          expected = WeightedSums(expected, k, sign, channels == 1);
        }
        EXPECT_TRUE(SameImage(sign < 0 ? ZUMConv(image, kernel) : ZUMCorr(image, kernel), expected))
            << round;
      }
    }
  };
  run(ZUMLong(), true);
  run(ZUMLong(), ZUMShort());
  run(ZUMLong(), ZUMReal());
  run(ZUMReal(), ZUMByte());
  run(ZUMReal(), ZUMReal());
}

// Lines longer than the kernel, just as long and shorter; offsets on both sides, on one, far away.
TEST(DeriveEx, EqualsItsRulesByCoordinates) {
  constexpr int kOffsets[][2] = {{-1, 1}, {1, 2}, {-2, 6}, {-4, 8}, {0, 0}, {10, 22}, {40, 41}};
  Random random(6);
  ForEachPair([&]<class OutT, class InT>(OutT, InT) {
    if constexpr (ZUMCorrPixels<OutT, InT>) {
      for (int round = 0; round < 14; ++round) {
        const int begin = kOffsets[round / 2][0], end = kOffsets[round / 2][1];
        const bool along_x = round % 2 == 0 && begin != end;  // a single weight is one along Y
        const auto image =
            MakeFilterImage<InT>(random, ZUMRect(-3, 2, 0, 0, 9, 11, 1, 1), 2, kLayouts[round % 4]);
        const Box box = {along_x * begin, !along_x * begin, 1, 2,
                         along_x * end,   !along_x * end,   1, 2};
        const auto kernel = MakeKernel<OutT>(random, box, 1);
        const int last = (along_x ? image.RoDXSz() : image.RoDYSz()) - 1;
        const bool is_short = last <= end - begin;
        const auto expected = MakeByPoint<OutT>(image, 2, [&](int x, int y, int z, int t, int c) {
          OutT sum = 0, weights = 0;
          for (int j = begin; j <= end; ++j) {
            const int at = (along_x ? x + 3 : y - 2) + j, nearest = std::clamp(at, 0, last);
            if (at != nearest && (is_short || !along_x)) continue;
            const OutT w = kernel(along_x * j, !along_x * j, 1, 2);
            const InT s = along_x ? image(nearest - 3, y, z, t, c) : image(x, at + 2, z, t, c);
            sum = ZUMWrapAdd(sum, Product(w, s));
            weights = ZUMWrapAdd(weights, w);
          }
          if (!is_short) return sum;
          if constexpr (std::integral<OutT>) {
            return weights == 0 ? 0 : ZUMLowBits<OutT>(std::int64_t{sum} / weights);
          } else {
            return sum / weights;
          }
        });
        EXPECT_TRUE(SameImage(ZUMDeriveEx(image, kernel), expected)) << round;
      }
    }
  });
}

TEST(Convolution, Messages) {
  const ZUMRect box(0, 0, 0, 0, 9, 9, 0, 0), small(-1, -1, 0, 0, 1, 1, 0, 0);
  const ZUMImage<ZUMByte> two(box, 2, 1), one(box, 1, 1);
  const ZUMImage<ZUMLong> three(small, 3, 1), zero(small, 1, 0), full(small, 1, 1);
  const ZUMKernel<ZUMLong> chain(three);
  const std::string several = ": Multichannel kernels are not allowed";
  const std::string many =
      "ZUMConv: convolution of Multichanel image and kernel with diferent number of channels is "
      "not allowed";
  const std::string stages =
      ": multichannel Image and kernel with different number of channels are not allowed";
  EXPECT_EQ(MessageOf([&] { ZUMConv(two, three); }), many);
  EXPECT_EQ(MessageOf([&] { ZUMCorr(two, three); }), many);
  EXPECT_EQ(MessageOf([&] { ZUMConv(two, chain); }), "ZUMConv" + stages);
  EXPECT_EQ(MessageOf([&] { ZUMCorr(two, chain); }), "ZUMCorr" + stages);
  EXPECT_EQ(MessageOf([&] { ZUMConvEx(one, three); }), "ZUMConvEx" + several);
  EXPECT_EQ(MessageOf([&] { ZUMDeriveEx(one, three); }), "ZUMDeriveEx" + several);
  EXPECT_EQ(MessageOf([&] { ZUMDeriveEx(one, full); }),
            "ZUMDeriveEx: Only accepts unidimensional kernels");
  // A kernel of zeros is refused only where it is taken as displacements.
  EXPECT_TRUE(SameImage(ZUMConvEx(two, zero), ZUMImage<ZUMLong>(two, 2, 0)));
}

}  // namespace
