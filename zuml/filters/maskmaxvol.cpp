#include "zuml/filters/maskmaxvol.h"

#include "zuml/algebra/extrema.h"

template <class InT, std::same_as<ZUMBool> MaskT, class OutT>
requires ZUMSumPixels<OutT, InT> && ZUMGreyPixel<InT>
void ZUMMaskMaxVol(const ZUMImage<InT>& image, const ZUMImage<MaskT>& mask, int* x, int* y,
                   OutT* value) {
  if (mask.GetXSz() > image.GetXSz() || mask.GetYSz() > image.GetYSz() ||
      mask.GetCSz() != image.GetCSz()) {
    return;
  }
  const ZUMImage<OutT> sums = ZUMSum<OutT>(image, mask);
  const ZUMBasePoint<int> best = ZUMSearchMax(sums);
  *x = best.x - sums.BeginX();
  *y = best.y - sums.BeginY();
  *value = sums(best);
}

#define ZUML_INSTANTIATE(OUT, IN)                                                                 \
  template ZUML_API void ZUMMaskMaxVol(const ZUMImage<IN>&, const ZUMImage<ZUMBool>&, int*, int*, \
                                       OUT*);
#define ZUML_INSTANTIATE_LONG(IN) ZUML_INSTANTIATE(ZUMLong, IN)
ZUML_INTEGER_TYPES(ZUML_INSTANTIATE_LONG)
ZUML_INSTANTIATE(ZUMReal, ZUMReal)
#undef ZUML_INSTANTIATE_LONG
#undef ZUML_INSTANTIATE
