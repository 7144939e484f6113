/// Elements as steps, and the coordinates in which operations compute: both counted from the first
/// pixel of the source's region and of the result's. There the sums of coordinates and steps stay
/// within the images' sizes, wherever the images and the element lie in the 32 bits, and a step
/// that leads from no pixel of the result into the source is not made at all.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "zuml/algebra/frames.h"
#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

/// The box of the region's size that begins at the origin.
ZUMRect MoveToOrigin(const ZUMRoDRef& rod);

/// The image's pixels, shared, under a region of the same size.
template <class P>
ZUMImage<P> Place(const ZUMImage<P>& image, const ZUMRoDRef& rod) {
  ZUMImage<P> placed(rod, image);
  const ZUMBasePoint<int> from = image.Begin(), to = rod.Begin();
  // The raster may begin far outside the region, so its origin is moved modulo 2^32.
  const auto move = [](int origin, int a, int b) { return ZUMWrapAdd(origin, ZUMWrapSub(b, a)); };
  placed.SetMP({move(image.GetMPX(), from.x, to.x), move(image.GetMPY(), from.y, to.y),
                move(image.GetMPZ(), from.z, to.z), move(image.GetMPT(), from.t, to.t)});
  return placed;
}

template <class P>
ZUMImage<P> PlaceAtOrigin(const ZUMImage<P>& image) {
  return Place(image, MoveToOrigin(image));
}

/// The result over the region, of `csz` channels: compute(source, box) makes it at the origin, from
/// the image moved there too.
template <class R, class P, class Compute>
ZUMImage<R> ComputeAtOrigin(const ZUMImage<P>& image, const ZUMRoDRef& rod, int csz,
                            Compute&& compute) {
  if (rod.EmptyP()) return ZUMImage<R>(rod, csz, nullptr);
  const ZUMImage<R> result = compute(PlaceAtOrigin(image), ZUMRoDRef(MoveToOrigin(rod)));
  return Place(result, rod);
}

/// Where a source pixel lies, seen from the result's pixel that it contributes to, each counted
/// from the first one of its region.
using Step = ZUMBasePoint<int>;

/// p + k or p - k for the element's pixel k and the result's pixel p.
enum class Direction { kDirect, kMirrored };

/// The region at whose points no element inside the bounds leaves `rod`.
inline ZUMRoDRef ShrinkRegion(const ZUMRoDRef& rod, const ZUMRect& bounds, Direction direction) {
  return direction == Direction::kDirect ? MakeDirectRegion(rod, bounds)
                                         : MakeMirroredRegion(rod, bounds);
}

/// Turns the coordinates of elements into steps.
class StepMap {
 public:
  /// Neither region is empty.
  StepMap(const ZUMRoDRef& source, const ZUMRoDRef& result, Direction direction)
      : source_(source.Rect()), result_(result.Rect()), direct_(direction == Direction::kDirect) {}

  /// The step of the coordinate k, in 64 bits.
  std::int64_t Find(Axis axis, std::int64_t k) const {
    return std::int64_t{result_.begin.*axis} - source_.begin.*axis + (direct_ ? k : -k);
  }
  /// Stores the step of k if it leads into the source from a pixel of the result.
  bool Store(Axis axis, std::int64_t k, Step& step) const {
    const std::int64_t s = Find(axis, k);
    if (s <= -SizeOf(result_, axis) || s >= SizeOf(source_, axis)) return false;
    step.*axis = static_cast<int>(s);
    return true;
  }

 private:
  const ZUMRect source_, result_;
  const bool direct_;
};

/// Calls body(step, k, value) for each pixel k of the element that is not 0 and has a step, in
/// sweep order.
template <class E, class Body>
void ForEachStep(const ZUMImage<E>& element, const StepMap& map, Body&& body) {
  ZUMForEachPlacedRun(
      element,
      [&](const ZUMRunPlace& at, const E* pixels, std::ptrdiff_t n) {
        Step step, k(at.x, at.y, at.z, at.t);
        if (!map.Store(kY, k.y, step) || !map.Store(kZ, k.z, step) || !map.Store(kT, k.t, step)) {
          return;
        }
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          const E value = ValueAt(pixels, i);
          if (value == E() || !map.Store(kX, at.x + std::int64_t{i}, step)) continue;
          k.x = static_cast<int>(at.x + i);
          body(std::as_const(step), std::as_const(k), value);
        }
      },
      element);
}

/// The steps of the element's true pixels, in sweep order.
std::vector<Step> ListSteps(const ZUMImage<ZUMBool>& element, const StepMap& map);

/// Widens the box so that it holds the step.
void Include(ZUMRect& box, const Step& step);

/// The least box with all steps; there is at least one.
ZUMRect BoundsOf(const std::vector<Step>& steps);

/// The image with zeros around it where steps inside `reach`, which holds the origin, lead from the
/// pixels of the box out of it.
template <class P>
ZUMImage<P> WidenToReach(const ZUMImage<P>& image, const ZUMRoDRef& box, const ZUMRect& reach) {
  ZUMRect wide = image.Rect();
  for (const Axis axis : kAxes) {
    const auto moved = [&](int a, int by) { return ToCoordinate(std::int64_t{a} + by); };
    wide.begin.*axis = std::min(wide.begin.*axis, moved(box.Begin().*axis, reach.begin.*axis));
    wide.end.*axis = std::max(wide.end.*axis, moved(box.End().*axis, reach.end.*axis));
  }
  return wide == image.Rect() ? image : ZUMPadding(image, wide, P());
}

/// Refuses an element without a pixel other than 0, with the message of the displacement array.
template <class Array, class E>
void RequirePixels(const ZUMImage<E>& element, Direction direction) {
  const auto all_zero = [](const E* pixels, std::ptrdiff_t n) {
    return std::all_of(StoredPixels(pixels), StoredPixels(pixels) + n,
                       [](Stored<E> pixel) { return pixel == 0; });
  };
  if (!ZUMForEachRunWhile(element, all_zero, element)) return;
  const ZUMImage<E> none;
  if (direction == Direction::kDirect) {
    Array().FromNonZeroPixels(none, none);
  } else {
    Array().SymmetricFromNonZeroPixels(none, none);
  }
}

}  // namespace zuml_detail
