#include "zuml/filters/rank.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "tests/support/everylayout.h"
#include "tests/support/testimages.h"
#include "tests/support/weightedsums.h"

namespace {

using namespace zuml_test;

template <class P>
class Rank : public testing::Test {};
TYPED_TEST_SUITE(Rank, ScalarTypes);

template <class P>
P ValueOfRank(std::vector<P> values, std::ptrdiff_t k) {
  std::stable_sort(values.begin(), values.end(), [](P a, P b) {
    if (a != a || b != b) return a == a;
    if (a == b && a == P(0)) return 1 / static_cast<double>(a) < 1 / static_cast<double>(b);
    return a < b;
  });
  return k < std::ssize(values) ? values[static_cast<std::size_t>(k)] : P(true);
}

template <class P, class IndexOf>
ZUMImage<P> FilterByPoint(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                          const IndexOf& index) {
  const ZUMRoDRef rod = Shrink(image, mask.Rect());
  return MakeByPoint<P>(rod, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
    std::vector<P> values;
    ForEachPoint(mask, 1, [&](int kx, int ky, int kz, int kt, int) {
      if (mask(kx, ky, kz, kt)) values.push_back(image(x + kx, y + ky, z + kz, t + kt, c));
    });
    return ValueOfRank(values, index(values.size()));
  });
}

TYPED_TEST(Rank, SelectsUnderTheMask) {
  using P = TypeParam;
  Random random(1);
  constexpr Box kBoxes[] = {{-1, -1, 0, 0, 1, 1, 0, 0}, {-2, -2, 0, 0, 2, 2, 0, 0},
                            {-7, -7, 0, 0, 7, 7, 0, 0}, {1, 0, -1, 0, 4, 2, 0, 1},
                            {-1, -1, 0, 0, 0, 0, 0, 0}, {3, -2, 0, 0, 3, -2, 0, 0}};
  int round = 0;
  for (const Box& b : kBoxes) {
    for (const double percentile : {0.0, 3.7, 29.0, 50.0, 81.0, 100.0}) {
      const WithThreads threads(kThreadCounts[round % 5]);
      const ZUMRect box(-3, 2, 0, 5, 50 + round % 3, 22, 2, 6);
      const auto image = MakeRandomImage<P>(random, box, 1 + round % 2, kLayouts[round % 4]);
      // Ties in one half of the image; of reals zeros of both signs, infinities and NaNs.
      ForEachPoint(image, image.GetCSz(), [&](int x, int y, int z, int t, int c) {
        P& pixel = image(x, y, z, t, c);
        if (x < 20) pixel = static_cast<P>(random.Int(0, 3));
        if constexpr (std::floating_point<P>) {
          constexpr P kOdd[] = {-0.0, 0.0, std::numeric_limits<P>::infinity(), -0.0,
                                std::numeric_limits<P>::quiet_NaN()};
          if (y > 15 && random.Int(0, 2) == 0) pixel = kOdd[random.Int(0, 4)];
        }
      });
      const auto mask = MakeRandomImage<ZUMBool>(random, MakeRect(b), 1, kLayouts[round / 2 % 4]);
      if (round % 3 != 0) mask.Cut(mask).SetPixels(true);
      mask(b[0], b[1], b[2], b[3]) = true;
      ++round;
      if (!std::same_as<P, ZUMBool> || percentile > 0) {
        EXPECT_TRUE(SameImage(ZUMRankOrder(image, mask, percentile),
                              FilterByPoint(image, mask,
                                            [&](std::size_t n) {
                                              return static_cast<std::ptrdiff_t>(
                                                  static_cast<double>(n) * percentile * 0.01 - 0.5);
                                            })))
            << round;
      }
      EXPECT_TRUE(SameImage(
          ZUMMedian(image, mask),
          FilterByPoint(image, mask,
                        [](std::size_t n) { return static_cast<std::ptrdiff_t>((n - 1) / 2); })))
          << round;
    }
  }
}

TYPED_TEST(Rank, SelectsFromTheWholeImage) {
  using P = TypeParam;
  Random random(2);
  const auto image = MakeRandomImage<P>(random, ZUMRect(-3, 2, 0, 5, 6, 6, 1, 5), 2, Layout::kCut);
  std::vector<P> values;
  ForEachPoint(image, 2, [&](auto... at) { values.push_back(image(at...)); });
  EXPECT_EQ(ZUMMedian(image), ValueOfRank(values, (std::ssize(values) - 1) / 2));
  if constexpr (ZUMGreyPixel<P>) {
    for (const double p : {0.0, 29.0, 100.0}) {
      const double k = static_cast<double>(values.size()) * p * 0.01 - 0.5;
      EXPECT_EQ(ZUMRankOrder(image, p), ValueOfRank(values, static_cast<std::ptrdiff_t>(k)));
    }
  }
}

TEST(RankErrors, Texts) {
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 4, 4, 0, 0), 1, ZUMByte(7));
  const ZUMImage<ZUMBool> flags = image, dot(ZUMRect(), 1, true), two(ZUMRect(), 2, true);
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  const std::string domain = "ZUMRankOrder: the percentile is out of domain [0..100]";
  for (const double p : {-0.1, 100.1, kNaN}) {
    EXPECT_EQ(MessageOf([&] { ZUMRankOrder(image, dot, p); }), domain);
    EXPECT_EQ(MessageOf([&] { ZUMRankOrder(image, p); }), domain);
  }
  for (const double p : {0.0, 101.0, kNaN}) {
    EXPECT_EQ(MessageOf([&] { ZUMRankOrder(flags, dot, p); }), domain);
  }
  EXPECT_EQ(MessageOf([&] { ZUMRankOrder(flags, dot, 100.9); }), "");
  EXPECT_EQ(MessageOf([&] { ZUMRankOrder(image, two, -1); }),
            "ZUMRankOrder: Multichannel mask elements are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMMedian(image, two); }),
            "ZUMMedian: Multichannel mask elements are not allowed");
  EXPECT_EQ(MessageOf([] { ZUMMedian(ZUMImage<ZUMReal>()); }),
            "ZUMMedian: empty image is not allowed");
  EXPECT_EQ(MessageOf([] { ZUMRankOrder(ZUMImage<ZUMLong>(), 50); }),
            "ZUMRankOrder: empty image is not allowed");
  EXPECT_NE(MessageOf([&] { ZUMMedian(image, ZUMImage<ZUMBool>(ZUMRect(), 1, false)); }), "");
}

}  // namespace
