/// Linear filters by coordinates, and operands that tell them apart from others.
#pragma once

#include <concepts>

#include "tests/support/testimages.h"
#include "zuml/core/pixelarith.h"

namespace zuml_test {

/// A box as eight numbers, for tables.
using Box = int[8];
inline ZUMRect MakeRect(const Box& b) { return {b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]}; }

/// A random image whose sums are rounded if its pixels are not integers, so that their order shows.
template <class P>
ZUMImage<P> MakeFilterImage(Random& random, const ZUMRect& box, int csz, Layout layout) {
  const auto image = MakeRandomImage<P>(random, box, csz, layout);
  if constexpr (!std::integral<P>) {
    ForEachPoint(image, csz, [&](int x, int y, int z, int t, int c) {
      image(x, y, z, t, c) /= static_cast<P>(3);
    });
  }
  return image;
}

/// The points at which the box of a kernel stays inside the region, read at p + k.
inline ZUMRoDRef Shrink(const ZUMRoDRef& rod, const ZUMRect& k) {
  return DisplaceSides(rod, -k.begin.x, -k.begin.y, -k.begin.z, -k.begin.t, -k.end.x, -k.end.y,
                       -k.end.z, -k.end.t);
}

/// A weight times a pixel, as results of type OutT take it.
template <class OutT, class InT>
OutT Product(OutT w, InT s) {
  if constexpr (std::same_as<InT, bool>) {
    return s ? w : OutT(0);
  } else if constexpr ((std::integral<OutT> && std::floating_point<InT>) ||
                       std::same_as<InT, ZUMReal>) {
    return ZUMTruncate<OutT>(static_cast<double>(static_cast<InT>(w) * s));
  } else {
    return ZUMWrapMul(w, static_cast<OutT>(s));
  }
}

/// The sum over the pixels of all channels of the kernel: of w(k) image(p + sign k), channel by
/// channel.
template <class OutT, class InT>
OutT WeightedSum(const ZUMImage<InT>& image, const ZUMImage<OutT>& kernel, int sign,
                 const ZUMBasePoint<int>& p) {
  OutT sum = 0;
  ForEachPoint(kernel, kernel.GetCSz(), [&](int x, int y, int z, int t, int c) {
    const OutT w = kernel(x, y, z, t, c);
    if (w == 0) return;
    sum = ZUMWrapAdd(
        sum, Product(w, image(p.x + sign * x, p.y + sign * y, p.z + sign * z, p.t + sign * t, c)));
  });
  return sum;
}

/// The image of these sums where the kernel's box stays inside, for any pairing of channels; those
/// of both add up unless they are told to stay `apart`.
template <class OutT, class InT>
ZUMImage<OutT> WeightedSums(const ZUMImage<InT>& image, const ZUMImage<OutT>& kernel, int sign,
                            bool apart = false) {
  const ZUMRoDRef mirrored = kernel.RoD().Symmetry();
  const ZUMRoDRef rod = Shrink(image, sign > 0 ? kernel.Rect() : mirrored.Rect());
  const int channels = image.GetCSz(), kernel_channels = kernel.GetCSz();
  const bool sum = channels > 1 && kernel_channels > 1 && !apart;
  const int csz = sum ? 1 : std::max(channels, kernel_channels);
  return MakeByPoint<OutT>(rod, csz, [&](int x, int y, int z, int t, int c) {
    const auto source = channels > 1 && !sum ? image.Channel(c) : image;
    const auto weights = kernel_channels > 1 && !sum ? kernel.Channel(c) : kernel;
    return WeightedSum(source, weights, sign, {x, y, z, t});
  });
}

}  // namespace zuml_test
