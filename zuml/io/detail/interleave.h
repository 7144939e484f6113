/// Pixels whose channels lie side by side, as codecs take them and hand them out, from and to the
/// planes of images.
#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>

#include "zuml/io/detail/files.h"
#include "zuml/io/detail/flatimage.h"

namespace zuml_detail {

/// Writes n pixels of C planes, each `step` elements behind the last, to `to`.
template <int C>
void MergePlanes(const ZUMByte* from, std::ptrdiff_t step, std::ptrdiff_t n, ZUMByte* to) {
  for (std::ptrdiff_t i = 0; i < n; ++i, to += C) {
    for (int c = 0; c < C; ++c) to[c] = from[c * step + i];
  }
}

// Three bytes a pixel is what cameras give, and byte for byte their copies would cost as much as
// some codecs: four pixels go as three words.
template <>
inline void MergePlanes<3>(const ZUMByte* from, std::ptrdiff_t step, std::ptrdiff_t n,
                           ZUMByte* to) {
  for (; n >= 4; n -= 4, from += 4, to += 12) {
    const auto r = LoadField<std::uint32_t>(from), g = LoadField<std::uint32_t>(from + step),
               b = LoadField<std::uint32_t>(from + 2 * step);
    StoreField<std::uint32_t>(to,
                              (r & 0xFF) | (g & 0xFF) << 8 | (b & 0xFF) << 16 | (r & 0xFF00) << 16);
    StoreField<std::uint32_t>(
        to + 4, (g >> 8 & 0xFF) | (b & 0xFF00) | (r & 0xFF0000) | (g & 0xFF0000) << 8);
    StoreField<std::uint32_t>(
        to + 8, (b >> 16 & 0xFF) | (r >> 16 & 0xFF00) | (g >> 8 & 0xFF0000) | (b & 0xFF000000));
  }
  for (; n > 0; --n, ++from, to += 3) {
    for (int c = 0; c < 3; ++c) to[c] = from[c * step];
  }
}

/// Row y of an image's box with the channels of a pixel side by side: the image's own memory where
/// it lies there like that, else `buffer`, which has room for it. Pixels that the region does not
/// hold are 0.
inline const ZUMByte* PackRow(const ZUMImage<ZUMByte>& image, int y, ZUMByte* buffer) {
  const FlatPlane plane = GetFlatPlane(image);
  const ZUMByte* row = &image(image.BeginX(), y, plane.z, plane.t);
  const std::ptrdiff_t n = image.RoDXSz(), step = image.GetChannelSz();
  if (!dynamic_cast<const ZUMRoDRect*>(&image.RoD())) {
    GatherRow(image, y, ChannelOrder::kFirstToLast, 0, buffer);
    return buffer;
  }
  switch (image.GetCSz()) {
    case 1:
      return row;
    case 2:
      MergePlanes<2>(row, step, n, buffer);
      break;
    case 3:
      MergePlanes<3>(row, step, n, buffer);
      break;
    case 4:
      MergePlanes<4>(row, step, n, buffer);
      break;
  }
  return buffer;
}

template <int C, class S, class P>
void SplitChannels(const S* from, std::ptrdiff_t n, P* to, std::ptrdiff_t step) {
  for (std::ptrdiff_t i = 0; i < n; ++i, from += C) {
    for (int c = 0; c < C; ++c) to[c * step + i] = static_cast<P>(from[c]);
  }
}

// The same words the other way.
template <>
inline void SplitChannels<3, ZUMByte, ZUMByte>(const ZUMByte* from, std::ptrdiff_t n, ZUMByte* to,
                                               std::ptrdiff_t step) {
  for (; n >= 4; n -= 4, from += 12, to += 4) {
    const auto u = LoadField<std::uint32_t>(from), v = LoadField<std::uint32_t>(from + 4),
               w = LoadField<std::uint32_t>(from + 8);
    StoreField<std::uint32_t>(
        to, (u & 0xFF) | (u >> 16 & 0xFF00) | (v & 0xFF0000) | (w << 16 & 0xFF000000));
    StoreField<std::uint32_t>(to + step, (u >> 8 & 0xFF) | (v << 8 & 0xFF00) | (v >> 8 & 0xFF0000) |
                                             (w << 8 & 0xFF000000));
    StoreField<std::uint32_t>(
        to + 2 * step, (u >> 16 & 0xFF) | (v & 0xFF00) | (w << 16 & 0xFF0000) | (w & 0xFF000000));
  }
  for (; n > 0; --n, from += 3, ++to) {
    for (int c = 0; c < 3; ++c) to[c * step] = from[c];
  }
}

/// Writes n pixels whose channels lie side by side to planes, each `step` elements behind the last.
template <class S, class P>
void SplitPixels(const S* from, std::ptrdiff_t n, int channels, P* to, std::ptrdiff_t step) {
  switch (channels) {
    case 1:
      if constexpr (std::is_same_v<S, P>) {
        std::memcpy(to, from, static_cast<std::size_t>(n) * sizeof(P));
      } else {
        SplitChannels<1>(from, n, to, step);
      }
      break;
    case 2:
      SplitChannels<2>(from, n, to, step);
      break;
    case 3:
      SplitChannels<3>(from, n, to, step);
      break;
    case 4:
      SplitChannels<4>(from, n, to, step);
      break;
    default:
      for (int c = 0; c < channels; ++c, ++from, to += step) {
        for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = static_cast<P>(from[i * channels]);
      }
  }
}

}  // namespace zuml_detail
