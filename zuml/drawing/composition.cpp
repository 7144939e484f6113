#include "zuml/drawing/composition.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "zuml/algebra/channels.h"
#include "zuml/algebra/conditional.h"
#include "zuml/algebra/tobyte.h"
#include "zuml/core/detail/boxes.h"
#include "zuml/core/xqexception.h"
#include "zuml/drawing/graphics.h"
#include "zuml/geometry/gridmoves.h"

using zuml_detail::Axis;
using zuml_detail::kX;
using zuml_detail::kY;

namespace {

// A picture of three channels that is no other image's, and the mask drawn into them: `alpha` is
// one number, or none.
template <class P, class... Alpha>
ZUMImage<ZUMByte> Overlay(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                          const ZUMByte (&colour)[3], Alpha... alpha) {
  if (image.GetCSz() != 1 && image.GetCSz() != 3) {
    throw XQException("ZUMOverlay: it only accepts one o three channels image");
  }
  if constexpr (std::same_as<P, ZUMByte>) {
    ZUMImage<ZUMByte> picture =
        image.GetCSz() == 1 ? ZUMAppendChannels(image, image, image) : ZUMCopy(image);
    for (int c = 0; c < 3; ++c) ZUMDrawMask(picture, mask, colour[c], alpha..., c);
    return picture;
  } else {
    return Overlay(ZUMMaxcon(image), mask, colour, alpha...);
  }
}

template <class P>
ZUMImage<ZUMByte> ToBytes(const ZUMImage<P>& image) {
  if constexpr (std::same_as<P, ZUMByte>) {
    return image;
  } else if constexpr (std::same_as<P, ZUMBool>) {
    return ZUMImIf(image, ZUMByte{255}, ZUMByte{0});
  } else if constexpr (ZUMOrderedPixel<P>) {
    return ZUMMaxcon(image);
  } else {
    throw XQException("No se puede convertir una imagen de tipo %s a Byte",
                      &ZUMPixelTraits<P>::kName[3]);  // without the prefix
  }
}

// The image in bytes, of whatever type it is.
ZUMImage<ZUMByte> ToBytes(const ZUMGenericImage& image) {
  switch (image.GetType()) {
#define ZUML_TYPE_CASE(TYPE) \
  case TYPE##Pixel:          \
    return ToBytes(ZUMImage<TYPE>(image, image));
    ZUML_ALL_TYPES(ZUML_TYPE_CASE)
#undef ZUML_TYPE_CASE
  }
  throw XQException("No se puede convertir una imagen de tipo Unknown a Byte");
}

// An image and how far it is moved; a row of many images may be longer than 32 bits.
struct Placed {
  const ZUMGenericImage* image;
  std::int64_t dx = 0, dy = 0;
};

// Ends are cut to 32 bits: a box that reaches so far is more than a raster holds, which says so.
ZUMRect MakeBoxAround(const std::vector<Placed>& images) {
  std::int64_t bx = INT64_MAX, by = INT64_MAX, ex = INT64_MIN, ey = INT64_MIN;
  for (const Placed& placed : images) {
    if (placed.image->EmptyP()) continue;
    const ZUMRect box = placed.image->Rect();
    bx = std::min(bx, box.begin.x + placed.dx);
    by = std::min(by, box.begin.y + placed.dy);
    ex = std::max(ex, box.end.x + placed.dx);
    ey = std::max(ey, box.end.y + placed.dy);
  }
  if (bx > ex) return ZUMEmptyRoD.Rect();
  const auto cut = zuml_detail::ToCoordinate;
  return {cut(bx), cut(by), 0, 0, cut(ex), cut(ey), 0, 0};
}

ZUMImage<ZUMByte> Join(const std::vector<Placed>& images, const ZUMByte (&colour)[3]) {
  int csz = 1;
  for (const Placed& placed : images) {
    const int n = placed.image->GetCSz();
    if (n != 1 && n != 3)
      throw XQException("ZUMJointIm:: It don't accept images with %d channels", n);
    csz = std::max(csz, n);
  }
  ZUMImage<ZUMByte> picture(MakeBoxAround(images), csz, nullptr);
  for (int c = 0; c < csz; ++c) picture.Channel(c).SetPixels(colour[c]);
  for (const Placed& placed : images) {
    if (placed.image->EmptyP()) continue;
    ZUMImage<ZUMByte> bytes = ToBytes(*placed.image);
    if (bytes.GetCSz() < csz) bytes = ZUMAppendChannels(bytes, bytes, bytes);
    // A move to the far side of the origin takes more than 32 bits: one half of it is a view's.
    const int x = static_cast<int>(placed.dx / 2), y = static_cast<int>(placed.dy / 2);
    ZUMDrawImage(picture, ZUMTranslate(bytes, x, y, 0, 0),
                 {static_cast<int>(placed.dx - x), static_cast<int>(placed.dy - y)}, 0);
  }
  return picture;
}

std::vector<Placed> ListImages(const ZUMGenericImage* const* images) {
  if (!images) {
    throw XQException("ZUMJointIm: A NULL pointer to an array of images are not allowed");
  }
  std::vector<Placed> list;
  for (; *images; ++images) list.push_back({*images});
  return list;
}

// One behind the other along the axis, from 0 on.
std::vector<Placed> LineUp(const ZUMGenericImage* const* images, Axis axis) {
  std::vector<Placed> list = ListImages(images);
  std::int64_t next = 0;
  for (Placed& placed : list) {
    if (placed.image->EmptyP()) continue;
    const ZUMRect box = placed.image->Rect();
    (axis == kX ? placed.dx : placed.dy) = next - box.begin.*axis;
    next += zuml_detail::SizeOf(box, axis);
  }
  return list;
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<ZUMByte> ZUMOverlay(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                             ZUMByte colour0, ZUMByte colour1, ZUMByte colour2) {
  return Overlay(image, mask, {colour0, colour1, colour2});
}

template <ZUMScalarPixel P>
ZUMImage<ZUMByte> ZUMOverlay(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                             ZUMByte colour0, ZUMByte colour1, ZUMByte colour2, double alpha) {
  return Overlay(image, mask, {colour0, colour1, colour2}, alpha);
}

ZUMImage<ZUMByte> ZUMJointIm(const ZUMGenericImage* const* images, ZUMByte colour0, ZUMByte colour1,
                             ZUMByte colour2) {
  return Join(ListImages(images), {colour0, colour1, colour2});
}

ZUMImage<ZUMByte> ZUMHJointIm(const ZUMGenericImage* const* images, ZUMByte colour0,
                              ZUMByte colour1, ZUMByte colour2) {
  return Join(LineUp(images, kX), {colour0, colour1, colour2});
}

ZUMImage<ZUMByte> ZUMVJointIm(const ZUMGenericImage* const* images, ZUMByte colour0,
                              ZUMByte colour1, ZUMByte colour2) {
  return Join(LineUp(images, kY), {colour0, colour1, colour2});
}

#define ZUML_INSTANTIATE(PIX)                                                                    \
  template ZUML_API ZUMImage<ZUMByte> ZUMOverlay(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, \
                                                 ZUMByte, ZUMByte, ZUMByte);                     \
  template ZUML_API ZUMImage<ZUMByte> ZUMOverlay(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, \
                                                 ZUMByte, ZUMByte, ZUMByte, double);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
