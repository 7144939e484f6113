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
using zuml_detail::Direction;
using zuml_detail::Greatest;
using zuml_detail::kAxes;
using zuml_detail::Least;
using zuml_detail::Step;

class CTaskDilateAxis final : public zuml_detail::ElementFoldTask<ZUMReal, Greatest> {};
class CTaskErodeAxis final : public zuml_detail::ElementFoldTask<ZUMReal, Least> {};

namespace {

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

// Calls pass(steps) for each axis on which the window has an extent; the steps ascend.
template <class Pass>
void ForEachAxis(const ZUMRect& window, Pass pass) {
  for (const Axis axis : kAxes) {
    if (window.begin.*axis == window.end.*axis) continue;
    std::vector<Step> steps;
    for (int k = window.begin.*axis; k <= window.end.*axis; ++k) {
      Step step;
      step.*axis = k;
      steps.push_back(step);
    }
    pass(steps);
  }
}

template <class Order>
using AxisTask =
    std::conditional_t<std::is_same_v<Order, Greatest>, CTaskDilateAxis, CTaskErodeAxis>;

template <class Order, class P>
ZUMImage<P> FoldPlain(const ZUMImage<P>& image, const ZUMRect& box, Direction direction) {
  const ZUMRect window = MakeWindow(box, direction);
  if constexpr (std::is_integral_v<P>) {
    return zuml_detail::FoldBox<P, Order>(
        image, zuml_detail::ShrinkRegion(image, window, Direction::kDirect), window);
  } else {
    ZUMImage<P> folded = image;
    ForEachAxis(window, [&](const std::vector<Step>& steps) {
      const ZUMRect bounds(steps.front(), steps.back());
      const ZUMRoDRef rod = zuml_detail::ShrinkRegion(folded, bounds, Direction::kDirect);
      folded = zuml_detail::FoldElement<AxisTask<Order>>(folded, rod, steps, true, nullptr);
    });
    return window == ZUMRect() ? ZUMCopy(image) : folded;
  }
}

// `own`: a pixel begins with its own value, otherwise with the least value of the type.
template <class Order, class P>
ZUMImage<P> FoldEx(const ZUMImage<P>& image, const ZUMRect& box, Direction direction, bool own) {
  const ZUMRect window = MakeWindow(box, direction);
  if constexpr (std::is_integral_v<P>) {
    return zuml_detail::FoldBox<P, Order>(image, image, window);
  } else {
    const P lowest = std::numeric_limits<P>::lowest();
    ZUMImage<P> folded = image;
    ForEachAxis(window, [&](std::vector<Step> steps) {
      if (own) steps.push_back(Step(0, 0));
      std::reverse(steps.begin(), steps.end());
      folded = zuml_detail::FoldElement<AxisTask<Order>>(folded, folded, steps, false,
                                                         own ? nullptr : &lowest);
    });
    return window == ZUMRect() ? ZUMCopy(image) : folded;
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
