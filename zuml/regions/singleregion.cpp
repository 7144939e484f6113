#include "zuml/regions/singleregion.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "zuml/core/detail/axes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/regions/detail/labelruns.h"

using zuml_detail::Axis;
using zuml_detail::kAxes;
using zuml_detail::kT;
using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::kZ;
using zuml_detail::LabelRun;
using zuml_detail::StoredPixels;

namespace {

// Moments of order 0 and 1 in wrapping 32-bit integers.
struct IntegerSums {
  ZUMLong total = 0, x = 0, y = 0, z = 0, t = 0;

  // Pixels of a line whose sum is `sum` and whose sum of X times pixel is `x_sum`.
  void Add(std::int64_t sum, std::int64_t x_sum, int py, int pz, int pt) {
    const ZUMLong low = ZUMLowBits<ZUMLong>(sum);
    total = ZUMWrapAdd(total, low);
    x = ZUMWrapAdd(x, ZUMLowBits<ZUMLong>(x_sum));
    y = ZUMWrapAdd(y, ZUMWrapMul(low, ZUMLong{py}));
    z = ZUMWrapAdd(z, ZUMWrapMul(low, ZUMLong{pz}));
    t = ZUMWrapAdd(t, ZUMWrapMul(low, ZUMLong{pt}));
  }

  ZUMBasePoint<int> Centre() const {
    if (total == 0) return {};
    // In 64 bits, where the least integer over -1 does not overflow.
    const auto over = [this](ZUMLong sum) {
      return ZUMLowBits<ZUMLong>(std::int64_t{sum} / total);
    };
    return {over(x), over(y), over(z), over(t)};
  }
};

template <class P>
IntegerSums SumPixels(const ZUMImage<P>& image) {
  IntegerSums sums;
  ZUMForEachPlacedRun(
      image,
      [&sums](const ZUMRunPlace& place, const P* line, std::ptrdiff_t n) {
        // Unsigned products modulo 2^32 suffice, and vectorise.
        std::uint32_t sum = 0, x_sum = 0;
        const auto begin = static_cast<std::uint32_t>(place.x);
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          const auto v = static_cast<std::uint32_t>(line[i]);
          sum += v;
          x_sum += v * (begin + static_cast<std::uint32_t>(i));
        }
        sums.Add(sum, x_sum, place.y, place.z, place.t);
      },
      image);
  return sums;
}

IntegerSums SumPixels(const ZUMImage<ZUMBool>& image) {
  IntegerSums sums;
  zuml_detail::ForEachLabelRun(image, [&sums](const LabelRun& run) {
    const ZUMBasePoint<int>& p = run.begin;
    sums.Add(run.n, zuml_detail::SumOfRun<kX>(run), p.y, p.z, p.t);
  });
  return sums;
}

ZUMBasePoint<int> FindCentre(const ZUMImage<ZUMReal>& image) {
  double total = 0, x = 0, y = 0, z = 0, t = 0;
  ZUMForEachPlacedRun(
      image,
      [&](const ZUMRunPlace& place, const ZUMReal* p, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          total += p[i];
          x += static_cast<double>(place.x + i) * p[i];
          y += place.y * p[i];
          z += place.z * p[i];
          t += place.t * p[i];
        }
      },
      image);
  if (total == 0) return {};
  const double scale = 1 / total;
  return {ZUMTruncate<ZUMLong>(x * scale), ZUMTruncate<ZUMLong>(y * scale),
          ZUMTruncate<ZUMLong>(z * scale), ZUMTruncate<ZUMLong>(t * scale)};
}

template <class P>
ZUMBasePoint<int> FindCentre(const ZUMImage<P>& image) {
  return SumPixels(image).Centre();
}

// Moments of order 0 and 1 in doubles, about the first pixel of the region: a distance of the
// region from the origin takes no digits.
class RealSums {
 public:
  explicit RealSums(const ZUMBasePoint<int>& origin) : origin_(origin) {}

  // Pixels of a line from a point on, whose sum is `pixels` and whose sum of distance to that point
  // times pixel is `moment`.
  void Add(double pixels, double moment, const ZUMBasePoint<int>& p) {
    const auto from_origin = [&](Axis axis) {
      return static_cast<double>(std::int64_t{p.*axis} - origin_.*axis);
    };
    total_ += pixels;
    sum_.x += pixels * from_origin(kX) + moment;
    sum_.y += pixels * from_origin(kY);
    sum_.z += pixels * from_origin(kZ);
    sum_.t += pixels * from_origin(kT);
  }

  ZUMBasePoint<double> Centre() const {
    if (total_ == 0) return {};
    return {origin_.x + sum_.x / total_, origin_.y + sum_.y / total_, origin_.z + sum_.z / total_,
            origin_.t + sum_.t / total_};
  }

 private:
  ZUMBasePoint<int> origin_;
  double total_ = 0;
  ZUMBasePoint<double> sum_;
};

template <class P>
RealSums SumWide(const ZUMImage<P>& image) {
  // Sums of integers over a stretch fit in 64 bits.
  using Sum = std::conditional_t<std::same_as<P, ZUMReal>, double, std::int64_t>;
  static constexpr std::ptrdiff_t kStretch = 1 << 16;
  RealSums sums(image.Begin());
  ZUMForEachPlacedRun(
      image,
      [&sums](const ZUMRunPlace& place, const P* line, std::ptrdiff_t n) {
        for (std::ptrdiff_t begin = 0; begin < n; begin += kStretch) {
          const P* const p = line + begin;
          const std::ptrdiff_t length = std::min(n - begin, kStretch);
          Sum sum = 0, moment = 0;
          for (std::ptrdiff_t i = 0; i < length; ++i) {
            sum += p[i];
            moment += static_cast<Sum>(i) * p[i];
          }
          sums.Add(static_cast<double>(sum), static_cast<double>(moment),
                   {place.x + static_cast<int>(begin), place.y, place.z, place.t});
        }
      },
      image);
  return sums;
}

RealSums SumWide(const ZUMImage<ZUMBool>& image) {
  RealSums sums(image.Begin());
  zuml_detail::ForEachLabelRun(image, [&sums](const LabelRun& run) {
    const double n = run.n;
    sums.Add(n, n * (n - 1) / 2, run.begin);
  });
  return sums;
}

// The last byte below n that is not 0; -1 if there is none.
std::ptrdiff_t FindLastTrue(const ZUMByte* line, std::ptrdiff_t n) {
  while (n >= 8) {
    std::uint64_t word;
    std::memcpy(&word, line + n - 8, 8);
    if (word != 0) break;
    n -= 8;
  }
  while (n > 0 && line[n - 1] == 0) --n;
  return n - 1;
}

// A box without a point: from End + 1 to Begin. Behind the last coordinate of all there is none, so
// that there the box ends one before it begins.
ZUMRect MakeEmptyHull(const ZUMRoDRef& rod) {
  constexpr int kMost = std::numeric_limits<int>::max();
  ZUMRect hull(rod.End(), rod.Begin());
  for (const Axis axis : kAxes) {
    if (hull.begin.*axis == kMost) {
      hull.end.*axis = std::min(hull.end.*axis, kMost - 1);
    } else {
      ++(hull.begin.*axis);
    }
  }
  return hull;
}

// The true pixels' bounding box. Begin is above end on every axis if there is none.
ZUMRect FindHull(const ZUMImage<ZUMBool>& image) {
  if (image.EmptyP()) return image.Rect();
  ZUMRect hull(image.End(), image.Begin());
  bool found = false;
  ZUMForEachPlacedRun(
      image,
      [&](const ZUMRunPlace& place, const ZUMBool* pixels, std::ptrdiff_t n) {
        const ZUMByte* const line = StoredPixels(pixels);
        const std::ptrdiff_t first = zuml_detail::FindTrue(line, 0, n);
        if (first == n) return;
        found = true;
        const ZUMBasePoint<int> low(place.x + static_cast<int>(first), place.y, place.z, place.t);
        ZUMBasePoint<int> high = low;
        high.x = place.x + static_cast<int>(FindLastTrue(line, n));
        for (const Axis axis : kAxes) {
          hull.begin.*axis = std::min(hull.begin.*axis, low.*axis);
          hull.end.*axis = std::max(hull.end.*axis, high.*axis);
        }
      },
      image);
  return found ? hull : MakeEmptyHull(image);
}

// The hull's extent on an axis; 0 without a true pixel.
int FindExtent(const ZUMImage<ZUMBool>& image, Axis axis) {
  if (image.EmptyP()) return 0;
  const ZUMRect hull = FindHull(image);
  return std::max(hull.end.*axis - hull.begin.*axis + 1, 0);
}

}  // namespace

template <ZUMScalarPixel P>
ZUMBasePoint<int> ZUMGravityCenter(const ZUMImage<P>& image) {
  return FindCentre(image);
}

template <ZUMScalarPixel P>
ZUMBasePoint<double> ZUMGravityCenterWide(const ZUMImage<P>& image) {
  return SumWide(image).Centre();
}

int ZUMRegionWidth(const ZUMImage<ZUMBool>& image) { return FindExtent(image, kX); }

int ZUMRegionHeight(const ZUMImage<ZUMBool>& image) { return FindExtent(image, kY); }

ZUMRect ZUMRegionRectHull(const ZUMImage<ZUMBool>& image) { return FindHull(image); }

ZUMLong ZUMRegionArea(const ZUMImage<ZUMBool>& image) {
  ZUMLong area = 0;
  ZUMForEachRun(
      image,
      [&area](const ZUMBool* pixels, std::ptrdiff_t n) {
        const ZUMByte* const line = StoredPixels(pixels);
        ZUMLong count = 0;
        for (std::ptrdiff_t i = 0; i < n; ++i) count += line[i] != 0;
        area += count;
      },
      image);
  return area;
}

#define ZUML_INSTANTIATE(PIX)                                                 \
  template ZUML_API ZUMBasePoint<int> ZUMGravityCenter(const ZUMImage<PIX>&); \
  template ZUML_API ZUMBasePoint<double> ZUMGravityCenterWide(const ZUMImage<PIX>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
