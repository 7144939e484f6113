// The warps that run in the caller's thread: quadratic and polar.

#include "zuml/geometry/warp.h"

#include <cmath>
#include <numbers>
#include <vector>

#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumsweep.h"
#include "zuml/geometry/detail/warpsource.h"

using zuml_detail::PairAround;
using zuml_detail::PairFromZero;
using zuml_detail::WarpSource;

namespace {

void RequireInterpolation(const char* operation, ZUMInterpolation interpolation) {
  if (interpolation != ZUMInterpolationNearest && interpolation != ZUMInterpolationLinear) {
    throw XQException("%s: Unknown interpolation method", operation);
  }
}

// The common walk: `position(x, y)` gives the source position of a pixel of the result.
template <class Pair, class P, class Position>
void RunWarp(const ZUMImage<P>& image, const ZUMImage<P>& result, ZUMInterpolation interpolation,
             P default_value, const Position& position) {
  for (ZUMGenericSweepCoords1 sweep(result, result); sweep.GetStart1(); sweep.Next()) {
    P* to = static_cast<P*>(sweep.GetStart1());
    P* const end = static_cast<P*>(sweep.GetEnd1()) + 1;
    const WarpSource<P> source(image, sweep.GetZ(), sweep.GetT(), sweep.GetC(), 0, 0);
    for (int x = sweep.GetX(); to < end; ++x, ++to) {
      const ZUMBasePoint2D<double> s = position(x, sweep.GetY());
      *to = interpolation == ZUMInterpolationNearest
                ? source.Nearest(s.x, s.y, default_value)
                : source.template Linear<Pair>(s.x, s.y, default_value);
    }
  }
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<P> ZUMWarp2D(const ZUMImage<P>& image, const ZUMRoDRef& target, const double (&Q)[2][6],
                      ZUMInterpolation interpolation, std::type_identity_t<P> default_value) {
  RequireInterpolation("ZUMWarp2D", interpolation);
  const ZUMImage<P> result(target, image.GetCSz(), nullptr);
  RunWarp<PairFromZero>(image, result, interpolation, default_value, [&](double x, double y) {
    const auto value = [x, y](const double(&q)[6]) {
      return q[0] * (x * x) + q[1] * (x * y) + q[2] * (y * y) + q[3] * x + q[4] * y + q[5];
    };
    return ZUMBasePoint2D<double>(value(Q[0]), value(Q[1]));
  });
  return result;
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMCartesianToPolarIm(const ZUMImage<P>& image, const ZUMBasePoint<int>& centre,
                                  int radius, double step, ZUMInterpolation interpolation,
                                  std::type_identity_t<P> default_value) {
  RequireInterpolation("ZUMCartesianToPolarIm", interpolation);
  if (!(step > 0)) step = 1.0 / radius;
  const double angles = 2 * std::numbers::pi / step + 0.5;
  if (!zuml_detail::IsCoordinate(angles)) {
    throw XQException("ZUMCartesianToPolarIm: a step of %g makes too many angles", step);
  }
  const int last = static_cast<int>(angles);
  const ZUMImage<P> result(ZUMRoDRef(0, 0, 0, 0, last, radius, 0, 0), image.GetCSz(), nullptr);
  std::vector<double> cosines, sines;
  for (int x = 0; x <= last; ++x) {
    cosines.push_back(std::cos(x * step));
    sines.push_back(std::sin(x * step));
  }
  RunWarp<PairAround>(image, result, interpolation, default_value, [&](int x, int y) {
    const auto i = static_cast<std::size_t>(x);
    return ZUMBasePoint2D<double>(y * cosines[i] + centre.x, y * sines[i] + centre.y);
  });
  return result;
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMPolarToCartesianIm(const ZUMImage<P>& polar, double step,
                                  ZUMInterpolation interpolation,
                                  std::type_identity_t<P> default_value) {
  RequireInterpolation("ZUMPolarToCartesianIm", interpolation);
  const int radius = polar.EndY();
  if (!(step > 0)) step = 2 * std::numbers::pi / polar.EndX();
  const ZUMImage<P> result(ZUMRoDRef(-radius, -radius, 0, 0, radius, radius, 0, 0), polar.GetCSz(),
                           nullptr);
  RunWarp<PairAround>(polar, result, interpolation, default_value, [step](double x, double y) {
    return ZUMBasePoint2D<double>((std::atan2(-y, -x) + std::numbers::pi) / step,
                                  std::sqrt(x * x + y * y));
  });
  return result;
}

#define ZUML_INSTANTIATE(PIX)                                                              \
  template ZUML_API ZUMImage<PIX> ZUMWarp2D(const ZUMImage<PIX>&, const ZUMRoDRef&,        \
                                            const double(&)[2][6], ZUMInterpolation, PIX); \
  template ZUML_API ZUMImage<PIX> ZUMCartesianToPolarIm(                                   \
      const ZUMImage<PIX>&, const ZUMBasePoint<int>&, int, double, ZUMInterpolation, PIX); \
  template ZUML_API ZUMImage<PIX> ZUMPolarToCartesianIm(const ZUMImage<PIX>&, double,      \
                                                        ZUMInterpolation, PIX);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
