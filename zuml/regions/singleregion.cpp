#include "zuml/regions/singleregion.h"

#include <algorithm>

#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/regions/detail/labelruns.h"

namespace {

// Moments of order 0 and 1 in wrapping 32-bit integers.
struct IntegerSums {
  ZUMLong total = 0, x = 0, y = 0, z = 0, t = 0;

  // n pixels of a line whose sum is `sum` and whose sum of X times pixel is `x_sum`.
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
  for (ZUMGenericSweepCoords1 sweep(image, image); sweep.GetStart1(); sweep.Next()) {
    const P* line = static_cast<const P*>(sweep.GetStart1());
    const std::ptrdiff_t n = static_cast<const P*>(sweep.GetEnd1()) - line + 1;
    // Unsigned products modulo 2^32 suffice, and vectorise.
    std::uint32_t sum = 0, x_sum = 0;
    const std::uint32_t begin = static_cast<std::uint32_t>(sweep.GetX());
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      const std::uint32_t v = static_cast<std::uint32_t>(line[i]);
      sum += v;
      x_sum += v * (begin + static_cast<std::uint32_t>(i));
    }
    sums.Add(sum, x_sum, sweep.GetY(), sweep.GetZ(), sweep.GetT());
  }
  return sums;
}

IntegerSums SumPixels(const ZUMImage<ZUMBool>& image) {
  IntegerSums sums;
  zuml_detail::ForEachLabelRun(image, [&sums](const zuml_detail::LabelRun& run) {
    sums.Add(run.n, zuml_detail::SumOfRange(run.x, run.n), run.y, run.z, run.t);
  });
  return sums;
}

ZUMBasePoint<int> FindCentre(const ZUMImage<ZUMReal>& image) {
  double total = 0, x = 0, y = 0, z = 0, t = 0;
  for (ZUMGenericSweepCoords1 sweep(image, image); sweep.GetStart1(); sweep.Next()) {
    const ZUMReal* p = static_cast<const ZUMReal*>(sweep.GetStart1());
    const ZUMReal* end = static_cast<const ZUMReal*>(sweep.GetEnd1());
    for (int px = sweep.GetX(); p <= end; ++p, ++px) {
      total += *p;
      x += px * *p;
      y += sweep.GetY() * *p;
      z += sweep.GetZ() * *p;
      t += sweep.GetT() * *p;
    }
  }
  if (total == 0) return {};
  const double scale = 1 / total;
  return {ZUMTruncate<ZUMLong>(x * scale), ZUMTruncate<ZUMLong>(y * scale),
          ZUMTruncate<ZUMLong>(z * scale), ZUMTruncate<ZUMLong>(t * scale)};
}

template <class P>
ZUMBasePoint<int> FindCentre(const ZUMImage<P>& image) {
  return SumPixels(image).Centre();
}

// The last byte below n that is not 0; -1 if there is none.
std::ptrdiff_t FindLastTrue(const unsigned char* line, std::ptrdiff_t n) {
  while (n >= 8) {
    std::uint64_t word;
    std::memcpy(&word, line + n - 8, 8);
    if (word != 0) break;
    n -= 8;
  }
  while (n > 0 && line[n - 1] == 0) --n;
  return n - 1;
}

// The true pixels' bounding box. Begin is above end on every axis if there is none.
ZUMRect FindHull(const ZUMImage<ZUMBool>& image) {
  const ZUMBasePoint<int> begin = image.Begin(), end = image.End();
  if (image.EmptyP()) return image.Rect();
  ZUMRect hull(end.x + 1, end.y + 1, end.z + 1, end.t + 1, begin.x, begin.y, begin.z, begin.t);
  for (ZUMGenericSweepCoords1 sweep(image, image); sweep.GetStart1(); sweep.Next()) {
    const auto* line = static_cast<const unsigned char*>(sweep.GetStart1());
    const std::ptrdiff_t n = static_cast<const unsigned char*>(sweep.GetEnd1()) - line + 1;
    const std::ptrdiff_t first = zuml_detail::FindTrue(line, 0, n);
    if (first == n) continue;
    const std::ptrdiff_t last = FindLastTrue(line, n);
    hull.begin = {std::min(hull.begin.x, begin.x + static_cast<int>(first)),
                  std::min(hull.begin.y, sweep.GetY()), std::min(hull.begin.z, sweep.GetZ()),
                  std::min(hull.begin.t, sweep.GetT())};
    hull.end = {std::max(hull.end.x, begin.x + static_cast<int>(last)),
                std::max(hull.end.y, sweep.GetY()), std::max(hull.end.z, sweep.GetZ()),
                std::max(hull.end.t, sweep.GetT())};
  }
  return hull;
}

}  // namespace

template <ZUMScalarPixel P>
ZUMBasePoint<int> ZUMGravityCenter(const ZUMImage<P>& image) {
  return FindCentre(image);
}

int ZUMRegionWidth(const ZUMImage<ZUMBool>& image) {
  if (image.EmptyP()) return 0;
  const ZUMRect hull = FindHull(image);
  return std::max(hull.end.x - hull.begin.x + 1, 0);
}

int ZUMRegionHeight(const ZUMImage<ZUMBool>& image) {
  if (image.EmptyP()) return 0;
  const ZUMRect hull = FindHull(image);
  return std::max(hull.end.y - hull.begin.y + 1, 0);
}

ZUMRect ZUMRegionRectHull(const ZUMImage<ZUMBool>& image) { return FindHull(image); }

ZUMLong ZUMRegionArea(const ZUMImage<ZUMBool>& image) {
  ZUMLong area = 0;
  ZUMForEachRun(
      image,
      [&area](const ZUMBool* pixels, std::ptrdiff_t n) {
        const auto* line = reinterpret_cast<const unsigned char*>(pixels);
        ZUMLong count = 0;
        for (std::ptrdiff_t i = 0; i < n; ++i) count += line[i] != 0;
        area += count;
      },
      image);
  return area;
}

#define ZUML_INSTANTIATE(PIX) \
  template ZUML_API ZUMBasePoint<int> ZUMGravityCenter(const ZUMImage<PIX>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
