#include "zuml/geometry/coordinates.h"

#include <algorithm>
#include <cstddef>

#include "zuml/core/detail/axes.h"
#include "zuml/core/foreachrun.h"

using zuml_detail::Axis;
using zuml_detail::kT;
using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::kZ;

namespace {

// Writes one coordinate to an image of one channel.
void FillCoordinate(const ZUMImage<ZUMLong>& image, Axis axis) {
  ZUMForEachPlacedRun(
      image,
      [axis](const ZUMRunPlace& place, ZUMLong* r, std::ptrdiff_t n) {
        const ZUMBasePoint<int> p(place.x, place.y, place.z, place.t);
        if (axis != kX) {
          std::fill_n(r, n, p.*axis);
          return;
        }
        const int count = static_cast<int>(n);
        for (int i = 0; i < count; ++i) r[i] = p.x + i;
      },
      image);
}

ZUMImage<ZUMLong> MakeCoordinateImage(const ZUMRoDRef& rod, Axis axis) {
  const ZUMImage<ZUMLong> result(rod, 1, nullptr);
  FillCoordinate(result, axis);
  return result;
}

}  // namespace

ZUMImage<ZUMLong> ZUMCoorsImage(const ZUMRoDRef& rod) {
  const ZUMImage<ZUMLong> result(rod, 4, nullptr);
  int c = 0;
  for (const Axis axis : zuml_detail::kAxes) FillCoordinate(result.Channel(c++), axis);
  return result;
}

ZUMImage<ZUMLong> ZUMXsImage(const ZUMRoDRef& rod) { return MakeCoordinateImage(rod, kX); }
ZUMImage<ZUMLong> ZUMYsImage(const ZUMRoDRef& rod) { return MakeCoordinateImage(rod, kY); }
ZUMImage<ZUMLong> ZUMZsImage(const ZUMRoDRef& rod) { return MakeCoordinateImage(rod, kZ); }
ZUMImage<ZUMLong> ZUMTsImage(const ZUMRoDRef& rod) { return MakeCoordinateImage(rod, kT); }
