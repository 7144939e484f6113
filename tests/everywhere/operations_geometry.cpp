#include "tests/everywhere/operation.h"
#include "zuml/geometry/coordinates.h"
#include "zuml/geometry/gridmoves.h"
#include "zuml/geometry/scaling.h"
#include "zuml/geometry/warp.h"

namespace zuml_everywhere {
namespace {

using Two = Picture<>;

constexpr double kAffine[2][3] = {{0.75, -0.5, 1.5}, {0.25, 1.25, -0.5}};
constexpr double kQuadratic[2][6] = {{0.01, 0, 0.02, 1, 0, 0.5}, {0, 0.03, 0, 0.1, 0.9, 0}};

template <class P>
ZUMImage<P> WarpByMatrix(const ZUMImage<P>& image, const ZUMRect& box, ZUMInterpolation how) {
  XQMatrix matrix(2, 3);
  for (int row = 0; row < 2; ++row)
    for (int column = 0; column < 3; ++column) matrix[row][column] = kAffine[row][column];
  return ZUMWarpAffine2D(image, ZUMRoDRef(box), matrix, how, 3);
}

/// The columns of the image from the last to the first, as a table.
template <class P>
ZUMImage<ZUMLong> Columns(const ZUMImage<P>& image) {
  const ZUMImage<ZUMLong> table(ZUMRect(0, 0, 0, 0, image.RoDXSz() - 1, 0, 0, 0), 1, 0);
  for (int x = 0; x < image.RoDXSz(); ++x) table(x) = image.EndX() - x;
  return table;
}

const Register kGeometry([] {
  Add<Bool, PlacedBox>(CALL1(ZUMCoorsImage(ZUMRoDRef(a))), kDepends | kGrows);
  Add<Bool, PlacedBox>(CALL1(ZUMXsImage(ZUMRoDRef(a))), kDepends | kGrows);
  Add<Bool, PlacedBox>(CALL1(ZUMYsImage(ZUMRoDRef(a))), kDepends | kGrows);
  Add<Bool, PlacedBox>(CALL1(ZUMZsImage(ZUMRoDRef(a))), kDepends | kGrows);
  Add<Bool, PlacedBox>(CALL1(ZUMTsImage(ZUMRoDRef(a))), kDepends | kGrows);
  Add<Value, Two, Number<3, 0>, Number<-2, 0>>(CALL3(ZUMTranslate(a, b, c, 1, 0)), kShares);
  Add<Value, Two, Number<1, 0>, Number<-1, 0>>(CALL3(ZUMTranslate(a, {0, 0, b, c})), kShares);
  Add<Value, Two>(CALL1(ZUMSymmetry(a)), kMirrors);
  Add<Value, Two>(CALL1(ZUMSymmetryX(a)), kMirrors);
  Add<Value, Two>(CALL1(ZUMSymmetryY(a)), kMirrors);
  Add<Value, Two>(CALL1(ZUMSymmetryZ(a)), kMirrors);
  Add<Value, Two>(CALL1(ZUMSymmetryT(a)), kMirrors);
  Add<Value, Two>(CALL1(ZUMRotateZ(a, 0)), kMirrors);
  Add<Value, Two>(CALL1(ZUMRotateZ(a, 90)), kMirrors);
  Add<Value, Two>(CALL1(ZUMRotateZ(a, 180)), kMirrors);
  Add<Value, Two>(CALL1(ZUMRotateZ(a, 270)), kMirrors);
  Add<Value, Two, Number<-450, 360>>(CALL2(ZUMRotateZ(a, b)), kMirrors);
  Add<Value, Two>(CALL1(ZUMTranspose(a)), kStays);
  Add<Numeric, Two>(CALL1(ZUMBinning2D(a, 2, 2)), kDepends);
  Add<Numeric, Two>(CALL1(ZUMBinning2D(a, 3, 3)), kDepends);
  Add<Numeric, Two>(CALL1(ZUMBinning2D(a, 4, 4)), kDepends);
  Add<Numeric, Two, Number<2>, Number<1>>(CALL3(ZUMBinning2D(a, b, c)), kDepends | kShares);
  Add<Ordered, Two>(CALL1(ZUMZoom2D(a, 2, 2)), kDepends);
  Add<Ordered, Two>(CALL1(ZUMZoom2D(a, 3, 3)), kDepends);
  Add<Ordered, Two, Number<1>, Number<4>>(CALL3(ZUMZoom2D(a, b, c)), kDepends | kShares | kGrows);
  Add<Scalar, Plane<>>(CALL1(ZUMInterlacedField(a, 0)));
  Add<Scalar, Plane<>>(CALL1(ZUMInterlacedField(a, 1)));
  Add<Scalar, Plane<>>(CALL1(ZUMInterlacedField(a, 2)));
  Add<Scalar, Plane<>>(CALL1(ZUMInterlacedField(a, 3)));
  Add<Scalar, Plane<>>(CALL1(ZUMInterlacedField(a, 4)));
  Add<Scalar, Plane<>>(CALL1(ZUMInterlacedField(a, 5)));
  Add<Scalar, Two, PlacedBox>(
      CALL2(ZUMWarpAffine2D(a, ZUMRoDRef(b), kAffine, ZUMInterpolationNearest, 3)),
      kDepends | kGrows);
  Add<Scalar, Two, PlacedBox>(CALL2(WarpByMatrix(a, b, ZUMInterpolationNearest)),
                              kDepends | kGrows);
  Add<Scalar, Two, PlacedBox>(
      CALL2(ZUMWarp2D(a, ZUMRoDRef(b), kQuadratic, ZUMInterpolationNearest, 3)), kDepends | kGrows);
  Add<Scalar, Two, Number<4>>(
      CALL2(ZUMCartesianToPolarIm(a, {4, 4}, b, 0.25, ZUMInterpolationNearest, 3)),
      kDepends | kGrows);
  Add<Scalar, Plane<>, Number<3>, Number<4>>(
      CALL3(ZUMCartesianToPolarIm(a, {b, c}, 5, 0, ZUMInterpolationNearest, 3)), kDepends);
  Add<Scalar, Plane<>>(CALL1(ZUMPolarToCartesianIm(a, 0, ZUMInterpolationNearest, 3)),
                       kDepends | kGrows);
  Add<Scalar, Two, PlacedBox>(
      CALL2(ZUMWarpAffine2D(a, ZUMRoDRef(b), kAffine, ZUMInterpolationLinear, 3)),
      kDepends | kGrows);
  Add<Scalar, Two, PlacedBox>(CALL2(WarpByMatrix(a, b, ZUMInterpolationLinear)), kDepends | kGrows);
  Add<Scalar, Two, PlacedBox>(
      CALL2(ZUMWarp2D(a, ZUMRoDRef(b), kQuadratic, ZUMInterpolationLinear, 3)), kDepends | kGrows);
  Add<Scalar, Two, Number<4>>(
      CALL2(ZUMCartesianToPolarIm(a, {4, 4}, b, 0.25, ZUMInterpolationLinear, 3)),
      kDepends | kGrows);
  Add<Scalar, Plane<>, Number<3>, Number<4>>(
      CALL3(ZUMCartesianToPolarIm(a, {b, c}, 5, 0, ZUMInterpolationLinear, 3)), kDepends);
  Add<Scalar, Plane<>>(CALL1(ZUMPolarToCartesianIm(a, 0, ZUMInterpolationLinear, 3)),
                       kDepends | kGrows);
  Add<Algebra, Two>(CALL1(ZUMWarpXLut(a, Columns(a))), kStays);
});

}  // namespace
}  // namespace zuml_everywhere
