#include "zuml/threshold/sigmoid.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "zuml/core/xqexception.h"

namespace {

void RequireRange(int from, int to) {
  if (from > to) throw XQException("ZUMSigmoidX: x0 greater than x1");
}

double Sigmoid(double x0, double y0, double k, double x) {
  return 1 / (std::exp((x0 - x) * k) + 1) + y0;
}

}  // namespace

ZUMImage<ZUMReal> ZUMSigmoidX(ZUMReal x0, ZUMReal y0, ZUMReal k, int from, int to) {
  RequireRange(from, to);
  const ZUMImage<ZUMReal> result(ZUMRoDRef(from, 0, 0, 0, to, 0, 0, 0), 1, nullptr);
  for (int x = from; x <= to; ++x) result(x) = Sigmoid(x0, y0, k, x);
  return result;
}

ZUMImage<ZUMReal> ZUMSigmoidX(ZUMReal x0, ZUMReal y0, ZUMReal k, ZUMReal angle, ZUMReal half_width,
                              int from, int to) {
  RequireRange(from, to);
  const int r = std::max(std::abs(from), std::abs(to));
  const ZUMImage<ZUMReal> result(ZUMRoDRef(-r, -r, 0, 0, r, r, 0, 0), 1, nullptr);
  const double c = std::cos(angle), s = std::sin(angle);
  for (int y = -r; y <= r; ++y) {
    for (int x = -r; x <= r; ++x) {
      const double along = x * c + y * s, across = x * s - y * c;
      const bool inside = std::abs(across) <= half_width && from <= along && along <= to;
      result(x, y) = inside ? Sigmoid(x0, y0, k, along) : 0.0;
    }
  }
  return result;
}
