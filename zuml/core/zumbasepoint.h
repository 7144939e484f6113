/// Points and boxes: integer or real coordinates on the four axes X, Y, Z, T.
#pragma once

#include "zuml/core/export.h"

/// A point with the coordinates X, Y, Z, T.
template <class T>
struct ZUMBasePoint {
  T x{};
  T y{};
  T z{};
  T t{};

  ZUMBasePoint() = default;
  ZUMBasePoint(T px, T py, T pz = T(), T pt = T()) : x(px), y(py), z(pz), t(pt) {}

  friend bool operator==(const ZUMBasePoint&, const ZUMBasePoint&) = default;
};

/// A point in the plane.
template <class T>
struct ZUMBasePoint2D {
  T x{};
  T y{};

  ZUMBasePoint2D() = default;
  ZUMBasePoint2D(T px, T py) : x(px), y(py) {}

  friend bool operator==(const ZUMBasePoint2D&, const ZUMBasePoint2D&) = default;
};

/// A box of coordinates, both corners inclusive; or a frame: the margins around a region, those of
/// the low sides in `begin` and those of the high sides in `end`, as non-negative numbers.
struct ZUMRect {
  ZUMBasePoint<int> begin;
  ZUMBasePoint<int> end;

  ZUMRect() = default;
  ZUMRect(int bx, int by, int bz, int bt, int ex, int ey, int ez, int et)
      : begin(bx, by, bz, bt), end(ex, ey, ez, et) {}
  ZUMRect(const ZUMBasePoint<int>& b, const ZUMBasePoint<int>& e) : begin(b), end(e) {}

  friend bool operator==(const ZUMRect&, const ZUMRect&) = default;
};

/// A box in the plane Z = T = 0: the columns bx to ex of the lines by to ey.
inline ZUMRect ZUMPlaneBox(int bx, int by, int ex, int ey) { return {bx, by, 0, 0, ex, ey, 0, 0}; }
