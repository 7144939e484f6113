/// What the fillings of holes share.
#pragma once

#include <cmath>
#include <concepts>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// A computed value as a pixel: integers are cut toward zero and keep the low bits, a bool is true
/// where the value is not 0. What has no value, a quotient 0 / 0, is 0 but for reals.
template <class P>
P ToPixel(double value) {
  if constexpr (std::same_as<P, ZUMBool>) {
    return value != 0 && !std::isnan(value);
  } else {
    return ZUMTruncate<P>(value);
  }
}

/// Throws "<operation>: It only accepts images with one channel (%d)", "<operation>: Diferent
/// number of channels %d!=%d".
inline void RequireOneChannelEach(const char* operation, const ZUMRaster& image,
                                  const ZUMRaster& mask) {
  if (image.GetCSz() != 1) {
    throw XQException("%s: It only accepts images with one channel (%d)", operation,
                      image.GetCSz());
  }
  if (mask.GetCSz() != 1) {
    throw XQException("%s: Diferent number of channels %d!=%d", operation, image.GetCSz(),
                      mask.GetCSz());
  }
}

}  // namespace zuml_detail
