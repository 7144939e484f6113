// The warps that run in the caller's thread: quadratic and polar.

#include "zuml/geometry/warp.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqexception.h"
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

// The common walk over a part of the result: `position(x, y)` gives the source position of a pixel.
template <class Pair, class P, class Position>
void RunWarp(const ZUMRoDRef& part, const ZUMImage<P>& image, const ZUMImage<P>& result,
             ZUMInterpolation interpolation, P default_value, const Position& position) {
  ZUMForEachPlacedRun(
      part,
      // Copies, since pixels of one byte might be anything for the compiler.
      [&image, interpolation, default_value, position](const ZUMRunPlace& place, P* to,
                                                       std::ptrdiff_t n) {
        const WarpSource<P> source(image, place.z, place.t, place.c, 0, 0);
        const int x = place.x, y = place.y;
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          const ZUMBasePoint2D<double> s = position(static_cast<int>(x + i), y);
          to[i] = interpolation == ZUMInterpolationNearest
                      ? source.Nearest(s.x, s.y, default_value)
                      : source.template Linear<Pair>(s.x, s.y, default_value);
        }
      },
      result);
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<P> ZUMWarp2D(const ZUMImage<P>& image, const ZUMRoDRef& target, const double (&Q)[2][6],
                      ZUMInterpolation interpolation, std::type_identity_t<P> default_value) {
  RequireInterpolation("ZUMWarp2D", interpolation);
  const ZUMImage<P> result(target, image.GetCSz(), nullptr);
  const auto position = [&](double x, double y) {
    const auto value = [x, y](const double(&q)[6]) {
      return q[0] * (x * x) + q[1] * (x * y) + q[2] * (y * y) + q[3] * x + q[4] * y + q[5];
    };
    return ZUMBasePoint2D<double>(value(Q[0]), value(Q[1]));
  };
  RunWarp<PairFromZero>(result, image, result, interpolation, default_value, position);
  return result;
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMCartesianToPolarIm(const ZUMImage<P>& image, const ZUMBasePoint<int>& centre,
                                  int radius, double step, ZUMInterpolation interpolation,
                                  std::type_identity_t<P> default_value) {
  RequireInterpolation("ZUMCartesianToPolarIm", interpolation);
  if (!(step > 0)) step = 1.0 / radius;
  const double angles = 2 * std::numbers::pi / step + 0.5;
  if (!(std::abs(angles) < 2e9)) {
    throw XQException("ZUMCartesianToPolarIm: a step of %g makes too many angles", step);
  }
  const int last = static_cast<int>(angles);
  const ZUMImage<P> result(ZUMRoDRef(0, 0, 0, 0, last, radius, 0, 0), image.GetCSz(), nullptr);
  if (result.GetCSz() == 0) return result;
  // A table of the angles serves all radii, a strip of them at a time: there may be billions.
  constexpr int kStrip = 4096;
  for (int begin = 0; begin <= last; begin += kStrip) {
    const int end = std::min(begin + kStrip - 1, last);
    double cosines[kStrip], sines[kStrip];
    for (int x = begin; x <= end; ++x) {
      cosines[x - begin] = std::cos(x * step);
      sines[x - begin] = std::sin(x * step);
    }
    const ZUMRoDRef strip(begin, 0, 0, 0, end, radius, 0, 0);
    const auto position = [&](int x, int y) {
      return ZUMBasePoint2D<double>(y * cosines[x - begin] + centre.x,
                                    y * sines[x - begin] + centre.y);
    };
    RunWarp<PairAround>(strip, image, result, interpolation, default_value, position);
  }
  return result;
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMPolarToCartesianIm(const ZUMImage<P>& polar, double step,
                                  ZUMInterpolation interpolation,
                                  std::type_identity_t<P> default_value) {
  RequireInterpolation("ZUMPolarToCartesianIm", interpolation);
  const int radius = polar.EndY();
  if (!(step > 0)) step = 2 * std::numbers::pi / polar.EndX();
  const int begin = zuml_detail::ToCoordinate(-std::int64_t{radius});
  const ZUMImage<P> result(ZUMRoDRef(begin, begin, 0, 0, radius, radius, 0, 0), polar.GetCSz(),
                           nullptr);
  const auto position = [step](double x, double y) {
    return ZUMBasePoint2D<double>((std::atan2(-y, -x) + std::numbers::pi) / step,
                                  std::sqrt(x * x + y * y));
  };
  RunWarp<PairAround>(result, polar, result, interpolation, default_value, position);
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
