#include "zuml/threshold/thresholding.h"

#include "zuml/core/detail/mapped.h"

template <ZUMGreyPixel P>
ZUMImage<ZUMBool> ZUMThr(const ZUMImage<P>& image, std::type_identity_t<P> threshold) {
  return zuml_detail::MapImage<ZUMBool>(image, [threshold](P p) { return p >= threshold; });
}

template <ZUMGreyPixel P>
ZUMImage<ZUMBool> ZUMDblThr(const ZUMImage<P>& image, std::type_identity_t<P> low,
                            std::type_identity_t<P> high) {
  return zuml_detail::MapImage<ZUMBool>(
      image, [low, high](P p) { return static_cast<bool>((p >= low) & !(p > high)); });
}

#define ZUML_INSTANTIATE(PIX)                                            \
  template ZUML_API ZUMImage<ZUMBool> ZUMThr(const ZUMImage<PIX>&, PIX); \
  template ZUML_API ZUMImage<ZUMBool> ZUMDblThr(const ZUMImage<PIX>&, PIX, PIX);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
