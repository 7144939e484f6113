/// The four axes, as values that a loop runs over or a function takes.
#pragma once

#include "zuml/core/zumbasepoint.h"

namespace zuml_detail {

/// One of the coordinates of a point: `point.*axis`.
using Axis = int ZUMBasePoint<int>::*;

inline constexpr Axis kX = &ZUMBasePoint<int>::x;
inline constexpr Axis kY = &ZUMBasePoint<int>::y;
inline constexpr Axis kZ = &ZUMBasePoint<int>::z;
inline constexpr Axis kT = &ZUMBasePoint<int>::t;
inline constexpr Axis kAxes[] = {kX, kY, kZ, kT};

}  // namespace zuml_detail
