// unroll_ring: straightens the scale around a dial and counts its marks. In the polar image the
// angle runs along X, so that a ring becomes a strip and a circle a line.

#include <zuml/zuml.h>

#include <iostream>
#include <numbers>

namespace {

constexpr int kMarks = 24;

ZUMImage<ZUMByte> DrawDial() {
  const ZUMRoDRef region(0, 0, 0, 0, 199, 199, 0, 0);
  const ZUMImage<ZUMReal> x = ZUMImage<ZUMReal>(ZUMXsImage(region)) - 100,
                          y = ZUMImage<ZUMReal>(ZUMYsImage(region)) - 100;
  const ZUMImage<ZUMReal> radius = ZUMSqrt(x * x + y * y);
  const ZUMImage<ZUMBool> marks =
      ZUMCos(ZUMAtan2(y, x) * double(kMarks)) > 0.6 && radius >= 70.0 && radius <= 88.0;
  const ZUMImage<ZUMByte> dial = ZUMImIf(radius <= 96.0, ZUMByte(210), ZUMByte(60));
  return ZUMImIf(marks, 40, dial);
}

}  // namespace

int main() {
  try {
    const ZUMImage<ZUMByte> dial = DrawDial();
    const double step = 2 * std::numbers::pi / 720;
    const ZUMImage<ZUMByte> strip = ZUMCartesianToPolarIm(dial, ZUMBasePoint<int>(100, 100, 0, 0),
                                                          95, step, ZUMInterpolationLinear, 0);
    // One line through the middle of the scale. Its last column repeats the first.
    const ZUMImage<ZUMByte> line = strip.Cut(ZUMRect(0, 79, 0, 0, strip.EndX() - 1, 79, 0, 0));
    const ZUMImage<ZUMLong> marks = ZUMRegionLabel(line < 125, ZUMCon4);
    // A mark that begins before the first angle goes on at its end.
    const bool cut = line(line.BeginX(), 79) < 125 && line(line.EndX(), 79) < 125;
    const long long count = ZUMRegionArea(marks).NPixels() - cut;
    std::cout << count << " marks\n";

    ZUMWritePNG(dial, "dial.png");
    ZUMWritePNG(strip, "dial_unrolled.png");
    return count == kMarks ? 0 : 1;
  } catch (const XQException& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
