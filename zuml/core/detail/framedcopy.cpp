#include "zuml/core/detail/framedcopy.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "zuml/core/detail/axes.h"
#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"

namespace zuml_detail {

namespace {

bool HasTruePixel(const ZUMImage<ZUMBool>& image) {
  const auto is_false = [](const ZUMBool* pixels, std::ptrdiff_t n) {
    const ZUMByte* bytes = StoredPixels(pixels);
    return std::all_of(bytes, bytes + n, [](ZUMByte byte) { return byte == 0; });
  };
  return !ZUMForEachRunWhile(image, is_false, image);
}

}  // namespace

ZUMImage<ZUMBool> CutToReach(const ZUMImage<ZUMBool>& connectivity, const ZUMRoDRef& rod) {
  if (rod.EmptyP()) return connectivity;
  const ZUMRect region = rod.Rect(), box = connectivity.Rect();
  ZUMRect reach;
  bool inside = true;
  for (const Axis axis : kAxes) {
    const std::int64_t least = axis == kX || axis == kY ? 1 : 0;
    const int far = ToCoordinate(std::max(SizeOf(region, axis) - 1, least));
    reach.begin.*axis = -far;
    reach.end.*axis = far;
    inside = inside && box.begin.*axis >= -far && box.end.*axis <= far;
  }
  if (inside) return connectivity;
  const ZUMImage<ZUMBool> cut = connectivity.Cut(reach);
  if (HasTruePixel(cut) || !HasTruePixel(connectivity)) return cut;
  return ZUMImage<ZUMBool>(ZUMRect(), 1, true);
}

ZUMRect FrameOf(const ZUMImage<ZUMBool>& reach) {
  ZUMRect frame = reach.Rect();
  for (const Axis axis : kAxes) {
    frame.begin.*axis = ToCoordinate(-std::int64_t{frame.begin.*axis});
  }
  return frame;
}

}  // namespace zuml_detail
