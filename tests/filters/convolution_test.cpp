#include "zuml/filters/convolution.h"

#include <cmath>
#include <tuple>

#include "tests/support/testimages.h"
#include "tests/support/weightedsums.h"
#include "zuml/filters/convolutionex.h"

namespace {

using namespace zuml_test;

template <class Out, class In>
struct Types {
  using OutT = Out;
  using InT = In;
};
template <class Out>
using InputsOf = std::tuple<Types<Out, bool>, Types<Out, ZUMByte>, Types<Out, ZUMShort>,
                            Types<Out, ZUMLong>, Types<Out, ZUMSReal>, Types<Out, ZUMReal>>;

template <class Tuple, class F>
void ForEachType(F f) {
  std::apply([&](auto... types) { (f(types), ...); }, Tuple());
}
template <class F>
void ForEachPair(F f) {
  ForEachType<InputsOf<ZUMLong>>(f);
  ForEachType<InputsOf<ZUMReal>>(f);
  ForEachType<InputsOf<ZUMSReal>>(f);
}

// Kernels around the origin, away from it, with borders of zeros, in three and four dimensions.
constexpr int kBoxes[][8] = {{-1, -1, 0, 0, 1, 1, 0, 0},  {0, 0, 0, 0, 4, 2, 0, 0},
                             {2, -3, 0, 0, 4, -1, 0, 0},  {-6, 0, 0, 0, 6, 0, 0, 0},
                             {-1, -1, -1, 0, 0, 1, 1, 1}, {-3, -3, 0, 0, 3, 3, 0, 0}};

template <class P>
ZUMImage<P> MakeKernel(Random& random, const int (&b)[8], int csz, bool narrow = false) {
  const ZUMRect box(b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]);
  const auto kernel = MakeRandomImage<P>(random, box, csz, Layout::kCut);
  ForEachPoint(kernel, csz, [&](int x, int y, int z, int t, int c) {
    P& w = kernel(x, y, z, t, c);
    if (narrow) w = static_cast<P>(random.Int(-40, 40));
    if (random.Int(0, 3) == 0) w = 0;
  });
  kernel(b[0], b[1], b[2], b[3], 0) = P(3);
  kernel(b[0], b[1], b[2], b[3], csz - 1) = P(3);
  return kernel;
}

TEST(Convolution, EqualsTheSumByCoordinates) {
  Random random(1);
  ForEachPair([&]<class T>(T) {
    using OutT = typename T::OutT;
    using InT = typename T::InT;
    constexpr int kChannels[][2] = {{1, 1}, {3, 1}, {1, 2}, {3, 3}};
    int round = 0;
    for (const auto& b : kBoxes) {
      const auto& [channels, kernel_channels] = kChannels[round % 4];
      const Layout layout = kLayouts[(round + round / 4) % 4];
      const WithThreads threads(kThreadCounts[round % 5]);
      const bool deep = b[6] != 0;
      const ZUMRect box(-3, 2, 0, 5, deep ? 20 : 150, 23, deep ? 4 : 1, deep ? 7 : 5);
      const auto image = MakeRandomImage<InT>(random, box, channels, layout);
      const auto kernel = MakeKernel<OutT>(random, b, kernel_channels, round % 2 == 0);
      EXPECT_TRUE(SameImage(ZUMConv(image, kernel), WeightedSums(image, kernel, -1)));
      if constexpr (ZUMCorrPixels<OutT, InT>) {
        EXPECT_TRUE(SameImage(ZUMCorr(image, kernel), WeightedSums(image, kernel, 1)));
      }
      ++round;
    }
    // Every pairing of channels, the source larger than what a strip holds.
    for (const auto& [channels, kernel_channels] : kChannels) {
      const auto image =
          MakeRandomImage<InT>(random, ZUMRect(0, 0, 0, 0, 4700, 9, 0, 0), channels, Layout::kCut);
      const auto kernel = MakeKernel<OutT>(random, kBoxes[5], kernel_channels);
      EXPECT_TRUE(SameImage(ZUMConv(image, kernel), WeightedSums(image, kernel, -1)));
    }
  });
}

TEST(Convolution, ResultDoesNotDependOnTasks) {
  Random random(2);
  const ZUMRect box(0, 0, 0, 0, 200, 120, 0, 0);
  const auto image = MakeRandomImage<ZUMReal>(random, box, 1, Layout::kFramed);
  const auto kernel = MakeKernel<ZUMReal>(random, kBoxes[5], 1);
  const ZUMKernel<ZUMReal> chain(MakeKernel<ZUMReal>(random, kBoxes[3], 1), ZUMImage<ZUMReal>(),
                                 ZUMImage<ZUMReal>(), ZUMImage<ZUMReal>());
  const auto all = [&] {
    return std::tuple(ZUMConv(image, kernel), ZUMConv(image, chain), ZUMConvEx(image, kernel));
  };
  const auto [conv, chained, ex] = all();
  for (const int n : kThreadCounts) {
    const WithThreads threads(n);
    const auto [a, b, c] = all();
    EXPECT_TRUE(SameImage(a, conv) && SameImage(b, chained) && SameImage(c, ex)) << n;
  }
}

TEST(Convolution, RulesOfRoundingByHand) {
  const ZUMRect row(0, 0, 0, 0, 2, 0, 0, 0), two(0, 0, 0, 0, 1, 0, 0, 0);
  const double pixels[] = {0.75, -1.5, 2.5};
  const ZUMImage<ZUMReal> image(row, 1, pixels);
  const ZUMLong weights[] = {1, 3};
  const ZUMImage<ZUMLong> kernel(two, 1, weights);
  // Each product is truncated: -1.5 -> -1 and 2.25 -> 2; 2.5 -> 2 and -4.5 -> -4.
  const auto conv = ZUMConv(image, kernel);
  EXPECT_EQ(conv.Rect(), ZUMRect(1, 0, 0, 0, 2, 0, 0, 0));
  EXPECT_EQ(conv(1), 1);
  EXPECT_EQ(conv(2), -2);
  // p + k instead: 0.75 -> 0 and -4.5 -> -4; -1.5 -> -1 and 7.5 -> 7.
  const auto corr = ZUMCorr(image, kernel);
  EXPECT_EQ(corr.Rect(), ZUMRect(0, 0, 0, 0, 1, 0, 0, 0));
  EXPECT_EQ(corr(0), -4);
  EXPECT_EQ(corr(1), 6);
  // Truncated with what is there already: 3 * 0.75 after -1.5 -> trunc(-1 + 2.25).
  EXPECT_EQ(ZUMConvEx(image, kernel)(1), 1);
  EXPECT_EQ(ZUMConvEx(image, kernel)(2), -2);  // trunc(2.5) = 2, trunc(2 - 4.5)
  // The stages of a chain convert the source first: 0, -1, 2.
  EXPECT_EQ(ZUMConv(image, ZUMKernel<ZUMLong>(kernel))(1), -1);
  // The first product starts the sum, so that -0.0 stays.
  const double zero = -0.0, one = 1;
  const ZUMRect point(0, 0, 0, 0, 0, 0, 0, 0);
  EXPECT_TRUE(std::signbit(
      ZUMConv(ZUMImage<ZUMReal>(point, 1, &zero), ZUMImage<ZUMReal>(point, 1, &one))(0)));
  // A product of a double is rounded to float before it is added: 1 + 2^-24 is 1.
  const double fine[] = {1.0 + std::ldexp(1.0, -24), std::ldexp(1.0, -24)};
  const float ones[] = {1, 1};
  EXPECT_EQ(ZUMConv(ZUMImage<ZUMReal>(two, 1, fine), ZUMImage<ZUMSReal>(two, 1, ones))(1), 1.0F);
}

TEST(Convolution, BoolPixelsOfWrappedMemoryAreOnes) {
  unsigned char bytes[] = {0, 1, 2, 255};
  const ZUMRoDRef rod(0, 0, 0, 0, 3, 0, 0, 0);
  const ZUMImage<bool> image(rod, ZUMRaster(rod.RoD(), 1, ZUMBoolPixel, bytes));
  const ZUMImage<ZUMLong> kernel(ZUMRect(0, 0, 0, 0, 3, 0, 0, 0), 1, 100000);
  EXPECT_EQ(ZUMCorr(image, kernel)(0), 300000);
  // The line's last pixel stands for those beyond it.
  const ZUMImage<ZUMLong> pair(ZUMRect(0, 0, 0, 0, 1, 0, 0, 0), 1, 2);
  EXPECT_EQ(ZUMDeriveEx(image, pair)(3), 4);
}

TEST(KernelConvolution, EqualsItsStagesOneByOne) {
  Random random(3);
  const auto line = [&]<class T>(int axis, int begin, int end, int csz, T, bool narrow) {
    int b[8] = {};
    b[axis] = begin;
    b[4 + axis] = end;
    const auto kernel = MakeKernel<T>(random, b, csz, narrow);
    // Off the plane the coefficients tell the reach, not the box.
    kernel(b[4], b[5], b[6], b[7], 0) = 2;
    return kernel;
  };
  const auto run = [&]<class OutT, class InT>(OutT w, InT) {
    for (int round = 0; round < 12; ++round) {
      const int channels = round % 3 == 1 ? 2 : 1, kernel_channels = round % 3 == 2 ? 3 : 1;
      const WithThreads threads(kThreadCounts[round % 5]);
      const auto image = MakeRandomImage<InT>(random, ZUMRect(-2, 3, 1, 0, 60, 30, 4, 2), channels,
                                              kLayouts[round % 4]);
      const ZUMImage<OutT> none;
      const auto kx = line(0, -6, 6 - round, kernel_channels, w, round % 2 == 0);
      const auto ky = line(1, round % 5 - 2, 3, kernel_channels, w, round % 2 == 0);
      const auto kz = round % 2 ? line(2, -1, 1, kernel_channels, w, round % 2 == 0) : none;
      const auto kt = round % 4 == 0 ? line(3, 0, 1, kernel_channels, w, round % 2 == 0) : none;
      const auto& first = round % 6 == 5 ? none : kx;
      const ZUMKernel<OutT> kernel(first, ky, kz, kt);
      for (const int sign : {-1, 1}) {
        ZUMImage<OutT> expected = image;
        for (const auto* k : {&first, &ky, &kz, &kt}) {
          if (k->EmptyP()) continue;
          if (kernel_channels == 1 || expected.GetCSz() == 1) {
            expected = WeightedSums(expected, *k, sign);
          } else {
            const auto a = WeightedSums(expected.Channel(0), k->Channel(0), sign);
            expected =
                MakeByPoint<OutT>(a, kernel_channels, [&](int x, int y, int z, int t, int c) {
                  return WeightedSum(expected.Channel(c), k->Channel(c), sign, {x, y, z, t});
                });
          }
        }
        EXPECT_TRUE(SameImage(sign < 0 ? ZUMConv(image, kernel) : ZUMCorr(image, kernel), expected))
            << round;
      }
    }
  };
  run(ZUMLong(), true);
  run(ZUMLong(), ZUMByte());
  run(ZUMLong(), ZUMReal());
  run(ZUMReal(), ZUMShort());
  run(ZUMReal(), ZUMLong());
  run(ZUMReal(), ZUMReal());
}

TEST(KernelConvolution, ChannelsOfBothAddUp) {
  Random random(4);
  const ZUMRect box(0, 0, 0, 0, 30, 9, 0, 0);
  const auto image = MakeRandomImage<ZUMByte>(random, box, 3, Layout::kChannels);
  const auto kernel = MakeKernel<ZUMLong>(random, kBoxes[1], 3);
  EXPECT_TRUE(SameImage(ZUMConv(image, ZUMKernel<ZUMLong>(kernel)), ZUMConv(image, kernel)));
  EXPECT_TRUE(SameImage(ZUMCorr(image, ZUMKernel<ZUMLong>(kernel)), ZUMCorr(image, kernel)));
  // A channel without weights adds nothing; alone it gives 0. No stage is the conversion.
  kernel.Channel(2).SetPixels(0);
  const auto two = ZUMConv(image.Channels(0, 1), kernel.Channels(0, 1));
  EXPECT_TRUE(SameImage(ZUMConv(image, ZUMKernel<ZUMLong>(kernel)), two));
  const auto zero = ZUMConv(image, ZUMKernel<ZUMLong>(kernel.Channel(2)));
  EXPECT_TRUE(SameImage(zero, ZUMImage<ZUMLong>(zero, 3, 0)));
  const ZUMImage<ZUMReal> none;
  EXPECT_TRUE(SameImage(ZUMConv(image, ZUMKernel<ZUMReal>(none, none, none, none)),
                        ZUMImage<ZUMReal>(image)));
  // Two stages of several channels: the second filters the sum of the first with each of its own.
  const ZUMImage<ZUMLong> x(ZUMRect(0, 0, 0, 0, 1, 0, 0, 0), 3, 1);
  const ZUMImage<ZUMLong> y(ZUMRect(0, 0, 0, 0, 0, 1, 0, 0), 3, 2), nothing;
  const auto sum = ZUMCorr(ZUMCorr(image, x), ZUMImage<ZUMLong>(y.Channel(0), 1, 6));
  EXPECT_TRUE(SameImage(ZUMCorr(image, ZUMKernel<ZUMLong>(x, y, nothing, nothing)), sum));
}

TEST(ConvolutionEx, EqualsTheSumByCoordinates) {
  Random random(5);
  ForEachPair([&]<class T>(T) {
    using OutT = typename T::OutT;
    using InT = typename T::InT;
    int round = 0;
    for (const auto& b : kBoxes) {
      const WithThreads threads(kThreadCounts[round % 5]);
      const auto image = MakeRandomImage<InT>(random, ZUMRect(-3, 2, 0, 0, 5 + 9 * round, 12, 1, 0),
                                              2, kLayouts[round % 4]);
      const auto kernel = MakeKernel<OutT>(random, b, 1, true);
      const auto expected = MakeByPoint<OutT>(image, 2, [&](int x, int y, int z, int t, int c) {
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
      EXPECT_TRUE(SameImage(ZUMConvEx(image, kernel), expected)) << round;
      ++round;
    }
  });
  const ZUMImage<ZUMByte> image(ZUMRect(2, 2, 0, 0, 4, 4, 0, 0), 2, 7);
  const auto zeros = ZUMConvEx(image, ZUMImage<ZUMLong>(ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0), 1, 0));
  EXPECT_TRUE(SameImage(zeros, ZUMImage<ZUMLong>(image, 2, 0)));
}

// The three rules on lines of a few pixels: 1 2 4 8.
TEST(DeriveEx, RulesByHand) {
  const ZUMByte values[] = {1, 2, 4, 8};
  struct Case {
    int begin, end;
    int weights[6];
    int length;
    int along_x[4], along_y[4];
  };
  const Case cases[] = {
      {-1, 1, {-1, 0, 1}, 4, {1, 3, 6, 4}, {2, 3, 6, -4}},   // clamped; zeros beyond
      {1, 2, {3, 1}, 4, {10, 20, 32, 32}, {10, 20, 24, 0}},  // one-sided
      {-1, 2, {1, 2, 3, 4}, 3, {2, 2, 3}, {2, 2, 3}},        // short: 24/9, 17/6, 10/3
      {-3, 3, {0, 0, 0}, 2, {0, 0}, {0, 0}},                 // weights that sum to 0
      {5, 8, {1, 1, 1, 1}, 3, {0, 0, 0}, {0, 0, 0}},         // nothing qualifies
      {9, 9, {2}, 4, {16, 16, 16, 16}, {0, 0, 0, 0}},        // far away
  };
  for (const Case& k : cases) {
    for (const bool along_x : {true, false}) {
      const auto box = [&](int b, int e) {
        return along_x ? ZUMRect(b, 0, 0, 0, e, 0, 0, 0) : ZUMRect(0, b, 0, 0, 0, e, 0, 0);
      };
      const ZUMImage<ZUMByte> image(box(0, k.length - 1), 1, values);
      const ZUMImage<ZUMLong> kernel(box(k.begin, k.end), 1, 0);
      for (int j = k.begin; j <= k.end; ++j) {
        kernel(along_x ? j : 0, along_x ? 0 : j) = k.weights[std::min(j - k.begin, 5)];
      }
      const auto result = ZUMDeriveEx(image, kernel);
      for (int i = 0; i < k.length; ++i) {
        const int expected = (along_x ? k.along_x : k.along_y)[i];
        EXPECT_EQ(result(along_x ? i : 0, along_x ? 0 : i), expected) << k.begin << along_x << i;
      }
    }
  }
}

TEST(Convolution, Messages) {
  const ZUMRect box(0, 0, 0, 0, 9, 9, 0, 0), small(-1, -1, 0, 0, 1, 1, 0, 0);
  const ZUMImage<ZUMByte> two(box, 2, 1), one(box, 1, 1);
  const ZUMImage<ZUMLong> three(small, 3, 1), zero(small, 1, 0), full(small, 1, 1);
  const ZUMKernel<ZUMLong> chain(three);
  const char* many =
      "ZUMConv: convolution of Multichanel image and kernel with diferent number of channels is "
      "not allowed";
  EXPECT_EQ(MessageOf([&] { ZUMConv(two, three); }), many);
  EXPECT_EQ(MessageOf([&] { ZUMCorr(two, three); }), many);
  EXPECT_EQ(MessageOf([&] { ZUMConv(two, chain); }),
            "ZUMConv: multichannel Image and kernel with different number of channels are not "
            "allowed");
  EXPECT_EQ(MessageOf([&] { ZUMCorr(two, chain); }),
            "ZUMCorr: multichannel Image and kernel with different number of channels are not "
            "allowed");
  EXPECT_EQ(MessageOf([&] { ZUMConvEx(one, three); }),
            "ZUMConvEx: Multichannel kernels are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMDeriveEx(one, three); }),
            "ZUMDeriveEx: Multichannel kernels are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMDeriveEx(one, full); }),
            "ZUMDeriveEx: Only accepts unidimensional kernels");
  EXPECT_EQ(MessageOf([&] { ZUMConv(one, zero); }),
            "ZUMDisplacementValueArray<PixT>::SymmetricFromNonZeroPixels Un elemento estructurante "
            "ha de tener como mínimo un pixel");
  // A kernel larger than the source leaves nothing.
  EXPECT_TRUE(ZUMConv(one, ZUMImage<ZUMLong>(ZUMRect(0, 0, 0, 0, 10, 0, 0, 0), 1, 1)).EmptyP());
}

}  // namespace
