/// Convolution and correlation by coordinates.
#pragma once

#include <concepts>

#include "tests/support/testimages.h"
#include "zuml/core/pixelarith.h"

namespace zuml_test {

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
  bool first = true;
  ForEachPoint(kernel, kernel.GetCSz(), [&](int x, int y, int z, int t, int c) {
    const OutT w = kernel(x, y, z, t, c);
    if (w == 0) return;
    const OutT product = Product(
        w, image.GetPixel(p.x + sign * x, p.y + sign * y, p.z + sign * z, p.t + sign * t, c));
    sum = first ? product : ZUMWrapAdd(sum, product);
    first = false;
  });
  return sum;
}

/// The image of these sums where the kernel's box stays inside, for any pairing of channels.
template <class OutT, class InT>
ZUMImage<OutT> WeightedSums(const ZUMImage<InT>& image, const ZUMImage<OutT>& kernel, int sign) {
  const ZUMBasePoint<int> b = kernel.Begin(), e = kernel.End();
  const ZUMRoDRef rod = sign > 0
                            ? DisplaceSides(image, -b.x, -b.y, -b.z, -b.t, -e.x, -e.y, -e.z, -e.t)
                            : DisplaceSides(image, e.x, e.y, e.z, e.t, b.x, b.y, b.z, b.t);
  const int channels = image.GetCSz(), kernel_channels = kernel.GetCSz();
  const int csz = channels > 1 && kernel_channels > 1 ? 1 : std::max(channels, kernel_channels);
  return MakeByPoint<OutT>(rod, csz, [&](int x, int y, int z, int t, int c) {
    const auto source = csz > 1 && channels > 1 ? image.Channel(c) : image;
    const auto weights = csz > 1 && kernel_channels > 1 ? kernel.Channel(c) : kernel;
    return WeightedSum(source, weights, sign, {x, y, z, t});
  });
}

}  // namespace zuml_test
