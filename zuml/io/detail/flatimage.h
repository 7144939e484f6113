/// What the writers of two-dimensional formats share: the images that they take, the plane that
/// they write, and its rows with the channels of a pixel side by side.
#pragma once

#include <cstring>

#include "zuml/core/xqexception.h"
#include "zuml/core/zumimage.h"
#include "zuml/core/zumrodrect.h"

namespace zuml_detail {

[[noreturn]] inline void ThrowBadDimensions(const char* format, const ZUMGenericImage& image) {
  throw XQException(
      "No se puede escribir una imagen %s con las dimensiones XSz=%d YSz=%d ZSz=%d TSz=%d CSz=%d",
      format, image.RoDXSz(), image.RoDYSz(), image.RoDZSz(), image.RoDTSz(), image.GetCSz());
}

/// A format takes one plane with pixels, grey or in three colours.
inline void RequireFlatImage(const char* format, const ZUMGenericImage& image) {
  const bool channels = image.GetCSz() == 1 || image.GetCSz() == 3;
  if (image.EmptyP() || image.RoDZSz() != 1 || image.RoDTSz() != 1 || !channels) {
    ThrowBadDimensions(format, image);
  }
}

/// The plane of an image that has room for one in its file.
struct FlatPlane {
  int z;
  int t;
};

/// Z 0, T 0 where the region's box has them, else its first plane: off that, a view of one plane of
/// a volume would give another plane, or bytes that are no pixels.
inline FlatPlane GetFlatPlane(const ZUMRoDRef& rod) {
  const auto pick = [](int begin, int end) { return begin <= 0 && 0 <= end ? 0 : begin; };
  return {pick(rod.BeginZ(), rod.EndZ()), pick(rod.BeginT(), rod.EndT())};
}

enum class ChannelOrder { kFirstToLast, kLastToFirst };

/// Puts three channels side by side.
inline void Interleave(const ZUMByte* __restrict a, const ZUMByte* __restrict b,
                       const ZUMByte* __restrict c, std::ptrdiff_t n, ZUMByte* __restrict to) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    to[3 * i] = a[i];
    to[3 * i + 1] = b[i];
    to[3 * i + 2] = c[i];
  }
}

/// Writes row y of the region's box to `to`, the channels of a pixel side by side. Pixels that the
/// region does not hold, where it is no box, become `blank`.
inline void GatherRow(const ZUMImage<ZUMByte>& image, int y, ChannelOrder order, ZUMByte blank,
                      ZUMByte* to) {
  const ZUMRegionOfDefinition& rod = image.RoD();
  const FlatPlane plane = GetFlatPlane(image);
  const int begin = rod.BeginX(), channels = image.GetCSz();
  const std::ptrdiff_t n = rod.RoDXSz();
  const auto channel = [&](int k) {
    const int c = order == ChannelOrder::kFirstToLast ? k : channels - 1 - k;
    return &image(begin, y, plane.z, plane.t, c);
  };
  if (channels == 1) {
    std::memcpy(to, channel(0), static_cast<std::size_t>(n));
  } else if (channels == 3) {
    Interleave(channel(0), channel(1), channel(2), n, to);
  } else {
    for (int k = 0; k < channels; ++k) {
      const ZUMByte* const from = channel(k);
      for (std::ptrdiff_t i = 0; i < n; ++i) to[i * channels + k] = from[i];
    }
  }
  if (dynamic_cast<const ZUMRoDRect*>(&rod)) return;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    if (rod.InP(begin + static_cast<int>(i), y, plane.z, plane.t)) continue;
    std::memset(to + i * channels, blank, static_cast<std::size_t>(channels));
  }
}

}  // namespace zuml_detail
