/// Boxes of coordinates in 64 bits, so that their sums cannot overflow, and the regions that follow
/// from an element or a kernel.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <typeinfo>

#include "zuml/core/detail/axes.h"
#include "zuml/core/zumrodrect.h"

namespace zuml_detail {

/// Whether the region is the box, and not a class that an application has derived.
inline bool IsBox(const ZUMRegionOfDefinition& region) {
  return typeid(region) == typeid(ZUMRoDRect);
}
inline bool IsBox(const ZUMRoDRef& rod) { return IsBox(rod.RoD()); }

/// The nearest 32-bit coordinate.
inline int ToCoordinate(std::int64_t a) {
  return static_cast<int>(std::clamp<std::int64_t>(a, std::numeric_limits<int>::min(),
                                                   std::numeric_limits<int>::max()));
}

/// The number of coordinates from the begin to the end, both inside; 0 or less if they cross.
inline std::int64_t SizeOf(const ZUMRect& box, Axis axis) {
  return std::int64_t{box.end.*axis} - box.begin.*axis + 1;
}

/// The region with its sides moved, the low ones by `low` and the high ones by `high`, each with
/// its sign (1 or -1) before it. The sums are exact: a side that would leave the 32 bits outwards
/// stops at their end, one that would leave them inwards leaves no point.
ZUMRoDRef MoveSides(const ZUMRoDRef& rod, int low_sign, const ZUMBasePoint<int>& low, int high_sign,
                    const ZUMBasePoint<int>& high);

/// The points p at which p + k lies in the region for all points k of the box.
inline ZUMRoDRef MakeDirectRegion(const ZUMRoDRef& rod, const ZUMRect& box) {
  return MoveSides(rod, -1, box.begin, -1, box.end);
}

/// The points p at which p - k does.
inline ZUMRoDRef MakeMirroredRegion(const ZUMRoDRef& rod, const ZUMRect& box) {
  return MoveSides(rod, 1, box.end, 1, box.begin);
}

}  // namespace zuml_detail
