/// What forms that keep the source's region begin with, and the test that all elements pass.
#pragma once

#include <type_traits>

#include "zuml/algebra/extrema.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/xqexception.h"
#include "zuml/morphology/detail/lanes.h"

namespace zuml_detail {

/// Throws XQException "<operation>: Multichannel structuring elements are not allowed".
inline void RequireSingleChannelElement(const char* operation, const ZUMRaster& element) {
  if (element.GetCSz() != 1) {
    throw XQException("%s: Multichannel structuring elements are not allowed", operation);
  }
}

/// Whether the element's region holds the origin and its pixel there is true.
inline bool HoldsOrigin(const ZUMImage<ZUMBool>& element) {
  return element.InP(0, 0, 0, 0) && ValueAt(&element(0), 0);
}

/// The image's value that an order prefers last: the least one before a maximum.
template <class Order, class P>
Stored<P> FindStart(const ZUMImage<P>& image) {
  return std::is_same_v<Order, Greatest> ? ZUMMin(image) : ZUMMax(image);
}

}  // namespace zuml_detail
