// The affine warp and the lookup of columns, which run in tasks.

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/geometry/detail/warpsource.h"
#include "zuml/geometry/warp.h"

using zuml_detail::Interpolate;
using zuml_detail::kX;
using zuml_detail::Neighbours;
using zuml_detail::PairAround;
using zuml_detail::RoundCoordinate;
using zuml_detail::SizeOf;
using zuml_detail::Stored;
using zuml_detail::StoredPixels;
using zuml_detail::WarpSource;

namespace {

// An affine warp's rows of three coefficients.
using Matrix = double[2][3];

// The columns of a result that a table serves.
constexpr int kColumns = 4096;

// One source coordinate of an affine warp: the sum of an entry by x of a table and of one number by
// y.
class AffineTable {
 public:
  // For the columns from begin on.
  AffineTable(const double (&m)[3], int begin, int columns) : m_(m), begin_(begin) {
    for (int i = 0; i < columns; ++i) by_x_[i] = (begin + i) * m[0];
    finite_ = columns > 0 && std::isfinite(by_x_[0]) && std::isfinite(by_x_[columns - 1]);
  }

  const double* GetFrom(int x) const { return by_x_ + (x - begin_); }
  double GetLine(int y) const { return y * m_[1] + m_[2]; }
  // Along a line, source positions then never turn back.
  bool IsMonotone(double line) const { return finite_ && std::isfinite(line); }

 private:
  const double (&m_)[3];
  int begin_;
  bool finite_;
  double by_x_[kColumns];
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
  const Matrix* matrix;
  P default_value;

 protected:
  // Rule has the bounds of positions whose pixels the region holds, the tested form for one pixel
  // and the untested loop.
  template <class Rule>
  void Warp(const Rule& rule) const {
    const ZUMRect box = image->Rect();
    const bool bounded = zuml_detail::IsBox(*image) && !image->EmptyP();
    ForEachTable([&](const ZUMRoDRef& strip, const AffineTable& xs, const AffineTable& ys) {
      ZUMForEachPlacedRun(
          strip,
          [&](const ZUMRunPlace& place, P* to, std::ptrdiff_t count) {
            const int n = static_cast<int>(count), z = place.z, t = place.t;
            const double* sx = xs.GetFrom(place.x);
            const double* sy = ys.GetFrom(place.x);
            const double add_x = xs.GetLine(place.y), add_y = ys.GetLine(place.y);
            if (!bounded || !xs.IsMonotone(add_x) || !ys.IsMonotone(add_y)) {
              const WarpSource<P> source(*image, z, t, place.c, z, t);
              for (int i = 0; i < n; ++i) {
                to[i] = rule.Tested(source, sx[i] + add_x, sy[i] + add_y, default_value);
              }
              return;
            }
            Range inside{0, 0};
            if (z >= box.begin.z && z <= box.end.z && t >= box.begin.t && t <= box.end.t) {
              inside =
                  FindInside({0, n}, sx, add_x, rule.Below(box.begin.x), rule.Above(box.end.x));
              inside =
                  FindInside(inside, sy, add_y, rule.Below(box.begin.y), rule.Above(box.end.y));
            }
            std::fill(to, to + inside.first, default_value);
            if (inside.first < inside.last) {
              const SourceLines<P> lines{
                  StoredPixels(&(*image)(box.begin.x, box.begin.y, z, t, place.c)),
                  static_cast<int>(image->GetLineSz()), box.begin};
              for (int i = inside.first; i < inside.last; i += kStretch) {
                rule.Read(StoredPixels(to + i), lines, {sx + i, add_x}, {sy + i, add_y},
                          std::min(kStretch, inside.last - i));
              }
            }
            std::fill(to + inside.last, to + n, default_value);
          },
          *result);
    });
  }

 private:
  // Calls body(strip, table of x, table of y) for upright strips of the part.
  template <class Body>
  void ForEachTable(const Body& body) const {
    if (part.EmptyP()) return;
    const ZUMRect whole = part.Rect();
    const auto run = [&](const ZUMRoDRef& strip) {
      const int begin = strip.BeginX(), columns = strip.RoDXSz();
      body(strip, AffineTable((*matrix)[0], begin, columns),
           AffineTable((*matrix)[1], begin, columns));
    };
    if (SizeOf(whole, kX) <= kColumns) return run(part);
    for (long long x = whole.begin.x; x <= whole.end.x; x += kColumns) {
      ZUMRect box = whole;
      box.begin.x = static_cast<int>(x);
      box.end.x = static_cast<int>(std::min<long long>(x + kColumns - 1, whole.end.x));
      const ZUMRoDRef strip = Intersection(part, box);
      if (!strip.EmptyP()) run(strip);
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
ZUMImage<P> RunWarpAffine(const ZUMImage<P>& image, const ZUMRoDRef& target, const Matrix& matrix,
                          P default_value) {
  return ZUMRunTasks<Task, P>(target, image.GetCSz(), [&](Task& task) {
    task.image = &image;
    task.matrix = &matrix;
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
  return nearest ? RunWarpAffine<CTaskWarpAffine2DNearest<P>, P>(image, target, M, default_value)
                 : RunWarpAffine<CTaskWarpAffine2DLinear<P>, P>(image, target, M, default_value);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMWarpAffine2D(const ZUMImage<P>& image, const ZUMRoDRef& target, XQMatrix& M,
                            ZUMInterpolation interpolation, std::type_identity_t<P> default_value) {
  if (M.Rows() < 2 || M.Cols() < 3) {
    throw XQException("ZUMWarpAffine2D: a matrix of %d x %d is below 2 x 3", M.Rows(), M.Cols());
  }
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
    ZUMForEachPlacedRun(
        part,
        [&](const ZUMRunPlace& place, P* to, std::ptrdiff_t n) {
          const ZUMLong* columns = &(*lut)(place.x);
          const std::ptrdiff_t begin = image->BeginX();
          const P* line = &(*image)(image->BeginX(), place.y, place.z, place.t, place.c);
          for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = line[columns[i] - begin];
        },
        *result);
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
  box.begin.x = image.EmptyP() ? 0 : lut.begin.x;
  box.end.x = image.EmptyP() ? -1 : lut.end.x;
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
