/// Runs of a result beside the source's pixels that lie at a distance from them.
///
/// Operands may lie anywhere among the 32-bit coordinates, so that the way from a result to its
/// source is up to 33 bits long. It is added to a run's place in 64 bits. What goes on from there,
/// inside the source, is small.
#pragma once

#include <cstddef>
#include <type_traits>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// The image in type OutT, with a raster of its own; the conversion alone shares one of that type.
template <class OutT, class InT>
ZUMImage<OutT> ConvertCopy(const ZUMImage<InT>& image) {
  if constexpr (std::is_same_v<OutT, InT>) {
    return ZUMCopy(image);
  } else {
    return static_cast<ZUMImage<OutT>>(image);
  }
}

/// A way from points of a result to points of its source.
using Distance = ZUMBasePoint<long long>;

/// The image's pixel at that distance from the place.
template <class P>
P* PixelAt(const ZUMImage<P>& image, const ZUMRunPlace& place, const Distance& d) {
  return &image(static_cast<int>(place.x + d.x), static_cast<int>(place.y + d.y),
                static_cast<int>(place.z + d.z), static_cast<int>(place.t + d.t), place.c);
}

/// Calls body(place, r, s, n) for each run of the region: the result's pixels from r on, and the
/// source's at the distance from them.
template <class Body, class OutT, class InT>
void ForEachDisplacedRun(const ZUMRoDRef& rod, Body&& body, const ZUMImage<OutT>& result,
                         const ZUMImage<InT>& source, const Distance& d) {
  ZUMForEachPlacedRun(
      rod,
      [&](const ZUMRunPlace& place, OutT* r, std::ptrdiff_t n) {
        body(place, r, static_cast<const InT*>(PixelAt(source, place, d)), n);
      },
      result);
}

/// A kernel, mask or element in the form that displacement arrays are made from: its box begins at
/// the origin, and `begin` is where it began. A region of another class becomes its box, with zeros
/// outside of the region.
template <class P>
struct KernelFromOrigin {
  ZUMImage<P> pixels;
  ZUMBasePoint<int> begin;

  explicit KernelFromOrigin(const ZUMImage<P>& kernel) : pixels(kernel) {
    if (kernel.EmptyP()) return;
    if (!IsBox(kernel)) {
      pixels = ZUMImage<P>(kernel.Rect(), kernel.GetCSz(), P());
      ZUMForEachRun(kernel, ZUMCopyRun<P>, pixels, kernel);
    }
    begin = kernel.Begin();
    ZUMRect box;
    for (const Axis axis : kAxes) {
      box.end.*axis = static_cast<int>(SizeOf(kernel.Rect(), axis) - 1);
    }
    ZUMRaster raster = pixels;
    raster.SubMP(begin);
    pixels = ZUMImage<P>(box, raster);
  }

  /// The distance of the source's pixel that goes with the begin, of p + k or of p - k.
  Distance GetDistance(int sign = 1) const {
    return {sign * static_cast<long long>(begin.x), sign * static_cast<long long>(begin.y),
            sign * static_cast<long long>(begin.z), sign * static_cast<long long>(begin.t)};
  }
};

/// What has to be looked at of a kernel: all of it, or for an empty result only whether it has a
/// pixel other than 0. A kernel far larger than the image then costs no memory.
template <class P>
ZUMImage<P> NeededPart(const ZUMImage<P>& kernel, const ZUMRoDRef& rod) {
  if (!rod.EmptyP() || kernel.EmptyP()) return kernel;
  ZUMBasePoint<int> one = kernel.Begin();
  ZUMForEachPlacedRunWhile(
      kernel,
      [&](const ZUMRunPlace& place, const P* pixels, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          if (NumberAt(pixels, i) == 0) continue;
          one = {static_cast<int>(place.x + i), place.y, place.z, place.t};
          return false;
        }
        return true;
      },
      kernel);
  return kernel.Cut(ZUMRect(one, one));
}

}  // namespace zuml_detail
