#include "zuml/algebra/frames.h"

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqexception.h"

namespace {

bool IsNegative(const ZUMBasePoint<int>& p) { return p.x < 0 || p.y < 0 || p.z < 0 || p.t < 0; }

bool IsNegative(const ZUMRect& frame) { return IsNegative(frame.begin) || IsNegative(frame.end); }

// The region with the frame's margins added (sign 1) or taken off (sign -1).
ZUMRoDRef Widen(const ZUMRoDRef& rod, const ZUMRect& frame, int sign) {
  return zuml_detail::MoveSides(rod, -sign, frame.begin, sign, frame.end);
}

}  // namespace

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMAppendChannels(int n, const ZUMImage<P>** images) {
  if (!images) {
    throw XQException("AppendChannels: A NULL pointer to an array of images are not allowed");
  }
  if (n < 1 || !images[0]) {
    throw XQException("AppendChannels: An array of zero images are not allowed");
  }
  ZUMRoDRef rod = *images[0];
  int csz = images[0]->GetCSz();
  for (int i = 1; i < n; ++i) {
    rod = Intersection(rod, *images[i]);
    csz += images[i]->GetCSz();
  }
  const ZUMImage<P> result(rod, csz, nullptr);
  int first = 0;
  for (int i = 0; i < n; ++i) {
    const ZUMImage<P>& image = *images[i];
    const std::ptrdiff_t offset = first * result.GetChannelSz();
    ZUMForEachRun(
        rod,
        [offset](const P* from, P* to, std::ptrdiff_t pixels) {
          ZUMCopyRun(to + offset, from, pixels);
        },
        image, result);
    first += image.GetCSz();
  }
  return result;
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMAppendChannels(const ZUMImage<P>& a, const ZUMImage<P>& b) {
  const ZUMImage<P>* images[] = {&a, &b};
  return ZUMAppendChannels(2, images);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMAppendChannels(const ZUMImage<P>& a, const ZUMImage<P>& b, const ZUMImage<P>& c) {
  const ZUMImage<P>* images[] = {&a, &b, &c};
  return ZUMAppendChannels(3, images);
}

template <ZUMAlgebraPixel P>
ZUMImage<P> ZUMAddFrame(const ZUMImage<P>& image, const ZUMRect& frame,
                        std::type_identity_t<P> value) {
  if (image.EmptyP()) {
    throw XQException("ZUMAddFrame: It is not allowed add a frame to an empty image");
  }
  if (IsNegative(frame)) {
    throw XQException("ZUMAddFrame: It is not allowed add a negative frame to an image");
  }
  const ZUMImage<P> framed(image, frame, image.GetCSz(), nullptr);
  image.RoD().DrawOutFrame(framed, frame, value);
  ZUMForEachRun(
      image, [](const P* from, P* to, std::ptrdiff_t n) { ZUMCopyRun(to, from, n); }, image,
      framed);
  return ZUMImage<P>(Widen(image, frame, 1), framed);
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

#define ZUML_INSTANTIATE(PIX)                                                                    \
  template ZUML_API ZUMImage<PIX> ZUMAppendChannels(int, const ZUMImage<PIX>**);                 \
  template ZUML_API ZUMImage<PIX> ZUMAppendChannels(const ZUMImage<PIX>&, const ZUMImage<PIX>&); \
  template ZUML_API ZUMImage<PIX> ZUMAppendChannels(const ZUMImage<PIX>&, const ZUMImage<PIX>&,  \
                                                    const ZUMImage<PIX>&);                       \
  template ZUML_API ZUMImage<PIX> ZUMAddFrame(const ZUMImage<PIX>&, const ZUMRect&, PIX);        \
  template ZUML_API ZUMImage<PIX> ZUMRemoveFrame(const ZUMImage<PIX>&, const ZUMRect&);          \
  template ZUML_API ZUMImage<PIX> ZUMPadding(const ZUMImage<PIX>&, const ZUMRect&, PIX);
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
