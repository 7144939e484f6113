#include "zuml/geometry/gridmoves.h"

#include <algorithm>
#include <typeinfo>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumrodrect.h"
#include "zuml/core/zumsweep.h"
#include "zuml/geometry/detail/transposeblock.h"

namespace {

// 1 keeps an axis, -1 mirrors it.
struct Signs {
  int x, y, z, t;
};

// A new image over the region; its pixel p is the image's pixel at p with the signs applied.
template <class P>
ZUMImage<P> Mirror(const ZUMImage<P>& image, const ZUMRoDRef& rod, const Signs& signs) {
  const ZUMImage<P> result(rod, image.GetCSz(), nullptr);
  for (ZUMGenericSweepCoords1 sweep(rod, result); sweep.GetStart1(); sweep.Next()) {
    P* to = static_cast<P*>(sweep.GetStart1());
    P* end = static_cast<P*>(sweep.GetEnd1()) + 1;
    const P* from = &image(signs.x * sweep.GetX(), signs.y * sweep.GetY(), signs.z * sweep.GetZ(),
                           signs.t * sweep.GetT(), sweep.GetC());
    if (signs.x > 0) {
      std::copy_n(from, end - to, to);
    } else {
      std::reverse_copy(from - (end - to) + 1, from + 1, to);
    }
  }
  return result;
}

// A new image over the region whose lines are the image's columns. The columns start at (x, y) of
// the image and run along Y by `down`; the next column is the next one along X by `right`.
template <class P>
ZUMImage<P> Transpose(const ZUMImage<P>& image, const ZUMRoDRef& rod, int x, int y, int right,
                      int down) {
  const ZUMImage<P> result(rod, image.GetCSz(), nullptr);
  if (rod.EmptyP()) return result;
  for (int c = 0; c < image.GetCSz(); ++c) {
    for (int t = rod.BeginT(); t <= rod.EndT(); ++t) {
      for (int z = rod.BeginZ(); z <= rod.EndZ(); ++z) {
        zuml_detail::TransposeBlock(&result(rod.BeginX(), rod.BeginY(), z, t, c),
                                    static_cast<std::ptrdiff_t>(result.GetLineSz()),
                                    &image(x, y, z, t, c),
                                    static_cast<std::ptrdiff_t>(down * image.GetLineSz()), right,
                                    rod.RoDYSz(), rod.RoDXSz());
      }
    }
  }
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
  return ZUMImage<P>(image.RoD().Translate(d.x, d.y, d.z, d.t), raster);
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
  const ZUMRoDRef rod = image.RoD().RotateZ(angle);  // refuses other angles
  switch ((angle % 360 + 360) % 360) {
    case 90:
      return Transpose(image, rod, image.BeginX(), image.EndY(), 1, -1);
    case 180:
      return Mirror(image, rod, {-1, -1, 1, 1});
    case 270:
      return Transpose(image, rod, image.EndX(), image.BeginY(), -1, 1);
    default:
      return Mirror(image, rod, {1, 1, 1, 1});
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
