/// Where the results of a filter lie whose kernel stays inside the source.
#pragma once

#include <typeinfo>

#include "zuml/core/zumrodrect.h"

namespace zuml_detail {

/// The points p at which p + k lies in the region for the whole box of the kernel.
inline ZUMRoDRef MakeDirectRegion(const ZUMRoDRef& rod, const ZUMRoDRef& kernel) {
  const ZUMBasePoint<int> b = kernel.Begin(), e = kernel.End();
  return DisplaceSides(rod, -b.x, -b.y, -b.z, -b.t, -e.x, -e.y, -e.z, -e.t);
}

/// The points p at which p - k does.
inline ZUMRoDRef MakeMirroredRegion(const ZUMRoDRef& rod, const ZUMRoDRef& kernel) {
  const ZUMBasePoint<int> b = kernel.Begin(), e = kernel.End();
  return DisplaceSides(rod, e.x, e.y, e.z, e.t, b.x, b.y, b.z, b.t);
}

/// Whether the region is a box.
inline bool IsRectangular(const ZUMRoDRef& rod) {
  const ZUMRegionOfDefinition& region = rod.RoD();
  return typeid(region) == typeid(ZUMRoDRect);
}

}  // namespace zuml_detail
