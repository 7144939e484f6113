/// The sampling rules that all warps share.
#pragma once

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// Whether the integer nearest to a position is a coordinate; false for NaN.
inline bool HasNearest(double s) { return s > -2147483648.5 && s < 2147483647.5; }
/// Whether both neighbours are coordinates; false for NaN.
inline bool HasNeighbours(double s) { return s > -2147483648.0 && s < 2147483647.0; }

/// A half with the sign of the position. It takes the place of two branches of arithmetic, which
/// the compiler would not make vectors of.
inline double HalfAwayFromZero(double s) { return s >= 0 ? 0.5 : -0.5; }

/// The nearest integer, halves away from zero. The sum rounds as a double does: the greatest number
/// below 0.5 gives 1.
inline int RoundCoordinate(double s) { return static_cast<int>(s + HalfAwayFromZero(s)); }

/// The two neighbours of a position and the weight of the second.
struct Neighbours {
  int first;
  int second;
  double weight;
};

/// Below 0 the pair lies around the position as it does above 0.
struct PairAround {
  static Neighbours Of(double s) {
    // The position cut toward zero, less 1 below 0.
    const double lower = static_cast<int>(s) - 0.5 + HalfAwayFromZero(s);
    const int first = static_cast<int>(lower);
    return {first, first + 1, s - lower};
  }
};

/// Below 0 the second neighbour lies on the other side of the position cut toward zero.
struct PairFromZero {
  static Neighbours Of(double s) {
    const int cut = static_cast<int>(s);
    return {cut, s >= 0 ? cut + 1 : cut - 1, s - cut};
  }
};

/// The value between four pixels, along X first.
inline double Interpolate(double p00, double p10, double p01, double p11, double fx, double fy) {
  const double a = p00 + (p10 - p00) * fx;
  const double b = p01 + (p11 - p01) * fx;
  return a + (b - a) * fy;
}

/// The source of a warp at one Z, T and channel, tested pixel by pixel.
template <class P>
class WarpSource {
 public:
  /// `test_z` and `test_t` are the coordinates at which the region is asked. Where the region does
  /// not reach z or t, there is no source at all.
  WarpSource(const ZUMImage<P>& image, int z, int t, int c, int test_z, int test_t)
      : image_(image), z_(z), t_(t), c_(c), test_z_(test_z), test_t_(test_t) {
    const ZUMRect box = image.Rect();
    covered_ = z >= box.begin.z && z <= box.end.z && t >= box.begin.t && t <= box.end.t;
  }

  P Nearest(double sx, double sy, P default_value) const {
    if (!HasNearest(sx) || !HasNearest(sy)) return default_value;
    const int x = RoundCoordinate(sx), y = RoundCoordinate(sy);
    return Holds(x, y) ? At(x, y) : default_value;
  }

  template <class Pair>
  P Linear(double sx, double sy, P default_value) const {
    if (!HasNeighbours(sx) || !HasNeighbours(sy)) return default_value;
    const Neighbours x = Pair::Of(sx), y = Pair::Of(sy);
    if (!Holds(x.first, y.first) || !Holds(x.second, y.first) || !Holds(x.first, y.second) ||
        !Holds(x.second, y.second)) {
      return default_value;
    }
    const auto at = [this](int px, int py) { return static_cast<double>(At(px, py)); };
    return ZUMTruncate<P>(Interpolate(at(x.first, y.first), at(x.second, y.first),
                                      at(x.first, y.second), at(x.second, y.second), x.weight,
                                      y.weight));
  }

 private:
  bool Holds(int x, int y) const { return covered_ && image_.InP(x, y, test_z_, test_t_); }
  P At(int x, int y) const { return ValueAt(&image_(x, y, z_, t_, c_), 0); }

  const ZUMImage<P>& image_;
  int z_, t_, c_, test_z_, test_t_;
  bool covered_;
};

}  // namespace zuml_detail
