// caliper: the width of a part to a fraction of a pixel, from the profile under a line that crosses
// it. The profile is correlated with the derivative of a Gaussian; an edge is where the response is
// greatest or least, and a parabola through the three values there gives the fraction.

#include <zuml/zuml.h>

#include <cmath>
#include <iostream>

namespace {

// A bright bar from 40.3 to 85.6 with soft edges.
ZUMImage<ZUMByte> DrawBar() {
  const ZUMRoDRef region(0, 0, 0, 0, 127, 63, 0, 0);
  const ZUMImage<ZUMReal> x = ZUMXsImage(region);
  return ZUMImToByte(120.0 + 40.0 * (ZUMTanh((x - 40.3) / 2.0) - ZUMTanh((x - 85.6) / 2.0)));
}

ZUMImage<ZUMReal> MakeGaussianSlope(double sigma) {
  const int reach = int(std::ceil(4 * sigma));
  const ZUMImage<ZUMReal> x = ZUMXsImage(ZUMRoDRef(-reach, 0, 0, 0, reach, 0, 0, 0));
  return x * ZUMExp(x * x / (-2 * sigma * sigma));
}

double FindPeak(const ZUMImage<ZUMReal>& response) {
  const int x = ZUMSearchMax(response).x;
  const double left = response(x - 1), middle = response(x), right = response(x + 1);
  return x + (left - right) / (2 * (left - 2 * middle + right));
}

}  // namespace

int main() {
  try {
    const ZUMImage<ZUMByte> picture = DrawBar();
    const ZUMImage<ZUMReal> profile = ZUMReadLine(picture, 0, 32, 127, 32, 0, 0);
    const ZUMImage<ZUMReal> slope = ZUMCorr(profile, MakeGaussianSlope(2));
    const double rising = FindPeak(slope), falling = FindPeak(-slope);
    std::cout << "edges at " << rising << " and " << falling << ", width " << falling - rising
              << "\n";
    return std::abs(falling - rising - 45.3) < 0.05 ? 0 : 1;
  } catch (const XQException& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
