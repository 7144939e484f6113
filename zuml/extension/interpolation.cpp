#include "zuml/extension/interpolation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "zuml/algebra/arithmetic.h"
#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqmatrix.h"
#include "zuml/drawing/shapes.h"
#include "zuml/extension/detail/computedpixel.h"
#include "zuml/filters/gaussiankernels.h"
#include "zuml/morphology/mathmorph.h"

using zuml_detail::ValueAt;

namespace {

struct KnownPixel {
  ZUMBasePoint<int> at;
  double value;
};

// The known pixels of the region within the radius of an unknown one, in sweep order.
template <class P>
std::vector<KnownPixel> FindBand(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                                 const ZUMRoDRef& rod, int radius) {
  const ZUMImage<ZUMBool> band = ZUMDilateEx(mask, ZUMCircleIm(radius)) - mask;
  std::vector<KnownPixel> known;
  ZUMForEachPlacedRun(
      rod,
      [&](const ZUMRunPlace& place, const ZUMBool* inside, const P* x, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          if (!inside[i]) continue;
          known.push_back({{place.x + static_cast<int>(i), place.y, place.z, place.t},
                           static_cast<double>(ValueAt(x, i))});
        }
      },
      band, image);
  return known;
}

// The image with its unknown pixels computed: compute(point) is a `double`.
template <class P, class Compute>
ZUMImage<P> Fill(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask, const ZUMRoDRef& rod,
                 const Compute& compute) {
  const ZUMImage<P> result(rod, image.GetCSz(), nullptr);
  ZUMForEachPlacedRun(
      rod,
      [&](const ZUMRunPlace& place, P* r, const P* x, const ZUMBool* unknown, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          const ZUMBasePoint<int> at(place.x + static_cast<int>(i), place.y, place.z, place.t);
          r[i] = ValueAt(unknown, i) ? zuml_detail::ToPixel<P>(compute(at)) : ValueAt(x, i);
        }
      },
      result, image, mask);
  return result;
}

double Distance(const ZUMBasePoint<int>& a, const ZUMBasePoint<int>& b) {
  // Sums of squares are 32-bit integers that wrap.
  std::uint32_t sum = 0;
  for (const zuml_detail::Axis axis : zuml_detail::kAxes) {
    const std::uint32_t step =
        static_cast<std::uint32_t>(a.*axis) - static_cast<std::uint32_t>(b.*axis);
    sum += step * step;
  }
  return std::sqrt(static_cast<double>(static_cast<std::int32_t>(sum)));
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<P> ZUMExtendLinear(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask, int radius) {
  zuml_detail::RequireOneChannelEach("ZUMExtendLinear", image, mask);
  const ZUMRoDRef rod = Intersection(image, mask);
  const std::vector<KnownPixel> known = FindBand(image, mask, rod, radius);
  if (known.empty()) return ZUMCopy(image.Cut(rod));
  const int n = static_cast<int>(known.size());
  XQMatrix distances(n, n), values(n, 1);
  for (int i = 0; i < n; ++i) {
    const KnownPixel& a = known[static_cast<std::size_t>(i)];
    for (int j = 0; j < n; ++j) {
      distances[i][j] = Distance(a.at, known[static_cast<std::size_t>(j)].at);
    }
    values[i][0] = a.value;
  }
  const XQMatrix weights = XQSolveGauss(distances, values);
  return Fill(image, mask, rod, [&](const ZUMBasePoint<int>& at) {
    double sum = 0;
    for (int j = 0; j < n; ++j) {
      sum += Distance(at, known[static_cast<std::size_t>(j)].at) * weights[j][0];
    }
    return sum;
  });
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMExtendGauss(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask, int radius,
                           double sigma) {
  zuml_detail::RequireOneChannelEach("ZUMExtendGauss", image, mask);
  const ZUMRoDRef rod = Intersection(image, mask);
  const std::vector<KnownPixel> known = FindBand(image, mask, rod, radius);
  if (rod.EmptyP()) return ZUMImage<P>(rod, image.GetCSz(), nullptr);
  std::int64_t size = 0;
  for (const zuml_detail::Axis axis : zuml_detail::kAxes) {
    size = std::max(size, zuml_detail::SizeOf(rod.Rect(), axis));
  }
  const ZUMImage<ZUMReal> kernel = ZUMGaussianX(sigma, zuml_detail::ToCoordinate(size));
  const ZUMReal* const g = &kernel(0);
  return Fill(image, mask, rod, [&](const ZUMBasePoint<int>& at) {
    double numerator = 0, divisor = 0;
    for (const KnownPixel& q : known) {
      const double w = g[q.at.y - at.y] * g[q.at.x - at.x] * g[q.at.z - at.z] * g[q.at.t - at.t];
      divisor += w;
      numerator += q.value * w;
    }
    return numerator / divisor;
  });
}

#define ZUML_INSTANTIATE(PIX)                                                                     \
  template ZUML_API ZUMImage<PIX> ZUMExtendLinear(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, \
                                                  int);                                           \
  template ZUML_API ZUMImage<PIX> ZUMExtendGauss(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&,  \
                                                 int, double);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
