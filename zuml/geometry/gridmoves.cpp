#include "zuml/geometry/gridmoves.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/xqexception.h"
#include "zuml/geometry/detail/transposeblock.h"

namespace {

// 1 keeps an axis, -1 mirrors it.
struct Signs {
  int x, y, z, t;
};

// The region that a move gave, which mirrors these axes of the image. Nothing is the mirror of the
// least coordinate: an image that has no other one there leaves no point.
ZUMRoDRef MakeMirrorRegion(const ZUMRoDRef& image, ZUMRegionOfDefinition* moved,
                           const Signs& signs) {
  const ZUMRoDRef rod = moved;
  constexpr int kLeast = std::numeric_limits<int>::min();
  const ZUMBasePoint<int> end = image.End();
  const bool none = (signs.x < 0 && end.x == kLeast) || (signs.y < 0 && end.y == kLeast) ||
                    (signs.z < 0 && end.z == kLeast) || (signs.t < 0 && end.t == kLeast);
  return none ? ZUMEmptyRoD : rod;
}

// A new image over the region; its pixel p is the image's pixel at p with the signs applied.
template <class P>
ZUMImage<P> Mirror(const ZUMImage<P>& image, ZUMRegionOfDefinition* moved, const Signs& signs) {
  const ZUMImage<P> result(MakeMirrorRegion(image, moved, signs), image.GetCSz(), nullptr);
  ZUMForEachPlacedRun(
      result,
      [&](const ZUMRunPlace& place, P* to, std::ptrdiff_t n) {
        const P* from = &image(signs.x * place.x, signs.y * place.y, signs.z * place.z,
                               signs.t * place.t, place.c);
        if (signs.x > 0) {
          std::copy_n(from, n, to);
        } else {
          std::reverse_copy(from - n + 1, from + 1, to);
        }
      },
      result);
  return result;
}

// A new image over the region whose lines are the image's columns. The columns start at (x, y) of
// the image and run along Y by `down`; the next column is the next one along X by `right`.
template <class P>
ZUMImage<P> Transpose(const ZUMImage<P>& image, const ZUMRoDRef& rod, int x, int y, int right,
                      int down) {
  const ZUMImage<P> result(rod, image.GetCSz(), nullptr);
  if (rod.EmptyP()) return result;
  ZUMRect first_line = rod.Rect();
  first_line.end.y = first_line.begin.y;
  ZUMForEachPlacedRun(
      first_line,
      [&](const ZUMRunPlace& place, P* to, std::ptrdiff_t n) {
        zuml_detail::TransposeBlock(to, static_cast<std::ptrdiff_t>(result.GetLineSz()),
                                    &image(x, y, place.z, place.t, place.c),
                                    static_cast<std::ptrdiff_t>(down * image.GetLineSz()), right,
                                    rod.RoDYSz(), n);
      },
      result);
  return result;
}

}  // namespace

template <ZUMValuePixel P>
ZUMImage<P> ZUMTranslate(const ZUMImage<P>& image, int dx, int dy, int dz, int dt) {
  return ZUMTranslate(image, ZUMBasePoint<int>(dx, dy, dz, dt));
}

template <ZUMValuePixel P>
ZUMImage<P> ZUMTranslate(const ZUMImage<P>& image, const ZUMBasePoint<int>& d) {
  ZUMRaster raster = image;
  raster.AddMP(d);
  const ZUMRoDRef rod = zuml_detail::IsBox(image)
                            ? zuml_detail::MoveSides(image, 1, d, 1, d)
                            : ZUMRoDRef(image.RoD().Translate(d.x, d.y, d.z, d.t));
  return ZUMImage<P>(rod, raster);
}

template <ZUMValuePixel P>
ZUMImage<P> ZUMSymmetry(const ZUMImage<P>& image) {
  return Mirror(image, image.RoD().Symmetry(), {-1, -1, -1, -1});
}

template <ZUMValuePixel P>
ZUMImage<P> ZUMSymmetryX(const ZUMImage<P>& image) {
  return Mirror(image, image.RoD().SymmetryX(), {-1, 1, 1, 1});
}

template <ZUMValuePixel P>
ZUMImage<P> ZUMSymmetryY(const ZUMImage<P>& image) {
  return Mirror(image, image.RoD().SymmetryY(), {1, -1, 1, 1});
}

template <ZUMValuePixel P>
ZUMImage<P> ZUMSymmetryZ(const ZUMImage<P>& image) {
  return Mirror(image, image.RoD().SymmetryZ(), {1, 1, -1, 1});
}

template <ZUMValuePixel P>
ZUMImage<P> ZUMSymmetryT(const ZUMImage<P>& image) {
  return Mirror(image, image.RoD().SymmetryT(), {1, 1, 1, -1});
}

template <ZUMValuePixel P>
ZUMImage<P> ZUMRotateZ(const ZUMImage<P>& image, int angle) {
  ZUMRegionOfDefinition* const turned = image.RoD().RotateZ(angle);  // refuses other angles
  switch ((angle % 360 + 360) % 360) {
    case 90:
      return Transpose(image, MakeMirrorRegion(image, turned, {1, -1, 1, 1}), image.BeginX(),
                       image.EndY(), 1, -1);
    case 180:
      return Mirror(image, turned, {-1, -1, 1, 1});
    case 270:
      return Transpose(image, MakeMirrorRegion(image, turned, {-1, 1, 1, 1}), image.EndX(),
                       image.BeginY(), -1, 1);
    default:
      return Mirror(image, turned, {1, 1, 1, 1});
  }
}

template <ZUMValuePixel P>
ZUMImage<P> ZUMTranspose(const ZUMImage<P>& image) {
  if (!zuml_detail::IsBox(image)) {
    throw XQException("ZUMTranspose: it only allows images with rectangular RoD");
  }
  ZUMRect box = image.Rect();
  std::swap(box.begin.x, box.begin.y);
  std::swap(box.end.x, box.end.y);
  return Transpose(image, ZUMRoDRef(box), image.BeginX(), image.BeginY(), 1, 1);
}

#define ZUML_INSTANTIATE(PIX)                                                                   \
  template ZUML_API ZUMImage<PIX> ZUMTranslate(const ZUMImage<PIX>&, int, int, int, int);       \
  template ZUML_API ZUMImage<PIX> ZUMTranslate(const ZUMImage<PIX>&, const ZUMBasePoint<int>&); \
  template ZUML_API ZUMImage<PIX> ZUMSymmetry(const ZUMImage<PIX>&);                            \
  template ZUML_API ZUMImage<PIX> ZUMSymmetryX(const ZUMImage<PIX>&);                           \
  template ZUML_API ZUMImage<PIX> ZUMSymmetryY(const ZUMImage<PIX>&);                           \
  template ZUML_API ZUMImage<PIX> ZUMSymmetryZ(const ZUMImage<PIX>&);                           \
  template ZUML_API ZUMImage<PIX> ZUMSymmetryT(const ZUMImage<PIX>&);                           \
  template ZUML_API ZUMImage<PIX> ZUMRotateZ(const ZUMImage<PIX>&, int);                        \
  template ZUML_API ZUMImage<PIX> ZUMTranspose(const ZUMImage<PIX>&);
ZUML_VALUE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
