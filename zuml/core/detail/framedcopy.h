/// Framed working images of walks over neighbours: the frame is as wide as the steps reach, so that
/// a walk needs no test of coordinates.
///
/// A connectivity image is cut first to the steps that can join two points of the region. So it may
/// be of any size: the frame is never wider than the region, and no side of it is -INT_MIN.
#pragma once

#include <type_traits>

#include "zuml/core/detail/mapped.h"
#include "zuml/core/zumconnectivity.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// The connectivity without the steps that lead out of the region from every point of it. It keeps
/// at least the neighbours in the plane, and the centre as its only step where all others go. A
/// connectivity without a true pixel stays one. It has passed RequireConnectivity.
ZUMImage<ZUMBool> CutToReach(const ZUMImage<ZUMBool>& connectivity, const ZUMRoDRef& rod);

/// The margins that steps of a connectivity, cut to its reach, need around a region.
ZUMRect FrameOf(const ZUMImage<ZUMBool>& reach);

/// An image over the region whose frame is set; the region's pixels are undefined. Throws
/// XQException "ZUMRaster: It is not allowed create a framed raster with an empty RoD".
template <class P>
ZUMImage<P> MakeFramed(const ZUMRoDRef& rod, int csz, const ZUMImage<ZUMBool>& reach,
                       std::type_identity_t<P> frame_value) {
  const ZUMRect frame = FrameOf(reach);
  const ZUMImage<P> framed(rod, frame, csz, nullptr);
  rod.RoD().DrawOutFrame(framed, frame, frame_value);
  return framed;
}

/// The image's pixels over the region, with a frame of the value around them.
template <class P>
ZUMImage<P> MakeFramedCopy(const ZUMImage<P>& image, const ZUMRoDRef& rod,
                           const ZUMImage<ZUMBool>& reach, std::type_identity_t<P> frame_value) {
  const ZUMImage<P> framed = MakeFramed<P>(rod, image.GetCSz(), reach, frame_value);
  MapRuns(
      rod, [](P pixel) { return pixel; }, framed, image);
  return framed;
}

}  // namespace zuml_detail
