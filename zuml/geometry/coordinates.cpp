#include "zuml/geometry/coordinates.h"

#include <algorithm>
#include <numeric>

#include "zuml/core/zumsweep.h"

namespace {

enum class Axis { kX, kY, kZ, kT };

// Writes one coordinate to an image of one channel.
void FillCoordinate(const ZUMImage<ZUMLong>& image, Axis axis) {
  for (ZUMGenericSweepCoords1 sweep(image, image); sweep.GetStart1(); sweep.Next()) {
    auto* start = static_cast<ZUMLong*>(sweep.GetStart1());
    auto* end = static_cast<ZUMLong*>(sweep.GetEnd1()) + 1;
    switch (axis) {
      case Axis::kX:
        std::iota(start, end, sweep.GetX());
        break;
      case Axis::kY:
        std::fill(start, end, sweep.GetY());
        break;
      case Axis::kZ:
        std::fill(start, end, sweep.GetZ());
        break;
      case Axis::kT:
        std::fill(start, end, sweep.GetT());
        break;
    }
  }
}

ZUMImage<ZUMLong> MakeCoordinateImage(const ZUMRoDRef& rod, Axis axis) {
  const ZUMImage<ZUMLong> result(rod, 1, nullptr);
  FillCoordinate(result, axis);
  return result;
}

}  // namespace

ZUMImage<ZUMLong> ZUMCoorsImage(const ZUMRoDRef& rod) {
  const ZUMImage<ZUMLong> result(rod, 4, nullptr);
  FillCoordinate(result.Channel(0), Axis::kX);
  FillCoordinate(result.Channel(1), Axis::kY);
  FillCoordinate(result.Channel(2), Axis::kZ);
  FillCoordinate(result.Channel(3), Axis::kT);
  return result;
}

ZUMImage<ZUMLong> ZUMXsImage(const ZUMRoDRef& rod) { return MakeCoordinateImage(rod, Axis::kX); }
ZUMImage<ZUMLong> ZUMYsImage(const ZUMRoDRef& rod) { return MakeCoordinateImage(rod, Axis::kY); }
ZUMImage<ZUMLong> ZUMZsImage(const ZUMRoDRef& rod) { return MakeCoordinateImage(rod, Axis::kZ); }
ZUMImage<ZUMLong> ZUMTsImage(const ZUMRoDRef& rod) { return MakeCoordinateImage(rod, Axis::kT); }
