#include "zuml/filters/boxsum.h"

#include <tuple>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/core/pixelarith.h"
#include "zuml/filters/accumulation.h"

namespace {

using namespace zuml_test;

template <class Out, class In>
struct Types {
  using OutT = Out;
  using InT = In;
};

template <class F>
void ForEachPair(F f) {
  f(Types<ZUMLong, bool>());
  f(Types<ZUMLong, ZUMByte>());
  f(Types<ZUMLong, ZUMShort>());
  f(Types<ZUMLong, ZUMLong>());
  f(Types<ZUMReal, ZUMReal>());
}

// The pixels under the true pixels of the mask, channel 0 less channel 1, in the mask's order.
template <class OutT, class InT>
OutT SumAt(const ZUMImage<InT>& image, const ZUMImage<bool>& mask, int x, int y, int z, int t,
           int c) {
  OutT sum{};
  ForEachPoint(mask, mask.GetCSz(), [&](int kx, int ky, int kz, int kt, int kc) {
    if (!mask(kx, ky, kz, kt, kc)) return;
    const OutT s = static_cast<OutT>(image.GetPixel(x + kx, y + ky, z + kz, t + kt, c));
    sum = kc == 0 ? ZUMWrapAdd(sum, s) : ZUMWrapSub(sum, s);
  });
  return sum;
}

ZUMRoDRef Shrink(const ZUMRoDRef& rod, const ZUMRect& k) {
  return DisplaceSides(rod, -k.begin.x, -k.begin.y, -k.begin.z, -k.begin.t, -k.end.x, -k.end.y,
                       -k.end.z, -k.end.t);
}

// The sliding sum of reals, pixel by pixel: what leaves, then what enters.
template <class P>
ZUMImage<P> SlidingSums(const ZUMImage<P>& image, const ZUMImage<bool>& mask) {
  const ZUMRoDRef rod = Shrink(image, mask.Rect());
  const auto on = [&](int x, int y, int z, int t, int c) {
    return mask.InP(x, y, z, t) && mask(x, y, z, t, c);
  };
  P sum{};
  return MakeByPoint<P>(rod, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    if (x == rod.BeginX()) return sum = SumAt<P>(image, mask, x, y, z, t, c);
    for (const int enter : {0, 1}) {
      ForEachPoint(mask, mask.GetCSz(), [&](int kx, int ky, int kz, int kt, int kc) {
        const int beyond = enter ? kx + 1 : kx - 1;
        if (!on(kx, ky, kz, kt, kc) || on(beyond, ky, kz, kt, kc)) return;
        const P s = image(x - 1 + enter + kx, y + ky, z + kz, t + kt, c);
        sum = (enter ^ kc) == 1 ? sum + s : sum - s;
      });
    }
    return sum;
  });
}

// Masks on both sides of the choice between direct and sliding sums.
constexpr int kBoxes[][8] = {{-1, -1, 0, 0, 1, 1, 0, 0},
                             {-7, -3, 0, 0, 7, 2, 0, 0},
                             {2, 1, 0, 0, 9, 3, 0, 0},
                             {-3, 0, -1, 0, 3, 1, 1, 1}};

TEST(MaskSum, EqualsTheSumByCoordinates) {
  Random random(11);
  int round = 0;
  ForEachPair([&]<class T>(T) {
    using OutT = typename T::OutT;
    using InT = typename T::InT;
    for (const auto& b : kBoxes) {
      for (const int density : {2, 20, 1000}) {  // sparse, some holes, full
        const ZUMRect box(b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]);
        const auto image = MakeRandomImage<InT>(
            random, ZUMRect(-9, 4, 0, 0, 40 + 13 * (round % 4), 30, 3, 2), 2, kLayouts[round % 4]);
        ZUMImage<bool> mask(box, 1 + round % 2, true);
        std::size_t all = 0, entering = 0;
        ForEachPoint(mask, mask.GetCSz(), [&](int x, int y, int z, int t, int c) {
          if (x > b[0]) mask(x, y, z, t, c) = random.Int(1, density) > 1;
        });
        ForEachPoint(mask, mask.GetCSz(), [&](int x, int y, int z, int t, int c) {
          if (!mask(x, y, z, t, c)) return;
          ++all;
          entering += x == b[4] || !mask(x + 1, y, z, t, c);
        });
        const auto direct =
            MakeByPoint<OutT>(Shrink(image, box), 2, [&](int x, int y, int z, int t, int c) {
              return SumAt<OutT>(image, mask, x, y, z, t, c);
            });
        const WithThreads threads(kThreadCounts[round++ % 5]);
        const auto result = ZUMSum<OutT>(image, mask);
        if constexpr (std::integral<OutT>) {
          EXPECT_TRUE(SameImage(result, direct)) << round;
        } else {
          EXPECT_TRUE(SameImage(result, all <= 2 * entering ? direct : SlidingSums(image, mask)))
              << round;
        }
      }
    }
  });
}

// Few rows and planes, so that parts would be cut along X; magnitudes at which rounding tells.
TEST(MaskSum, RealsDoNotDependOnTasks) {
  Random random(12);
  const auto image =
      MakeByPoint<ZUMComplex>(ZUMRoDRef(0, 0, 0, 0, 90, 5, 0, 0), 1, [&](int, int, int, int, int) {
        const ZUMComplex z = random.Pixel<ZUMComplex>();
        return ZUMComplex(z.real() / 3, z.imag() * 1e9 / 7);
      });
  const auto real = MakeByPoint<ZUMReal>(
      image, 1, [&](int x, int y, int, int, int) { return image(x, y).imag() / 11; });
  const ZUMImage<bool> wide(ZUMRect(-4, -1, 0, 0, 4, 1, 0, 0), 1, true);
  const auto expected = SlidingSums(image, wide);
  const auto expected_real = SlidingSums(real, wide);
  const auto x = ZUMXAccumImage<ZUMReal>(real);
  for (const int n : kThreadCounts) {
    const WithThreads threads(n);
    EXPECT_TRUE(SameImage(ZUMSum<ZUMComplex>(image, wide), expected)) << n;
    EXPECT_TRUE(SameImage(ZUMSum<ZUMReal>(real, wide), expected_real)) << n;
    EXPECT_TRUE(SameImage(ZUMXAccumImage<ZUMReal>(real), x)) << n;
  }
}

TEST(BoxSum, EqualsItsPassesByCoordinates) {
  Random random(13);
  constexpr int kRects[][8] = {{-1, -1, 0, 0, 1, 1, 0, 0},  {-7, 0, 0, 0, 7, 0, 0, 0},
                               {0, -2, 0, 0, 0, 5, 0, 0},   {2, 3, 0, 0, 5, 3, 0, 0},
                               {-1, -2, -1, 0, 0, 1, 1, 1}, {0, 0, 1, 0, 0, 0, 1, 0},
                               {0, 0, 0, 0, 0, 0, 0, 0},    {-30, -30, 0, 0, 30, 30, 0, 0}};
  int round = 0;
  const auto run = [&]<class OutT, class InT>(Types<OutT, InT>) {
    for (const auto& b : kRects) {
      const ZUMRect rect(b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]);
      const auto image =
          MakeRandomImage<InT>(random, ZUMRect(-9, 4, 0, 0, 70, 30, 3, 2), 2, kLayouts[round % 4]);
      ZUMImage<OutT> expected = image;
      for (int axis = 0; axis < 4; ++axis) {
        if (b[axis] == 0 && b[4 + axis] == 0) continue;
        int k[8] = {};
        k[axis] = b[axis];
        k[4 + axis] = b[4 + axis];
        const ZUMRect line(k[0], k[1], k[2], k[3], k[4], k[5], k[6], k[7]);
        const ZUMImage<bool> mask(line, 1, true);
        expected =
            MakeByPoint<OutT>(Shrink(expected, line), 2, [&](int x, int y, int z, int t, int c) {
              return SumAt<OutT>(expected, mask, x, y, z, t, c);
            });
      }
      const WithThreads threads(kThreadCounts[round++ % 5]);
      EXPECT_TRUE(SameImage(ZUMSum<OutT>(image, rect), expected)) << round;
      EXPECT_TRUE(SameImage(ZUMSum<OutT>(image, ZUMRoDRef(rect)), expected)) << round;
    }
  };
  ForEachPair(run);
  run(Types<ZUMComplex, ZUMComplex>());
}

TEST(SumMaskedAndSumThr, EqualTheSumByCoordinates) {
  Random random(14);
  int round = 0;
  ForEachPair([&]<class T>(T) {
    using OutT = typename T::OutT;
    using InT = typename T::InT;
    for (const auto& b : kBoxes) {
      const Layout layout = kLayouts[round % 4];
      const WithThreads threads(kThreadCounts[round % 5]);
      const ZUMRect box(b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]);
      const ZUMRect area(-9, 4, 0, 0, 30, 20, 3, 2), shifted(-7, 2, 0, 0, 25, 15, 2, 2);
      const auto image = MakeRandomImage<InT>(random, area, 2, layout);
      const auto mask = MakeRandomImage<bool>(random, shifted, 2, layout);
      auto kernel = MakeRandomImage<bool>(random, box, 1 + round % 2, layout);
      for (int c = 0; c < kernel.GetCSz(); ++c) kernel(b[0], b[1], b[2], b[3], c) = true;
      const auto expected = MakeByPoint<OutT>(
          Intersection(Shrink(image, box), mask), 2, [&](int x, int y, int z, int t, int c) {
            return mask(x, y, z, t, c) ? SumAt<OutT>(image, kernel, x, y, z, t, c) : OutT(-5);
          });
      EXPECT_TRUE(SameImage(ZUMSumMasked<OutT>(image, kernel, mask, -5), expected));
      if constexpr (!std::same_as<InT, bool>) {
        const auto limit = MakeRandomImage<InT>(random, shifted, 2, layout);
        const auto element = kernel.Channel(0);
        const ZUMRoDRef rod = Intersection(Shrink(Intersection(image, limit), box), limit);
        const auto count = MakeByPoint<OutT>(rod, 2, [&](int x, int y, int z, int t, int c) {
          OutT n = 0;
          ForEachPoint(element, 1, [&](int kx, int ky, int kz, int kt, int) {
            n += element(kx, ky, kz, kt) &&
                 image(x + kx, y + ky, z + kz, t + kt, c) >= limit(x, y, z, t, c);
          });
          return n;
        });
        EXPECT_TRUE(SameImage(ZUMSumThr<OutT>(image, limit, element), count));
      }
      ++round;
    }
  });
}

TEST(Accumulation, EqualsTheSumByCoordinates) {
  Random random(15);
  ForEachPair([&]<class T>(T) {
    using OutT = typename T::OutT;
    using InT = typename T::InT;
    for (const Layout layout : kLayouts) {
      const auto image = MakeRandomImage<InT>(random, ZUMRect(-4, 2, 0, 0, 20, 9, 1, 1), 2, layout);
      const auto plane = image.Plane(0).Frame(0);
      // Sums up to (x, y) of the lines that the table is asked for.
      const auto table = [&](const ZUMImage<InT>& of, int dx, int dy) {
        const ZUMRoDRef rod = DisplaceSides(of, -dx, -dy, 0, 0, 0, 0, 0, 0);
        const auto sums = MakeByPoint<OutT>(rod, 2, [](int, int, int, int, int) { return OutT(); });
        ForEachPoint(of, 2, [&](int x, int y, int z, int t, int c) {
          OutT row = 0;
          for (int i = dx ? of.BeginX() : x; i <= x; ++i) {
            row = ZUMWrapAdd(row, static_cast<OutT>(of(i, y, z, t, c)));
          }
          sums(x, y, z, t, c) = dy ? ZUMWrapAdd(row, sums(x, y - 1, z, t, c)) : row;
        });
        return sums;
      };
      EXPECT_TRUE(SameImage(ZUMXAccumImage<OutT>(image), table(image, 1, 0)));
      EXPECT_TRUE(SameImage(ZUMYAccumImage<OutT>(image), table(image, 0, 1)));
      EXPECT_TRUE(SameImage(ZUMAccumImage<OutT>(plane), table(plane, 1, 1)));
    }
  });
  // An empty region grows to the line of zeros, if it has lines at all.
  const ZUMImage<ZUMByte> empty(ZUMRoDRef(0, 0, 0, 0, -1, 3, 0, 0), 1, ZUMByte(0));
  EXPECT_TRUE(SameImage(ZUMXAccumImage<ZUMLong>(empty),
                        ZUMImage<ZUMLong>(ZUMRect(-1, 0, 0, 0, -1, 3, 0, 0), 1, 0)));
}

TEST(BoxSum, Messages) {
  const ZUMRect box(0, 0, 0, 0, 9, 9, 0, 0), small(-1, -1, 0, 0, 1, 1, 0, 0);
  const ZUMImage<ZUMByte> image(box, 1, 7), deep(ZUMRect(0, 0, 0, 0, 1, 1, 1, 0), 1, 1);
  const ZUMImage<bool> three(small, 3, true), two(small, 2, true), none(small, 1, false);
  EXPECT_EQ(MessageOf([&] { ZUMSum<ZUMLong>(image, three); }),
            "ZUMSum only allows a mask with one or two channels");
  EXPECT_EQ(MessageOf([&] { ZUMSum<ZUMLong>(image, none); }),
            "ZUMDisplacementArray::FromNonZeroPixels Un elemento estructurante ha de tener como "
            "mínimo un pixel");
  EXPECT_EQ(MessageOf([&] { ZUMSum<ZUMLong>(image, ZUMRect(0, 0, 1, 0, 0, 0, 0, 0)); }),
            "ZUMSum: empty rectangle is not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMSumMasked<ZUMLong>(image, three, two, 0); }),
            "ZUMSum only allows a kernel with one or two channels");
  EXPECT_EQ(MessageOf([&] { ZUMSumMasked<ZUMLong>(image, two, two, 0); }),
            "ZUMSumMasked: It don't allows image and mask with different number of channels");
  EXPECT_EQ(MessageOf([&] { ZUMSumThr<ZUMLong>(image, image, two); }),
            "ZUMSumThr only allows a mask with one channel");
  EXPECT_EQ(MessageOf([&] { ZUMAccumImage<ZUMLong>(deep); }),
            "ZUMAccumImage only allows 2D rectangular images");
}

}  // namespace
