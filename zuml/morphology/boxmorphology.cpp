#include "zuml/morphology/boxmorphology.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/xqexception.h"
#include "zuml/morphology/detail/boxfold.h"
#include "zuml/morphology/detail/elementfold.h"
#include "zuml/morphology/detail/steps.h"

using zuml_detail::Axis;
using zuml_detail::BoxTasks;
using zuml_detail::ComputeAtOrigin;
using zuml_detail::Direction;
using zuml_detail::Greatest;
using zuml_detail::kAxes;
using zuml_detail::kT;
using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::kZ;
using zuml_detail::Least;
using zuml_detail::Step;
using zuml_detail::StepMap;
using zuml_detail::Stored;

// The passes over a box, plain and at the border. Bool images are folded as bytes.
template <class P>
class CTaskDilateX final : public zuml_detail::FoldTask {};
template <class P>
class CTaskDilateY final : public zuml_detail::FoldTask {};
template <class P>
class CTaskDilateZ final : public zuml_detail::FoldTask {};
template <class P>
class CTaskDilateT final : public zuml_detail::FoldTask {};
template <class P>
class CTaskDilateExX final : public zuml_detail::FoldTask {};
template <class P>
class CTaskDilateExY final : public zuml_detail::FoldTask {};
template <class P>
class CTaskDilateExZ final : public zuml_detail::FoldTask {};
template <class P>
class CTaskDilateExT final : public zuml_detail::FoldTask {};
template <class P>
class CTaskErodeX final : public zuml_detail::FoldTask {};
template <class P>
class CTaskErodeY final : public zuml_detail::FoldTask {};
template <class P>
class CTaskErodeZ final : public zuml_detail::FoldTask {};
template <class P>
class CTaskErodeT final : public zuml_detail::FoldTask {};
template <class P>
class CTaskErodeExX final : public zuml_detail::FoldTask {};
template <class P>
class CTaskErodeExY final : public zuml_detail::FoldTask {};
template <class P>
class CTaskErodeExZ final : public zuml_detail::FoldTask {};
template <class P>
class CTaskErodeExT final : public zuml_detail::FoldTask {};

namespace {

// The task classes of an order.
template <class Order, class S>
using PlainTasks =
    std::conditional_t<std::is_same_v<Order, Greatest>,
                       BoxTasks<CTaskDilateX<S>, CTaskDilateY<S>, CTaskDilateZ<S>, CTaskDilateT<S>>,
                       BoxTasks<CTaskErodeX<S>, CTaskErodeY<S>, CTaskErodeZ<S>, CTaskErodeT<S>>>;
template <class Order, class S>
using ExTasks = std::conditional_t<
    std::is_same_v<Order, Greatest>,
    BoxTasks<CTaskDilateExX<S>, CTaskDilateExY<S>, CTaskDilateExZ<S>, CTaskDilateExT<S>>,
    BoxTasks<CTaskErodeExX<S>, CTaskErodeExY<S>, CTaskErodeExZ<S>, CTaskErodeExT<S>>>;

void RequireBox(const char* operation, const ZUMRect& box) {
  for (const Axis axis : kAxes) {
    if (box.begin.*axis > box.end.*axis) {
      throw XQException("%s: empty rectangle is not allowed", operation);
    }
  }
}

void RequireOrigin(const char* operation, const ZUMRect& box) {
  for (const Axis axis : kAxes) {
    if (box.begin.*axis > 0 || box.end.*axis < 0) {
      throw XQException("%s: empty rectangle is not allowed or origin is out of rectange",
                        operation);
    }
  }
}

// The box without the axes on which it has no extent: these are left alone.
ZUMRect FindExtents(const ZUMRect& box) {
  ZUMRect extents;
  for (const Axis axis : kAxes) {
    if (box.begin.*axis == box.end.*axis) continue;
    extents.begin.*axis = box.begin.*axis;
    extents.end.*axis = box.end.*axis;
  }
  return extents;
}

// The steps to the pixels under the extents, cut at the image's length on either side of the
// origin: there no step reaches the image, so that extents beside it stay beside it.
ZUMRect MakeWindow(const ZUMRect& extents, Direction direction, const ZUMRoDRef& image,
                   const ZUMRoDRef& rod) {
  const StepMap map(image, rod, direction);
  const ZUMRect box = image.Rect();
  ZUMRect window;
  for (const Axis axis : kAxes) {
    const std::int64_t size = zuml_detail::SizeOf(box, axis);
    const auto find = [&](int k) {
      return static_cast<int>(std::clamp(map.Find(axis, k), -size, size));
    };
    const int a = find(extents.begin.*axis), b = find(extents.end.*axis);
    window.begin.*axis = std::min(a, b);
    window.end.*axis = std::max(a, b);
  }
  return window;
}

// Calls pass<Task>(axis, steps) for each axis along which the window moves pixels; the steps
// ascend.
template <class Tasks, class Pass>
void ForEachAxis(const ZUMRect& window, Pass pass) {
  const auto along = [&]<class Task>(Axis axis) {
    if (window.begin.*axis == 0 && window.end.*axis == 0) return;
    std::vector<Step> steps;
    for (std::int64_t k = window.begin.*axis; k <= window.end.*axis; ++k) {
      Step step;
      step.*axis = static_cast<int>(k);
      steps.push_back(step);
    }
    pass.template operator()<Task>(axis, steps);
  };
  along.template operator()<typename Tasks::X>(kX);
  along.template operator()<typename Tasks::Y>(kY);
  along.template operator()<typename Tasks::Z>(kZ);
  along.template operator()<typename Tasks::T>(kT);
}

template <class Order, class P>
ZUMImage<P> FoldPlain(const ZUMImage<P>& image, const ZUMRect& box, Direction direction) {
  using Tasks = PlainTasks<Order, Stored<P>>;
  const ZUMRect extents = FindExtents(box);
  if (!std::same_as<P, ZUMBool> && extents == ZUMRect()) return ZUMCopy(image);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(image, extents, direction);
  return ComputeAtOrigin<P>(
      image, rod, image.GetCSz(), [&](const ZUMImage<P>& source, const ZUMRoDRef& whole) {
        const ZUMRect window = MakeWindow(extents, direction, image, rod);
        if constexpr (std::is_integral_v<P>) {
          return zuml_detail::FoldBox<Tasks, Order>(source, whole, window);
        } else {
          ZUMImage<P> folded = source;
          ZUMRect shrunk = source.Rect();
          ForEachAxis<Tasks>(window, [&]<class Task>(Axis axis, const std::vector<Step>& steps) {
            shrunk.end.*axis = whole.End().*axis;
            folded = zuml_detail::FoldElement<Task, Order, P>(folded, ZUMRoDRef(shrunk), steps,
                                                              true, nullptr);
          });
          return folded;
        }
      });
}

// `own`: a pixel begins with its own value, otherwise with the least value of the type.
template <class Order, class P>
ZUMImage<P> FoldEx(const ZUMImage<P>& image, const ZUMRect& box, Direction direction, bool own) {
  using Tasks = ExTasks<Order, Stored<P>>;
  const ZUMRect extents = FindExtents(box);
  if (!std::same_as<P, ZUMBool> && extents == ZUMRect()) return ZUMCopy(image);
  return ComputeAtOrigin<P>(
      image, image, image.GetCSz(), [&](const ZUMImage<P>& source, const ZUMRoDRef& whole) {
        const ZUMRect window = MakeWindow(extents, direction, image, image);
        if constexpr (std::is_integral_v<P>) {
          return zuml_detail::FoldBox<Tasks, Order>(source, whole, window);
        } else {
          const P lowest = std::numeric_limits<P>::lowest();
          ZUMImage<P> folded = source;
          ForEachAxis<Tasks>(window, [&]<class Task>(Axis, std::vector<Step> steps) {
            if (own) steps.push_back(Step(0, 0));
            std::reverse(steps.begin(), steps.end());
            folded = zuml_detail::FoldElement<Task, Order>(folded, whole, steps, false,
                                                           own ? nullptr : &lowest);
          });
          return folded;
        }
      });
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<P> ZUMDilate(const ZUMImage<P>& image, const ZUMRect& box) {
  RequireBox("ZUMDilate", box);
  return FoldPlain<Greatest>(image, box, Direction::kMirrored);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMErode(const ZUMImage<P>& image, const ZUMRect& box) {
  RequireOrigin("ZUMErode", box);
  return FoldPlain<Least>(image, box, Direction::kMirrored);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMMinAdd(const ZUMImage<P>& image, const ZUMRect& box) {
  RequireOrigin("ZUMMinAdd", box);
  return FoldPlain<Greatest>(image, box, Direction::kDirect);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMMinSub(const ZUMImage<P>& image, const ZUMRect& box) {
  RequireOrigin("ZUMMinSub", box);
  return FoldPlain<Least>(image, box, Direction::kDirect);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMDilateEx(const ZUMImage<P>& image, const ZUMRect& box) {
  RequireBox("ZUMDilateEx", box);
  return FoldEx<Greatest>(image, box, Direction::kMirrored, false);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMErodeEx(const ZUMImage<P>& image, const ZUMRect& box) {
  RequireOrigin("ZUMErode", box);
  return FoldEx<Least>(image, box, Direction::kMirrored, true);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMMinAddEx(const ZUMImage<P>& image, const ZUMRect& box) {
  RequireOrigin("ZUMMinAddEx", box);
  return FoldEx<Greatest>(image, box, Direction::kDirect, true);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMMinSubEx(const ZUMImage<P>& image, const ZUMRect& box) {
  RequireOrigin("ZUMMinSubEx", box);
  return FoldEx<Least>(image, box, Direction::kDirect, true);
}

#define ZUML_INSTANTIATE(PIX)                                                        \
  template ZUML_API ZUMImage<PIX> ZUMDilate(const ZUMImage<PIX>&, const ZUMRect&);   \
  template ZUML_API ZUMImage<PIX> ZUMErode(const ZUMImage<PIX>&, const ZUMRect&);    \
  template ZUML_API ZUMImage<PIX> ZUMMinAdd(const ZUMImage<PIX>&, const ZUMRect&);   \
  template ZUML_API ZUMImage<PIX> ZUMMinSub(const ZUMImage<PIX>&, const ZUMRect&);   \
  template ZUML_API ZUMImage<PIX> ZUMDilateEx(const ZUMImage<PIX>&, const ZUMRect&); \
  template ZUML_API ZUMImage<PIX> ZUMErodeEx(const ZUMImage<PIX>&, const ZUMRect&);  \
  template ZUML_API ZUMImage<PIX> ZUMMinAddEx(const ZUMImage<PIX>&, const ZUMRect&); \
  template ZUML_API ZUMImage<PIX> ZUMMinSubEx(const ZUMImage<PIX>&, const ZUMRect&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
