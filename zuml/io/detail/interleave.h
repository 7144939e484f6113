/// Pixels whose channels lie side by side, as files and codecs have them, from and to the planes of
/// images.
///
/// Three bytes a pixel is what cameras give, and byte for byte to move them costs more than some
/// codecs do. They go through vectors, sixteen pixels at a time, in steps that are single
/// instructions on every processor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/vectors.h"
#include "zuml/core/zumrodrect.h"
#include "zuml/io/detail/flatimage.h"

namespace zuml_detail {

using ByteVector = Vector<std::uint8_t, 16>;
using WordVector = Vector<std::uint32_t, 16>;

/// Writes C planes, each `step` elements behind the last, to `to`.
template <int C>
void MergePlanes(const ZUMByte* from, std::ptrdiff_t step, std::ptrdiff_t n, ZUMByte* to) {
  for (std::ptrdiff_t i = 0; i < n; ++i, to += C) {
    for (int c = 0; c < C; ++c) to[c] = from[c * step + i];
  }
}

// A word of each plane holds four pixels, and gives three words of the result. Those of four such
// groups, which come in the order 0 3 6 9 1 4 7 10 2 5 8 11, are put in order by taking all at even
// places before all at odd ones, twice.
template <>
inline void MergePlanes<3>(const ZUMByte* from, std::ptrdiff_t step, std::ptrdiff_t n,
                           ZUMByte* to) {
  for (; n >= 16; n -= 16, from += 16, to += 48) {
    const auto r = LoadVector<WordVector>(from);
    const auto g = LoadVector<WordVector>(from + step);
    const auto b = LoadVector<WordVector>(from + 2 * step);
    WordVector words[] = {
        (r & 0xFF) | (g & 0xFF) << 8 | (b & 0xFF) << 16 | (r & 0xFF00) << 16,
        (g >> 8 & 0xFF) | (b & 0xFF00) | (r & 0xFF0000) | (g & 0xFF0000) << 8,
        (b >> 16 & 0xFF) | (r >> 16 & 0xFF00) | (g >> 8 & 0xFF0000) | (b & 0xFF000000)};
    for (int i = 0; i < 2; ++i) {
      const WordVector sorted[] = {__builtin_shufflevector(words[0], words[1], 0, 2, 4, 6),
                                   __builtin_shufflevector(words[2], words[0], 0, 2, 5, 7),
                                   __builtin_shufflevector(words[1], words[2], 1, 3, 5, 7)};
      std::memcpy(words, sorted, sizeof words);
    }
    std::memcpy(to, words, sizeof words);
  }
  for (; n > 0; --n, ++from, to += 3) {
    for (int c = 0; c < 3; ++c) to[c] = from[c * step];
  }
}

enum class ChannelOrder { kFirstToLast, kLastToFirst };

/// Writes row y of the region's box to `to`, the channels of a pixel side by side. Pixels that the
/// region does not hold, where it is no box, become `blank`.
inline void GatherRow(const ZUMImage<ZUMByte>& image, int y, ChannelOrder order, ZUMByte blank,
                      ZUMByte* to) {
  const ZUMRegionOfDefinition& rod = image.RoD();
  const FlatPlane plane = GetFlatPlane(image);
  const int begin = rod.BeginX(), channels = image.GetCSz();
  const std::ptrdiff_t n = rod.RoDXSz();
  const bool forward = order == ChannelOrder::kFirstToLast;
  const ZUMByte* row = &image(begin, y, plane.z, plane.t, forward ? 0 : channels - 1);
  const std::ptrdiff_t step = forward ? image.GetChannelSz() : -image.GetChannelSz();
  switch (channels) {
    case 1:
      std::memcpy(to, row, static_cast<std::size_t>(n));
      break;
    case 2:
      MergePlanes<2>(row, step, n, to);
      break;
    case 3:
      MergePlanes<3>(row, step, n, to);
      break;
    case 4:
      MergePlanes<4>(row, step, n, to);
      break;
  }
  if (IsBox(rod)) return;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    if (rod.InP(begin + static_cast<int>(i), y, plane.z, plane.t)) continue;
    std::memset(to + i * channels, blank, static_cast<std::size_t>(channels));
  }
}

/// The same from the first channel on, with 0 for blank: the image's own memory where that has it,
/// else `buffer`, which has room for the row.
inline const ZUMByte* PackRow(const ZUMImage<ZUMByte>& image, int y, ZUMByte* buffer) {
  if (image.GetCSz() == 1 && IsBox(image)) {
    const FlatPlane plane = GetFlatPlane(image);
    return &image(image.BeginX(), y, plane.z, plane.t);
  }
  GatherRow(image, y, ChannelOrder::kFirstToLast, 0, buffer);
  return buffer;
}

/// Writes the first K of C channels that lie side by side to planes, each `step` elements behind
/// the last.
template <int C, int K = C, class S, class P>
void SplitChannels(const S* from, std::ptrdiff_t n, P* to, std::ptrdiff_t step) {
  for (std::ptrdiff_t i = 0; i < n; ++i, from += C) {
    for (int c = 0; c < K; ++c) to[c * step + i] = static_cast<P>(from[c]);
  }
}

// Where the bytes of the first half of 48 alternate with those of the second, place p comes to 2 p
// modulo 47. After four times, byte c of pixel i, at 3 i + c, is at i + 16 c.
template <>
inline void SplitChannels<3, 3, ZUMByte, ZUMByte>(const ZUMByte* from, std::ptrdiff_t n,
                                                  ZUMByte* to, std::ptrdiff_t step) {
  const auto upper = [](ByteVector v) {
    return __builtin_shufflevector(v, v, 8, 9, 10, 11, 12, 13, 14, 15, 8, 9, 10, 11, 12, 13, 14,
                                   15);
  };
  const auto alternate = [](ByteVector a, ByteVector b) {
    return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
  };
  for (; n >= 16; n -= 16, from += 48, to += 16) {
    ByteVector v[3];
    std::memcpy(v, from, sizeof v);
    for (int i = 0; i < 4; ++i) {
      const ByteVector mixed[] = {alternate(v[0], upper(v[1])), alternate(upper(v[0]), v[2]),
                                  alternate(v[1], upper(v[2]))};
      std::memcpy(v, mixed, sizeof v);
    }
    for (int c = 0; c < 3; ++c) StoreVector(to + c * step, v[c]);
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
