#include "zuml/filters/gaussiankernels.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "zuml/core/detail/axes.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"

using zuml_detail::Axis;
using zuml_detail::kT;
using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::kZ;

namespace {

constexpr double kInverseRootOfTwoPi = 0.3989422804014327;
constexpr double kRootOfTwoPi = 2.5066282746310002;
constexpr double kRootOfTwo = 1.4142135623730951;
constexpr double kTwoRootsOfPi = 3.5449077018110318;
constexpr double kDefaultScale = 10.026513098524001;  // 4 sqrt(2 pi)

/// A Gaussian of one coordinate, or its derivative of order 1 or 2.
class Profile {
 public:
  Profile(double sigma, int order) : sigma_(sigma), order_(order) {}

  double operator()(double u) const {
    const double s = sigma_, width = 2 * s * s;
    switch (order_) {
      case 0:
        // The limit, also for a sigma whose square is too small for a number.
        if (width == 0) return u == 0 ? 1 : 0;
        return kInverseRootOfTwoPi / s * std::exp(-(u * u) / width);
      case 1:
        return -u / (kRootOfTwoPi * (s * s * s)) * std::exp(-(u * u) / width);
      default:
        return (u * u - s * s) * (kRootOfTwo / (kTwoRootsOfPi * (s * s * s * s * s))) *
               std::exp(-(u * u) / width);
    }
  }

 private:
  double sigma_;
  int order_;
};

void Require(bool condition, const char* operation, const char* what) {
  if (!condition) throw XQException("%s: %s not allowed", operation, what);
}

void RequireOrder(const char* operation, const char* name, int nd) {
  if (nd < 0 || nd > 2) {
    throw XQException("%s only accept derivatives of orden 0,1 or 2 (%s=%d)", operation, name, nd);
  }
}

// The radius asked for, or the default one, at least `least`.
int RadiusFor(double sigma, int radius, bool derivative) {
  if (radius > 0) return radius;
  const double r = 1.5 * sigma + 0.5;
  constexpr int kMost = std::numeric_limits<int>::max();
  const int standard = r < kMost ? static_cast<int>(r) : kMost;
  return standard == 0 && derivative ? 1 : standard;
}

// The line from -r to r along an axis; Value gives the pixel at a coordinate.
template <class P, class Value>
ZUMImage<P> MakeLine(Axis axis, int r, const Value& value) {
  ZUMRect box;
  box.begin.*axis = -r;
  box.end.*axis = r;
  const ZUMImage<P> line(box, 1, P());
  P* const start = &line(box.begin);
  for (long long i = -static_cast<long long>(r); i <= r; ++i)
    start[i + r] = value(static_cast<int>(i));
  return line;
}

// The rectangle with these radii; Value gives the pixel at (x, y).
template <class Value>
ZUMImage<ZUMReal> MakeRectangle(int rx, int ry, const Value& value) {
  const ZUMImage<ZUMReal> image(ZUMRect(-rx, -ry, 0, 0, rx, ry, 0, 0), 1, ZUMReal());
  ZUMReal* pixel = &image(-rx, -ry);
  for (int y = -ry; y <= ry; ++y) {
    for (int x = -rx; x <= rx; ++x) *pixel++ = value(x, y);
  }
  return image;
}

ZUMImage<ZUMReal> MakeProduct(const ZUMImage<ZUMReal>& line, const ZUMImage<ZUMReal>& column) {
  return MakeRectangle(line.EndX(), column.EndY(),
                       [&](int x, int y) { return line(x) * column(0, y); });
}

ZUMImage<ZUMReal> MakeNormalised(const char* operation, Axis axis, double sigma, int radius) {
  Require(sigma >= 0, operation, "Sigma negative");
  Require(radius >= 0, operation, "Radius negative");
  const int r = RadiusFor(sigma, radius, false);
  if (r == 0) return MakeLine<ZUMReal>(axis, 0, [](int) { return 1.0; });
  const Profile profile(sigma, 0);
  double sum = 0;
  const ZUMImage<ZUMReal> line = MakeLine<ZUMReal>(axis, r, [&](int i) {
    const double value = profile(i);
    sum += value;
    return value;
  });
  const double scale = 1 / sum;
  ZUMReal* const pixels = &line(line.Begin());
  for (std::ptrdiff_t i = 0; i < line.NPixels(); ++i) pixels[i] *= scale;
  return line;
}

ZUMImage<ZUMLong> MakeInteger(const char* operation, Axis axis, double sigma, int scale) {
  Require(sigma >= 0, operation, "Sigma negative");
  Require(scale >= 0, operation, "Scale negative");
  if (sigma == 0) return MakeLine<ZUMLong>(axis, 0, [](int) { return ZUMLong{1}; });
  const double s = scale != 0 ? scale : std::trunc(sigma * kDefaultScale);
  const double peak = kInverseRootOfTwoPi / sigma * s;
  const auto value = [&](double i) {
    return ZUMTruncate<ZUMLong>(std::exp(-(i * i) / (2 * sigma * sigma)) * peak);
  };
  // A longer line is refused for its size in any case.
  constexpr int kMostPixels = std::numeric_limits<int>::max() / 8;
  int r = 0;
  while (r < kMostPixels && value(r + 1) != 0) ++r;
  return MakeLine<ZUMLong>(axis, r,
                           [&](int i) { return i == 0 ? ZUMTruncate<ZUMLong>(peak) : value(i); });
}

// The names under which a kernel of one axis reports: its own, that of a sigma of 0, and that of a
// wrong order.
struct DerivativeNames {
  const char* own;
  const char* zero;
  const char* order;
};

ZUMImage<ZUMReal> MakeDerivative(const DerivativeNames& names, Axis axis, double sigma, int nd,
                                 int radius) {
  Require(sigma >= 0, names.own, "Sigma negative");
  Require(radius >= 0, names.own, "Radius negative");
  Require(sigma != 0 || nd < 1, names.zero, "Sigma 0");
  RequireOrder(names.order, "nd", nd);
  const int r = RadiusFor(sigma, radius, nd > 0);
  if (r == 0) return MakeLine<ZUMReal>(axis, 0, [](int) { return 1.0; });
  return MakeLine<ZUMReal>(axis, r, Profile(sigma, nd));
}

double SquaredDistance(double x, double y) { return x * x + y * y; }

// The coordinates of a kernel at an angle.
struct Turn {
  explicit Turn(double angle) : c(std::cos(angle)), s(std::sin(angle)) {}
  double Along(int x, int y) const { return x * c + y * s; }
  double Across(int x, int y) const { return x * s - y * c; }

  double c, s;
};

// A line at an angle; `kept` says which of the pixels along it count.
template <class Kept>
ZUMImage<ZUMReal> MakeOrientedLine(double sigma, int nd, double angle, double half_width,
                                   int radius, const Kept& kept) {
  constexpr const char* kName = "ZUMGaussianX_D";
  Require(sigma >= 0, kName, "SigmaX negative");
  Require(sigma != 0 || nd < 1, kName, "SigmaX 0");
  Require(radius >= 0, kName, "Radius negative");
  RequireOrder(kName, "ndx", nd);
  const int r = RadiusFor(sigma, radius, nd > 0);
  const Profile profile(sigma, nd);
  const Turn turn(angle);
  return MakeRectangle(r, r, [&](int x, int y) {
    const double u = turn.Along(x, y);
    if (SquaredDistance(x, y) > SquaredDistance(r, 0) ||
        std::fabs(turn.Across(x, y)) > half_width || !kept(u))
      return 0.0;
    return profile(u);
  });
}

constexpr const char* kSquareName = "ZUMGaussian2D_D";

void RequireSquareArguments(double sigma, int ndx, int ndy, int radius) {
  Require(sigma >= 0, kSquareName, "Sigma negative");
  Require(radius >= 0, kSquareName, "Radius negative");
  Require(sigma != 0 || (ndx < 1 && ndy < 1), kSquareName, "Sigma 0");
  RequireOrder(kSquareName, "ndx", ndx);
  RequireOrder(kSquareName, "ndy", ndy);
}

// A derivative at an angle, in a rectangle; `kept` says which of the pixels along it count.
template <class Kept>
ZUMImage<ZUMReal> MakeTurned(double sigma_x, double sigma_y, int ndx, int ndy, double angle, int rx,
                             int ry, const Kept& kept) {
  const bool derivative = ndx > 0 || ndy > 0;
  const Profile along(sigma_x, ndx), across(sigma_y, ndy);
  const Turn turn(angle);
  return MakeRectangle(RadiusFor(sigma_x, rx, derivative), RadiusFor(sigma_y, ry, derivative),
                       [&](int x, int y) {
                         const double u = turn.Along(x, y);
                         return kept(u) ? along(u) * across(turn.Across(x, y)) : 0.0;
                       });
}

}  // namespace

ZUMImage<ZUMReal> ZUMGaussianX(ZUMReal sigma, int radius) {
  return MakeNormalised("ZUMGaussianX", kX, sigma, radius);
}
ZUMImage<ZUMReal> ZUMGaussianY(ZUMReal sigma, int radius) {
  return MakeNormalised("ZUMGaussianY", kY, sigma, radius);
}
ZUMImage<ZUMReal> ZUMGaussianZ(ZUMReal sigma, int radius) {
  return MakeNormalised("ZUMGaussianZ", kZ, sigma, radius);
}
ZUMImage<ZUMReal> ZUMGaussianT(ZUMReal sigma, int radius) {
  return MakeNormalised("ZUMGaussianT", kT, sigma, radius);
}

ZUMImage<ZUMLong> ZUMGaussianIntX(ZUMReal sigma, int scale) {
  return MakeInteger("ZUMGaussianIntX", kX, sigma, scale);
}
ZUMImage<ZUMLong> ZUMGaussianIntY(ZUMReal sigma, int scale) {
  return MakeInteger("ZUMGaussianIntY", kY, sigma, scale);
}
ZUMImage<ZUMLong> ZUMGaussianIntZ(ZUMReal sigma, int scale) {
  return MakeInteger("ZUMGaussianIntZ", kZ, sigma, scale);
}
ZUMImage<ZUMLong> ZUMGaussianIntT(ZUMReal sigma, int scale) {
  return MakeInteger("ZUMGaussianIntT", kT, sigma, scale);
}

ZUMImage<ZUMReal> ZUMGaussian2D(ZUMReal sigma, int radius) {
  return ZUMGaussianXY(sigma, sigma, radius, radius);
}

ZUMImage<ZUMReal> ZUMGaussianXY(ZUMReal sigma_x, ZUMReal sigma_y, int radius_x, int radius_y) {
  const ZUMImage<ZUMReal> line = ZUMGaussianX(sigma_x, radius_x);
  return MakeProduct(line, ZUMGaussianY(sigma_y, radius_y));
}

ZUMImage<ZUMReal> ZUMGaussianX_D(ZUMReal sigma, int nd, int radius) {
  return MakeDerivative({"ZUMGaussianX_D", "ZUMGaussianX_D", "ZUMGaussianX_D"}, kX, sigma, nd,
                        radius);
}
ZUMImage<ZUMReal> ZUMGaussianY_D(ZUMReal sigma, int nd, int radius) {
  return MakeDerivative({"ZUMGaussianY_D", "ZUMGaussianY_D", "ZUMGaussianY_D"}, kY, sigma, nd,
                        radius);
}
ZUMImage<ZUMReal> ZUMGaussianZ_D(ZUMReal sigma, int nd, int radius) {
  return MakeDerivative({"ZUMGaussianZ_D", "ZUMGaussianY_D", "ZUMGaussianZ_D"}, kZ, sigma, nd,
                        radius);
}
ZUMImage<ZUMReal> ZUMGaussianT_D(ZUMReal sigma, int nd, int radius) {
  return MakeDerivative({"ZUMGaussianT_D", "ZUMGaussianY_D", "ZUMGaussianZ_D"}, kT, sigma, nd,
                        radius);
}

ZUMImage<ZUMReal> ZUMGaussianX_D(ZUMReal sigma, int nd, ZUMReal angle, ZUMReal half_width,
                                 int radius) {
  return MakeOrientedLine(sigma, nd, angle, half_width, radius, [](double) { return true; });
}
ZUMImage<ZUMReal> ZUMGaussianX_DLeft(ZUMReal sigma, int nd, ZUMReal angle, ZUMReal half_width,
                                     int radius) {
  return MakeOrientedLine(sigma, nd, angle, half_width, radius, [](double u) { return !(u > 0); });
}
ZUMImage<ZUMReal> ZUMGaussianX_DRight(ZUMReal sigma, int nd, ZUMReal angle, ZUMReal half_width,
                                      int radius) {
  return MakeOrientedLine(sigma, nd, angle, half_width, radius, [](double u) { return !(u < 0); });
}

ZUMImage<ZUMReal> ZUMGaussian2D_D(ZUMReal sigma, int ndx, int ndy, ZUMReal angle, int radius) {
  RequireSquareArguments(sigma, ndx, ndy, radius);
  if (angle == 0) return ZUMGaussianXY_D(sigma, sigma, ndx, ndy, radius, radius);
  return MakeTurned(sigma, sigma, ndx, ndy, angle, radius, radius, [](double) { return true; });
}

ZUMImage<ZUMReal> ZUMGaussian2D_DL(ZUMReal sigma, int ndx, int ndy, ZUMReal angle, int radius) {
  RequireSquareArguments(sigma, ndx, ndy, radius);
  return MakeTurned(sigma, sigma, ndx, ndy, angle, radius, radius,
                    [=](double u) { return !(u > sigma); });
}

ZUMImage<ZUMReal> ZUMGaussian2D_DR(ZUMReal sigma, int ndx, int ndy, ZUMReal angle, int radius) {
  RequireSquareArguments(sigma, ndx, ndy, radius);
  return MakeTurned(sigma, sigma, ndx, ndy, angle, radius, radius,
                    [=](double u) { return !(u < -sigma); });
}

ZUMImage<ZUMReal> ZUMGaussianXY_D(ZUMReal sigma_x, ZUMReal sigma_y, int ndx, int ndy, int radius_x,
                                  int radius_y) {
  const ZUMImage<ZUMReal> line = ZUMGaussianX_D(sigma_x, ndx, radius_x);
  return MakeProduct(line, ZUMGaussianY_D(sigma_y, ndy, radius_y));
}

ZUMImage<ZUMReal> ZUMGaussianXY_D(ZUMReal sigma_x, ZUMReal sigma_y, int ndx, int ndy, ZUMReal angle,
                                  int radius_x, int radius_y) {
  const bool derivative = ndx > 0 || ndy > 0;
  Require(sigma_x >= 0, kSquareName, "SigmaX negative");
  Require(sigma_y >= 0, kSquareName, "SigmaY negative");
  Require(sigma_x != 0 || !derivative, kSquareName, "SigmaX 0");
  Require(sigma_y != 0 || !derivative, kSquareName, "SigmaY 0");
  Require(radius_x >= 0 && radius_y >= 0, kSquareName, "Radius negative");
  RequireOrder(kSquareName, "ndx", ndx);
  RequireOrder(kSquareName, "ndy", ndy);
  if (angle == 0) return ZUMGaussianXY_D(sigma_x, sigma_y, ndx, ndy, radius_x, radius_y);
  return MakeTurned(sigma_x, sigma_y, ndx, ndy, angle, radius_x, radius_y,
                    [](double) { return true; });
}

ZUMImage<ZUMReal> ZUMLoG2D(ZUMReal sigma, int radius) {
  constexpr const char* kName = "ZUMLoG2D";
  Require(sigma >= 0, kName, "Sigma negative");
  Require(radius >= 0, kName, "Radius negative");
  Require(sigma != 0, kName, "Sigma 0");
  const int r = RadiusFor(sigma, radius, false);
  const double a = -1 / (std::numbers::pi * (sigma * sigma * sigma * sigma));
  return MakeRectangle(r, r, [&](int x, int y) {
    const double t = -SquaredDistance(x, y) / (2 * sigma * sigma);
    return std::exp(t) * (t + 1) * a;
  });
}
