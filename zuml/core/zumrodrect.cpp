#include "zuml/core/zumrodrect.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <typeinfo>
#include <utility>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/typenames.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumimage.h"

using zuml_detail::Axis;
using zuml_detail::kT;
using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::kZ;

namespace {

bool IsCrossed(const ZUMRect& box) {
  return box.begin.x > box.end.x || box.begin.y > box.end.y || box.begin.z > box.end.z ||
         box.begin.t > box.end.t;
}

// Sums and negatives of coordinates stop at the ends of the 32 bits, so that the box of all
// coordinates can be moved and mirrored like any other.
int Add(int a, std::int64_t b) { return zuml_detail::ToCoordinate(a + b); }
int Negate(int a) { return Add(0, -std::int64_t{a}); }

// The box mirrored through the origin on one axis.
ZUMRect Mirror(ZUMRect box, Axis axis) {
  std::swap(box.begin.*axis, box.end.*axis);
  box.begin.*axis = Negate(box.begin.*axis);
  box.end.*axis = Negate(box.end.*axis);
  return box;
}

ZUMBasePoint<std::int64_t> Widen(const ZUMBasePoint<int>& p) { return {p.x, p.y, p.z, p.t}; }

// Part i of n, cut along the first of the axes that has at least n coordinates.
ZUMRegionOfDefinition* CutPart(const ZUMRoDRect& rod, int i, int n,
                               std::initializer_list<Axis> axes) {
  const ZUMRect box = rod.Rect();
  if (i < 0 || i >= n) return new ZUMRoDRect();
  if (!rod.EmptyP()) {
    for (Axis axis : axes) {
      const std::int64_t size = zuml_detail::SizeOf(box, axis);
      if (size < n) continue;
      ZUMRect part = box;
      part.begin.*axis = static_cast<int>(box.begin.*axis + size * i / n);
      part.end.*axis = static_cast<int>(box.begin.*axis + size * (i + std::int64_t{1}) / n - 1);
      return new ZUMRoDRect(part);
    }
  }
  return i == 0 ? new ZUMRoDRect(rod) : new ZUMRoDRect();
}

// The lines of the widened box are filled whole where they miss the inner box on Y, Z or T, and
// outside of its X range elsewhere. The margins may lie beyond the ends of 32 bits, where the
// raster's coordinates wrap.
template <class P>
void FillFrame(const ZUMRect& inner, const ZUMImage<P>& image, const ZUMRect& frame, P value) {
  const ZUMBasePoint<std::int64_t> b = Widen(inner.begin), e = Widen(inner.end);
  const ZUMBasePoint<std::int64_t> low = Widen(frame.begin), high = Widen(frame.end);
  const std::int64_t begin_x = b.x - low.x, end_x = e.x + high.x;
  if (begin_x > end_x) return;
  for (int c = 0; c < image.GetCSz(); ++c) {
    for (std::int64_t t = b.t - low.t; t <= e.t + high.t; ++t) {
      for (std::int64_t z = b.z - low.z; z <= e.z + high.z; ++z) {
        for (std::int64_t y = b.y - low.y; y <= e.y + high.y; ++y) {
          const auto fill = [&](std::int64_t first, std::int64_t last) {
            if (first > last) return;
            const auto wrap = [](std::int64_t a) { return static_cast<int>(a); };
            P* const start =
                static_cast<P*>(image.PixelAddress(wrap(first), wrap(y), wrap(z), wrap(t), c));
            std::fill(start, start + (last - first + 1), value);
          };
          if (t < b.t || t > e.t || z < b.z || z > e.z || y < b.y || y > e.y) {
            fill(begin_x, end_x);
          } else {
            fill(begin_x, b.x - 1);
            fill(e.x + 1, end_x);
          }
        }
      }
    }
  }
}

}  // namespace

ZUMRoDRect::ZUMRoDRect(const ZUMRect& box) : box_(box) {
  if (IsCrossed(box_)) {
    box_.begin.x = 0;
    box_.end.x = -1;
  }
}

int ZUMRoDRect::NPixels() const {
  if (EmptyP()) return 0;
  const std::uint32_t sizes[] = {
      static_cast<std::uint32_t>(RoDXSz()), static_cast<std::uint32_t>(RoDYSz()),
      static_cast<std::uint32_t>(RoDZSz()), static_cast<std::uint32_t>(RoDTSz())};
  return static_cast<int>(sizes[0] * sizes[1] * sizes[2] * sizes[3]);
}

bool ZUMRoDRect::InP(int x, int y, int z, int t) const {
  return box_.begin.x <= x && x <= box_.end.x && box_.begin.y <= y && y <= box_.end.y &&
         box_.begin.z <= z && z <= box_.end.z && box_.begin.t <= t && t <= box_.end.t;
}

ZUMRegionOfDefinition* ZUMRoDRect::Intersection(const ZUMRegionOfDefinition& other) const {
  if (!zuml_detail::IsBox(other)) {
    throw XQException("ZUMRoDRect::Intersection no implementada para %s",
                      zuml_detail::TypeName(typeid(other)).c_str());
  }
  const ZUMRect o = other.Rect();
  return new ZUMRoDRect(std::max(box_.begin.x, o.begin.x), std::max(box_.begin.y, o.begin.y),
                        std::max(box_.begin.z, o.begin.z), std::max(box_.begin.t, o.begin.t),
                        std::min(box_.end.x, o.end.x), std::min(box_.end.y, o.end.y),
                        std::min(box_.end.z, o.end.z), std::min(box_.end.t, o.end.t));
}

ZUMRegionOfDefinition* ZUMRoDRect::Union(const ZUMRegionOfDefinition&) const {
  throw XQException("ZUMRoDRect::Union No implementada");
}

ZUMRegionOfDefinition* ZUMRoDRect::DisplaceSides(int bx, int by, int bz, int bt, int ex, int ey,
                                                 int ez, int et) const {
  const ZUMBasePoint<int> b = box_.begin, e = box_.end;
  return new ZUMRoDRect(Add(b.x, bx), Add(b.y, by), Add(b.z, bz), Add(b.t, bt), Add(e.x, ex),
                        Add(e.y, ey), Add(e.z, ez), Add(e.t, et));
}

ZUMRegionOfDefinition* ZUMRoDRect::Translate(int x, int y, int z, int t) const {
  return DisplaceSides(x, y, z, t, x, y, z, t);
}

ZUMRegionOfDefinition* ZUMRoDRect::Symmetry() const {
  return new ZUMRoDRect(Mirror(Mirror(Mirror(Mirror(box_, kX), kY), kZ), kT));
}

ZUMRegionOfDefinition* ZUMRoDRect::SymmetryX() const { return new ZUMRoDRect(Mirror(box_, kX)); }
ZUMRegionOfDefinition* ZUMRoDRect::SymmetryY() const { return new ZUMRoDRect(Mirror(box_, kY)); }
ZUMRegionOfDefinition* ZUMRoDRect::SymmetryZ() const { return new ZUMRoDRect(Mirror(box_, kZ)); }
ZUMRegionOfDefinition* ZUMRoDRect::SymmetryT() const { return new ZUMRoDRect(Mirror(box_, kT)); }

ZUMRegionOfDefinition* ZUMRoDRect::RotateX(int) const {
  throw XQException("ZUMRoDRect::RotateX not implemented");
}

ZUMRegionOfDefinition* ZUMRoDRect::RotateY(int) const {
  throw XQException("ZUMRoDRect::RotateY not implemented");
}

ZUMRegionOfDefinition* ZUMRoDRect::RotateT(int) const {
  throw XQException("ZUMRoDRect::RotateT not implemented");
}

ZUMRegionOfDefinition* ZUMRoDRect::RotateZ(int angle) const {
  const ZUMBasePoint<int> b = box_.begin, e = box_.end;
  angle %= 360;
  if (angle < 0) angle += 360;
  switch (angle) {
    case 0:
      return new ZUMRoDRect(*this);
    case 90:
      return new ZUMRoDRect(Negate(e.y), b.x, b.z, b.t, Negate(b.y), e.x, e.z, e.t);
    case 180:
      return new ZUMRoDRect(Negate(e.x), Negate(e.y), b.z, b.t, Negate(b.x), Negate(b.y), e.z, e.t);
    case 270:
      return new ZUMRoDRect(b.y, Negate(e.x), b.z, b.t, e.y, Negate(b.x), e.z, e.t);
    default:
      throw XQException("ZUMRoDRect::RotateZ only allows angles multiples of 90");
  }
}

bool ZUMRoDRect::operator==(const ZUMRegionOfDefinition& other) const {
  return zuml_detail::IsBox(other) && box_ == static_cast<const ZUMRoDRect&>(other).box_;
}

void ZUMRoDRect::DrawOutFrame(const ZUMImage<void*>& image, const ZUMRect& frame,
                              void* value) const {
  FillFrame(box_, image, frame, value);
}
void ZUMRoDRect::DrawOutFrame(const ZUMImage<ZUMComplex>& image, const ZUMRect& frame,
                              ZUMComplex value) const {
  FillFrame(box_, image, frame, value);
}
void ZUMRoDRect::DrawOutFrame(const ZUMImage<ZUMReal>& image, const ZUMRect& frame,
                              ZUMReal value) const {
  FillFrame(box_, image, frame, value);
}
void ZUMRoDRect::DrawOutFrame(const ZUMImage<ZUMSReal>& image, const ZUMRect& frame,
                              ZUMSReal value) const {
  FillFrame(box_, image, frame, value);
}
void ZUMRoDRect::DrawOutFrame(const ZUMImage<ZUMLong>& image, const ZUMRect& frame,
                              ZUMLong value) const {
  FillFrame(box_, image, frame, value);
}
void ZUMRoDRect::DrawOutFrame(const ZUMImage<ZUMShort>& image, const ZUMRect& frame,
                              ZUMShort value) const {
  FillFrame(box_, image, frame, value);
}
void ZUMRoDRect::DrawOutFrame(const ZUMImage<ZUMByte>& image, const ZUMRect& frame,
                              ZUMByte value) const {
  FillFrame(box_, image, frame, value);
}
void ZUMRoDRect::DrawOutFrame(const ZUMImage<ZUMBool>& image, const ZUMRect& frame,
                              ZUMBool value) const {
  FillFrame(box_, image, frame, value);
}

ZUMRegionOfDefinition* ZUMRoDRect::RoDPart(int i, int n) const {
  return CutPart(*this, i, n, {kY, kZ, kT, kX});
}

ZUMRegionOfDefinition* ZUMRoDRect::RoDHorizontalPart(int i, int n) const {
  return CutPart(*this, i, n, {kY, kZ, kT});
}

ZUMRegionOfDefinition* ZUMRoDRect::RoDVerticalPart(int i, int n) const {
  return CutPart(*this, i, n, {kX, kZ, kT});
}
