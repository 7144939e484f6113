#include "zuml/morphology/boxmorphology.h"

#include <algorithm>
#include <limits>
#include <type_traits>
#include <vector>

#include "zuml/core/xqexception.h"
#include "zuml/morphology/detail/boxfold.h"
#include "zuml/morphology/detail/elementfold.h"
#include "zuml/morphology/detail/lines.h"

using zuml_detail::Axis;
using zuml_detail::BoxTasks;
using zuml_detail::Direction;
using zuml_detail::Greatest;
using zuml_detail::kAxes;
using zuml_detail::Least;
using zuml_detail::Step;
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

// The steps to the pixels under the box. An axis without extent is left alone.
ZUMRect MakeWindow(const ZUMRect& box, Direction direction) {
  ZUMRect window;
  for (const Axis axis : kAxes) {
    const int lo = box.begin.*axis, hi = box.end.*axis;
    if (lo == hi) continue;
    window.begin.*axis = direction == Direction::kDirect ? lo : -hi;
    window.end.*axis = direction == Direction::kDirect ? hi : -lo;
  }
  return window;
}

// Calls pass<Task>(steps) for each axis on which the window has an extent; the steps ascend.
template <class Tasks, class Pass>
void ForEachAxis(const ZUMRect& window, Pass pass) {
  const auto along = [&]<class Task>(Axis axis) {
    if (window.begin.*axis == window.end.*axis) return;
    std::vector<Step> steps;
    for (int k = window.begin.*axis; k <= window.end.*axis; ++k) {
      Step step;
      step.*axis = k;
      steps.push_back(step);
    }
    pass.template operator()<Task>(steps);
  };
  along.template operator()<typename Tasks::X>(&Step::x);
  along.template operator()<typename Tasks::Y>(&Step::y);
  along.template operator()<typename Tasks::Z>(&Step::z);
  along.template operator()<typename Tasks::T>(&Step::t);
}

template <class Order, class P>
ZUMImage<P> FoldPlain(const ZUMImage<P>& image, const ZUMRect& box, Direction direction) {
  using Tasks = PlainTasks<Order, Stored<P>>;
  const ZUMRect window = MakeWindow(box, direction);
  if (!std::same_as<P, ZUMBool> && window == ZUMRect()) return ZUMCopy(image);
  if constexpr (std::is_integral_v<P>) {
    const ZUMRoDRef rod = zuml_detail::ShrinkRegion(image, window, Direction::kDirect);
    return zuml_detail::FoldBox<Tasks, Order>(image, rod, window);
  } else {
    ZUMImage<P> folded = image;
    ForEachAxis<Tasks>(window, [&]<class Task>(const std::vector<Step>& steps) {
      const ZUMRect bounds(steps.front(), steps.back());
      const ZUMRoDRef rod = zuml_detail::ShrinkRegion(folded, bounds, Direction::kDirect);
      folded = zuml_detail::FoldElement<Task, Order, P>(folded, rod, steps, true, nullptr);
    });
    return folded;
  }
}

// `own`: a pixel begins with its own value, otherwise with the least value of the type.
template <class Order, class P>
ZUMImage<P> FoldEx(const ZUMImage<P>& image, const ZUMRect& box, Direction direction, bool own) {
  using Tasks = ExTasks<Order, Stored<P>>;
  const ZUMRect window = MakeWindow(box, direction);
  if (!std::same_as<P, ZUMBool> && window == ZUMRect()) return ZUMCopy(image);
  if constexpr (std::is_integral_v<P>) {
    return zuml_detail::FoldBox<Tasks, Order>(image, image, window);
  } else {
    const P lowest = std::numeric_limits<P>::lowest();
    ZUMImage<P> folded = image;
    ForEachAxis<Tasks>(window, [&]<class Task>(std::vector<Step> steps) {
      if (own) steps.push_back(Step(0, 0));
      std::reverse(steps.begin(), steps.end());
      folded = zuml_detail::FoldElement<Task, Order>(folded, folded, steps, false,
                                                     own ? nullptr : &lowest);
    });
    return folded;
  }
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
