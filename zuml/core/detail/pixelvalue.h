/// What a pixel is in memory, as a pixel and as a number. Memory that an application wrapped may
/// hold any byte as a bool pixel: it is read as a byte, every byte but 0 is true, and what the
/// library writes is 0 or 1.
#pragma once

#include <concepts>
#include <cstddef>
#include <type_traits>

#include "zuml/core/pixeltypes.h"

namespace zuml_detail {

/// The type in which a pixel is read from memory.
template <class P>
using Stored = std::conditional_t<std::same_as<P, ZUMBool>, ZUMByte, P>;

/// A run of pixels as what they are in memory.
template <class P>
const Stored<P>* StoredPixels(const P* pixels) {
  return reinterpret_cast<const Stored<P>*>(pixels);
}
template <class P>
Stored<P>* StoredPixels(P* pixels) {
  return reinterpret_cast<Stored<P>*>(pixels);
}

/// Pixel i of a run: a bool pixel is true or false.
template <class P>
inline P ValueAt(const P* pixels, std::ptrdiff_t i) {
  if constexpr (std::same_as<P, ZUMBool>) {
    return StoredPixels(pixels)[i] != 0;
  } else {
    return pixels[i];
  }
}

/// Pixel i of a run as a number: a bool pixel is the byte 0 or 1.
template <class P>
inline Stored<P> NumberAt(const P* pixels, std::ptrdiff_t i) {
  return static_cast<Stored<P>>(ValueAt(pixels, i));
}

}  // namespace zuml_detail
