#include "zuml/threshold/sigmoid.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
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
  ZUMForEachRun(
      result,
      [&](ZUMReal* out, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i)
          out[i] = Sigmoid(x0, y0, k, static_cast<double>(from + i));
      },
      result);
  return result;
}

ZUMImage<ZUMReal> ZUMSigmoidX(ZUMReal x0, ZUMReal y0, ZUMReal k, ZUMReal angle, ZUMReal half_width,
                              int from, int to) {
  RequireRange(from, to);
  // Of INT_MIN too: no image is as large as that.
  const int r =
      zuml_detail::ToCoordinate(std::max(std::abs(std::int64_t{from}), std::abs(std::int64_t{to})));
  const ZUMImage<ZUMReal> result(ZUMRoDRef(-r, -r, 0, 0, r, r, 0, 0), 1, nullptr);
  const double c = std::cos(angle), s = std::sin(angle);
  ZUMForEachPlacedRun(
      result,
      [&](const ZUMRunPlace& at, ZUMReal* out, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          const double x = static_cast<double>(at.x + i), y = at.y;
          const double along = x * c + y * s, across = x * s - y * c;
          const bool inside = std::abs(across) <= half_width && from <= along && along <= to;
          out[i] = inside ? Sigmoid(x0, y0, k, along) : 0.0;
        }
      },
      result);
  return result;
}
