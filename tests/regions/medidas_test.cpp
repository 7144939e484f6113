#include "zuml/regions/medidas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>

#include "tests/regions/labelpictures.h"
#include "zuml/regions/feret.h"
#include "zuml/regions/labelcolor.h"
#include "zuml/regions/regionmoments.h"
#include "zuml/regions/regionshape.h"
#include "zuml/regions/singleregion.h"

namespace {

using namespace zuml_test;

using Pixels = std::vector<ZUMBasePoint<int>>;

// The pixels of each positive label, and empty lists for those in between.
std::map<ZUMLong, Pixels> Collect(const ZUMImage<ZUMLong>& labels) {
  std::map<ZUMLong, Pixels> regions;
  ForEachPoint(labels, labels.GetCSz(), [&](int x, int y, int z, int t, int c) {
    const ZUMLong label = labels(x, y, z, t, c);
    if (label > 0) regions[label].push_back({x, y, z, t});
  });
  if (regions.empty()) return regions;
  for (ZUMLong label = regions.begin()->first; label < regions.rbegin()->first; ++label) {
    regions[label];
  }
  return regions;
}

using Measure = std::function<double(const Pixels&)>;

double Sum(const Pixels& pixels, const std::function<double(const ZUMBasePoint<int>&)>& f) {
  double sum = 0;
  for (const ZUMBasePoint<int>& p : pixels) sum += f(p);
  return sum;
}

// The greatest of f, or `start` without a pixel.
double Greatest(const Pixels& pixels, double start,
                const std::function<double(const ZUMBasePoint<int>&)>& f) {
  double greatest = pixels.empty() ? start : f(pixels[0]);
  for (const ZUMBasePoint<int>& p : pixels) greatest = std::max(greatest, f(p));
  return greatest;
}

// A table's channel c against the measure of each label's pixels; NaNs are equal.
template <class P>
void ExpectTable(const ZUMImage<P>& table, int c, const std::map<ZUMLong, Pixels>& regions,
                 double tolerance, const Measure& measure) {
  if (regions.empty()) {
    EXPECT_TRUE(table.EmptyP());
    EXPECT_EQ(table.GetCSz(), 1);
    return;
  }
  ASSERT_EQ(table.BeginX(), regions.begin()->first);
  ASSERT_EQ(table.EndX(), regions.rbegin()->first);
  for (const auto& [label, pixels] : regions) {
    const double expected = measure(pixels), value = static_cast<double>(table(label, 0, 0, 0, c));
    if (std::isnan(expected)) {
      EXPECT_TRUE(std::isnan(value));
    } else if (expected != value) {
      EXPECT_NEAR(value, expected, tolerance * std::max(1.0, std::abs(expected))) << label;
    }
  }
}

double CentredMoment(const Pixels& pixels, int p, int q) {
  const double n = std::max<double>(1, static_cast<double>(pixels.size()));
  const double a = Sum(pixels, [](const auto& r) { return r.x; }) / n;
  const double b = Sum(pixels, [](const auto& r) { return r.y; }) / n;
  return Sum(pixels, [=](const auto& r) { return std::pow(r.x - a, p) * std::pow(r.y - b, q); });
}

double Elongation(const Pixels& pixels) {
  const double u20 = CentredMoment(pixels, 2, 0), u02 = CentredMoment(pixels, 0, 2),
               u11 = CentredMoment(pixels, 1, 1);
  const double root = std::sqrt(4 * u11 * u11 + (u20 - u02) * (u20 - u02));
  return pixels.size() < 2 ? NAN : std::sqrt(1 - (u20 + u02 - root) / (u20 + u02 + root));
}

TEST(RegionTables, EqualMeasuresOfEachLabelsPixels) {
  using Point = ZUMBasePoint<int>;
  static constexpr int Point::*kAxes[] = {&Point::x, &Point::y, &Point::z, &Point::t};
  using Table = ZUMImage<ZUMLong> (*)(const ZUMImage<ZUMLong>&);
  const Table sizes[] = {ZUMRegionSizeX, ZUMRegionSizeY, ZUMRegionSizeZ, ZUMRegionSizeT};
  const Table sums[] = {ZUMRegionSumX, ZUMRegionSumY, ZUMRegionSumZ, ZUMRegionSumT};
  Random random(1);
  for (int round = 0; round < 24; ++round) {
    const ZUMImage<ZUMLong> labels =
        MakeRandomLabels(random, kLayouts[round % 4], round % 6 == 5 ? 0 : random.Int(3, 50));
    if (round % 3 == 0) {  // labels far from 1
      ForEachPoint(labels, labels.GetCSz(),
                   [&](auto... at) { labels(at...) += labels(at...) > 0 ? 100000 : 0; });
    }
    const ZUMImage<ZUMLong> before = ZUMCopy(labels);
    const std::map<ZUMLong, Pixels> regions = Collect(labels);

    ZUMLong first = -5, last = -5;
    ZUMLabelInterval(labels, first, last);
    EXPECT_EQ(first, regions.empty() ? 1 : regions.begin()->first);
    EXPECT_EQ(last, regions.empty() ? 0 : regions.rbegin()->first);

    const auto area = [](const Pixels& p) { return static_cast<double>(p.size()); };
    ExpectTable(ZUMRegionArea(labels), 0, regions, 0, area);
    const ZUMImage<ZUMLong> in_plane = ZUMRegionMeasures2D(labels);
    const ZUMImage<ZUMReal> centres = ZUMRegionGravityCenter(labels);
    for (int axis = 0; axis < 4; ++axis) {
      const auto at = [axis](const Point& p) { return p.*kAxes[axis]; };
      const auto minus = [axis](const Point& p) { return -(p.*kAxes[axis]); };
      const auto sum = [&](const Pixels& p) { return Sum(p, at); };
      ExpectTable(sizes[axis](labels), 0, regions, 0,
                  [&](const Pixels& p) { return Greatest(p, 0, at) + Greatest(p, 0, minus); });
      ExpectTable(sums[axis](labels), 0, regions, 0, sum);
      ExpectTable(centres, axis, regions, 0,
                  [&](const Pixels& p) { return p.empty() ? 0 : sum(p) / area(p); });
      if (axis > 1) continue;
      ExpectTable(in_plane, axis, regions, 0, [&](const Pixels& p) {
        return -Greatest(p, -(labels.End().*kAxes[axis]), minus);
      });
      ExpectTable(in_plane, axis + 2, regions, 0,
                  [&](const Pixels& p) { return Greatest(p, labels.Begin().*kAxes[axis], at); });
      ExpectTable(in_plane, axis + 5, regions, 0, sum);
    }
    ExpectTable(in_plane, 4, regions, 0, area);

    for (int p = 0; p <= 2; ++p) {
      for (int q = 0; q <= 2; ++q) {
        ExpectTable(ZUMRegionMoment(labels, p, q), 0, regions, 0, [=](const Pixels& pixels) {
          return Sum(pixels, [=](const Point& r) { return std::pow(r.x, p) * std::pow(r.y, q); });
        });
        // The formulas of order three are not central moments where the covariance is not 0.
        if (p + q > 2) continue;
        ExpectTable(
            ZUMRegionCenteredMoment(labels, p, q), 0, regions, 1e-9,
            [=](const Pixels& pixels) { return p + q == 1 ? 0 : CentredMoment(pixels, p, q); });
      }
    }
    ExpectTable(ZUMRegionElongation(labels), 0, regions, 1e-6, Elongation);
    EXPECT_TRUE(SameImage(labels, before));
  }
}

TEST(RegionTables, MomentsOfOrderThreeFollowTheirFormulas) {
  const ZUMImage<ZUMLong> labels = ReadLabels(
      "..22\n"
      "2.2.\n"
      "222.\n");
  const auto m = [&](int p, int q) { return ZUMRegionMoment(labels, p, q)(2); };
  const double n = 7, a = m(1, 0) / n, b = m(0, 1) / n;
  EXPECT_DOUBLE_EQ(ZUMRegionCenteredMoment(labels, 1, 2)(2),
                   m(1, 2) - 2 * b * m(1, 1) - a * m(0, 2) + 2 * b * b * m(1, 0));
  EXPECT_DOUBLE_EQ(ZUMRegionCenteredMoment(labels, 2, 1)(2),
                   m(2, 1) - 2 * a * m(1, 1) - b * m(2, 0) + 2 * a * a * m(0, 1));
  for (const auto& [p, q] : {std::pair{3, 0}, {0, 3}, {-1, 0}, {0, -1}}) {
    EXPECT_EQ(MessageOf([&, p = p, q = q] { ZUMRegionMoment(labels, p, q); }),
              "ZUMRegionMoment: it only calcules moments of order 0,1 and 2");
    EXPECT_EQ(MessageOf([&, p = p, q = q] { ZUMRegionCenteredMoment(labels, p, q); }),
              "ZUMRegionCenteredMoment: it only calcules moments of order 0,1 and 2");
  }
  EXPECT_EQ(MessageOf([&] { ZUMRegionCenteredMoment(labels, 2, 2); }),
            "ZUMRegionCenteredMoment: it only calcules moments of order 0,1 and 2");
}

// A pixel's part in a perimeter goes to the label that equals its difference to the least
// neighbour.
TEST(RegionTables, CircularityCountsDifferences) {
  Random random(5);
  for (int round = 0; round < 16; ++round) {
    const auto labels = MakeRandomLabels(random, kLayouts[round % 4], round % 4 ? 12 : 0);
    std::map<ZUMLong, int> perimeter;
    ForEachPoint(labels, labels.GetCSz(), [&](int x, int y, int z, int t, int c) {
      ZUMLong least = labels(x, y, z, t, c);
      for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
          const ZUMBasePoint<int> p(x + dx, y + dy, z, t);
          least = std::min(least, labels.InP(p) ? labels(p, c) : 0);
        }
      }
      ++perimeter[labels(x, y, z, t, c) - least];
    });
    const ZUMImage<ZUMReal> circularity = ZUMRegionCircularity(labels);
    const std::map<ZUMLong, Pixels> regions = Collect(labels);
    EXPECT_EQ(circularity.EmptyP() != 0, regions.empty());
    for (const auto& [label, pixels] : regions) {
      const double p = std::max(perimeter[label], 1), n = static_cast<double>(pixels.size());
      EXPECT_DOUBLE_EQ(circularity(label), 4 * std::acos(-1.0) * n / (p * p));
    }
  }
}

TEST(RegionTables, FeretDiametersOfLabelsAndOfOneRegion) {
  Random random(2);
  for (int round = 0; round < 12; ++round) {
    const ZUMImage<ZUMLong> labels =
        MakeRandomLabels(random, kLayouts[round % 4], round % 4 ? 20 : 0);
    const std::map<ZUMLong, Pixels> regions = Collect(labels);
    const int n = random.Int(1, 7);
    const ZUMImage<ZUMReal> table = ZUMRegionFeretDiameters(labels, n);
    ASSERT_EQ(table.EmptyP() != 0, regions.empty());
    for (const auto& [label, pixels] : regions) {
      const auto one =
          MakeByPoint<ZUMBool>(labels, labels.GetCSz(),
                               [&, label = label](auto... at) { return labels(at...) == label; });
      const ZUMImage<ZUMReal> row = ZUMRegionFeretDiameters(one, n);
      EXPECT_EQ(row.Rect(), ZUMRect(0, 0, 0, 0, n - 1, 0, 0, 0));
      for (int i = 0; i < n; ++i) {
        const double angle = i * std::acos(-1.0) / n;
        const auto v = [angle](const auto& p) {
          return p.x * std::cos(angle) - p.y * std::sin(angle);
        };
        const double width = pixels.empty()
                                 ? -INFINITY
                                 : Greatest(pixels, 0, v) +
                                       Greatest(pixels, 0, [&](const auto& p) { return -v(p); });
        EXPECT_EQ(table(label, i), width);
        EXPECT_EQ(row(i), width);
      }
    }
  }
  EXPECT_TRUE(ZUMRegionFeretDiameters(ReadPicture("#"), 0).EmptyP());
  EXPECT_TRUE(ZUMRegionFeretDiameters(ReadLabels("1"), -1).EmptyP());
}

TEST(RegionTables, SumsWrap) {
  const int x = 2000000000;
  const ZUMImage<ZUMLong> labels(ZUMRect(x, -x, 0, 0, x + 2, -x, 0, 0), 1, 4);
  EXPECT_EQ(ZUMRegionSumX(labels)(4), static_cast<ZUMLong>(6000000003LL - (1LL << 32)));
  EXPECT_EQ(ZUMRegionSumY(labels)(4), static_cast<ZUMLong>(-6000000000LL + (1LL << 32)));
  EXPECT_EQ(ZUMRegionMeasures2D(labels)(4, 0, 0, 0, 5), ZUMRegionSumX(labels)(4));
  EXPECT_EQ(ZUMRegionGravityCenter(labels)(4), (6000000003LL - (1LL << 32)) / 3.0);
}

// Against the tables of the same pixels as labels.
TEST(SingleRegion, EqualsTheTables) {
  Random random(3);
  for (int round = 0; round < 40; ++round) {
    const ZUMImage<ZUMBool> image = MakeRandomImage<ZUMBool>(
        random, MakeRandomBox(random, 40, 9, 3, 2), random.Int(1, 2), kLayouts[round % 4]);
    const int percent = round % 5 == 0 ? 0 : random.Int(1, 40);
    ForEachPoint(image, image.GetCSz(),
                 [&](auto... at) { image(at...) = random.Int(1, 100) <= percent; });
    const ZUMImage<ZUMLong> labels = image;
    const ZUMRect hull = ZUMRegionRectHull(image);
    if (Collect(labels).empty()) {
      const auto b = image.Begin(), e = image.End();
      EXPECT_EQ(hull, ZUMRect({e.x + 1, e.y + 1, e.z + 1, e.t + 1}, b));
      EXPECT_EQ(ZUMRegionWidth(image) + ZUMRegionHeight(image) + ZUMRegionArea(image), 0);
      EXPECT_EQ(ZUMGravityCenter(image), ZUMBasePoint<int>());
      continue;
    }
    const ZUMImage<ZUMLong> table = ZUMRegionMeasures2D(labels);
    EXPECT_EQ(hull.begin.x, table(1, 0, 0, 0, 0));
    EXPECT_EQ(hull.begin.y, table(1, 0, 0, 0, 1));
    EXPECT_EQ(hull.end.x, table(1, 0, 0, 0, 2));
    EXPECT_EQ(hull.end.y, table(1, 0, 0, 0, 3));
    EXPECT_EQ(hull.end.z - hull.begin.z, ZUMRegionSizeZ(labels)(1));
    EXPECT_EQ(hull.end.t - hull.begin.t, ZUMRegionSizeT(labels)(1));
    EXPECT_EQ(ZUMRegionWidth(image), ZUMRegionSizeX(labels)(1) + 1);
    EXPECT_EQ(ZUMRegionHeight(image), ZUMRegionSizeY(labels)(1) + 1);
    EXPECT_EQ(ZUMRegionArea(image), table(1, 0, 0, 0, 4));
    const ZUMLong n = ZUMRegionArea(image);
    const ZUMBasePoint<int> centre(ZUMRegionSumX(labels)(1) / n, ZUMRegionSumY(labels)(1) / n,
                                   ZUMRegionSumZ(labels)(1) / n, ZUMRegionSumT(labels)(1) / n);
    EXPECT_EQ(ZUMGravityCenter(image), centre);
    EXPECT_EQ(ZUMGravityCenter(ZUMImage<ZUMByte>(image)), centre);
    EXPECT_EQ(ZUMGravityCenter(ZUMImage<ZUMShort>(image)), centre);
    EXPECT_EQ(ZUMGravityCenter(labels), centre);
  }
  EXPECT_EQ(ZUMRegionWidth(ZUMImage<ZUMBool>()) + ZUMRegionHeight(ZUMImage<ZUMBool>()), 0);
}

TEST(GravityCenter, WeighsPixelsAndTruncates) {
  const ZUMRoDRef rod(-3, 5, 0, 0, 0, 5, 0, 0);
  const ZUMByte bytes[] = {200, 0, 0, 100};
  EXPECT_EQ(ZUMGravityCenter(ZUMImage<ZUMByte>(rod, 1, bytes)), ZUMBasePoint<int>(-2, 5));
  const ZUMShort mixed[] = {1, -3, 0, 0};  // total -2, sum of x 3
  EXPECT_EQ(ZUMGravityCenter(ZUMImage<ZUMShort>(rod, 1, mixed)), ZUMBasePoint<int>(-1, 5));
  const ZUMReal reals[] = {0.5, 0, 0, 0.25};
  EXPECT_EQ(ZUMGravityCenter(ZUMImage<ZUMReal>(rod, 1, reals)), ZUMBasePoint<int>(-2, 5));
  const ZUMLong nothing[] = {7, -7, 0, 0};
  EXPECT_EQ(ZUMGravityCenter(ZUMImage<ZUMLong>(rod, 1, nothing)), ZUMBasePoint<int>());
  const ZUMLong wrapping[] = {INT32_MAX, INT32_MAX, 0, 1};  // total -1, sum of x 5 - 2^31
  EXPECT_EQ(ZUMGravityCenter(ZUMImage<ZUMLong>(rod, 1, wrapping)),
            ZUMBasePoint<int>(INT32_MAX - 4, 5));
}

TEST(LabelColor, WalksThroughThePaletteFromTheLeastLabel) {
  const auto colour = [](const ZUMImage<ZUMByte>& image, int x) {
    return std::vector<int>{image(x, 0, 0, 0, 0), image(x, 0, 0, 0, 1), image(x, 0, 0, 0, 2)};
  };
  const ZUMRoDRef rod(0, 0, 0, 0, 4, 0, 0, 0);
  const std::vector<int> rows[] = {{181, 201, 148}, {65, 205, 5}, {9, 104, 3}, {115, 104, 63}};
  const ZUMLong labels[] = {-2, -1, 0, 1, 10000};
  const ZUMImage<ZUMByte> image = ZUMLabelColor(ZUMImage<ZUMLong>(rod, 1, labels));
  EXPECT_EQ(image.GetCSz(), 3);
  EXPECT_EQ(colour(image, 0), rows[0]);
  EXPECT_EQ(colour(image, 1), rows[1]);
  EXPECT_EQ(colour(image, 2), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(colour(image, 3), rows[3]);
  EXPECT_EQ(colour(image, 4), rows[0]);  // row 10002 is row 0 again
  const ZUMLong positive[] = {7, 8, 9, 10, 10008};
  const ZUMImage<ZUMByte> shifted = ZUMLabelColor(ZUMImage<ZUMLong>(rod, 1, positive));
  for (int i = 0; i < 4; ++i) EXPECT_EQ(colour(shifted, i), rows[i]);
  EXPECT_NE(colour(shifted, 4), rows[0]);
  EXPECT_EQ(MessageOf([] { ZUMLabelColor(ZUMImage<ZUMLong>()); }),
            "ZUMMin:Valor indefinido por imagen vacia");
}

}  // namespace
