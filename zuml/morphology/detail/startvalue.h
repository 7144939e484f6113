/// What forms that keep the source's region begin with, and the test that all elements pass.
#pragma once

#include <type_traits>

#include "zuml/core/foreachrun.h"
#include "zuml/core/xqexception.h"
#include "zuml/morphology/detail/lanes.h"

namespace zuml_detail {

/// Throws XQException "<operation>: Multichannel structuring elements are not allowed".
inline void RequireSingleChannelElement(const char* operation, const ZUMRaster& element) {
  if (element.GetCSz() != 1) {
    throw XQException("%s: Multichannel structuring elements are not allowed", operation);
  }
}

/// Whether the element's region holds the origin and its pixel there is not 0.
template <class P>
bool OriginP(const ZUMImage<P>& element) {
  return element.InP(0, 0, 0, 0) && *StoredPixels(&element(0, 0, 0, 0, 0)) != 0;
}

/// The image's value that an order prefers last: the least one before a maximum. Comparison is
/// strict, from the first pixel on. Throws XQException "ZUMMin:Valor indefinido por imagen vacia",
/// or the same with ZUMMax.
template <class Order, class P>
Stored<P> FindStart(const ZUMImage<P>& image) {
  constexpr bool kLeast = std::is_same_v<Order, Greatest>;
  using Opposite = std::conditional_t<kLeast, Least, Greatest>;
  if (image.EmptyP()) {
    throw XQException("%s:Valor indefinido por imagen vacia", kLeast ? "ZUMMin" : "ZUMMax");
  }
  Stored<P> start = *StoredPixels(&image(image.Begin(), 0));
  ForEachRun(
      image,
      [&start](const P* pixels, std::ptrdiff_t n) {
        const Stored<P>* values = StoredPixels(pixels);
        Stored<P> best = start;
        for (std::ptrdiff_t i = 0; i < n; ++i) best = Opposite::Fold(best, values[i]);
        start = best;
      },
      image);
  return start;
}

}  // namespace zuml_detail
