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

const Register kOperations("geometry", [] {
  ADD1(kDepends | kGrows, (Bool, PlacedBox), ZUMCoorsImage(ZUMRoDRef(a)), ZUMXsImage(ZUMRoDRef(a)),
       ZUMYsImage(ZUMRoDRef(a)), ZUMZsImage(ZUMRoDRef(a)), ZUMTsImage(ZUMRoDRef(a)));
  ADD3(kShares, (Value, Two, Number<3, 0>, Number<-2, 0>), ZUMTranslate(a, b, c, 1, 0));
  ADD3(kShares, (Value, Two, Number<1, 0>, Number<-1, 0>), ZUMTranslate(a, {0, 0, b, c}));
  ADD1(kMirrors, (Value, Two), ZUMSymmetry(a), ZUMSymmetryX(a), ZUMSymmetryY(a), ZUMSymmetryZ(a),
       ZUMSymmetryT(a), ZUMRotateZ(a, 0), ZUMRotateZ(a, 90), ZUMRotateZ(a, 180),
       ZUMRotateZ(a, 270));
  ADD2(kMirrors, (Value, Two, Number<-450, 360>), ZUMRotateZ(a, b));
  ADD1(kStays, (Value, Two), ZUMTranspose(a));
  ADD1(kDepends, (Numeric, Two), ZUMBinning2D(a, 2, 2), ZUMBinning2D(a, 3, 3),
       ZUMBinning2D(a, 4, 4));
  ADD3(kDepends | kShares, (Numeric, Two, Number<2>, Number<1>), ZUMBinning2D(a, b, c));
  ADD1(kDepends, (Ordered, Two), ZUMZoom2D(a, 2, 2), ZUMZoom2D(a, 3, 3));
  ADD3(kDepends | kShares | kGrows, (Ordered, Two, Number<1>, Number<4>), ZUMZoom2D(a, b, c));
  ADD1(kMoves, (Scalar, Plane<>), ZUMInterlacedField(a, 0), ZUMInterlacedField(a, 1),
       ZUMInterlacedField(a, 2), ZUMInterlacedField(a, 3), ZUMInterlacedField(a, 4),
       ZUMInterlacedField(a, 5));
  ADD2(kDepends | kGrows, (Scalar, Two, PlacedBox),
       ZUMWarpAffine2D(a, ZUMRoDRef(b), kAffine, ZUMInterpolationNearest, 3),
       WarpByMatrix(a, b, ZUMInterpolationNearest),
       ZUMWarp2D(a, ZUMRoDRef(b), kQuadratic, ZUMInterpolationNearest, 3),
       ZUMWarpAffine2D(a, ZUMRoDRef(b), kAffine, ZUMInterpolationLinear, 3),
       WarpByMatrix(a, b, ZUMInterpolationLinear),
       ZUMWarp2D(a, ZUMRoDRef(b), kQuadratic, ZUMInterpolationLinear, 3));
  ADD2(kDepends | kGrows, (Scalar, Two, Number<4>),
       ZUMCartesianToPolarIm(a, {4, 4}, b, 0.25, ZUMInterpolationNearest, 3),
       ZUMCartesianToPolarIm(a, {4, 4}, b, 0.25, ZUMInterpolationLinear, 3));
  ADD3(kDepends, (Scalar, Plane<>, Number<3>, Number<4>),
       ZUMCartesianToPolarIm(a, {b, c}, 5, 0, ZUMInterpolationNearest, 3),
       ZUMCartesianToPolarIm(a, {b, c}, 5, 0, ZUMInterpolationLinear, 3));
  ADD1(kDepends | kGrows, (Scalar, Plane<>),
       ZUMPolarToCartesianIm(a, 0, ZUMInterpolationNearest, 3),
       ZUMPolarToCartesianIm(a, 0, ZUMInterpolationLinear, 3));
  ADD1(kStays, (Algebra, Two), ZUMWarpXLut(a, Columns(a)));
});

}  // namespace
}  // namespace zuml_everywhere
