#include "zuml/algebra/readline.h"

#include <cmath>

#include "tests/support/diagnostics.h"
#include "tests/support/everylayout.h"

namespace {

using namespace zuml_test;

TEST(ReadLine, TakesThePixelsNearestToTheSegment) {
  const CaptureDiagnostics told;
  ForEachLayout<ZUMShort>(2, [](const ZUMImage<ZUMShort>& image, Random& random) {
    const int z = random.Int(image.BeginZ(), image.EndZ()), c = random.Int(0, 1);
    if (!image.InP(image.BeginX(), image.BeginY(), z, 0)) return;
    const int x0 = random.Int(image.BeginX(), image.EndX()),
              x1 = random.Int(image.BeginX(), image.EndX());
    const int y0 = random.Int(image.BeginY(), image.EndY()),
              y1 = random.Int(image.BeginY(), image.EndY());
    const int n = std::max(std::abs(x1 - x0), std::abs(y1 - y0));
    // Of two equally near, the one further from the start.
    const auto nearest = [n](int from, int to, int i) {
      const double step = n == 0 ? 0 : std::fabs(to - from) * i / n;
      return from + (to > from ? 1 : -1) * static_cast<int>(std::floor(step + 0.5));
    };
    const auto expected = MakeByPoint<ZUMShort>(
        ZUMRect(0, 0, 0, 0, n, 0, 0, 0), 1,
        [&](int i, auto...) { return image(nearest(x0, x1, i), nearest(y0, y1, i), z, 0, c); });
    EXPECT_TRUE(SameImage(ZUMReadLine(image, x0, y0, x1, y1, z, c), expected));
  });
}

TEST(ReadLine, TellsOfCoordinatesBeyondTheRastersSizes) {
  const ZUMImage<ZUMReal> image(ZUMRect(10, 10, 0, 0, 19, 19, 0, 0), 2, 5.0);
  const auto expect = [&](bool told, const std::string& point, auto... segment) {
    CaptureDiagnostics text;
    EXPECT_EQ(point.empty() ? "" : "Pixel coordinates out of image " + point,
              MessageOf([&] { ZUMReadLine(image, segment...); }));
    EXPECT_EQ(told ? "Coordenadas fuera de la imagen\n" : "", text.Take());
  };
  expect(true, "", 10, 10, 12, 10, 0, 0);  // in the image
  expect(false, "(9,9,0,0,0)", 9, 9, 9, 9, 0, 0);
  expect(true, "(20,12,0,0,0)", 18, 12, 2000000000, 12, 0, 0);
  expect(true, "(12,9,0,0,1)", 12, 12, 12, -2000000000, 0, 1);
  expect(true, "(9,9,1,0,0)", 9, 9, 9, 9, 1, 0);
  expect(true, "(12,12,0,0,2)", 12, 12, 13, 13, 0, 2);
  expect(true, "(12,12,0,0,-1)", 12, 12, 13, 13, 0, -1);
}

}  // namespace
