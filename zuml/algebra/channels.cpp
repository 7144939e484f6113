#include "zuml/algebra/channels.h"

#include <cstddef>
#include <cstdint>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqexception.h"

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMAppendChannels(int n, const ZUMImage<P>** images) {
  if (!images) {
    throw XQException("AppendChannels: A NULL pointer to an array of images are not allowed");
  }
  if (n < 1 || !images[0]) {
    throw XQException("AppendChannels: An array of zero images are not allowed");
  }
  ZUMRoDRef rod = *images[0];
  std::int64_t csz = images[0]->GetCSz();
  for (int i = 1; i < n; ++i) {
    rod = Intersection(rod, *images[i]);
    csz += images[i]->GetCSz();
  }
  // Empty images have no block, so that nothing else limits their number of channels.
  const ZUMImage<P> result(rod, zuml_detail::ToCoordinate(csz), nullptr);
  std::ptrdiff_t first = 0;
  for (int i = 0; i < n; ++i) {
    const ZUMImage<P>& image = *images[i];
    const std::ptrdiff_t offset = first * result.GetChannelSz();
    ZUMForEachRun(
        rod,
        [offset](const P* from, P* to, std::ptrdiff_t pixels) {
          ZUMCopyRun(to + offset, from, pixels);
        },
        image, result);
    first += image.GetCSz();
  }
  return result;
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMAppendChannels(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  const ZUMImage<P>* images[] = {&a, &b};
  return ZUMAppendChannels(2, images);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMAppendChannels(const ZUMImage<P>& a, const ZUMImage<P>& b, const ZUMImage<P>& c) {
  const ZUMImage<P>* images[] = {&a, &b, &c};
  return ZUMAppendChannels(3, images);
}

#define ZUML_INSTANTIATE(PIX)                                                                    \
  template ZUML_API ZUMImage<PIX> ZUMAppendChannels(int, const ZUMImage<PIX>**);                 \
  template ZUML_API ZUMImage<PIX> ZUMAppendChannels(const ZUMImage<PIX>&, const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<PIX> ZUMAppendChannels(const ZUMImage<PIX>&, const ZUMImage<PIX>&,  \
                                                    const ZUMImage<PIX>&);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
