// The affine warp and the lookup of columns, which run in tasks.

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumsweep.h"
#include "zuml/geometry/detail/warpsource.h"
#include "zuml/geometry/warp.h"

using zuml_detail::Interpolate;
using zuml_detail::Neighbours;
using zuml_detail::PairAround;
using zuml_detail::RoundCoordinate;
using zuml_detail::Stored;
using zuml_detail::WarpSource;

namespace {

// The four tables of an affine warp: a source position is the sum of an entry by x and one by y.
class AffineTables {
 public:
  AffineTables(const ZUMRoDRef& target, const double (&m)[2][3])
      : begin_x_(target.BeginX()), begin_y_(target.BeginY()) {
    for (int x = target.BeginX(); x <= target.EndX(); ++x) {
      xx_.push_back(x * m[0][0]);
      xy_.push_back(x * m[1][0]);
    }
    for (int y = target.BeginY(); y <= target.EndY(); ++y) {
      yx_.push_back(y * m[0][1] + m[0][2]);
      yy_.push_back(y * m[1][1] + m[1][2]);
    }
    for (const auto* table : {&xx_, &xy_, &yx_, &yy_}) {
      for (const double v : *table) finite_ = finite_ && std::isfinite(v);
    }
  }

  /// The tables by x from the coordinate on.
  const double* GetSX(int x) const { return xx_.data() + (x - begin_x_); }
  const double* GetSY(int x) const { return xy_.data() + (x - begin_x_); }
  /// What a line adds to them.
  double GetLineSX(int y) const { return yx_[static_cast<std::size_t>(y - begin_y_)]; }
  double GetLineSY(int y) const { return yy_[static_cast<std::size_t>(y - begin_y_)]; }
  /// Along a line, source positions then never turn back.
  bool IsMonotone() const { return finite_; }

 private:
  int begin_x_, begin_y_;
  std::vector<double> xx_, xy_, yx_, yy_;
  bool finite_ = true;
};

// The indices [first, last) of a line.
struct Range {
  int first;
  int last;
};

// The part of the range whose positions v[i] + add lie between low and high by `below` and `above`.
// The positions never turn back, so it is one stretch, found by bisection.
template <class Below, class Above>
Range FindInside(Range range, const double* v, double add, Below below, Above above) {
  if (range.first >= range.last) return range;
  const bool rising = v[range.first] <= v[range.last - 1];
  const auto bisect = [&](auto before) {
    int low = range.first, high = range.last;
    while (low < high) {
      const int middle = low + (high - low) / 2;
      if (before(v[middle] + add)) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low;
  };
  const int first = rising ? bisect(below) : bisect(above);
  const int last = rising ? bisect([&](double s) { return !above(s); })
                          : bisect([&](double s) { return !below(s); });
  return {first, std::max(first, last)};
}

// A line is warped in stretches: first the places of all source pixels, then the pixels, so that
// the compiler makes vectors of all but the reads themselves.
constexpr int kStretch = 128;

// The source's pixels at one Z, T and channel.
template <class P>
struct SourceLines {
  const Stored<P>* origin;  // the pixel at `begin`
  int pitch;
  ZUMBasePoint<int> begin;

  std::int32_t GetOffset(int x, int y) const { return (y - begin.y) * pitch + (x - begin.x); }
};

// One coordinate of the source positions of a stretch.
struct Positions {
  const double* by_x;
  double by_y;

  double operator[](int i) const { return by_x[i] + by_y; }
};

// The value between four pixels, by weights from 0 to 1. Between integers it is one that 32 bits
// hold, so that the conversion needs no test.
template <class P>
Stored<P> InterpolateStored(Stored<P> p00, Stored<P> p10, Stored<P> p01, Stored<P> p11, double fx,
                            double fy) {
  if constexpr (std::same_as<P, ZUMBool>) {
    return Interpolate(p00 != 0, p10 != 0, p01 != 0, p11 != 0, fx, fy) != 0;
  } else if constexpr (std::integral<P>) {
    return static_cast<P>(static_cast<std::int32_t>(Interpolate(p00, p10, p01, p11, fx, fy)));
  } else {
    return Interpolate(p00, p10, p01, p11, fx, fy);
  }
}

// What both interpolations share: the walk over the part, and the stretch of each line that has a
// source, where pixels are read without a test.
template <class P>
class WarpAffineBase : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<P>* result;
  const ZUMImage<P>* image;
  const AffineTables* tables;
  P default_value;

 protected:
  // Rule has the bounds of positions whose pixels the region holds, the tested form for one pixel
  // and the untested loop.
  template <class Rule>
  void Warp(const Rule& rule) const {
    const ZUMRect box = image->Rect();
    const bool bounded = tables->IsMonotone() && zuml_detail::IsBox(*image) && !image->EmptyP();
    for (ZUMGenericSweepCoords1 sweep(part, *result); sweep.GetStart1(); sweep.Next()) {
      P* to = static_cast<P*>(sweep.GetStart1());
      const int n = static_cast<int>(static_cast<P*>(sweep.GetEnd1()) - to) + 1;
      const double* sx = tables->GetSX(sweep.GetX());
      const double* sy = tables->GetSY(sweep.GetX());
      const double add_x = tables->GetLineSX(sweep.GetY());
      const double add_y = tables->GetLineSY(sweep.GetY());
      const int z = sweep.GetZ(), t = sweep.GetT(), c = sweep.GetC();
      if (!bounded) {
        const WarpSource<P> source(*image, z, t, c, z, t);
        for (int i = 0; i < n; ++i) {
          to[i] = rule.Tested(source, sx[i] + add_x, sy[i] + add_y, default_value);
        }
        continue;
      }
      Range inside{0, 0};
      if (z >= box.begin.z && z <= box.end.z && t >= box.begin.t && t <= box.end.t) {
        inside = FindInside({0, n}, sx, add_x, rule.Below(box.begin.x), rule.Above(box.end.x));
        inside = FindInside(inside, sy, add_y, rule.Below(box.begin.y), rule.Above(box.end.y));
      }
      std::fill(to, to + inside.first, default_value);
      if (inside.first < inside.last) {
        const SourceLines<P> lines{
            reinterpret_cast<const Stored<P>*>(&(*image)(box.begin.x, box.begin.y, z, t, c)),
            static_cast<int>(image->GetLineSz()), box.begin};
        for (int i = inside.first; i < inside.last; i += kStretch) {
          const int count = std::min(kStretch, inside.last - i);
          rule.Read(reinterpret_cast<Stored<P>*>(to + i), lines, {sx + i, add_x}, {sy + i, add_y},
                    count);
        }
      }
      std::fill(to + inside.last, to + n, default_value);
    }
  }
};

template <class P>
struct NearestRule {
  static auto Below(int begin) {
    return [begin](double s) { return !(s >= 0 ? s + 0.5 >= begin : s - 0.5 > begin - 1.0); };
  }
  static auto Above(int end) {
    return [end](double s) { return !(s >= 0 ? s + 0.5 < end + 1.0 : s - 0.5 <= end); };
  }
  static P Tested(const WarpSource<P>& source, double sx, double sy, P default_value) {
    return source.Nearest(sx, sy, default_value);
  }
  static void Read(Stored<P>* to, const SourceLines<P>& lines, Positions sx, Positions sy, int n) {
    std::int32_t offsets[kStretch];
    for (int i = 0; i < n; ++i) {
      offsets[i] = lines.GetOffset(RoundCoordinate(sx[i]), RoundCoordinate(sy[i]));
    }
    for (int i = 0; i < n; ++i) {
      const Stored<P> value = lines.origin[offsets[i]];
      to[i] = std::same_as<P, ZUMBool> ? value != 0 : value;
    }
  }
};

template <class P>
struct LinearRule {
  static auto Below(int begin) {
    return [begin](double s) { return s >= 0 ? s < begin : First(s) < begin; };
  }
  static auto Above(int end) {
    return [end](double s) { return s >= 0 ? !(s < end) : First(s) + 1 > end; };
  }
  static P Tested(const WarpSource<P>& source, double sx, double sy, P default_value) {
    return source.template Linear<PairAround>(sx, sy, default_value);
  }
  static void Read(Stored<P>* to, const SourceLines<P>& lines, Positions sx, Positions sy, int n) {
    std::int32_t offsets[kStretch];
    double x_weights[kStretch], y_weights[kStretch];
    for (int i = 0; i < n; ++i) {
      const Neighbours x = PairAround::Of(sx[i]), y = PairAround::Of(sy[i]);
      offsets[i] = lines.GetOffset(x.first, y.first);
      x_weights[i] = x.weight;
      y_weights[i] = y.weight;
    }
    // The pairs of the upper and the lower line.
    Stored<P> upper[2 * kStretch], lower[2 * kStretch];
    for (int i = 0; i < n; ++i) {
      const Stored<P>* pair = lines.origin + offsets[i];
      std::memcpy(upper + 2 * i, pair, 2 * sizeof(P));
      std::memcpy(lower + 2 * i, pair + lines.pitch, 2 * sizeof(P));
    }
    for (int i = 0; i < n; ++i) {
      to[i] = InterpolateStored<P>(upper[2 * i], upper[2 * i + 1], lower[2 * i], lower[2 * i + 1],
                                   x_weights[i], y_weights[i]);
    }
  }

 private:
  // The lower neighbour of a negative position, as a number that cannot overflow.
  static double First(double s) { return std::trunc(s) - 1; }
};

}  // namespace

template <class P>
class CTaskWarpAffine2DNearest final : public WarpAffineBase<P> {
 public:
  void Run() override { this->Warp(NearestRule<P>()); }
};

template <class P>
class CTaskWarpAffine2DLinear final : public WarpAffineBase<P> {
 public:
  void Run() override { this->Warp(LinearRule<P>()); }
};

namespace {

template <class Task, class P>
ZUMImage<P> RunWarpAffine(const ZUMImage<P>& image, const ZUMRoDRef& target,
                          const AffineTables& tables, P default_value) {
  return ZUMRunTasks<Task, P>(target, image.GetCSz(), [&](Task& task) {
    task.image = &image;
    task.tables = &tables;
    task.default_value = default_value;
  });
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<P> ZUMWarpAffine2D(const ZUMImage<P>& image, const ZUMRoDRef& target,
                            const double (&M)[2][3], ZUMInterpolation interpolation,
                            std::type_identity_t<P> default_value) {
  const bool nearest = interpolation == ZUMInterpolationNearest;
  if (!nearest && interpolation != ZUMInterpolationLinear) {
    throw XQException("ZUMWarpAffine2D: Unknown interpolation method");
  }
  const AffineTables tables(target, M);
  return nearest
             ? RunWarpAffine<CTaskWarpAffine2DNearest<P>, P>(image, target, tables, default_value)
             : RunWarpAffine<CTaskWarpAffine2DLinear<P>, P>(image, target, tables, default_value);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMWarpAffine2D(const ZUMImage<P>& image, const ZUMRoDRef& target, XQMatrix& M,
                            ZUMInterpolation interpolation, std::type_identity_t<P> default_value) {
  const double rows[2][3] = {{M[0][0], M[0][1], M[0][2]}, {M[1][0], M[1][1], M[1][2]}};
  return ZUMWarpAffine2D(image, target, rows, interpolation, default_value);
}

/// Reads its part's pixels from the columns of the table.
template <class P>
class CTaskWarpXLut final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<P>* result;
  const ZUMImage<P>* image;
  const ZUMImage<ZUMLong>* lut;

  void Run() override {
    for (ZUMGenericSweepCoords1 sweep(part, *result); sweep.GetStart1(); sweep.Next()) {
      P* to = static_cast<P*>(sweep.GetStart1());
      const auto n = static_cast<P*>(sweep.GetEnd1()) - to + 1;
      const ZUMLong* columns = &(*lut)(sweep.GetX());
      const P* line =
          &(*image)(image->BeginX(), sweep.GetY(), sweep.GetZ(), sweep.GetT(), sweep.GetC());
      const std::ptrdiff_t begin = image->BeginX();
      for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = line[columns[i] - begin];
    }
  }
};

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMWarpXLut(const ZUMImage<P>& image, const ZUMImage<ZUMLong>& LUTX) {
  const ZUMRect lut = LUTX.Rect();
  if (LUTX.GetCSz() != 1 || lut.begin.y != 0 || lut.end.y != 0 || lut.begin.z != 0 ||
      lut.end.z != 0 || lut.begin.t != 0 || lut.end.t != 0) {
    throw XQException("ZUMWarpXLut: Dimensions of LUTX are not accepted");
  }
  ZUMRect box = image.Rect();
  box.begin.x = lut.begin.x;
  box.end.x = image.EmptyP() ? lut.begin.x - 1 : lut.end.x;
  return ZUMRunTasks<CTaskWarpXLut<P>, P>(ZUMRoDRef(box), image.GetCSz(), [&](auto& task) {
    task.image = &image;
    task.lut = &LUTX;
  });
}

#define ZUML_INSTANTIATE_WARP(PIX)                                                               \
  template ZUML_API ZUMImage<PIX> ZUMWarpAffine2D(const ZUMImage<PIX>&, const ZUMRoDRef&,        \
                                                  const double(&)[2][3], ZUMInterpolation, PIX); \
  template ZUML_API ZUMImage<PIX> ZUMWarpAffine2D(const ZUMImage<PIX>&, const ZUMRoDRef&,        \
                                                  XQMatrix&, ZUMInterpolation, PIX);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE_WARP)
#undef ZUML_INSTANTIATE_WARP

#define ZUML_INSTANTIATE_LUT(PIX) \
  template ZUML_API ZUMImage<PIX> ZUMWarpXLut(const ZUMImage<PIX>&, const ZUMImage<ZUMLong>&);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE_LUT)
#undef ZUML_INSTANTIATE_LUT
