#include "zuml/threshold/thresholding.h"

#include "zuml/core/foreachrun.h"

namespace {

template <class P, class Predicate>
ZUMImage<ZUMBool> SelectPixels(const ZUMImage<P>& image, Predicate on) {
  const ZUMImage<ZUMBool> result(image, image.GetCSz(), nullptr);
  ZUMForEachRun(
      image,
      [on](ZUMBool* r, const P* p, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = on(p[i]);
      },
      result, image);
  return result;
}

}  // namespace

template <ZUMGreyPixel P>
ZUMImage<ZUMBool> ZUMThr(const ZUMImage<P>& image, std::type_identity_t<P> threshold) {
  return SelectPixels(image, [threshold](P p) { return p >= threshold; });
}

template <ZUMGreyPixel P>
ZUMImage<ZUMBool> ZUMDblThr(const ZUMImage<P>& image, std::type_identity_t<P> low,
                            std::type_identity_t<P> high) {
  return SelectPixels(image, [low, high](P p) { return (p >= low) & !(p > high); });
}

#define ZUML_INSTANTIATE(PIX)                                            \
  template ZUML_API ZUMImage<ZUMBool> ZUMThr(const ZUMImage<PIX>&, PIX); \
  template ZUML_API ZUMImage<ZUMBool> ZUMDblThr(const ZUMImage<PIX>&, PIX, PIX);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
