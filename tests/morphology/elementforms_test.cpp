// The operations beside plain dilation and erosion: winners, labelled elements, geodesic balls,
// colour differences and directional accumulators.

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/support/testimages.h"
#include "zuml/algebra/extrema.h"
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

// Calls f(k, value) for each pixel of the element that is not 0, in sweep order.
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
using Wide = std::conditional_t<std::same_as<P, ZUMReal>, ZUMReal, ZUMLong>;

template <class P>
class ElementFormsTest : public testing::Test {};
using PixelTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
TYPED_TEST_SUITE(ElementFormsTest, PixelTypes);

TYPED_TEST(ElementFormsTest, WinnersAreTheFirst) {
  using P = TypeParam;
  Random random(3);
  for (int round = 0; round < 16; ++round) {
    const Layout layout = kLayouts[round % 4];
    const bool with_origin = round / 4 % 2 == 0, maximum = round / 8 == 0;
    const auto better = [maximum](auto a, auto b) { return maximum ? a > b : a < b; };
    const auto image = MakeCoarseImage<P>(random, kImageBox, 1, layout);
    const auto distance = MakeRandomImage<ZUMReal>(random, kElementBox, 1, layout);
    auto element = MakeRandomImage<ZUMBool>(random, kElementBox, 1, layout);
    element(0, 0) = with_origin;
    const P start = maximum ? ZUMMin(image) : ZUMMax(image);
    const ZUMImage<ZUMLong> winners(image, 4, 0);
    const ZUMImage<ZUMReal> values(image, 2, 0);
    ForEachPoint(image, 1, [&](int x, int y, int z, int t, int) {
      const Point here(x, y, z, t);
      P value = with_origin ? image(here) : start;
      Point winner = here;
      ZUMReal length = with_origin ? distance(0) : -90000000.0;
      ForEachElement(element, [&](const Point& k, bool) {
        const Point p = Minus(here, k);
        if (image.InP(p) && better(image(p), value))
          value = image(p), winner = p, length = distance(k);
      });
      const int coordinates[] = {winner.x, winner.y, winner.z, winner.t};
      for (int c = 0; c < 4; ++c) winners(here, c) = coordinates[c];
      values(here, 0) = static_cast<ZUMReal>(value);
      values(here, 1) = length;
    });
    const WithThreads threads(with_origin ? 3 : 32);
    const auto coords =
        maximum ? ZUMDilateCoordsEx(image, element) : ZUMErodeCoordsEx(image, element);
    EXPECT_TRUE(SameImage(coords, winners)) << round;
    if constexpr (std::same_as<P, ZUMReal>) {
      if (!maximum) continue;
      EXPECT_TRUE(SameImage(ZUMDilateAndDistanceEx(image, element, distance), values)) << round;
    }
  }
}

TYPED_TEST(ElementFormsTest, SumsOfMaxima) {
  using P = TypeParam;
  using R = Wide<P>;
  Random random(7);
  for (const Layout layout : kLayouts) {
    const auto image = MakeRandomImage<P>(random, kImageBox, 2, layout);
    // Label 2 is missing, those below 0 do not count.
    auto element = MakeLabels(random, kElementBox, -2, 5);
    ForEachElement(element, [&](const Point& k, ZUMLong label) {
      if (label == 2) element(k) = 5;
    });
    const auto sum = [&](int x, int y, int z, int t, int c) {
      R maxima[6] = {}, total{};
      ForEachElement(element, [&](const Point& k, ZUMLong label) {
        const Point p = Minus(Point(x, y, z, t), k);
        if (label < 0 || !image.InP(p)) return;
        maxima[label] = std::max(maxima[label], static_cast<R>(image(p, c)));
      });
      for (const R maximum : maxima) total = ZUMWrapAdd(total, maximum);
      return total;
    };
    const WithThreads threads(7);
    const auto inside = MakeByPoint<R>(Mirrored(image, element.Rect()), 2, sum);
    EXPECT_TRUE(SameImage(ZUMDilateSum<R>(image, element), inside));
    EXPECT_TRUE(SameImage(ZUMDilateMedian<R>(image, element), inside));
    EXPECT_TRUE(SameImage(ZUMDilateSumEx<R>(image, element), MakeByPoint<R>(image, 2, sum)));
  }
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
}

// A wall with a gap: the ball of radius 4 - 1 goes through it, not around its ends.
TYPED_TEST(ElementFormsTest, GeodesicBalls) {
  using P = TypeParam;
  if constexpr (!std::same_as<P, ZUMBool>) {
    const ZUMRect box(-1, 4, 0, 0, 5, 8, 0, 0);
    Random random(1);
    for (const Layout layout : kLayouts) {
      const auto mask = MakeRandomImage<ZUMBool>(random, box, 1, layout);
      const auto image = MakeRandomImage<P>(random, box, 1, layout);
      ForEachPoint(box, 1, [&](int x, int y, auto...) {
        mask(x, y) = y != 6 || x == 2;
        image(x, y) = P(x == 2 && y == 5 ? 4 : 0);
      });
      const auto ball = [&](int last_row) {
        return MakeByPoint<P>(box, 1, [&](int x, int y, auto...) {
          return P(mask(x, y) && y <= last_row && std::hypot(x - 2, y - 5) <= 3 ? 4 : 0);
        });
      };
      const ZUMImage<ZUMBool> before = ZUMCopy(mask);
      EXPECT_TRUE(SameImage(ZUMDilateValue(image, mask, ZUMCon4), ball(8)));
      EXPECT_TRUE(SameImage(ZUMCopy(mask), before));
      mask(2, 6) = false;  // without the gap nothing passes
      EXPECT_TRUE(SameImage(ZUMDilateValue(image, mask, ZUMCon8), ball(5)));
      image(2, 5) = P(1);
      EXPECT_TRUE(SameImage(ZUMDilateValue(image, mask, ZUMCon8), ZUMCopy(image)));
    }
  }
}

TYPED_TEST(ElementFormsTest, ColourDifferences) {
  using P = TypeParam;
  using R = Wide<P>;
  Random random(13);
  for (const Layout layout : kLayouts) {
    const auto image = MakeCoarseImage<P>(random, kImageBox, 3, layout);
    for (const ZUMRect& box : {kElementBox, ZUMRect(2, 1, 0, 0, 4, 1, 0, 0)}) {
      auto element = MakeRandomImage<ZUMBool>(random, box, 1, layout);
      element(2, 1) = true;
      const ZUMRoDRef rod = Mirrored(image, box);
      const ZUMImage<R> l1(rod, 1, R());
      const ZUMImage<ZUMReal> l2(rod, 1, 0);
      ForEachPoint(Intersection(rod, image), 1, [&](int x, int y, int z, int t, int) {
        const Point here(x, y, z, t);
        ForEachElement(element, [&](const Point& k, bool) {
          double sum = 0, squares = 0;
          for (int c = 0; c < 3; ++c) {
            const double d = double(image(here, c)) - double(image(Minus(here, k), c));
            sum += std::abs(d), squares += d * d;
          }
          l1(here) = std::max(l1(here), static_cast<R>(sum));
          l2(here) = std::max(l2(here), std::sqrt(squares));
        });
      });
      EXPECT_TRUE(SameImage(ZUMMaxL1Diff<R>(image, element), l1));
      EXPECT_TRUE(SameImage(ZUMMaxL2Diff<ZUMReal>(image, element), l2));
    }
  }
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[(values.size() - 1) / 2];
}

TEST(ElementForms, DirectionalMaxima) {
  Random random(17);
  constexpr int kSectors = 6;
  const auto element = MakeLabels(random, ZUMRect(-3, -2, 0, 0, 2, 4, 0, 0), 1, kSectors);
  for (const Layout layout : kLayouts) {
    const auto image = MakeCoarseImage<ZUMReal>(random, kImageBox, 2, layout);
    for (const int half_window : {0, 1, 7}) {
      const auto expect = [&](const ZUMImage<ZUMReal>& result, double gain) {
        ASSERT_EQ(result.Rect(), Mirrored(image, element.Rect()).Rect());
        ForEachPoint(result, 2, [&](int x, int y, int z, int t, int c) {
          std::vector<double> m(kSectors, -1e9), d(kSectors);
          ForEachElement(element, [&](const Point& k, ZUMLong label) {
            const auto s = static_cast<std::size_t>(label - 1);
            const double value = image(Minus(Point(x, y, z, t), k), c);
            if (value > m[s]) m[s] = value, d[s] = std::hypot(k.x, k.y);
          });
          for (std::size_t i = 0; i < kSectors; ++i) {
            std::vector<double> around;
            for (int j = -half_window; j <= half_window; ++j) {
              around.push_back(d[(i + 12 * kSectors + static_cast<std::size_t>(j)) % kSectors]);
            }
            const double w = Median(around);
            m[i] /= std::abs(d[i] - w) / std::max(w, 1.0) * gain + 1.0;
          }
          ASSERT_NEAR(result(x, y, z, t, c), Median(m), 1e-12);
        });
      };
      expect(ZUMDilateWMAcum(image, element, half_window, 2.5), 2.5);
      expect(ZUMDilateWMAcum2(image, element, half_window), 1.0);
    }
  }
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
      const auto expected = [&](int x, int y, int z, int t, int) {
        double slots[kSectors + 1] = {}, sum = 0;
        ForEachElement(element, [&](const Point& k, ZUMLong label) {
          const Point p(x + k.x, y + k.y, z, t);
          const auto r = std::sqrt(static_cast<float>(k.x * k.x + k.y * k.y));
          const auto ux = static_cast<float>(-k.x) / r, uy = static_cast<float>(-k.y) / r;
          if (!gradient.InP(p)) return;
          const double v = gradient(p, 1) * uy + gradient(p, 0) * ux;
          if (v > slots[label]) slots[label] = v;
        });
        for (const double slot : slots) sum += slot;
        return sum / kSectors;
      };
      EXPECT_TRUE(SameImage(ZUMDilateGradAcum(gradient, element),
                            MakeByPoint<ZUMReal>(Mirrored(gradient, box), 1, expected)));
    }
  }
}

TEST(ElementForms, Messages) {
  const ZUMRect beside(1, 1, 0, 0, 3, 3, 0, 0);
  const ZUMImage<ZUMReal> grey(kImageBox, 1, 1.0), grad(kImageBox, 2, 1.0),
      far2(kElementBox, 2, 1.0);
  const ZUMImage<ZUMBool> mask(kImageBox, 1, true), se(kElementBox, 1, true),
      se2(kElementBox, 2, true);
  const ZUMImage<ZUMLong> labels(kElementBox, 1, 1), labels2(kElementBox, 2, 1),
      none(kElementBox, 1, 0);
  const ZUMImage<ZUMLong> deep(ZUMRect(0, 0, 0, 0, 1, 1, 1, 0), 1, 1), away(beside, 1, 1);
  const std::string several = ": Multichannel structuring elements are not allowed";
  const std::string erode = "ZUMMaxErode: Dimensions of the structuring element are not allowed";
  const std::string two = "ZUMDilateGradAcum: it only allows two channels images";
  const std::string distance = "ZUMDilateAndDistanceEx",
                    differences = ": images with 2 channels are not allowed";
  const auto refused = [](const std::string& text, auto f) { EXPECT_EQ(MessageOf(f), text); };
  refused("ZUMDilateCoordsEx" + several, [&] { ZUMDilateCoordsEx(grey, se2); });
  refused("ZUMErodeCoordsEx" + several, [&] { ZUMErodeCoordsEx(grey, se2); });
  refused(distance + several, [&] { ZUMDilateAndDistanceEx(grad, se2, far2); });
  refused(distance + ": Multichannel distance elements are not allowed",
          [&] { ZUMDilateAndDistanceEx(grad, se, far2); });
  refused(distance + ": Multichannel images are not allowed",
          [&] { ZUMDilateAndDistanceEx(grad, se, grey); });
  refused(distance + ": structuring element and distance have differents RoDs",
          [&] { ZUMDilateAndDistanceEx(grey, se, grey); });
  refused("CTaskDilateAcum" + several, [&] { ZUMDilateSum<ZUMReal>(grey, labels2); });
  refused("CTaskDilateAcumEx" + several, [&] { ZUMDilateSumEx<ZUMReal>(grey, labels2); });
  refused("CTaskDilateMedian" + several, [&] { ZUMDilateMedian<ZUMReal>(grey, labels2); });
  refused(
      "ZUMDisplacementValueArray<PixT>::SymmetricFromNonZeroPixels Un elemento estructurante "
      "ha de tener como mínimo un pixel",
      [&] { ZUMDilateSum<ZUMReal>(grey, none); });
  refused(erode, [&] { ZUMMaxErode(mask, labels2); });
  refused(erode, [&] { ZUMMaxErode(mask, away); });
  refused("ZUMDilateArea: Dimensions of the connectivity image are not allowed",
          [&] { ZUMDilateValue(grey, mask, ZUMImage<ZUMBool>(beside, 1, true)); });
  refused("ZUMMaxL1Diff" + several, [&] { ZUMMaxL1Diff<ZUMReal>(grad, se2); });
  refused("ZUMMaxL1Diff" + differences, [&] { ZUMMaxL1Diff<ZUMReal>(grad, se); });
  refused("ZUMMaxL2Diff" + differences, [&] { ZUMMaxL2Diff<ZUMReal>(grad, se); });
  refused("ZUMDilateWMAcum" + several, [&] { ZUMDilateWMAcum(grey, labels2, 1, 1.0); });
  refused("ZUMDilateWMAcum2" + several, [&] { ZUMDilateWMAcum2(grey, labels2, 1); });
  refused("ZUMDilateGradAcum" + several, [&] { ZUMDilateGradAcum(grad, labels2); });
  refused(two, [&] { ZUMDilateGradAcum(grey, labels); });
  refused(two, [&] { ZUMDilateGradAcum(grad, deep); });
}

}  // namespace
