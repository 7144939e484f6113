#include "zuml/core/detail/boxes.h"

namespace zuml_detail {

ZUMRoDRef MoveSides(const ZUMRoDRef& rod, int low_sign, const ZUMBasePoint<int>& low, int high_sign,
                    const ZUMBasePoint<int>& high) {
  const auto by_low = [&](Axis axis) { return low_sign * std::int64_t{low.*axis}; };
  const auto by_high = [&](Axis axis) { return high_sign * std::int64_t{high.*axis}; };
  if (!IsBox(rod)) {
    return DisplaceSides(rod, ToCoordinate(by_low(kX)), ToCoordinate(by_low(kY)),
                         ToCoordinate(by_low(kZ)), ToCoordinate(by_low(kT)),
                         ToCoordinate(by_high(kX)), ToCoordinate(by_high(kY)),
                         ToCoordinate(by_high(kZ)), ToCoordinate(by_high(kT)));
  }
  ZUMRect box = rod.Rect();
  bool empty = rod.EmptyP();
  for (const Axis axis : kAxes) {
    const std::int64_t begin = box.begin.*axis + by_low(axis);
    const std::int64_t end = box.end.*axis + by_high(axis);
    empty =
        empty || begin > std::numeric_limits<int>::max() || end < std::numeric_limits<int>::min();
    box.begin.*axis = ToCoordinate(begin);
    box.end.*axis = ToCoordinate(end);
  }
  if (empty) {
    box.begin.x = 0;
    box.end.x = -1;
  }
  return box;
}

}  // namespace zuml_detail
