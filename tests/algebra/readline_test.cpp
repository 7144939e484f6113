#include "zuml/algebra/readline.h"

#include <cmath>

#include "tests/algebra/everylayout.h"
#include "zuml/core/xqdiagnostics.h"

namespace {

using namespace zuml_test;

TEST(ReadLine, TakesThePixelsNearestToTheSegment) {
  const auto earlier = XQSetDiagnosticOutput([](const char*) {});
  ForEachLayout<ZUMShort>(2, [](const ZUMImage<ZUMShort>& image, Random& random) {
    const int z = random.Int(image.BeginZ(), image.EndZ()), c = random.Int(0, 1);
    if (!image.InP(image.BeginX(), image.BeginY(), z, 0)) return;
    const auto draw_x = [&] { return random.Int(image.BeginX(), image.EndX()); };
    const auto draw_y = [&] { return random.Int(image.BeginY(), image.EndY()); };
    const int x0 = draw_x(), y0 = draw_y(), x1 = draw_x(), y1 = draw_y();
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
  XQSetDiagnosticOutput(earlier);
}

TEST(ReadLine, ReadsBytesOtherThanZeroAsTrue) {
  unsigned char bytes[] = {0, 2, 255};
  const ZUMRoDRef rod(ZUMRect(0, 0, 0, 0, 2, 0, 0, 0));
  const ZUMImage<bool> wrapped(rod, ZUMRaster(rod.RoD(), 1, ZUMBoolPixel, bytes));
  EXPECT_TRUE(
      SameImage(ZUMReadLine(wrapped, 0, 0, 2, 0, 0, 0), MakeLine<bool>({false, true, true})));
}

TEST(ReadLine, TellsOfCoordinatesBeyondTheRastersSizes) {
  const ZUMImage<ZUMReal> image(ZUMRect(10, 10, 0, 0, 19, 19, 0, 0), 2, 5.0);
  const struct {
    int x0, y0, x1, y1, z, c;
    bool told;
    const char* thrown;
  } kCases[] = {
      {10, 10, 12, 10, 0, 0, true, ""},  // in the image
      {9, 9, 9, 9, 0, 0, false, "Pixel coordinates out of image (9,9,0,0,0)"},
      {18, 12, 2000000000, 12, 0, 0, true, "Pixel coordinates out of image (20,12,0,0,0)"},
      {12, 12, 12, -2000000000, 0, 1, true, "Pixel coordinates out of image (12,9,0,0,1)"},
      {9, 9, 9, 9, 1, 0, true, "Pixel coordinates out of image (9,9,1,0,0)"},
      {12, 12, 13, 13, 0, 2, true, "Pixel coordinates out of image (12,12,0,0,2)"},
      {12, 12, 13, 13, 0, -1, true, "Pixel coordinates out of image (12,12,0,0,-1)"},
  };
  for (const auto& k : kCases) {
    std::string told;
    const auto earlier = XQSetDiagnosticOutput([&told](const char* text) { told += text; });
    EXPECT_EQ(k.thrown, MessageOf([&] { ZUMReadLine(image, k.x0, k.y0, k.x1, k.y1, k.z, k.c); }));
    XQSetDiagnosticOutput(earlier);
    EXPECT_EQ(k.told ? "Coordenadas fuera de la imagen\n" : "", told);
  }
}

}  // namespace
