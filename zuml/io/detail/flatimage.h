/// What the writers of two-dimensional formats share: the images that they take, and the plane that
/// they write.
#pragma once

#include "zuml/core/xqexception.h"
#include "zuml/core/zumimage.h"

namespace zuml_detail {

[[noreturn]] inline void ThrowBadDimensions(const char* format, const ZUMGenericImage& image) {
  throw XQException(
      "No se puede escribir una imagen %s con las dimensiones XSz=%d YSz=%d ZSz=%d TSz=%d CSz=%d",
      format, image.RoDXSz(), image.RoDYSz(), image.RoDZSz(), image.RoDTSz(), image.GetCSz());
}

/// A format takes one plane with pixels, grey or in three colours.
inline void RequireFlatImage(const char* format, const ZUMGenericImage& image) {
  const bool channels = image.GetCSz() == 1 || image.GetCSz() == 3;
  if (image.EmptyP() || image.RoDZSz() != 1 || image.RoDTSz() != 1 || !channels) {
    ThrowBadDimensions(format, image);
  }
}

/// The plane of an image that has room for one in its file.
struct FlatPlane {
  int z;
  int t;
};

/// Z 0, T 0 where the region's box has them, else its first plane: of a view of another plane, Z 0
/// would be a different plane of the volume, or bytes that are no pixels.
inline FlatPlane GetFlatPlane(const ZUMRoDRef& rod) {
  const auto pick = [](int begin, int end) { return begin <= 0 && 0 <= end ? 0 : begin; };
  return {pick(rod.BeginZ(), rod.EndZ()), pick(rod.BeginT(), rod.EndT())};
}

}  // namespace zuml_detail
