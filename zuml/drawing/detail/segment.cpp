#include "zuml/drawing/detail/segment.h"

namespace zuml_detail {

namespace {

enum OutCode : int { kLeft = 1, kRight = 2, kBelow = 4, kAbove = 8 };

int GetOutCode(const Bounds& box, std::int64_t x, std::int64_t y) {
  return (x < box.begin_x ? kLeft
          : x > box.end_x ? kRight
                          : 0) |
         (y < box.begin_y ? kBelow
          : y > box.end_y ? kAbove
                          : 0);
}

// a * part / whole cut toward zero, for a part of the whole. Factors of 32 bits and a sign make
// products that 64 bits without a sign just hold.
std::int64_t TakePart(std::int64_t a, std::int64_t part, std::int64_t whole) {
  const auto magnitude = [](std::int64_t v) { return static_cast<std::uint64_t>(std::abs(v)); };
  const auto share = static_cast<std::int64_t>(magnitude(a) * magnitude(part) / magnitude(whole));
  return a < 0 ? -share : share;
}

}  // namespace

bool ClipSegment(const Bounds& box, Segment& s) {
  if (box.Empty()) return false;
  while (true) {
    const int begin = GetOutCode(box, s.x0, s.y0), end = GetOutCode(box, s.x1, s.y1);
    if ((begin | end) == 0) return true;
    if ((begin & end) != 0) return false;
    const int out = begin != 0 ? begin : end;
    std::int64_t x, y;
    if (out & (kBelow | kAbove)) {
      y = out & kAbove ? box.end_y : box.begin_y;
      x = s.x0 + TakePart(s.x1 - s.x0, y - s.y0, s.y1 - s.y0);
    } else {
      x = out & kRight ? box.end_x : box.begin_x;
      y = s.y0 + TakePart(s.y1 - s.y0, x - s.x0, s.x1 - s.x0);
    }
    (begin != 0 ? s.x0 : s.x1) = x;
    (begin != 0 ? s.y0 : s.y1) = y;
  }
}

void SegmentWalk::RestrictTo(const Bounds& box) {
  if (box.Empty()) {
    last_ = -1;
    return;
  }
  // The steps at which the coordinate of the longer side lies in the box.
  const std::int64_t begin = steep_ ? segment_.y0 : segment_.x0;
  const std::int64_t low = steep_ ? box.begin_y : box.begin_x;
  const std::int64_t high = steep_ ? box.end_y : box.end_x;
  const int sx = Sign(segment_.x0, segment_.x1), sy = Sign(segment_.y0, segment_.y1);
  const bool rising = (steep_ ? sy : sx) > 0;
  step_ = std::max<std::int64_t>(0, rising ? low - begin : begin - high);
  last_ = std::min(length_, rising ? high - begin : begin - low);
  if (!More() || step_ == 0) return;
  // Behind i steps the line has gone aside 2 w i / (2 l) times, to the nearest, halves up: once for
  // each time that the decision has passed 0.
  const auto i = static_cast<std::uint64_t>(step_), w = static_cast<std::uint64_t>(width_),
             l = static_cast<std::uint64_t>(length_);
  const auto rest = static_cast<std::int64_t>(w * i % l);
  const std::int64_t half = 2 * rest >= length_;
  const std::int64_t aside = static_cast<std::int64_t>(w * i / l) + half;
  x_ = segment_.x0 + sx * (steep_ ? aside : step_);
  y_ = segment_.y0 + sy * (steep_ ? step_ : aside);
  d_ = 2 * rest + 2 * width_ - length_ - 2 * length_ * half;
}

}  // namespace zuml_detail
