// The operations beside plain dilation and erosion: winners, labelled elements, geodesic balls,
// colour differences and directional accumulators.

#include <algorithm>
#include <climits>
#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/morphology/elements.h"
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

const ZUMRect kElementBox(-2, -1, 0, 0, 3, 2, 0, 0);
const ZUMRect kImageBox(-4, 3, -1, 0, 30, 19, 1, 0);

// Few values, so that ties are common.
template <class P>
ZUMImage<P> MakeCoarseImage(Random& random, const ZUMRect& box, int csz, Layout layout) {
  const ZUMImage<P> image = MakeRandomImage<P>(random, box, csz, layout);
  ForEachPoint(image, csz, [&](auto... at) { image(at...) = static_cast<P>(random.Int(0, 9)); });
  return image;
}

ZUMImage<ZUMLong> MakeLabels(Random& random, const ZUMRect& box, int least, int greatest) {
  return MakeByPoint<ZUMLong>(
      box, 1, [&](auto...) { return random.Int(0, 2) == 0 ? 0 : random.Int(least, greatest); });
}

template <class P>
class ElementFormsTest : public testing::Test {};
TYPED_TEST_SUITE(ElementFormsTest, ScalarTypes);

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
        const Point p = Add(here, -1, k);
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
  using R = ZUMWidened<P>;
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
        const Point p = Add(Point(x, y, z, t), -1, k);
        if (label < 0 || !image.InP(p)) return;
        maxima[label] = std::max(maxima[label], static_cast<R>(image(p, c)));
      });
      for (const R maximum : maxima) total = ZUMWrapAdd(total, maximum);
      return total;
    };
    const WithThreads threads(7);
    const auto inside = MakeByPoint<R>(Shrink(image, element.Rect(), false), 2, sum);
    EXPECT_TRUE(SameImage(ZUMDilateSum(image, element), inside));
    EXPECT_TRUE(SameImage(ZUMDilateMedian(image, element), inside));
    EXPECT_TRUE(SameImage(ZUMDilateSumEx(image, element), MakeByPoint<R>(image, 2, sum)));
  }
}

// The result's type is deduced, named, or named with the operand's.
TYPED_TEST(ElementFormsTest, WaysOfCalling) {
  using P = TypeParam;
  using R = ZUMWidened<P>;
  Random random(9);
  const auto image = MakeRandomImage<P>(random, kImageBox, 3, Layout::kTight);
  const auto labels = MakeLabels(random, kElementBox, 1, 3);
  const ZUMImage<ZUMBool> flat = labels;
#define EXPECT_THREE_WAYS(NAME, OUT, ELEMENT)                              \
  EXPECT_TRUE(SameImage(NAME(image, ELEMENT), NAME<OUT>(image, ELEMENT))); \
  EXPECT_TRUE(SameImage(NAME(image, ELEMENT), NAME<OUT, P>(image, ELEMENT)))
  EXPECT_THREE_WAYS(ZUMDilateSum, R, labels);
  EXPECT_THREE_WAYS(ZUMDilateSumEx, R, labels);
  EXPECT_THREE_WAYS(ZUMDilateMedian, R, labels);
  EXPECT_THREE_WAYS(ZUMMaxL1Diff, R, flat);
  EXPECT_THREE_WAYS(ZUMMaxL2Diff, ZUMReal, flat);
#undef EXPECT_THREE_WAYS
}

TEST(ElementForms, MaxErodeStopsAtTheFirstLevel) {
  Random random(11);
  for (const Layout layout : kLayouts) {
    // Where nothing stops the walk: one more than the greatest level, if there is such a number.
    const ZUMLong most = layout == Layout::kTight ? INT_MAX : 4;
    const ZUMImage<ZUMLong> element = MakeLabels(random, kElementBox, -3, 4);
    element(0, 0) = most;
    auto image = MakeRandomImage<ZUMBool>(random, kImageBox, 2, layout);
    image.Cut(ZUMRect(5, 3, 0, 0, 18, 19, 0, 0)).SetPixels(true);
    const auto expected = [&](int x, int y, int z, int t, int c) {
      ZUMLong level = most < INT_MAX ? most + 1 : INT_MAX;
      ForEachElement(element, [&](const Point& k, ZUMLong value) {
        if (!image(Add(Point(x, y, z, t), 1, k), c)) level = std::min(level, value);
      });
      return level;
    };
    EXPECT_TRUE(SameImage(ZUMMaxErode(image, element),
                          MakeByPoint<ZUMLong>(Shrink(image, kElementBox, true), 2, expected)));
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
  using R = ZUMWidened<P>;
  Random random(13);
  for (const Layout layout : kLayouts) {
    const auto image = MakeCoarseImage<P>(random, kImageBox, 3, layout);
    for (const ZUMRect& box : {kElementBox, ZUMRect(2, 1, 0, 0, 4, 1, 0, 0)}) {
      auto element = MakeRandomImage<ZUMBool>(random, box, 1, layout);
      element(2, 1) = true;
      const ZUMRoDRef rod = Shrink(image, box, false);
      const ZUMImage<R> l1(rod, 1, R());
      const ZUMImage<ZUMReal> l2(rod, 1, 0);
      ForEachPoint(Intersection(rod, image), 1, [&](int x, int y, int z, int t, int) {
        const Point here(x, y, z, t);
        ForEachElement(element, [&](const Point& k, bool) {
          double sum = 0, squares = 0;
          for (int c = 0; c < 3; ++c) {
            const double d = double(image(here, c)) - double(image(Add(here, -1, k), c));
            sum += std::abs(d), squares += d * d;
          }
          l1(here) = std::max(l1(here), static_cast<R>(sum));
          l2(here) = std::max(l2(here), std::sqrt(squares));
        });
      });
      EXPECT_TRUE(SameImage(ZUMMaxL1Diff(image, element), l1));
      EXPECT_TRUE(SameImage(ZUMMaxL2Diff(image, element), l2));
    }
  }
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[(values.size() - 1) / 2];
}

// Sectors in a circle that is full, has some without a pixel, and is as large as labels go.
TEST(ElementForms, DirectionalMaxima) {
  Random random(17);
  for (const ZUMLong sectors : {6, 9, INT_MAX}) {
    const auto element = MakeLabels(random, ZUMRect(-3, -2, 0, 0, 2, 4, 0, 0), 1, 6);
    ForEachElement(element, [&](const Point& k, ZUMLong label) {
      element(k) = label == 6 ? sectors : label == 3 ? sectors / 2 : label;
    });
    const auto image =
        MakeCoarseImage<ZUMReal>(random, {-4, 3, 0, 0, 16, 12, 0, 0}, 2, kLayouts[sectors % 3]);
    image(3, 6) = -3;
    for (const int half_window : {0, 1, 7, 1003, INT_MAX}) {
      if (sectors < INT_MAX && half_window == INT_MAX) continue;
      const auto expect = [&](const ZUMImage<ZUMReal>& result, double gain) {
        ASSERT_EQ(result.Rect(), Shrink(image, element.Rect(), false).Rect());
        if (sectors == INT_MAX) {
          EXPECT_TRUE(SameImage(result, ZUMImage<ZUMReal>(result, 2, 0)));
          return;
        }
        ForEachPoint(result, 2, [&](int x, int y, int z, int t, int c) {
          const auto n = static_cast<std::size_t>(sectors);
          std::vector<double> m(n, -1e9), d(n);
          ForEachElement(element, [&](const Point& k, ZUMLong label) {
            const auto s = static_cast<std::size_t>(label - 1);
            const double value = image(Add(Point(x, y, z, t), -1, k), c);
            if (value > m[s]) m[s] = value, d[s] = std::hypot(k.x, k.y);
          });
          for (double& v : m) v = v == -1e9 ? 0 : v;
          for (std::size_t i = 0; i < n; ++i) {
            std::vector<double> around;
            for (int j = -half_window; m[i] != 0 && j <= half_window; ++j) {
              around.push_back(d[(i + 1200 * n + static_cast<std::size_t>(j)) % n]);
            }
            const double w = m[i] != 0 ? Median(around) : 0;
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
                            MakeByPoint<ZUMReal>(Shrink(gradient, box, false), 1, expected)));
    }
  }
}

TEST(ElementForms, Messages) {
  const ZUMRect beside(1, 1, 0, 0, 3, 3, 0, 0);
  const ZUMImage<ZUMReal> grey(kImageBox, 1, 1.0), grad(kImageBox, 2, 1.0),
      far2(kElementBox, 2, 1.0);
  const ZUMImage<ZUMBool> mask(kImageBox, 1, true), se(kElementBox, 1, true),
      se2(kElementBox, 2, true), away(beside, 1, true), off(kElementBox, 1, false);
  const ZUMImage<ZUMLong> labels(kElementBox, 1, 1), labels2(kElementBox, 2, 1),
      none(kElementBox, 1, 0), deep(ZUMRect(0, 0, 0, 0, 1, 1, 1, 0), 1, 1),
      labels_away(beside, 1, 1);
  const std::string
      several = ": Multichannel structuring elements are not allowed",
      size = ": Dimensions of the structuring element are not allowed",
      least = "FromNonZeroPixels Un elemento estructurante ha de tener como mínimo un pixel",
      values = "ZUMDisplacementValueArray<PixT>::";
  const std::string two = "ZUMDilateGradAcum: it only allows two channels images",
                    distance = "ZUMDilateAndDistanceEx",
                    differences = ": images with 2 channels are not allowed",
                    differ = ": structuring element and distance have differents RoDs";
  const std::pair<std::string, std::function<void()>> cases[] = {
      {"ZUMDilateCoordsEx" + several, [&] { ZUMDilateCoordsEx(grey, se2); }},
      {"ZUMErodeCoordsEx" + several, [&] { ZUMErodeCoordsEx(grey, se2); }},
      {distance + several, [&] { ZUMDilateAndDistanceEx(grad, se2, far2); }},
      {distance + ": Multichannel distance elements are not allowed",
       [&] { ZUMDilateAndDistanceEx(grad, se, far2); }},
      {distance + ": Multichannel images are not allowed",
       [&] { ZUMDilateAndDistanceEx(grad, se, grey); }},
      {distance + differ, [&] { ZUMDilateAndDistanceEx(grey, se, grey); }},
      {"CTaskDilateAcum" + several, [&] { ZUMDilateSum(grey, labels2); }},
      {"CTaskDilateAcumEx" + several, [&] { ZUMDilateSumEx(grey, labels2); }},
      {"CTaskDilateMedian" + several, [&] { ZUMDilateMedian(grey, labels2); }},
      {values + "Symmetric" + least, [&] { ZUMDilateSum(grey, none); }},
      {values + "Symmetric" + least, [&] { ZUMDilateWMAcum2(grey, none, 1); }},
      {values + least, [&] { ZUMDilateGradAcum(grad, none); }},
      {values + least, [&] { ZUMMaxErode(mask, none); }},
      {"ZUMMaxErode" + size, [&] { ZUMMaxErode(mask, labels2); }},
      {"ZUMMaxErode" + size, [&] { ZUMMaxErode(mask, labels_away); }},
      {"ZUMDilateArea: Dimensions of the connectivity image are not allowed",
       [&] { ZUMDilateValue(grey, mask, away); }},
      {"ZUMDisplacementArray::" + least, [&] { ZUMDilateValue(grey, mask, off); }},
      {"ZUMMaxL1Diff" + several, [&] { ZUMMaxL1Diff(grad, se2); }},
      {"ZUMMaxL1Diff" + differences, [&] { ZUMMaxL1Diff(grad, se); }},
      {"ZUMMaxL2Diff" + differences, [&] { ZUMMaxL2Diff(grad, se); }},
      {"ZUMDilateWMAcum" + several, [&] { ZUMDilateWMAcum(grey, labels2, 1, 1.0); }},
      {"ZUMDilateWMAcum2" + several, [&] { ZUMDilateWMAcum2(grey, labels2, 1); }},
      {"ZUMDilateGradAcum" + several, [&] { ZUMDilateGradAcum(grad, labels2); }},
      {two, [&] { ZUMDilateGradAcum(grey, labels); }},
      {two, [&] { ZUMDilateGradAcum(grad, deep); }}};
  for (const auto& [text, run] : cases) EXPECT_EQ(MessageOf(run), text);
}

}  // namespace
