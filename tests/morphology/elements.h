/// What the tests of morphology share: pixel types, elements point by point, regions.
#pragma once

#include "tests/support/testimages.h"
#include "zuml/core/pixelarith.h"

namespace zuml_test {

using Point = ZUMBasePoint<int>;
using ScalarTypes = testing::Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal>;

/// p + k for sign 1, p - k for -1; coordinates wrap.
inline Point Add(const Point& p, int sign, const Point& k) {
  const auto add = [sign](int a, int b) { return sign > 0 ? ZUMWrapAdd(a, b) : ZUMWrapSub(a, b); };
  return Point(add(p.x, k.x), add(p.y, k.y), add(p.z, k.z), add(p.t, k.t));
}

/// Calls f(k, value) for each pixel of the element that is not 0, in sweep order.
template <class E, class F>
void ForEachElement(const ZUMImage<E>& element, F f) {
  ForEachPoint(element, 1, [&](int x, int y, int z, int t, int) {
    if (element(x, y, z, t) != E()) f(Point(x, y, z, t), element(x, y, z, t));
  });
}

/// The region of a plain form: p + k (direct) or p - k lies in the region for all k in the box.
inline ZUMRoDRef Shrink(const ZUMRoDRef& rod, const ZUMRect& k, bool direct) {
  const auto b = k.begin, e = k.end;
  return direct ? DisplaceSides(rod, -b.x, -b.y, -b.z, -b.t, -e.x, -e.y, -e.z, -e.t)
                : DisplaceSides(rod, e.x, e.y, e.z, e.t, b.x, b.y, b.z, b.t);
}

}  // namespace zuml_test
