/// Segments between pixels: their clipping, and the walk along Bresenham's line.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <utility>

#include "zuml/drawing/detail/plane.h"

namespace zuml_detail {

/// From (x0, y0) to (x1, y1), coordinates of 32 bits.
struct Segment {
  std::int64_t x0, y0, x1, y1;
};

/// Cuts the segment to the box by the method of Cohen and Sutherland (W. M. Newman, R. F. Sproull,
/// "Principles of Interactive Computer Graphics", 1973); false if nothing is left. The begin is cut
/// before the end, on Y before X. Each cut divides integers toward zero, from the ends that the
/// cuts before it have left.
bool ClipSegment(const Bounds& box, Segment& segment);

/// The points from begin to end, one for each step along the longer side, along X if both are
/// equal: J. E. Bresenham, IBM Systems Journal 4 (1965).
class SegmentWalk {
 public:
  explicit SegmentWalk(const Segment& s)
      : segment_(s),
        steep_(std::abs(s.x1 - s.x0) < std::abs(s.y1 - s.y0)),
        length_(std::abs(steep_ ? s.y1 - s.y0 : s.x1 - s.x0)),
        width_(std::abs(steep_ ? s.x1 - s.x0 : s.y1 - s.y0)),
        last_(length_),
        x_(s.x0),
        y_(s.y0),
        d_(2 * width_ - length_) {}

  /// The number of steps, one less than that of points.
  std::int64_t GetLength() const { return length_; }
  /// Whether the walk stands at a point, and not behind its last one.
  bool More() const { return step_ <= last_; }
  std::int64_t GetX() const { return x_; }
  std::int64_t GetY() const { return y_; }

  void Next() {
    const bool aside = d_ >= 0;
    d_ += aside ? 2 * (width_ - length_) : 2 * width_;
    if (aside || !steep_) x_ += Sign(segment_.x0, segment_.x1);
    if (aside || steep_) y_ += Sign(segment_.y0, segment_.y1);
    ++step_;
  }

  /// Leaves out the steps before and behind those that can lie in the box, at no cost for their
  /// number; before the first step.
  void RestrictTo(const Bounds& box);

 private:
  static int Sign(std::int64_t from, std::int64_t to) { return from < to ? 1 : -1; }

  Segment segment_;
  bool steep_;
  std::int64_t length_, width_, last_;
  std::int64_t step_ = 0;
  std::int64_t x_, y_, d_;
};

/// Draws the segment's part in the plane, cut first, then walked toward higher X.
template <class P>
void DrawSegment(const Plane<P>& plane, Segment segment, P value) {
  if (!ClipSegment(plane.GetBounds(), segment)) return;
  if (segment.x0 > segment.x1) {
    std::swap(segment.x0, segment.x1);
    std::swap(segment.y0, segment.y1);
  }
  for (SegmentWalk walk(segment); walk.More(); walk.Next()) {
    plane.Set(walk.GetX(), walk.GetY(), value);
  }
}

}  // namespace zuml_detail
