// The operations beside plain dilation and erosion: winners, labelled elements, geodesic balls,
// colour differences and directional accumulators.

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/morphology/colourdifference.h"
#include "zuml/morphology/directionalmorphology.h"
#include "zuml/morphology/geodesicdilation.h"
#include "zuml/morphology/labelledmorphology.h"
#include "zuml/morphology/mathmorph.h"
#include "zuml/morphology/winnermorphology.h"

namespace {

using namespace zuml_test;
using Point = ZUMBasePoint<int>;

const ZUMRect kElementBox(-2, -1, 0, 0, 3, 2, 0, 0);
const ZUMRect kImageBox(-4, 3, -1, 0, 30, 19, 1, 0);

Point Minus(const Point& p, const Point& k) {
  return Point(p.x - k.x, p.y - k.y, p.z - k.z, p.t - k.t);
}

// Few values, so that ties are common.
template <class P>
ZUMImage<P> MakeCoarseImage(Random& random, const ZUMRect& box, int csz, Layout layout) {
  const ZUMImage<P> image = MakeRandomImage<P>(random, box, csz, layout);
  ForEachPoint(image, csz, [&](int x, int y, int z, int t, int c) {
    image(x, y, z, t, c) = static_cast<P>(random.Int(0, 9));
  });
  return image;
}

ZUMImage<ZUMLong> MakeLabels(Random& random, const ZUMRect& box, int least, int greatest) {
  return MakeByPoint<ZUMLong>(box, 1, [&](int, int, int, int, int) {
    return random.Int(0, 2) == 0 ? 0 : random.Int(least, greatest);
  });
}

// Calls f(p, k, value) for each pixel of the element that is not 0, in sweep order.
template <class E, class F>
void ForEachElement(const ZUMImage<E>& element, F f) {
  ForEachPoint(element, 1, [&](int x, int y, int z, int t, int) {
    if (element(x, y, z, t) != E()) f(Point(x, y, z, t), element(x, y, z, t));
  });
}

ZUMRoDRef Mirrored(const ZUMRoDRef& rod, const ZUMRect& k) {
  return DisplaceSides(rod, k.end.x, k.end.y, k.end.z, k.end.t, k.begin.x, k.begin.y, k.begin.z,
                       k.begin.t);
}

template <class P>
class ElementFormsTest : public testing::Test {};
using PixelTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(ElementFormsTest, PixelTypes);

TYPED_TEST(ElementFormsTest, WinnersAreTheFirst) {
  using P = TypeParam;
  Random random(3);
  for (const Layout layout : kLayouts) {
    const auto image = MakeCoarseImage<P>(random, kImageBox, 1, layout);
    for (const bool with_origin : {true, false}) {
      auto element = MakeRandomImage<ZUMBool>(random, kElementBox, 1, layout);
      element(0, 0) = with_origin;
      for (const bool maximum : {true, false}) {
        const ZUMImage<P> values =
            maximum ? ZUMDilateEx(image, element) : ZUMErodeEx(image, element);
        P start = image(image.Begin());
        ForEachPoint(image, 1, [&](int x, int y, int z, int t, int) {
          const P value = image(x, y, z, t);
          if (maximum ? value < start : value > start) start = value;
        });
        const auto expected = [&](int x, int y, int z, int t, int c) {
          const Point here(x, y, z, t);
          Point winner = here;
          const P value = values(here);
          if (!with_origin || image(here) != value) {
            bool found = false;
            ForEachElement(element, [&](const Point& k, bool) {
              const Point p = Minus(here, k);
              // With nothing better than the starting value nobody wins.
              const bool better = with_origin || value != start;
              if (!found && better && image.InP(p) && image(p) == value) winner = p, found = true;
            });
          }
          return (c == 0 ? winner.x : c == 1 ? winner.y : c == 2 ? winner.z : winner.t);
        };
        const WithThreads threads(with_origin ? 3 : 32);
        const auto coords =
            maximum ? ZUMDilateCoordsEx(image, element) : ZUMErodeCoordsEx(image, element);
        EXPECT_TRUE(SameImage(coords, MakeByPoint<ZUMLong>(image, 4, expected)));
      }
    }
  }
  const ZUMImage<ZUMBool> two(kElementBox, 2, true);
  const ZUMImage<P> image(kImageBox, 1, P(1));
  EXPECT_EQ(MessageOf([&] { ZUMDilateCoordsEx(image, two); }),
            "ZUMDilateCoordsEx: Multichannel structuring elements are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMErodeCoordsEx(image, two); }),
            "ZUMErodeCoordsEx: Multichannel structuring elements are not allowed");
}

TEST(ElementForms, AccompanyingDistance) {
  Random random(5);
  for (const Layout layout : kLayouts) {
    const auto image = MakeCoarseImage<ZUMReal>(random, kImageBox, 1, layout);
    const auto distance = MakeRandomImage<ZUMReal>(random, kElementBox, 1, layout);
    for (const bool with_origin : {true, false}) {
      auto element = MakeRandomImage<ZUMBool>(random, kElementBox, 1, layout);
      element(0, 0) = with_origin;
      const auto values = ZUMDilateEx(image, element);
      const auto coords = ZUMDilateCoordsEx(image, element);
      const auto result = ZUMDilateAndDistanceEx(image, element, distance);
      EXPECT_TRUE(SameImage(ZUMCopy(result.Channel(0)), values));
      ForEachPoint(image, 1, [&](int x, int y, int z, int t, int) {
        const Point here(x, y, z, t);
        const Point winner(coords(here, 0), coords(here, 1), coords(here, 2), coords(here, 3));
        const Point k = Minus(here, winner);
        const bool none = !with_origin && k == Point(0, 0);
        ASSERT_EQ(result(here, 1), none ? -90000000.0 : distance(k));
      });
    }
  }
  const ZUMImage<ZUMReal> im(kImageBox, 1, 1.0), im2(kImageBox, 2, 1.0);
  const ZUMImage<ZUMReal> d(kElementBox, 1, 1.0), d2(kElementBox, 2, 1.0), other(kImageBox, 1, 1.0);
  const ZUMImage<ZUMBool> se(kElementBox, 1, true), se2(kElementBox, 2, true);
  const std::string name = "ZUMDilateAndDistanceEx: ";
  EXPECT_EQ(MessageOf([&] { ZUMDilateAndDistanceEx(im, se2, d); }),
            name + "Multichannel structuring elements are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMDilateAndDistanceEx(im, se, d2); }),
            name + "Multichannel distance elements are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMDilateAndDistanceEx(im2, se, d); }),
            name + "Multichannel images are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMDilateAndDistanceEx(im, se, other); }),
            name + "structuring element and distance have differents RoDs");
}

TYPED_TEST(ElementFormsTest, SumsOfMaxima) {
  using P = TypeParam;
  using R = std::conditional_t<std::same_as<P, ZUMReal>, ZUMReal, ZUMLong>;
  Random random(7);
  for (const Layout layout : kLayouts) {
    const auto image = MakeRandomImage<P>(random, kImageBox, 2, layout);
    // Label 2 is missing, those below 0 do not count.
    auto element = MakeLabels(random, kElementBox, -2, 5);
    ForEachElement(element, [&](const Point& k, ZUMLong label) {
      if (label == 2) element(k) = 5;
    });
    const auto sum = [&](int x, int y, int z, int t, int c) {
      R maxima[6] = {};
      ForEachElement(element, [&](const Point& k, ZUMLong label) {
        const Point p = Minus(Point(x, y, z, t), k);
        if (label > 0 && image.InP(p)) {
          maxima[label] = std::max(maxima[label], static_cast<R>(image(p, c)));
        }
      });
      R total{};
      for (const R maximum : maxima) total = ZUMWrapAdd(total, maximum);
      return total;
    };
    const WithThreads threads(7);
    const ZUMRoDRef rod = Mirrored(image, element.Rect());
    EXPECT_TRUE(SameImage(ZUMDilateSum<R>(image, element), MakeByPoint<R>(rod, 2, sum)));
    EXPECT_TRUE(SameImage(ZUMDilateMedian<R>(image, element), MakeByPoint<R>(rod, 2, sum)));
    EXPECT_TRUE(SameImage(ZUMDilateSumEx<R>(image, element), MakeByPoint<R>(image, 2, sum)));
  }
  const ZUMImage<P> image(kImageBox, 1, P(1));
  const ZUMImage<ZUMLong> two(kElementBox, 2, 1), none(kElementBox, 1, 0);
  const std::string text = ": Multichannel structuring elements are not allowed";
  EXPECT_EQ(MessageOf([&] { ZUMDilateSum<R>(image, two); }), "CTaskDilateAcum" + text);
  EXPECT_EQ(MessageOf([&] { ZUMDilateSumEx<R>(image, two); }), "CTaskDilateAcumEx" + text);
  EXPECT_EQ(MessageOf([&] { ZUMDilateMedian<R>(image, two); }), "CTaskDilateMedian" + text);
  EXPECT_EQ(MessageOf([&] { ZUMDilateSum<R>(image, none); }),
            "ZUMDisplacementValueArray<PixT>::SymmetricFromNonZeroPixels Un elemento estructurante "
            "ha de tener como mínimo un pixel");
}

TEST(ElementForms, MaxErodeStopsAtTheFirstLevel) {
  Random random(11);
  const ZUMImage<ZUMLong> element = MakeLabels(random, kElementBox, -3, 4);
  for (const Layout layout : kLayouts) {
    auto image = MakeRandomImage<ZUMBool>(random, kImageBox, 2, layout);
    image.Cut(ZUMRect(5, 3, 0, 0, 18, 19, 0, 0)).SetPixels(true);
    const auto expected = [&](int x, int y, int z, int t, int c) {
      ZUMLong level = 5;
      ForEachElement(element, [&](const Point& k, ZUMLong value) {
        if (!image(x + k.x, y + k.y, z, t, c)) level = std::min(level, value);
      });
      return level;
    };
    const ZUMRoDRef rod = DisplaceSides(image, 2, 1, 0, 0, -3, -2, 0, 0);
    EXPECT_TRUE(SameImage(ZUMMaxErode(image, element), MakeByPoint<ZUMLong>(rod, 2, expected)));
  }
  const ZUMImage<ZUMBool> image(kImageBox, 1, true);
  const std::string text = "ZUMMaxErode: Dimensions of the structuring element are not allowed";
  EXPECT_EQ(MessageOf([&] { ZUMMaxErode(image, ZUMImage<ZUMLong>(kElementBox, 2, 1)); }), text);
  const ZUMRect beside(1, 0, 0, 0, 2, 0, 0, 0);
  EXPECT_EQ(MessageOf([&] { ZUMMaxErode(image, ZUMImage<ZUMLong>(beside, 1, 1)); }), text);
}

TYPED_TEST(ElementFormsTest, GeodesicBalls) {
  using P = TypeParam;
  if constexpr (!std::same_as<P, ZUMBool>) {
    // A wall with a gap: the ball of radius 4 - 1 goes through it, not around its ends.
    const char* const mask_rows[] = {"1111111", "1111111", "0001000", "1111111", "1111111"};
    const ZUMRect box(-1, 4, 0, 0, 5, 8, 0, 0);
    for (const Layout layout : kLayouts) {
      Random random(1);
      auto mask = MakeRandomImage<ZUMBool>(random, box, 1, layout);
      auto image = MakeRandomImage<P>(random, box, 1, layout);
      ZUMImage<P> expected(box, 1, P());
      ForEachPoint(box, 1, [&](int x, int y, int, int, int) {
        mask(x, y) = mask_rows[y - 4][x + 1] == '1';
        image(x, y) = P(x == 2 && y == 5 ? 4 : 0);
        expected(x, y) = P(mask(x, y) && std::hypot(x - 2, y - 5) <= 3 ? 4 : 0);
      });
      const ZUMImage<ZUMBool> before = ZUMCopy(mask);
      EXPECT_TRUE(SameImage(ZUMDilateValue(image, mask, ZUMCon4), expected));
      EXPECT_TRUE(SameImage(ZUMCopy(mask), before));
      mask(2, 6) = false;  // without the gap nothing passes
      ForEachPoint(box, 1, [&](int x, int y, int, int, int) {
        if (y > 5) expected(x, y) = P();
      });
      EXPECT_TRUE(SameImage(ZUMDilateValue(image, mask, ZUMCon8), expected));
      image(2, 5) = P(1);
      EXPECT_TRUE(SameImage(ZUMDilateValue(image, mask, ZUMCon8), ZUMCopy(image)));
    }
  }
  const ZUMImage<P> image(kImageBox, 1, P(1));
  const ZUMImage<ZUMBool> mask(kImageBox, 1, true),
      beside(ZUMRect(1, 1, 0, 0, 3, 3, 0, 0), 1, true);
  EXPECT_EQ(MessageOf([&] { ZUMDilateValue(image, mask, beside); }),
            "ZUMDilateArea: Dimensions of the connectivity image are not allowed");
}

TYPED_TEST(ElementFormsTest, ColourDifferences) {
  using P = TypeParam;
  using R = std::conditional_t<std::same_as<P, ZUMReal>, ZUMReal, ZUMLong>;
  Random random(13);
  for (const Layout layout : kLayouts) {
    const auto image = MakeCoarseImage<P>(random, kImageBox, 3, layout);
    for (const ZUMRect& box : {kElementBox, ZUMRect(2, 1, 0, 0, 4, 1, 0, 0)}) {
      auto element = MakeRandomImage<ZUMBool>(random, box, 1, layout);
      element(2, 1) = true;
      const ZUMRoDRef rod = Mirrored(image, box);
      const auto greatest = [&](int x, int y, int z, int t, auto norm) {
        double kept = 0;
        const Point here(x, y, z, t);
        ForEachElement(element, [&](const Point& k, bool) {
          if (!image.InP(here)) return;
          double sum = 0;
          for (int c = 0; c < 3; ++c) {
            sum += norm(double(image(here, c)) - double(image(Minus(here, k), c)));
          }
          kept = std::max(kept, sum);
        });
        return kept;
      };
      EXPECT_TRUE(SameImage(ZUMMaxL1Diff<R>(image, element),
                            MakeByPoint<R>(rod, 1, [&](int x, int y, int z, int t, int) {
                              return static_cast<R>(
                                  greatest(x, y, z, t, [](double d) { return std::abs(d); }));
                            })));
      EXPECT_TRUE(SameImage(ZUMMaxL2Diff<ZUMReal>(image, element),
                            MakeByPoint<ZUMReal>(rod, 1, [&](int x, int y, int z, int t, int) {
                              return std::sqrt(
                                  greatest(x, y, z, t, [](double d) { return d * d; }));
                            })));
    }
  }
  const ZUMImage<P> grey(kImageBox, 2, P(1));
  EXPECT_EQ(MessageOf([&] { ZUMMaxL1Diff<R>(grey, ZUMCon4); }),
            "ZUMMaxL1Diff: images with 2 channels are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMMaxL2Diff<ZUMReal>(grey, ZUMCon4); }),
            "ZUMMaxL2Diff: images with 2 channels are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMMaxL1Diff<R>(grey, ZUMImage<ZUMBool>(kElementBox, 2, true)); }),
            "ZUMMaxL1Diff: Multichannel structuring elements are not allowed");
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[(values.size() - 1) / 2];
}

TEST(ElementForms, DirectionalMaxima) {
  Random random(17);
  constexpr int kSectors = 6;
  const ZUMImage<ZUMLong> element =
      MakeLabels(random, ZUMRect(-3, -2, 0, 0, 2, 4, 0, 0), 1, kSectors);
  for (const Layout layout : kLayouts) {
    const auto image = MakeCoarseImage<ZUMReal>(random, kImageBox, 2, layout);
    for (const int half_window : {0, 1, 7}) {
      const auto expected = [&](double gain) {
        return MakeByPoint<ZUMReal>(
            Mirrored(image, element.Rect()), 2, [&](int x, int y, int z, int t, int c) {
              std::vector<double> m(kSectors, -1e9), d(kSectors), w(kSectors);
              ForEachElement(element, [&](const Point& k, ZUMLong label) {
                const auto s = static_cast<std::size_t>(label - 1);
                const double value = image(Minus(Point(x, y, z, t), k), c);
                if (value > m[s]) m[s] = value, d[s] = std::hypot(k.x, k.y);
              });
              for (int i = 0; i < kSectors; ++i) {
                std::vector<double> around;
                for (int j = i - half_window; j <= i + half_window; ++j) {
                  around.push_back(d[static_cast<std::size_t>((j + 12 * kSectors) % kSectors)]);
                }
                w[static_cast<std::size_t>(i)] = Median(around);
              }
              for (std::size_t i = 0; i < kSectors; ++i) {
                m[i] /= std::abs(d[i] - w[i]) / std::max(w[i], 1.0) * gain + 1.0;
              }
              return Median(m);
            });
      };
      const auto near = [](const ZUMImage<ZUMReal>& a, const ZUMImage<ZUMReal>& b) {
        double most = a.Rect() == b.Rect() ? 0 : 1;
        ForEachPoint(a, 2, [&](int x, int y, int z, int t, int c) {
          most = std::max(most, std::abs(a(x, y, z, t, c) - b(x, y, z, t, c)));
        });
        return most;
      };
      EXPECT_LT(near(ZUMDilateWMAcum(image, element, half_window, 2.5), expected(2.5)), 1e-12);
      EXPECT_LT(near(ZUMDilateWMAcum2(image, element, half_window), expected(1.0)), 1e-12);
    }
  }
  const ZUMImage<ZUMReal> image(kImageBox, 1, 1.0);
  const ZUMImage<ZUMLong> two(kElementBox, 2, 1);
  EXPECT_EQ(MessageOf([&] { ZUMDilateWMAcum(image, two, 1, 1.0); }),
            "ZUMDilateWMAcum: Multichannel structuring elements are not allowed");
  EXPECT_EQ(MessageOf([&] { ZUMDilateWMAcum2(image, two, 1); }),
            "ZUMDilateWMAcum2: Multichannel structuring elements are not allowed");
}

TEST(ElementForms, DirectionalGradients) {
  Random random(19);
  constexpr int kSectors = 4;
  for (const Layout layout : kLayouts) {
    const auto gradient = MakeRandomImage<ZUMReal>(random, kImageBox, 2, layout);
    // Symmetric, and reaching outside the gradient.
    for (const ZUMRect& box :
         {ZUMRect(-2, -2, 0, 0, 2, 2, 0, 0), ZUMRect(-1, 0, 0, 0, 4, 2, 0, 0)}) {
      const auto element = MakeLabels(random, box, 1, kSectors);
      element(2, 2) = kSectors;
      const auto expected =
          MakeByPoint<ZUMReal>(Mirrored(gradient, box), 1, [&](int x, int y, int z, int t, int) {
            double slots[kSectors + 1] = {}, sum = 0;
            ForEachElement(element, [&](const Point& k, ZUMLong label) {
              const Point p(x + k.x, y + k.y, z, t);
              const auto r = std::sqrt(static_cast<float>(k.x * k.x + k.y * k.y));
              if (!gradient.InP(p)) return;
              const double v = gradient(p, 1) * (static_cast<float>(-k.y) / r) +
                               gradient(p, 0) * (static_cast<float>(-k.x) / r);
              if (v > slots[label]) slots[label] = v;
            });
            for (const double slot : slots) sum += slot;
            return sum / kSectors;
          });
      EXPECT_TRUE(SameImage(ZUMDilateGradAcum(gradient, element), expected));
    }
  }
  const ZUMImage<ZUMReal> one(kImageBox, 1, 1.0), two(kImageBox, 2, 1.0);
  const std::string text = "ZUMDilateGradAcum: it only allows two channels images";
  const ZUMImage<ZUMLong> flat(kElementBox, 1, 1), deep(ZUMRect(0, 0, 0, 0, 1, 1, 1, 0), 1, 1);
  EXPECT_EQ(MessageOf([&] { ZUMDilateGradAcum(one, flat); }), text);
  EXPECT_EQ(MessageOf([&] { ZUMDilateGradAcum(two, deep); }), text);
  EXPECT_EQ(MessageOf([&] { ZUMDilateGradAcum(two, ZUMImage<ZUMLong>(kElementBox, 2, 1)); }),
            "ZUMDilateGradAcum: Multichannel structuring elements are not allowed");
}

}  // namespace
