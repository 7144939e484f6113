#include "zuml/algebra/neighbourcount.h"

#include <algorithm>
#include <cstddef>

#include "zuml/core/detail/axes.h"
#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pointwise.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/zumdisplacement.h"

using zuml_detail::ValueAt;

namespace {

// A loop over the run for each pair, which vectorises, needs no sorted copy of the neighbourhoods
// and is faster than one up to elements of some 15 x 15 pixels.
template <class P, class Compare>
ZUMImage<ZUMLong> CountPairs(const char* operation, const ZUMImage<P>& image,
                             const ZUMImage<ZUMBool>& s1, const ZUMImage<ZUMBool>& s2,
                             Compare compare) {
  if (s1.GetCSz() > 1 || s2.GetCSz() > 1) {
    throw XQException("%s: Multichannel structuring elements are not allowed", operation);
  }
  ZUMRect both = s1.Rect();
  const ZUMRect other = s2.Rect();
  for (const zuml_detail::Axis axis : zuml_detail::kAxes) {
    both.begin.*axis = std::min(both.begin.*axis, other.begin.*axis);
    both.end.*axis = std::max(both.end.*axis, other.end.*axis);
  }
  const ZUMRoDRef rod = zuml_detail::MakeDirectRegion(image, both);
  const ZUMImage<ZUMLong> result(rod, image.GetCSz(), 0);
  ZUMDisplacementArray first, second;
  first.FromNonZeroPixels(image, s1);
  second.FromNonZeroPixels(image, s2);
  ZUMForEachRun(
      rod,
      [&](ZUMLong* r, const P* center, std::ptrdiff_t n) {
        for (const long long d1 : first) {
          for (const long long d2 : second) {
            const P* p = center + d1;
            const P* q = center + d2;
            for (std::ptrdiff_t i = 0; i < n; ++i) {
              r[i] = ZUMWrapAdd(r[i], ZUMLong{compare(ValueAt(p, i), ValueAt(q, i))});
            }
          }
        }
      },
      result, image);
  return result;
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<ZUMLong> ZUMGreaterCnt(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& s1,
                                const ZUMImage<ZUMBool>& s2) {
  return CountPairs("ZUMGreaterCnt", image, s1, s2, [](P p, P q) { return p > q; });
}

template <ZUMScalarPixel P>
ZUMImage<ZUMLong> ZUMLessCnt(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& s1,
                             const ZUMImage<ZUMBool>& s2) {
  return CountPairs("ZUMLessCnt", image, s1, s2, [](P p, P q) { return p <= q; });
}

#define ZUML_INSTANTIATE(PIX)                                                                    \
  template ZUML_API ZUMImage<ZUMLong> ZUMGreaterCnt(                                             \
      const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, const ZUMImage<ZUMBool>&);                 \
  template ZUML_API ZUMImage<ZUMLong> ZUMLessCnt(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, \
                                                 const ZUMImage<ZUMBool>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
