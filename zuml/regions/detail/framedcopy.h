/// Framed working images: as wide as a neighbourhood's bounds, so that a flood needs no test of
/// coordinates.
#pragma once

#include "zuml/core/detail/mapped.h"
#include "zuml/core/foreachrun.h"

namespace zuml_detail {

/// The margins that steps of the connectivity reach out of a region. It holds the origin.
inline ZUMRect FrameOf(const ZUMImage<ZUMBool>& con) {
  const ZUMRect box = con.Rect();
  return {-box.begin.x, -box.begin.y, -box.begin.z, -box.begin.t,
          box.end.x,    box.end.y,    box.end.z,    box.end.t};
}

/// An image over the region whose frame is set; the region's pixels are undefined. Throws
/// XQException "ZUMRaster: It is not allowed create a framed raster with an empty RoD".
template <class P>
ZUMImage<P> MakeFramed(const ZUMRoDRef& rod, int csz, const ZUMImage<ZUMBool>& con,
                       std::type_identity_t<P> frame_value) {
  const ZUMRect frame = FrameOf(con);
  const ZUMImage<P> framed(rod, frame, csz, nullptr);
  rod.RoD().DrawOutFrame(framed, frame, frame_value);
  return framed;
}

/// The image's pixels over the region, with a frame of the value around them.
template <class P>
ZUMImage<P> MakeFramedCopy(const ZUMImage<P>& image, const ZUMRoDRef& rod,
                           const ZUMImage<ZUMBool>& con, std::type_identity_t<P> frame_value) {
  const ZUMImage<P> framed = MakeFramed<P>(rod, image.GetCSz(), con, frame_value);
  ZUMForEachRun(
      rod,
      [](P* to, const P* from, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = ValueAt(from, i);
      },
      framed, image);
  return framed;
}

}  // namespace zuml_detail
