/// What shapes are drawn on: one X-Y plane of one channel of an image. Shapes come in 64-bit
/// coordinates, since they may reach beyond the 32 bits; what lies outside the region is left out.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// A box in a plane, both corners inclusive.
struct Bounds {
  std::int64_t begin_x = 0, begin_y = 0, end_x = -1, end_y = -1;

  bool Empty() const { return begin_x > end_x || begin_y > end_y; }
  bool Holds(std::int64_t x, std::int64_t y) const {
    return begin_x <= x && x <= end_x && begin_y <= y && y <= end_y;
  }
};

inline Bounds Intersection(const Bounds& a, const Bounds& b) {
  return {std::max(a.begin_x, b.begin_x), std::max(a.begin_y, b.begin_y),
          std::min(a.end_x, b.end_x), std::min(a.end_y, b.end_y)};
}

template <class P>
class Plane {
 public:
  /// The plane has no pixel where the region does not reach z and t. The channel exists.
  Plane(const ZUMImage<P>& image, int z, int t, int channel)
      : region_(image), is_box_(IsBox(image)), z_(z), t_(t), pitch_(image.GetXSz()) {
    const ZUMRect box = image.Rect();
    if (image.EmptyP() || z < box.begin.z || z > box.end.z || t < box.begin.t || t > box.end.t) {
      return;
    }
    bounds_ = {box.begin.x, box.begin.y, box.end.x, box.end.y};
    origin_ = &image(box.begin.x, box.begin.y, z, t, channel);
  }

  const Bounds& GetBounds() const { return bounds_; }

  /// The pixel, or null where the region has none.
  P* Find(std::int64_t x, std::int64_t y) const {
    return bounds_.Holds(x, y) && InRegion(x, y) ? Address(x, y) : nullptr;
  }

  void Set(std::int64_t x, std::int64_t y, P value) const {
    if (P* const pixel = Find(x, y)) *pixel = value;
  }

  /// The pixels from first to last, both included, of row y.
  void FillRow(std::int64_t first, std::int64_t last, std::int64_t y, P value) const {
    first = std::max(first, bounds_.begin_x);
    last = std::min(last, bounds_.end_x);
    if (first > last || y < bounds_.begin_y || y > bounds_.end_y) return;
    if (is_box_) {
      std::fill_n(Address(first, y), last - first + 1, value);
    } else {
      for (std::int64_t x = first; x <= last; ++x) Set(x, y, value);
    }
  }

 private:
  bool InRegion(std::int64_t x, std::int64_t y) const {
    return is_box_ || region_.InP(static_cast<int>(x), static_cast<int>(y), z_, t_);
  }
  P* Address(std::int64_t x, std::int64_t y) const {
    return origin_ + ((y - bounds_.begin_y) * pitch_ + (x - bounds_.begin_x));
  }

  ZUMRoDRef region_;
  bool is_box_;
  int z_, t_;
  std::ptrdiff_t pitch_;
  Bounds bounds_;
  P* origin_ = nullptr;
};

}  // namespace zuml_detail
