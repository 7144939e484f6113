// Fields, zooms and warps at the ends of the coordinates, and what a matrix must have.

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

#include "tests/support/testimages.h"
#include "zuml/core/detail/axes.h"
#include "zuml/geometry/coordinates.h"
#include "zuml/geometry/scaling.h"
#include "zuml/geometry/warp.h"

namespace {

using namespace zuml_test;
using zuml_detail::Axis;
using zuml_detail::kAxes;
using Image = ZUMImage<ZUMLong>;

constexpr int kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();
constexpr auto kNearest = ZUMInterpolationNearest, kLinear = ZUMInterpolationLinear;
constexpr double kSame[2][3] = {{1, 0, 0}, {0, 1, 0}};

TEST(GeometryLimits, CoordinatesAndTargets) {
  for (const Axis axis : kAxes) {
    for (const int begin : {kLeast, kMost - 1}) {
      ZUMRect box;
      box.begin.*axis = begin;
      box.end.*axis = begin + 1;
      const Image coordinates = ZUMCoorsImage(box);
      int c = 0;
      for (const Axis a : kAxes) {
        EXPECT_EQ(coordinates(box.begin, c), box.begin.*a);
        EXPECT_EQ(coordinates(box.end, c++), box.end.*a);
      }
    }
  }
  // A target beyond all memory, or with coordinates but no point, makes no tables.
  const Image image(ZUMRect(), 1, 7);
  const ZUMRoDRef all(kLeast, 0, 0, 0, kMost, 0, 0, 0), none(0, kLeast, 0, 0, -1, kMost, 0, 0);
  EXPECT_NE(MessageOf([&] { ZUMWarpAffine2D(image, all, kSame, kNearest, 7); }), "");
  EXPECT_TRUE(ZUMWarpAffine2D(image, none, kSame, kNearest, 7).EmptyP());
  // Zooms reach the ends, and not beyond.
  const Image low(ZUMRoDRef(kLeast / 2, 0, 0, 0, kLeast / 2, 0, 0, 0), 1, 7);
  EXPECT_EQ(ZUMZoom2D(low, 2, 3).Rect(), ZUMRect(kLeast, 0, 0, 0, kLeast + 1, 2, 0, 0));
  const Image high(ZUMRoDRef(kMost, 0, 0, 0, kMost, 0, 0, 0), 1, 7);
  EXPECT_EQ(ZUMZoom2D(high, 1, 2).Rect(), ZUMRect(kMost, 0, 0, 0, kMost, 1, 0, 0));
  EXPECT_EQ(MessageOf([&] { ZUMZoom2D(high, 2, 1); }),
            "ZUMZoom2D: coordinate 2147483647 times 2 is beyond 32 bits");
  // A warp reaches the ends by either walk; a row at the greatest Y has no odd row below it.
  const double same[2][6] = {{0, 0, 0, 1, 0, 0}, {0, 0, 0, 0, 1, 0}};
  for (const int y : {kLeast, kMost}) {
    const Image row(ZUMRoDRef(0, y, 0, 0, 3, y, 0, 0), 1, 7);
    EXPECT_EQ(ZUMWarpAffine2D(row, row, kSame, kNearest, 3)(2, y), 7);
    EXPECT_EQ(ZUMWarp2D(row, row, same, kNearest, 3)(2, y), 7);
    EXPECT_EQ(ZUMInterlacedField(row, 5)(2, y), 7);
  }
}

TEST(GeometryLimits, MatricesBelow2x3) {
  const Image image(ZUMRect(), 1, 7);
  for (const auto& [rows, columns] : {std::pair(1, 3), std::pair(2, 2), std::pair(0, 0)}) {
    XQMatrix matrix(rows, columns);
    const std::string size = std::to_string(rows) + " x " + std::to_string(columns);
    EXPECT_EQ(MessageOf([&] { ZUMWarpAffine2D(image, image, matrix, kLinear, 7); }),
              "ZUMWarpAffine2D: a matrix of " + size + " is below 2 x 3");
  }
}

}  // namespace
