#include "zuml/morphology/detail/steps.h"

namespace zuml_detail {

ZUMRect MoveToOrigin(const ZUMRoDRef& rod) {
  const ZUMRect box = rod.Rect();
  ZUMRect moved;
  for (const Axis axis : kAxes) moved.end.*axis = ToCoordinate(SizeOf(box, axis) - 1);
  return moved;
}

std::vector<Step> ListSteps(const ZUMImage<ZUMBool>& element, const StepMap& map) {
  std::vector<Step> steps;
  ForEachStep(element, map, [&](const Step& step, const auto&...) { steps.push_back(step); });
  return steps;
}

void Include(ZUMRect& box, const Step& step) {
  for (const Axis axis : kAxes) {
    box.begin.*axis = std::min(box.begin.*axis, step.*axis);
    box.end.*axis = std::max(box.end.*axis, step.*axis);
  }
}

ZUMRect BoundsOf(const std::vector<Step>& steps) {
  ZUMRect bounds(steps.front(), steps.front());
  for (const Step& step : steps) Include(bounds, step);
  return bounds;
}

}  // namespace zuml_detail
