#include "zuml/morphology/mathmorph.h"

#include <cstddef>
#include <cstdlib>
#include <type_traits>
#include <vector>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/morphology/detail/boxfold.h"
#include "zuml/morphology/detail/elementfold.h"
#include "zuml/morphology/detail/startvalue.h"
#include "zuml/morphology/detail/steps.h"

using zuml_detail::Direction;
using zuml_detail::Greatest;
using zuml_detail::Least;
using zuml_detail::Step;
using zuml_detail::StepMap;
using zuml_detail::Stored;

template <class P>
class CTaskDilate final : public zuml_detail::FoldTask {};
template <class P>
class CTaskErode final : public zuml_detail::FoldTask {};
// Bools and bytes under elements that keep most of their pixels when they move along X.
class CTaskDilateBool final : public zuml_detail::FoldTask {};
class CTaskErodeBool final : public zuml_detail::FoldTask {};
class CTaskDilateByte final : public zuml_detail::FoldTask {};
class CTaskErodeByte final : public zuml_detail::FoldTask {};
template <class P>
class CTaskDilateEx final : public zuml_detail::FoldTask {};
template <class P>
class CTaskErodeEx final : public zuml_detail::FoldTask {};
template <class P>
class CTaskMinAddEx final : public zuml_detail::FoldTask {};
template <class P>
class CTaskMinSubEx final : public zuml_detail::FoldTask {};

namespace {

template <class Order, class Dilates, class Erodes>
using ByOrder = std::conditional_t<std::is_same_v<Order, Greatest>, Dilates, Erodes>;

// Whether the steps, all different, fill their bounds.
bool IsFullBox(const std::vector<Step>& steps) {
  double points = 1;
  const ZUMRect bounds = zuml_detail::BoundsOf(steps);
  for (const auto axis : zuml_detail::kAxes) {
    points *= static_cast<double>(zuml_detail::SizeOf(bounds, axis));
  }
  return points == static_cast<double>(steps.size());
}

// Whether an element that moves by one pixel along X keeps more pixels than it takes on: these are
// the first ones of its runs.
bool Slides(const std::vector<Step>& steps) {
  std::size_t entering = 1;
  for (std::size_t i = 1; i < steps.size(); ++i) {
    const Step &a = steps[i - 1], &b = steps[i];
    const bool same_line = a.y == b.y && a.z == b.z && a.t == b.t;
    if (!same_line || std::abs(a.x - b.x) != 1) ++entering;
  }
  return steps.size() > 2 * entering;
}

// Folds as a box what fills its bounds, where the order plays no role.
template <class Task, class Order, class P>
ZUMImage<P> FoldSteps(const ZUMImage<P>& image, const ZUMRoDRef& rod,
                      const std::vector<Step>& steps, bool inside) {
  if constexpr (std::is_integral_v<P>) {
    if (IsFullBox(steps)) {
      using Tasks = zuml_detail::BoxTasks<Task, Task, Task, Task>;
      return zuml_detail::FoldBox<Tasks, Order>(image, rod, zuml_detail::BoundsOf(steps));
    }
  }
  return zuml_detail::FoldElement<Task, Order, P>(image, rod, steps, inside, nullptr);
}

template <class Order, class P>
ZUMImage<P> FoldPlain(const char* operation, const ZUMImage<P>& image,
                      const ZUMImage<ZUMBool>& element, Direction direction) {
  zuml_detail::RequireSingleChannelElement(operation, element);
  zuml_detail::RequirePixels<ZUMDisplacementArray>(element, direction);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(image, element.Rect(), direction);
  return zuml_detail::ComputeAtOrigin<P>(
      image, rod, image.GetCSz(), [&](const ZUMImage<P>& source, const ZUMRoDRef& box) {
        const std::vector<Step> steps =
            zuml_detail::ListSteps(element, StepMap(image, rod, direction));
        using Walk = ByOrder<Order, CTaskDilate<P>, CTaskErode<P>>;
        if constexpr (sizeof(P) == 1) {
          using Slide = std::conditional_t<std::is_same_v<P, ZUMBool>,
                                           ByOrder<Order, CTaskDilateBool, CTaskErodeBool>,
                                           ByOrder<Order, CTaskDilateByte, CTaskErodeByte>>;
          if (Slides(steps)) return FoldSteps<Slide, Order>(source, box, steps, true);
        }
        return FoldSteps<Walk, Order>(source, box, steps, true);
      });
}

template <class Task, class Order, class P>
ZUMImage<P> FoldEx(const char* operation, const ZUMImage<P>& image,
                   const ZUMImage<ZUMBool>& element, Direction direction) {
  zuml_detail::RequireSingleChannelElement(operation, element);
  const bool own = zuml_detail::HoldsOrigin(element);
  const Stored<P> start = own ? Stored<P>() : zuml_detail::FindStart<Order>(image);
  return zuml_detail::ComputeAtOrigin<P>(
      image, image, image.GetCSz(), [&](const ZUMImage<P>& source, const ZUMRoDRef& box) {
        std::vector<Step> steps = zuml_detail::ListSteps(element, StepMap(image, image, direction));
        if (!own) {
          return zuml_detail::FoldElement<Task, Order>(source, box, steps, false, &start);
        }
        // The pixel's own value comes first.
        if constexpr (!std::is_integral_v<P>) steps.insert(steps.begin(), Step(0, 0));
        return FoldSteps<Task, Order>(source, box, steps, false);
      });
}

// The plain forms of bool images are direct throughout.
template <class P>
constexpr Direction kPlainDirection =
    std::is_same_v<P, ZUMBool> ? Direction::kDirect : Direction::kMirrored;

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<P> ZUMDilate(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  return FoldPlain<Greatest>("ZUMDilate", image, element, kPlainDirection<P>);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMErode(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  return FoldPlain<Least>("ZUMErode", image, element, kPlainDirection<P>);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMMinAdd(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  return FoldPlain<Greatest>("ZUMMinAdd", image, element, Direction::kDirect);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMMinSub(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  return FoldPlain<Least>("ZUMMinSub", image, element, Direction::kDirect);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMDilateEx(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  return FoldEx<CTaskDilateEx<P>, Greatest>("ZUMDilateEx", image, element, Direction::kMirrored);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMErodeEx(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  return FoldEx<CTaskErodeEx<P>, Least>("ZUMErodeEx", image, element, Direction::kMirrored);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMMinAddEx(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  return FoldEx<CTaskMinAddEx<P>, Greatest>("ZUMMinAddEx", image, element, Direction::kDirect);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMMinSubEx(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  return FoldEx<CTaskMinSubEx<P>, Least>("ZUMMinSubEx", image, element, Direction::kDirect);
}

#define ZUML_INSTANTIATE(PIX)                                                                  \
  template ZUML_API ZUMImage<PIX> ZUMDilate(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&);   \
  template ZUML_API ZUMImage<PIX> ZUMErode(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&);    \
  template ZUML_API ZUMImage<PIX> ZUMMinAdd(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&);   \
  template ZUML_API ZUMImage<PIX> ZUMMinSub(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&);   \
  template ZUML_API ZUMImage<PIX> ZUMDilateEx(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&); \
  template ZUML_API ZUMImage<PIX> ZUMErodeEx(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&);  \
  template ZUML_API ZUMImage<PIX> ZUMMinAddEx(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&); \
  template ZUML_API ZUMImage<PIX> ZUMMinSubEx(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
