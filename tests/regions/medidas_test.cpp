#include "zuml/regions/medidas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>

#include "tests/regions/labelpictures.h"
#include "zuml/algebra/arithmetic.h"
#include "zuml/algebra/comparison.h"
#include "zuml/algebra/frames.h"
#include "zuml/core/detail/axes.h"
#include "zuml/morphology/boxmorphology.h"
#include "zuml/regions/feret.h"
#include "zuml/regions/labelcolor.h"
#include "zuml/regions/regionmoments.h"
#include "zuml/regions/regionshape.h"
#include "zuml/regions/singleregion.h"

namespace {

using namespace zuml_test;
using zuml_detail::kAxes;

using Point = ZUMBasePoint<int>;
using Pixels = std::vector<Point>;
using Regions = std::map<ZUMLong, Pixels>;

// The pixels of each positive label, and empty lists for those in between.
Regions Collect(const ZUMImage<ZUMLong>& labels) {
  Regions regions;
  for (const Place& at :
       PlacesOf(labels, labels.GetCSz(), [&](auto p) { return At(labels, p) > 0; }))
    regions[At(labels, at)].push_back(at.p);
  if (regions.empty()) return regions;
  for (ZUMLong label = regions.begin()->first; label < regions.rbegin()->first; ++label) {
    regions[label];
  }
  return regions;
}

template <class F>
double Sum(const Pixels& pixels, F f) {
  double sum = 0;
  for (const Point& p : pixels) sum += f(p);
  return sum;
}

// The greatest of f, or `start` without a pixel.
template <class F>
double Greatest(const Pixels& pixels, double start, F f) {
  double greatest = pixels.empty() ? start : f(pixels[0]);
  for (const Point& p : pixels) greatest = std::max<double>(greatest, f(p));
  return greatest;
}

// A table's channel c, along Y at y, against the measure of each label's pixels; NaNs are equal.
template <class P>
void ExpectTable(const ZUMImage<P>& table, int y, int c, const Regions& regions, double tolerance,
                 const std::function<double(const Pixels&)>& measure) {
  ASSERT_EQ(table.EmptyP() != 0, regions.empty());
  if (regions.empty()) return;
  ASSERT_EQ(table.BeginX(), regions.begin()->first);
  ASSERT_EQ(table.EndX(), regions.rbegin()->first);
  for (const auto& [label, pixels] : regions) {
    const double expected = measure(pixels), value = static_cast<double>(table(label, y, 0, 0, c));
    if (expected == value || (std::isnan(expected) && std::isnan(value))) continue;
    EXPECT_NEAR(value, expected, tolerance * std::max(1.0, std::abs(expected))) << label;
  }
}

double CentredMoment(const Pixels& pixels, int p, int q) {
  const double n = std::max<double>(1, static_cast<double>(pixels.size()));
  const double a = Sum(pixels, [](const Point& r) { return r.x; }) / n;
  const double b = Sum(pixels, [](const Point& r) { return r.y; }) / n;
  return Sum(pixels, [=](const Point& r) { return std::pow(r.x - a, p) * std::pow(r.y - b, q); });
}

double Elongation(const Pixels& pixels) {
  const double u20 = CentredMoment(pixels, 2, 0), u02 = CentredMoment(pixels, 0, 2),
               u11 = CentredMoment(pixels, 1, 1);
  const double root = std::sqrt(4 * u11 * u11 + (u20 - u02) * (u20 - u02));
  return pixels.size() < 2 ? NAN : std::sqrt(1 - (u20 + u02 - root) / (u20 + u02 + root));
}

// The width across direction i of n.
double Feret(const Pixels& pixels, int i, int n) {
  const double angle = i * std::acos(-1.0) / n, c = std::cos(angle), s = std::sin(angle);
  return Greatest(pixels, -INFINITY, [=](const Point& p) { return p.x * c - p.y * s; }) +
         Greatest(pixels, -INFINITY, [=](const Point& p) { return -(p.x * c - p.y * s); });
}

// The operations on one region as a bool image against those on its label.
void ExpectSingleRegion(const ZUMImage<ZUMBool>& image, const Pixels& pixels) {
  ZUMRect hull({image.EndX() + 1, image.EndY() + 1, image.EndZ() + 1, image.EndT() + 1},
               image.Begin());
  Point centre;
  const auto n = static_cast<int>(pixels.size());
  for (int Point::*axis : kAxes) {
    if (n == 0) break;
    const auto at = [axis](const Point& p) { return p.*axis; };
    hull.begin.*axis = static_cast<int>(-Greatest(pixels, 0, [=](auto& p) { return -at(p); }));
    hull.end.*axis = static_cast<int>(Greatest(pixels, 0, at));
    centre.*axis = static_cast<int>(Sum(pixels, at)) / n;
  }
  EXPECT_EQ(ZUMRegionRectHull(image), hull);
  EXPECT_EQ(ZUMRegionWidth(image), n ? hull.end.x - hull.begin.x + 1 : 0);
  EXPECT_EQ(ZUMRegionHeight(image), n ? hull.end.y - hull.begin.y + 1 : 0);
  EXPECT_EQ(ZUMRegionArea(image), n);
  EXPECT_EQ(ZUMGravityCenter(image), centre);
  EXPECT_EQ(ZUMGravityCenter(ZUMImage<ZUMByte>(image)), centre);
  const ZUMImage<ZUMReal> widths = ZUMRegionFeretDiameters(image, 5);
  EXPECT_EQ(widths.Rect(), ZUMRect(0, 0, 0, 0, 4, 0, 0, 0));
  for (int i = 0; i < 5; ++i) EXPECT_EQ(widths(i), Feret(pixels, i, 5));
}

TEST(RegionTables, EqualMeasuresOfEachLabelsPixels) {
  using Table = ZUMImage<ZUMLong> (*)(const ZUMImage<ZUMLong>&);
  const Table sizes[] = {ZUMRegionSizeX, ZUMRegionSizeY, ZUMRegionSizeZ, ZUMRegionSizeT};
  const Table sums[] = {ZUMRegionSumX, ZUMRegionSumY, ZUMRegionSumZ, ZUMRegionSumT};
  ZUMImage<ZUMReal> (*const wide_sums[])(const ZUMImage<ZUMLong>&) = {
      ZUMRegionSumXWide, ZUMRegionSumYWide, ZUMRegionSumZWide, ZUMRegionSumTWide};
  Random random(1);
  for (int round = 0; round < 24; ++round) {
    const ZUMImage<ZUMLong> labels =
        MakeRandomLabels(random, kLayouts[round % 4], round % 6 == 5 ? 0 : random.Int(3, 50));
    if (round % 3 == 0) {  // labels far from 1
      ForEachPoint(labels, labels.GetCSz(),
                   [&](auto... at) { labels(at...) += labels(at...) > 0 ? 100000 : 0; });
    }
    const Regions regions = Collect(labels);

    ZUMLong first = -5, last = -5;
    ZUMLabelInterval(labels, first, last);
    EXPECT_EQ(first, regions.empty() ? 1 : regions.begin()->first);
    EXPECT_EQ(last, regions.empty() ? 0 : regions.rbegin()->first);

    const auto area = [](const Pixels& p) { return static_cast<double>(p.size()); };
    ExpectTable(ZUMRegionArea(labels), 0, 0, regions, 0, area);
    const ZUMImage<ZUMLong> in_plane = ZUMRegionMeasures2D(labels);
    const ZUMImage<ZUMReal> centres = ZUMRegionGravityCenter(labels),
                            wide_centres = ZUMRegionGravityCenterWide(labels);
    ExpectTable(in_plane, 0, 4, regions, 0, area);
    for (int axis = 0; axis < 4; ++axis) {
      const auto at = [axis](const Point& p) { return p.*kAxes[axis]; };
      const auto minus = [axis](const Point& p) { return -(p.*kAxes[axis]); };
      const auto sum = [&](const Pixels& p) { return Sum(p, at); };
      ExpectTable(sizes[axis](labels), 0, 0, regions, 0,
                  [&](const Pixels& p) { return Greatest(p, 0, at) + Greatest(p, 0, minus); });
      const auto centre = [&](const Pixels& p) { return p.empty() ? 0 : sum(p) / area(p); };
      ExpectTable(sums[axis](labels), 0, 0, regions, 0, sum);
      ExpectTable(wide_sums[axis](labels), 0, 0, regions, 0, sum);
      ExpectTable(centres, 0, axis, regions, 0, centre);
      ExpectTable(wide_centres, 0, axis, regions, 0, centre);
      if (axis > 1) continue;
      ExpectTable(in_plane, 0, axis, regions, 0,
                  [&](const Pixels& p) { return -Greatest(p, minus(labels.End()), minus); });
      ExpectTable(in_plane, 0, axis + 2, regions, 0,
                  [&](const Pixels& p) { return Greatest(p, at(labels.Begin()), at); });
      ExpectTable(in_plane, 0, axis + 5, regions, 0, sum);
    }
    for (int p = 0; p <= 2; ++p) {
      for (int q = 0; q <= 2; ++q) {
        ExpectTable(ZUMRegionMoment(labels, p, q), 0, 0, regions, 0, [=](const Pixels& pixels) {
          return Sum(pixels, [=](const Point& r) { return std::pow(r.x, p) * std::pow(r.y, q); });
        });
        if (p + q == 4) continue;
        ExpectTable(
            ZUMRegionCenteredMoment(labels, p, q), 0, 0, regions, 1e-8,
            [=](const Pixels& pixels) { return p + q == 1 ? 0 : CentredMoment(pixels, p, q); });
      }
    }
    ExpectTable(ZUMRegionElongation(labels), 0, 0, regions, 1e-6, Elongation);
    const ZUMImage<ZUMReal> widths = ZUMRegionFeretDiameters(labels, 7);
    for (int i = 0; i < 7; ++i) {
      ExpectTable(widths, i, 0, regions, 0, [i](const Pixels& p) { return Feret(p, i, 7); });
    }
    // A pixel's part in a perimeter goes to the label that equals its difference to the least
    // neighbour.
    const ZUMImage<ZUMLong> framed = ZUMAddFrame(labels, ZUMRect(1, 1, 0, 0, 1, 1, 0, 0), 0);
    const ZUMImage<ZUMLong> rims = labels - ZUMErode(framed, ZUMRect(-1, -1, 0, 0, 1, 1, 0, 0));
    std::map<ZUMLong, int> perimeter;
    ForEachPoint(rims, rims.GetCSz(), [&](auto... at) { ++perimeter[rims(at...)]; });
    const ZUMImage<ZUMReal> circularity = ZUMRegionCircularity(labels);
    EXPECT_EQ(circularity.EmptyP() != 0, regions.empty());
    for (const auto& [label, pixels] : regions) {
      const double around = std::max(perimeter[label], 1);
      EXPECT_DOUBLE_EQ(circularity(label), 4 * std::acos(-1.0) * area(pixels) / (around * around));
      ExpectSingleRegion(ZUMPointEqual(labels, label), pixels);
    }
  }
}

TEST(RegionTables, SumsWrapUnlessWide) {
  const int x = 2000000000;
  const ZUMImage<ZUMLong> labels(ZUMRect(x, -x, 0, 0, x + 2, -x, 0, 0), 1, 4);
  EXPECT_EQ(ZUMRegionSumX(labels)(4), static_cast<ZUMLong>(6000000003LL - (1LL << 32)));
  EXPECT_EQ(ZUMRegionSumY(labels)(4), static_cast<ZUMLong>(-6000000000LL + (1LL << 32)));
  EXPECT_EQ(ZUMRegionMeasures2D(labels)(4, 0, 0, 0, 5), ZUMRegionSumX(labels)(4));
  EXPECT_EQ(ZUMRegionGravityCenter(labels)(4), (6000000003LL - (1LL << 32)) / 3.0);
  EXPECT_EQ(ZUMRegionSumXWide(labels)(4), 6000000003.0);
  EXPECT_EQ(ZUMRegionSumYWide(labels)(4), -6000000000.0);
  EXPECT_EQ(ZUMRegionGravityCenterWide(labels)(4), x + 1);
}

TEST(GravityCenter, WeighsPixels) {
  const ZUMRoDRef rod(-3, 5, 0, 0, 0, 5, 0, 0);
  const auto expect = [&]<class P>(const P(&pixels)[4], const Point& centre, double wide_x) {
    const ZUMImage<P> image(rod, 1, pixels);
    const ZUMBasePoint<double> wide = ZUMGravityCenterWide(image);
    EXPECT_EQ(ZUMGravityCenter(image), centre);
    EXPECT_DOUBLE_EQ(wide.x, wide_x);
    EXPECT_EQ(wide.y, centre.y);
  };
  expect({ZUMByte(200), ZUMByte(0), ZUMByte(0), ZUMByte(100)}, {-2, 5}, -2);
  // Total -2, sum of x 3.
  expect({ZUMShort(1), ZUMShort(-3), ZUMShort(0), ZUMShort(0)}, {-1, 5}, -1.5);
  expect({0.5, 0.0, 0.0, 0.25}, {-2, 5}, -2);
  expect({7, -7, 0, 0}, {}, 0);
  // In 32 bits, total -1 and sum of x 5 - 2^31.
  expect({INT32_MAX, INT32_MAX, 0, 1}, {INT32_MAX - 4, 5},
         -3 + (INT32_MAX + 3.0) / (2.0 * INT32_MAX + 1));
}

// Lines longer than a stretch of the sums, far from the origin.
TEST(GravityCenter, HoldsAtAnySizeIfWide) {
  const int x = 1 << 30, y = -x;
  const ZUMRect box(x, y, x, y, x + 99999, y + 10, x + 1, y + 2);
  const ZUMBasePoint<double> centre(x + 49999.5, y + 5.0, x + 0.5, y + 1.0);
  EXPECT_EQ(ZUMGravityCenterWide(ZUMImage<ZUMByte>(box, 1, 255)), centre);
  EXPECT_EQ(ZUMGravityCenterWide(ZUMImage<ZUMBool>(box, 1, true)), centre);
}

// The box of no pixel lies behind the end, also where nothing does.
TEST(RegionRectHull, EndsAtTheLastCoordinates) {
  const ZUMImage<ZUMBool> image(ZUMRect(INT32_MAX, INT32_MIN, 0, 0, INT32_MAX, INT32_MIN, 0, 0), 1,
                                false);
  EXPECT_EQ(ZUMRegionRectHull(image),
            ZUMRect(INT32_MAX, INT32_MIN + 1, 1, 1, INT32_MAX - 1, INT32_MIN, 0, 0));
  image(INT32_MAX, INT32_MIN) = true;
  EXPECT_EQ(ZUMRegionRectHull(image), image.Rect());
  EXPECT_EQ(ZUMRegionWidth(image), 1);
  // A region without pixels may still have sides.
  EXPECT_EQ(ZUMRegionWidth(ZUMImage<ZUMBool>(ZUMRect(0, 2, 0, 0, 4, 1, 0, 0), 1, true)), 0);
}

// The colour of 0 is black, and row 10002 of the palette is row 0 again.
TEST(LabelColor, WalksThroughThePaletteFromTheLeastLabel) {
  const ZUMRoDRef rod(0, 0, 0, 0, 4, 0, 0, 0);
  const ZUMLong labels[] = {-2, -1, 0, 1, 10000};
  const ZUMByte colours[] = {181, 65, 0, 115, 181, 201, 205, 0, 104, 201, 148, 5, 0, 63, 148};
  EXPECT_TRUE(SameImage(ZUMLabelColor({rod, 1, labels}), ZUMImage<ZUMByte>(rod, 3, colours)));
}

}  // namespace
