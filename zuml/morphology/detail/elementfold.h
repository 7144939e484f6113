/// Extrema under a structuring element given pixel by pixel.
#pragma once

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

#include "zuml/core/zumimage.h"
#include "zuml/morphology/detail/foldtask.h"
#include "zuml/morphology/detail/lanes.h"
#include "zuml/morphology/detail/steps.h"

namespace zuml_detail {

/// How a fold reads its element. Where the order of a fold plays no role, runs of steps along X are
/// covered by at most two windows whose lengths are powers of two; the windows of each length are
/// computed once for a tile of the image.
struct ElementPlan {
  struct Tap {
    int level;  // a window of 2^level pixels, which begins at `at`
    Step at;
  };
  std::vector<Tap> taps;
  int levels = 0;                          // the greatest level
  ZUMRect reach;                           // the bounds of the steps
  std::vector<std::pair<int, int>> slabs;  // the Z and T of the steps
  bool tiled = false;                      // whether tiles are copied from the image

  /// `inside`: no step leaves the image.
  ElementPlan(const std::vector<Step>& steps, bool any_order, bool inside);
};

/// The fold of the pixels under the element. What lies outside the image contributes nothing. Image
/// and result begin at the origin.
template <class P, class Order>
class ElementFold final : public FoldPass {
 public:
  /// `start` is the value that the fold begins with; null: that of the first tap.
  ElementFold(const ZUMImage<P>& image, const ElementPlan& plan, const Stored<P>* start)
      : image_(image), plan_(plan), start_(start) {}

  int Cost() const override { return static_cast<int>(plan_.taps.size()) + 2 * plan_.levels; }
  void Run(const ZUMRoDRef& part, const ZUMGenericImage& result) const override;

 private:
  void RunLines(const ZUMRoDRef& part, const ZUMImage<P>& result) const;
  void RunTiles(const ZUMRoDRef& part, const ZUMImage<P>& result) const;

  const ZUMImage<P>& image_;
  const ElementPlan& plan_;
  const Stored<P>* start_;
};

/// Folds the steps in their order. With no start, no step leaves the image on `rod`.
template <class Task, class Order, class P>
ZUMImage<P> FoldElement(const ZUMImage<P>& image, const ZUMRoDRef& rod,
                        const std::vector<Step>& steps, bool inside, const Stored<P>* start) {
  const ElementPlan plan(steps, std::is_integral_v<P>, inside);
  return RunFold<Task, P>(rod, image.GetCSz(), ElementFold<P, Order>(image, plan, start));
}

}  // namespace zuml_detail
