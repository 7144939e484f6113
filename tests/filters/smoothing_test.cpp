#include "zuml/filters/smoothing.h"

#include "tests/support/testimages.h"
#include "tests/support/weightedsums.h"
#include "zuml/algebra/comparison.h"
#include "zuml/algebra/division.h"
#include "zuml/algebra/statistics.h"

namespace {

using namespace zuml_test;

template <class F>
void ForEachSource(F f) {
#define ZUML_TEST_SOURCE(IN) f(IN());
  ZUML_SCALAR_TYPES(ZUML_TEST_SOURCE)
#undef ZUML_TEST_SOURCE
}

// The mean of the pixels that `place` finds for the kernel's pixels, of those inside the image.
template <class OutT, class InT, class Place>
ZUMImage<OutT> MeansInside(const ZUMImage<InT>& image, const ZUMImage<OutT>& kernel, bool zeros,
                           const Place& place) {
  return MakeByPoint<OutT>(image, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    OutT sum = 0, weights = 0;
    ForEachPoint(kernel, 1, [&](int kx, int ky, int kz, int kt, int) {
      const OutT w = kernel(kx, ky, kz, kt);
      const ZUMBasePoint<int> p = place(ZUMBasePoint<int>(x, y, z, t), {kx, ky, kz, kt});
      if ((w == 0 && !zeros) || !image.InP(p)) return;
      sum = ZUMWrapAdd(sum, Product(w, image(p, c)));
      weights = ZUMWrapAdd(weights, w);
    });
    return ZUMWrapDiv(sum, weights);
  });
}

ZUMBasePoint<int> Plus(const ZUMBasePoint<int>& p, const ZUMBasePoint<int>& k) {
  return {p.x + k.x, p.y + k.y, p.z + k.z, p.t + k.t};
}
ZUMBasePoint<int> Minus(const ZUMBasePoint<int>& p, const ZUMBasePoint<int>& k) {
  return {p.x - k.x, p.y - k.y, p.z - k.z, p.t - k.t};
}

TEST(Smoothing, ExFormsRenormaliseAtTheBorder) {
  Random random(1);
  struct Case {
    Box box;
    bool line;
  };
  // Columns, rows, one beside the origin, longer than the image; others, a line off the plane too.
  constexpr Case kCases[] = {
      {{0, -2, 0, 0, 0, 1, 0, 0}, true},   {{-1, 0, 0, 0, 3, 0, 0, 0}, true},
      {{2, 0, 0, 0, 4, 0, 0, 0}, true},    {{0, -30, 0, 0, 0, 30, 0, 0}, true},
      {{-2, -1, 0, 0, 1, 2, 0, 0}, false}, {{-1, 1, 0, 0, 2, 2, 0, 0}, false},
      {{0, 0, -1, 0, 0, 0, 1, 0}, false},  {{-40, -3, 0, 0, 2, 3, 0, 1}, false}};
  int round = 0;
  ForEachSource([&]<class InT>(InT) {
    const auto check = [&]<class OutT>(OutT, const Case& k) {
      const WithThreads threads(kThreadCounts[round % 5]);
      const ZUMRect box(-3, 2, 0, 5, 20, 9, 2, 6);
      const auto image = MakeFilterImage<InT>(random, box, 1 + round % 2, kLayouts[round % 4]);
      const auto kernel =
          MakeFilterImage<OutT>(random, MakeRect(k.box), 1, kLayouts[round / 2 % 4]);
      for (int i = 0; i < 3; ++i) {
        kernel(random.Int(k.box[0], k.box[4]), random.Int(k.box[1], k.box[5]), k.box[2], 0) = 0;
      }
      EXPECT_TRUE(SameImage(ZUMSmoothEx(image, kernel),
                            MeansInside(image, kernel, k.line, k.line ? Plus : Minus)))
          << round;
      ++round;
    };
    for (const Case& k : kCases) {
      check(ZUMLong(), k);
      check(ZUMReal(), k);
    }
  });
  const ZUMReal row[] = {1, 2, 1};
  const ZUMImage<ZUMByte> flat(ZUMRect(0, 0, 0, 0, 2, 0, 0, 0), 1, ZUMByte(5));
  EXPECT_TRUE(ZUMSmoothEx(flat, ZUMImage<ZUMReal>(ZUMRect(-1, 0, 0, 0, 1, 0, 0, 0), 1, row)) ==
              5.0);
}

TEST(Smoothing, MeansUnderAMask) {
  Random random(2);
  // Taken directly; sliding with a box, with gaps, off the plane; more shorts than 32 bits hold.
  constexpr Box kBoxes[] = {{-1, 0, 0, 0, 0, 0, 0, 0},
                            {-2, -1, 0, 0, 3, 2, 0, 0},
                            {1, -3, 0, 0, 9, 0, 0, 0},
                            {-3, 0, -1, 0, 3, 1, 1, 1},
                            {-9, -1, 0, 0, 9, 1, 0, 0}};
  int round = 0;
  ForEachSource([&]<class P>(P) {
    for (const Box& b : kBoxes) {
      for (const bool full : {true, false}) {
        const WithThreads threads(kThreadCounts[round % 5]);
        const ZUMRect box(-3, 2, 0, 5, 40, 9 + round % 3, 3, 6);
        const auto image = MakeFilterImage<P>(random, box, 1 + round % 2, kLayouts[round % 4]);
        const auto mask = MakeRandomImage<ZUMBool>(random, MakeRect(b), 1, kLayouts[round % 3]);
        if (full) ForEachPoint(mask, 1, [&](auto... at) { mask(at...) = true; });
        mask(b[0], b[1], b[2], b[3]) = true;
        ++round;
        double n = 0;
        ForEachPoint(mask, 1, [&](auto... at) { n += mask(at...) ? 1 : 0; });
        EXPECT_TRUE(SameImage(
            ZUMSmoothEx(image, mask),
            MakeByPoint<ZUMReal>(
                image, image.GetCSz(),
                [&](int x, int y, int z, int t, int c) {
                  double sum = 0, count = 0;
                  ForEachPoint(mask, 1, [&](int kx, int ky, int kz, int kt, int) {
                    if (!mask(kx, ky, kz, kt) || !image.InP(x - kx, y - ky, z - kz, t - kt)) return;
                    sum += static_cast<double>(image(x - kx, y - ky, z - kz, t - kt, c));
                    ++count;
                  });
                  return count > 0 ? sum / count : 0.0;
                })))
            << round;

        // Sums of real pixels carry their rounding along the row.
        const auto sum_at = [&](int x, int y, int z, int t, int c, auto taken) {
          double sum = 0;
          ForEachPoint(mask, 1, [&](int kx, int ky, int kz, int kt, int) {
            if (taken(kx, ky, kz, kt))
              sum += static_cast<double>(image(x + kx, y + ky, z + kz, t + kt, c));
          });
          return sum;
        };
        const auto is_true = [&](int x, int y, int z, int t) {
          return mask.InP(x, y, z, t) && mask(x, y, z, t);
        };
        double right_ends = 0;
        ForEachPoint(mask, 1, [&](int x, int y, int z, int t, int) {
          right_ends += is_true(x, y, z, t) && !is_true(x + 1, y, z, t);
        });
        const ZUMRoDRef rod = Shrink(image, mask.Rect());
        double sliding = 0;
        const auto expected =
            MakeByPoint<ZUMReal>(rod, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
              if (n <= 2 * right_ends || x == rod.BeginX()) {
                sliding = sum_at(x, y, z, t, c, is_true);
              } else {
                ForEachPoint(mask, 1, [&](int kx, int ky, int kz, int kt, int) {
                  if (is_true(kx, ky, kz, kt) && !is_true(kx - 1, ky, kz, kt)) {
                    sliding -= static_cast<double>(image(x - 1 + kx, y + ky, z + kz, t + kt, c));
                  }
                });
                ForEachPoint(mask, 1, [&](int kx, int ky, int kz, int kt, int) {
                  if (is_true(kx, ky, kz, kt) && !is_true(kx + 1, ky, kz, kt)) {
                    sliding += static_cast<double>(image(x + kx, y + ky, z + kz, t + kt, c));
                  }
                });
              }
              return sliding * (1.0 / n);
            });
        EXPECT_TRUE(SameImage(ZUMSmooth(image, mask), expected)) << round;
      }
    }
  });
}

TEST(Smoothing, BinomialAndKernelMeans) {
  Random random(3);
  const ZUMLong weights[] = {1, 2, 1, 2, 4, 2, 1, 2, 1};
  const ZUMImage<ZUMLong> binomial(ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0), 1, weights);
  ForEachSource([&]<class InT>(InT) {
    const auto image =
        MakeFilterImage<InT>(random, ZUMRect(-3, 2, 0, 5, 20, 9, 1, 5), 2, Layout::kCut);
    const ZUMImage<ZUMLong> truncated = image;
    const auto sums = ZUMSmooth(image);
    EXPECT_TRUE(SameImage(sums, WeightedSums(truncated, binomial, 1)));
    EXPECT_TRUE(SameImage(ZUMSmooth<ZUMLong, InT>(image), sums));
    EXPECT_TRUE(SameImage(ZUMSmooth(image, binomial),
                          ZUMImage<ZUMLong>(WeightedSums(image, binomial, 1) / 16)));
    EXPECT_TRUE(SameImage(ZUMSmooth<ZUMReal>(image, ZUMImage<ZUMReal>(binomial)),
                          WeightedSums(image, ZUMImage<ZUMReal>(binomial), 1) / 16.0));
  });
}

TEST(Smoothing, Errors) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 4, 4, 0, 0), 1, ZUMByte(1));
  const ZUMImage<ZUMBool> two(ZUMRect(0, 0, 0, 0, 1, 1, 0, 0), 2, true), none(ZUMRect(), 1, false);
  EXPECT_EQ(MessageOf([&] { ZUMSmooth(image, two); }),
            "ZUMSmooth only allows a mask with one channel");
  EXPECT_EQ(MessageOf([&] { ZUMSmoothEx(image, two); }),
            "ZUMSmoothEx only allows a mask with one or two channels");
  EXPECT_EQ(MessageOf([&] { ZUMSmoothEx(image, ZUMImage<ZUMReal>(two)); }),
            "ZUMSmooth: Multichannel kernels are not allowed");
  EXPECT_NE(MessageOf([&] { ZUMSmooth(image, none); }), "");
  EXPECT_TRUE(ZUMSmoothEx(image, none) == 0.0);
}

}  // namespace
