#include "zuml/extension/extendedframes.h"

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/mapped.h"
#include "zuml/core/xqexception.h"

namespace {

/// An image over a larger region, and where its pixels are unknown.
template <class P>
struct Widened {
  ZUMImage<P> image;
  ZUMImage<ZUMBool> unknown;
};

template <class P>
Widened<P> Widen(const ZUMImage<P>& image, const ZUMRoDRef& rod) {
  const Widened<P> widened{ZUMImage<P>(rod, image.GetCSz(), P()),
                           ZUMImage<ZUMBool>(rod, image.GetCSz(), true)};
  const ZUMRoDRef shared = Intersection(image, rod);
  zuml_detail::MapRuns(
      shared, [](P pixel) { return pixel; }, widened.image, image);
  widened.unknown.Cut(shared).SetPixels(false);
  return widened;
}

template <class P>
Widened<P> AddFrame(const char* operation, const ZUMImage<P>& image, const ZUMRect& frame) {
  if (image.EmptyP()) {
    throw XQException("%s: It is not allowed add a frame to an empty image", operation);
  }
  for (const zuml_detail::Axis axis : zuml_detail::kAxes) {
    if (frame.begin.*axis < 0 || frame.end.*axis < 0) {
      throw XQException("%s: It is not allowed add a negative frame to an image", operation);
    }
  }
  return Widen(image, zuml_detail::MoveSides(image, -1, frame.begin, 1, frame.end));
}

}  // namespace

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMAddFrameNearest(const ZUMImage<P>& image, const ZUMRect& frame,
                               const ZUMImage<ZUMBool>& connectivity) {
  const Widened<P> widened = AddFrame("ZUMAddFrameNearest", image, frame);
  return ZUMExtendNearest(widened.image, widened.unknown, connectivity);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMAddFrameMean(const ZUMImage<P>& image, const ZUMRect& frame,
                            const ZUMImage<ZUMBool>& connectivity) {
  const Widened<P> widened = AddFrame("ZUMAddFrameMean", image, frame);
  return ZUMExtendMean(widened.image, widened.unknown, connectivity);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMAddFrameDiffuse(const ZUMImage<P>& image, const ZUMRect& frame, double tolerance) {
  const Widened<P> widened = AddFrame("ZUMAddFrameDiffuse", image, frame);
  return ZUMExtendDiffuse(widened.image, widened.unknown, tolerance);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMPaddingNearest(const ZUMImage<P>& image, const ZUMRect& box,
                              const ZUMImage<ZUMBool>& connectivity) {
  const Widened<P> widened = Widen(image, ZUMRoDRef(box));
  return ZUMExtendNearest(widened.image, widened.unknown, connectivity);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMPaddingMean(const ZUMImage<P>& image, const ZUMRect& box,
                           const ZUMImage<ZUMBool>& connectivity) {
  const Widened<P> widened = Widen(image, ZUMRoDRef(box));
  return ZUMExtendMean(widened.image, widened.unknown, connectivity);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMPaddingDiffuse(const ZUMImage<P>& image, const ZUMRect& box, double tolerance) {
  const Widened<P> widened = Widen(image, ZUMRoDRef(box));
  return ZUMExtendDiffuse(widened.image, widened.unknown, tolerance);
}

#define ZUML_INSTANTIATE(PIX)                                                              \
  template ZUML_API ZUMImage<PIX> ZUMAddFrameNearest(const ZUMImage<PIX>&, const ZUMRect&, \
                                                     const ZUMImage<ZUMBool>&);            \
  template ZUML_API ZUMImage<PIX> ZUMPaddingNearest(const ZUMImage<PIX>&, const ZUMRect&,  \
                                                    const ZUMImage<ZUMBool>&);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                                                              \
  template ZUML_API ZUMImage<PIX> ZUMAddFrameMean(const ZUMImage<PIX>&, const ZUMRect&,    \
                                                  const ZUMImage<ZUMBool>&);               \
  template ZUML_API ZUMImage<PIX> ZUMAddFrameDiffuse(const ZUMImage<PIX>&, const ZUMRect&, \
                                                     double);                              \
  template ZUML_API ZUMImage<PIX> ZUMPaddingMean(const ZUMImage<PIX>&, const ZUMRect&,     \
                                                 const ZUMImage<ZUMBool>&);                \
  template ZUML_API ZUMImage<PIX> ZUMPaddingDiffuse(const ZUMImage<PIX>&, const ZUMRect&, double);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
