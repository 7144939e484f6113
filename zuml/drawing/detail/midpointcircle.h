/// The midpoint circle in closed form, so that a circle costs what it has inside the image.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace zuml_detail {

/// The points (x, y) of one octant that the midpoint rule makes: x from 1 to GetLast, each with its
/// y. Radii below 2^31.
///
/// The rule's d is 4 (x + 1)^2 + (2 y - 1)^2 - 4 r^2, so that y falls where the midpoint below it
/// leaves the circle: y is the greatest with x^2 + (y - 1/2)^2 < r^2. The last step alone, which
/// reaches the diagonal, may not fall as far as that, since the rule takes one pixel at a step.
class MidpointCircle {
 public:
  explicit MidpointCircle(int radius)
      : radius_(radius),
        last_(std::max<std::int64_t>(0, Root(radius_ * radius_ / 2) - 2)),
        last_y_(GetGreatestY(last_)) {
    while (last_ < last_y_) {
      ++last_;
      if (!IsInside(last_, last_y_)) --last_y_;
    }
  }

  std::int64_t GetLast() const { return last_; }
  std::int64_t GetY(std::int64_t x) const { return x == last_ ? last_y_ : GetGreatestY(x); }

  /// How far the filled circle's row reaches to both sides that lies `dy` from the centre's, 0 <=
  /// dy <= r.
  std::int64_t GetHalfWidth(std::int64_t dy) const {
    if (dy == 0) return radius_;
    std::int64_t width = 0;
    if (dy <= last_) width = GetY(dy);
    if (dy == last_y_) width = std::max(width, last_);
    // The greatest x with a y of `dy`.
    if (dy > last_y_) width = std::max(width, Root((radius_ - dy) * (radius_ + dy) + dy - 1));
    return width;
  }

 private:
  // The greatest integer whose square is not above n < 2^62.
  static std::int64_t Root(std::int64_t n) {
    auto root = static_cast<std::int64_t>(std::sqrt(static_cast<double>(n)));
    while (root * root > n) --root;
    while ((root + 1) * (root + 1) <= n) ++root;
    return root;
  }

  // Whether x^2 + (y - 1/2)^2 < r^2.
  bool IsInside(std::int64_t x, std::int64_t y) const {
    return y * (y - 1) < (radius_ - x) * (radius_ + x);
  }
  std::int64_t GetGreatestY(std::int64_t x) const {
    std::int64_t y = Root((radius_ - x) * (radius_ + x));
    if (IsInside(x, y + 1)) ++y;
    return y;
  }

  std::int64_t radius_;
  std::int64_t last_, last_y_;
};

}  // namespace zuml_detail
