/// Extrema over boxes, axis by axis.
#pragma once

#include <algorithm>
#include <cstdint>

#include "zuml/core/detail/axes.h"
#include "zuml/core/detail/boxes.h"
#include "zuml/core/zumimage.h"
#include "zuml/morphology/detail/foldtask.h"
#include "zuml/morphology/detail/lanes.h"

namespace zuml_detail {

/// One pass: for each point p the pixels from p + window.begin to p + window.end on the axis, each
/// of them folded along X before, if the window has an extent there. Along X, windows are put
/// together from four windows of a quarter of their length; along the other axes three folds a
/// pixel do for any length (van Herk 1992, Gil and Werman 1993).
template <class P, class Order>
class BoxPass final : public FoldPass {
 public:
  BoxPass(const ZUMImage<P>& image, const ZUMRect& window, Axis axis)
      : image_(image), window_(window), axis_(axis) {}

  int Cost() const override { return 4; }
  void Run(const ZUMRoDRef& part, const ZUMGenericImage& result) const override;

 private:
  const ZUMImage<P>& image_;
  const ZUMRect window_;
  const Axis axis_;
};

/// The task classes of the passes along each axis.
template <class AlongX, class AlongY, class AlongZ, class AlongT>
struct BoxTasks {
  using X = AlongX;
  using Y = AlongY;
  using Z = AlongZ;
  using T = AlongT;
};

/// Folds for each point p of `rod` the pixels from p + window.begin to p + window.end. What lies
/// outside the image contributes nothing, and a window that misses the image gives the neutral
/// value. Image and region begin at the origin, and the window does not lie further from it than
/// the image is long. Offered for the integer types, where the order of a fold plays no role: X and
/// Y are folded in one pass, that along Y if the window has an extent there.
template <class Tasks, class Order, class P>
ZUMImage<P> FoldBox(const ZUMImage<P>& image, const ZUMRoDRef& rod, const ZUMRect& window) {
  const auto moves = [&](Axis axis) { return window.begin.*axis != 0 || window.end.*axis != 0; };
  const bool along_y = moves(kY), along_z = moves(kZ), along_t = moves(kT);

  // What later passes read along Z and T.
  ZUMRect box = rod.Rect();
  for (const Axis axis : {kZ, kT}) {
    const auto moved = [&](int a, int by) { return ToCoordinate(std::int64_t{a} + by); };
    box.begin.*axis = std::max(moved(box.begin.*axis, window.begin.*axis), image.Begin().*axis);
    box.end.*axis = std::min(moved(box.end.*axis, window.end.*axis), image.End().*axis);
  }
  ZUMRect rest = window;
  ZUMImage<P> folded = image;
  const auto run = [&]<class Task>(Axis axis) {
    folded =
        RunFold<Task, P>(ZUMRoDRef(box), image.GetCSz(), BoxPass<P, Order>(folded, rest, axis));
  };
  if (along_y) {
    run.template operator()<typename Tasks::Y>(kY);
  } else if (moves(kX) || !(along_z || along_t)) {
    run.template operator()<typename Tasks::X>(kY);
  }
  rest.begin.x = rest.end.x = 0;
  if (along_z) {
    box.begin.z = rod.BeginZ();
    box.end.z = rod.EndZ();
    run.template operator()<typename Tasks::Z>(kZ);
  }
  if (along_t) {
    box.begin.t = rod.BeginT();
    box.end.t = rod.EndT();
    run.template operator()<typename Tasks::T>(kT);
  }
  return folded;
}

}  // namespace zuml_detail
