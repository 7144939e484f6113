#include "zuml/algebra/moments.h"

#include <cmath>
#include <cstddef>

#include "zuml/core/detail/mapped.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqmemory.h"

namespace {

ZUMReal MakePower(ZUMReal base, int exponent) { return std::pow(base, exponent); }

// By squaring, since wrapped products may be taken in any order.
ZUMLong MakePower(ZUMLong base, int exponent) {
  ZUMLong power = 1;
  for (; exponent > 0; exponent /= 2) {
    if (exponent % 2 != 0) power = ZUMWrapMul(power, base);
    base = ZUMWrapMul(base, base);
  }
  return power;
}

// The sum over the true pixels, in the arithmetic of V; the powers of the x of a line are made
// once.
template <class V>
ZUMReal SumPowers(const ZUMImage<ZUMBool>& image, const ZUMBasePoint<int>& exponent,
                  const ZUMBasePoint<V>& centre) {
  if (image.EmptyP() || image.GetCSz() == 0) return 0;
  const auto power = [](int coordinate, V origin, int e) {
    return MakePower(static_cast<V>(coordinate) - origin, e);
  };
  const int begin = image.BeginX(), size = image.RoDXSz();
  const auto x_power = zuml_detail::MakeScratch<V>(static_cast<std::size_t>(size));
  for (int i = 0; i < size; ++i) x_power[i] = power(begin + i, centre.x, exponent.x);
  ZUMReal sum = 0;
  ZUMForEachPlacedRun(
      image,
      [&](const ZUMRunPlace& at, const ZUMBool* pixel, std::ptrdiff_t n) {
        const V y = power(at.y, centre.y, exponent.y);
        const V z = power(at.z, centre.z, exponent.z);
        const V t = power(at.t, centre.t, exponent.t);
        const V* x = &x_power[at.x - begin];
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          if (zuml_detail::ValueAt(pixel, i)) {
            sum += static_cast<ZUMReal>(ZUMWrapMul(ZUMWrapMul(ZUMWrapMul(x[i], y), z), t));
          }
        }
      },
      image);
  return sum;
}

}  // namespace

ZUMReal ZUMMoment(const ZUMImage<ZUMBool>& image, int p, int q, int r, int s) {
  return SumPowers<ZUMLong>(image, {p, q, r, s}, {});
}

ZUMReal ZUMMoment(const ZUMImage<ZUMBool>& image, int p, int q, int r, int s, ZUMReal x, ZUMReal y,
                  ZUMReal z, ZUMReal t) {
  return SumPowers<ZUMReal>(image, {p, q, r, s}, {x, y, z, t});
}
