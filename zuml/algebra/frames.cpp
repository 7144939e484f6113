#include "zuml/algebra/frames.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqexception.h"

using zuml_detail::Axis;
using zuml_detail::kAxes;

namespace {

bool IsNegative(const ZUMRect& frame) {
  return std::any_of(std::begin(kAxes), std::end(kAxes),
                     [&](Axis axis) { return frame.begin.*axis < 0 || frame.end.*axis < 0; });
}

// The region with the frame's margins added (sign 1) or taken off (sign -1).
ZUMRoDRef Widen(const ZUMRoDRef& rod, const ZUMRect& frame, int sign) {
  return zuml_detail::MoveSides(rod, -sign, frame.begin, sign, frame.end);
}

// The part of the frame that has coordinates, so that the raster is as large as the region and its
// origin is a coordinate.
ZUMRect CutFrame(const ZUMRect& box, ZUMRect frame) {
  using Limits = std::numeric_limits<int>;
  for (const Axis axis : kAxes) {
    const std::int64_t below = std::int64_t{box.begin.*axis} - Limits::min();
    const std::int64_t above = std::int64_t{Limits::max()} - box.end.*axis;
    frame.begin.*axis = static_cast<int>(std::min<std::int64_t>(frame.begin.*axis, below));
    frame.end.*axis = static_cast<int>(std::min<std::int64_t>(frame.end.*axis, above));
  }
  return frame;
}

}  // namespace

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMAddFrame(const ZUMImage<P>& image, const ZUMRect& frame,
                        std::type_identity_t<P> value) {
  if (image.EmptyP()) {
    throw XQException("ZUMAddFrame: It is not allowed add a frame to an empty image");
  }
  if (IsNegative(frame)) {
    throw XQException("ZUMAddFrame: It is not allowed add a negative frame to an image");
  }
  const ZUMRect margins = CutFrame(image.Rect(), frame);
  const ZUMImage<P> framed(image, margins, image.GetCSz(), nullptr);
  image.RoD().DrawOutFrame(framed, margins, value);
  ZUMForEachRun(
      image, [](const P* from, P* to, std::ptrdiff_t n) { ZUMCopyRun(to, from, n); }, image,
      framed);
  return ZUMImage<P>(Widen(image, margins, 1), framed);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMRemoveFrame(const ZUMImage<P>& image, const ZUMRect& frame) {
  if (IsNegative(frame)) {
    throw XQException("ZUMAddFrame: It is not allowed remove a negative frame to an image");
  }
  if (image.EmptyP()) return image;
  return ZUMImage<P>(Widen(image, frame, -1), image);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMPadding(const ZUMImage<P>& image, const ZUMRect& box,
                       std::type_identity_t<P> value) {
  ZUMImage<P> result(box, image.GetCSz(), value);
  result.Cut(image).SetPixels(image);
  return result;
}

#define ZUML_INSTANTIATE(PIX)                                                             \
  template ZUML_API ZUMImage<PIX> ZUMAddFrame(const ZUMImage<PIX>&, const ZUMRect&, PIX); \
  template ZUML_API ZUMImage<PIX> ZUMRemoveFrame(const ZUMImage<PIX>&, const ZUMRect&);   \
  template ZUML_API ZUMImage<PIX> ZUMPadding(const ZUMImage<PIX>&, const ZUMRect&, PIX);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
