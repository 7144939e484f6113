#include "zuml/filters/boxsum.h"

#include <string>

#include "tests/support/otherregion.h"
#include "tests/support/testimages.h"
#include "tests/support/weightedsums.h"
#include "zuml/core/pixelarith.h"
#include "zuml/filters/accumulation.h"

namespace {

using namespace zuml_test;

// Calls f(OutT(), InT()) for all pixel types of ordered sums.
template <class F>
void ForEachPair(F f) {
#define ZUML_TEST_INPUT(IN) f(ZUMLong(), IN());
  ZUML_DISCRETE_TYPES(ZUML_TEST_INPUT)
#undef ZUML_TEST_INPUT
  f(ZUMReal(), ZUMReal());
}

// The pixels under the true pixels of the mask, channel 0 less channel 1, in the mask's order.
template <class OutT, class InT>
OutT SumAt(const ZUMImage<InT>& image, const ZUMImage<bool>& mask, int x, int y, int z, int t,
           int c) {
  OutT sum{};
  ForEachPoint(mask, mask.GetCSz(), [&](int kx, int ky, int kz, int kt, int kc) {
    if (!mask(kx, ky, kz, kt, kc)) return;
    const OutT s = static_cast<OutT>(image(x + kx, y + ky, z + kz, t + kt, c));
    sum = kc == 0 ? ZUMWrapAdd(sum, s) : ZUMWrapSub(sum, s);
  });
  return sum;
}

template <class OutT, class InT>
ZUMImage<OutT> DirectSums(const ZUMImage<InT>& image, const ZUMImage<bool>& mask) {
  return MakeByPoint<OutT>(
      Shrink(image, mask.Rect()), image.GetCSz(),
      [&](int x, int y, int z, int t, int c) { return SumAt<OutT>(image, mask, x, y, z, t, c); });
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
constexpr Box kBoxes[] = {{-1, -1, 0, 0, 1, 1, 0, 0},
                          {-7, -3, 0, 0, 7, 2, 0, 0},
                          {2, 1, 0, 0, 9, 3, 0, 0},
                          {-3, 0, -1, 0, 3, 1, 1, 1}};

// The rows are fewer than the tasks may be, so that parts would be cut along X.
TEST(MaskSum, EqualsTheSumByCoordinates) {
  Random random(11);
  int round = 0;
  const auto run = [&]<class OutT, class InT>(OutT, InT) {
    for (const auto& b : kBoxes) {
      for (const int density : {2, 20, 1000}) {  // sparse, some holes, full
        const Layout layout = kLayouts[round % 4];
        const ZUMRect area(-9, 4, 0, 0, 40 + 13 * (round % 4), 30, 3, 2), box = MakeRect(b);
        const auto image = MakeFilterImage<InT>(random, area, 2, layout);
        const auto mask = MakeRandomImage<bool>(random, box, 1 + round % 2, layout);
        std::size_t all = 0, entering = 0;
        ForEachPoint(mask, mask.GetCSz(), [&](int x, int y, int z, int t, int c) {
          const bool before = x > b[0] && mask(x - 1, y, z, t, c);
          const bool on = mask(x, y, z, t, c) = x == b[0] || random.Int(1, density) > 1;
          all += on;
          entering += (before && !on) + (on && x == b[4]);
        });
        const WithThreads threads(kThreadCounts[round++ % 5]);
        const auto direct = DirectSums<OutT>(image, mask);
        auto expected = direct;
        if constexpr (!std::integral<OutT>) {
          if (all > 2 * entering) expected = SlidingSums(image, mask);
        }
        EXPECT_TRUE(SameImage(ZUMSum<OutT>(image, mask), expected)) << round;
        const ZUMRect shifted(-7, 2, 0, 0, 25, 25, 2, 2);
        if constexpr (!std::same_as<OutT, ZUMComplex>) {
          const auto where = MakeRandomImage<bool>(random, shifted, 2, layout);
          expected = MakeByPoint<OutT>(
              Intersection(direct, where), 2, [&](int x, int y, int z, int t, int c) {
                return where(x, y, z, t, c) ? direct(x, y, z, t, c) : OutT(-5);
              });
          EXPECT_TRUE(SameImage(ZUMSumMasked<OutT>(image, mask, where, -5), expected)) << round;
        }
        if constexpr (ZUMGreyPixel<InT>) {
          const auto limit = MakeFilterImage<InT>(random, shifted, 2, layout);
          const auto first = mask.Channel(0);
          const ZUMRoDRef rod = Intersection(Shrink(Intersection(image, limit), box), limit);
          expected = MakeByPoint<OutT>(rod, 2, [&](int x, int y, int z, int t, int c) {
            OutT n = 0;
            ForEachPoint(first, 1, [&](int kx, int ky, int kz, int kt, int) {
              n += first(kx, ky, kz, kt) &&
                   image(x + kx, y + ky, z + kz, t + kt, c) >= limit(x, y, z, t, c);
            });
            return n;
          });
          EXPECT_TRUE(SameImage(ZUMSumThr<OutT>(image, limit, first), expected)) << round;
        }
      }
    }
  };
  ForEachPair(run);
  run(ZUMComplex(), ZUMComplex());
}

// Windows of a few pixels and of many, one-sided, without the origin; an image wider than a strip.
TEST(BoxSum, EqualsItsPassesByCoordinates) {
  constexpr Box kRects[] = {{-1, -1, 0, 0, 1, 1, 0, 0},  {-7, 0, 0, 0, 7, 0, 0, 0},
                            {0, -2, 0, 0, 0, 5, 0, 0},   {2, 3, 0, 0, 5, 3, 0, 0},
                            {-1, -2, -1, 0, 0, 1, 1, 1}, {0, 0, 1, 0, 0, 0, 1, 0},
                            {0, 0, 0, 0, 0, 0, 0, 0},    {-9, -4, 0, 0, 4, 3, 0, 0},
                            {1, -7, 0, 0, 6, 7, 0, 0},   {-7, -13, 0, 0, 7, 13, 0, 0}};
  Random random(13);
  int round = 0;
  const auto run = [&]<class OutT, class InT>(OutT, InT) {
    for (const auto& b : kRects) {
      const ZUMRect rect = MakeRect(b), area(-9, 4, 0, 0, b[1] < -9 ? 1200 : 90, 41, 3, 2);
      const auto image = MakeFilterImage<InT>(random, area, 2, kLayouts[round % 4]);
      ZUMImage<OutT> expected = image;
      for (int axis = 0; axis < 4; ++axis) {
        Box k = {};
        k[axis] = b[axis];
        k[4 + axis] = b[4 + axis];
        expected = DirectSums<OutT>(expected, ZUMImage<bool>(MakeRect(k), 1, true));
      }
      const WithThreads threads(kThreadCounts[round++ % 5]);
      EXPECT_TRUE(SameImage(ZUMSum<OutT>(image, rect), expected)) << round;
      EXPECT_TRUE(SameImage(ZUMSum<OutT>(image, ZUMRoDRef(rect)), expected)) << round;
      // A region of another class is summed as a mask.
      const ZUMRoDRef other = new OtherRegion(rect);
      EXPECT_TRUE(
          SameImage(ZUMSum<OutT>(image, other), ZUMSum<OutT>(image, ZUMImage<bool>(rect, 1, true))))
          << round;
    }
  };
  ForEachPair(run);
  run(ZUMComplex(), ZUMComplex());
}

TEST(Accumulation, EqualsTheSumByCoordinates) {
  Random random(15);
  const WithThreads threads(32);  // more than rows
  ForEachPair([&]<class OutT, class InT>(OutT, InT) {
    for (const Layout layout : kLayouts) {
      const auto image = MakeFilterImage<InT>(random, ZUMRect(-4, 2, 0, 0, 40, 9, 1, 1), 2, layout);
      for (const int dx : {0, 1}) {
        const int dy = 1 - dx;
        const ZUMImage<OutT> sums(DisplaceSides(image, -dx, -dy, 0, 0, 0, 0, 0, 0), 2, OutT());
        ForEachPoint(image, 2, [&](int x, int y, int z, int t, int c) {
          sums(x, y, z, t, c) =
              ZUMWrapAdd(sums(x - dx, y - dy, z, t, c), static_cast<OutT>(image(x, y, z, t, c)));
        });
        EXPECT_TRUE(
            SameImage(dx ? ZUMXAccumImage<OutT>(image) : ZUMYAccumImage<OutT>(image), sums));
      }
      const auto plane = image.Plane(0).Frame(0);
      EXPECT_TRUE(
          SameImage(ZUMAccumImage<OutT>(plane), ZUMYAccumImage<OutT>(ZUMXAccumImage<OutT>(plane))));
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
  const ZUMImage<ZUMByte> odd(new OtherRegion(box), 1, 1);
  const ZUMImage<bool> three(small, 3, true), two(small, 2, true);
  EXPECT_EQ(MessageOf([&] { ZUMSum<ZUMLong>(image, three); }),
            "ZUMSum only allows a mask with one or two channels");
  EXPECT_EQ(MessageOf([&] { ZUMSum<ZUMLong>(image, ZUMRect(0, 0, 1, 0, 0, 0, 0, 0)); }),
            "ZUMSum: empty rectangle is not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMSumMasked<ZUMLong>(image, three, two, 0); }),
            "ZUMSum only allows a kernel with one or two channels");
  EXPECT_EQ(MessageOf([&] { ZUMSumMasked<ZUMLong>(image, two, two, 0); }),
            "ZUMSumMasked: It don't allows image and mask with different number of channels");
  EXPECT_EQ(MessageOf([&] { ZUMSumThr<ZUMLong>(image, image, two); }),
            "ZUMSumThr only allows a mask with one channel");
  const std::string plane = "ZUMAccumImage only allows 2D rectangular images";
  EXPECT_EQ(MessageOf([&] { ZUMAccumImage<ZUMLong>(deep); }), plane);
  EXPECT_EQ(MessageOf([&] { ZUMAccumImage<ZUMLong>(odd); }), plane);
  const std::string lines = "AccumImage only allows rectangular images";
  EXPECT_EQ(MessageOf([&] { ZUMXAccumImage<ZUMLong>(odd); }), "ZUMX" + lines);
  EXPECT_EQ(MessageOf([&] { ZUMYAccumImage<ZUMLong>(odd); }), "ZUMY" + lines);
}

}  // namespace
