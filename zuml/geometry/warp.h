/// Resampling: affine and quadratic warps, polar images, and the lookup of columns.
///
/// A warp maps each pixel (x, y) of the result to a source position (sx, sy); Z, T and the channel
/// are the result's. A pixel of the result without a source takes the default value: where the
/// source has not this Z or T, and where a position is a NaN or beyond 32 bits.
///
/// Nearest: sx + 0.5 for sx >= 0, sx - 0.5 below 0, cut toward zero, so that halves go away from
/// zero; the same on Y. Linear: between the two integers around sx (for sx < 0, the pair below and
/// at sx cut toward zero) and those around sy, all four of which must be in the region; along X
/// first, in double; cut toward zero on integer pixels, value != 0 on bool.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/xqmatrix.h"
#include "zuml/core/zumimage.h"

enum ZUMInterpolation : int { ZUMInterpolationNearest = 0, ZUMInterpolationLinear = 1 };

/// The image seen through sx = M[0][0] x + M[0][1] y + M[0][2], sy = M[1][0] x + M[1][1] y +
/// M[1][2], over the target region. The sums are formed as (M[.][0] x) + (M[.][1] y + M[.][2]).
/// Throws XQException "ZUMWarpAffine2D: Unknown interpolation method". Tasks:
/// CTaskWarpAffine2DNearest, CTaskWarpAffine2DLinear.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMWarpAffine2D(const ZUMImage<P>& image,
                                                   const ZUMRoDRef& target, const double (&M)[2][3],
                                                   ZUMInterpolation interpolation,
                                                   std::type_identity_t<P> default_value);
/// The same with the first two rows of three elements of a matrix. Throws XQException
/// "ZUMWarpAffine2D: a matrix of %d x %d is below 2 x 3".
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMWarpAffine2D(const ZUMImage<P>& image,
                                                   const ZUMRoDRef& target, XQMatrix& M,
                                                   ZUMInterpolation interpolation,
                                                   std::type_identity_t<P> default_value);

/// The same with sx = Q[0][0] x^2 + Q[0][1] x y + Q[0][2] y^2 + Q[0][3] x + Q[0][4] y + Q[0][5] and
/// sy likewise from Q[1], each coefficient times its product of coordinates, which is exact, and
/// added from the square of x to the constant. Source pixels are
/// tested at Z 0, T 0 and read at the result's Z and T. The linear rule's second neighbour of a
/// negative sx lies below sx cut toward zero, and the weight keeps its sign: value(x0) + (value(x0
/// - 1) - value(x0)) (sx - x0). Throws XQException "ZUMWarp2D: Unknown interpolation method". Runs
/// in the caller's thread.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMWarp2D(const ZUMImage<P>& image, const ZUMRoDRef& target,
                                             const double (&Q)[2][6],
                                             ZUMInterpolation interpolation,
                                             std::type_identity_t<P> default_value);

/// The polar image around a centre: X is the angle index, Y the radius; the region is (0,0,0,0) to
/// (N, radius, 0, 0), N = 2 pi / step + 0.5 cut toward zero, so that the last column repeats about
/// the first angle. The source of (x, y) is (y cos(x step) + centre X, y sin(x step) + centre Y). A
/// step not above 0 stands for 1 / radius. Throws XQException "ZUMCartesianToPolarIm: Unknown
/// interpolation method" and, for more than 2e9 angles, "ZUMCartesianToPolarIm: a step of %g makes
/// too many angles". Runs in the caller's thread.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMCartesianToPolarIm(const ZUMImage<P>& image,
                                                         const ZUMBasePoint<int>& centre,
                                                         int radius, double step,
                                                         ZUMInterpolation interpolation,
                                                         std::type_identity_t<P> default_value);

/// The way back: over (-R, -R, 0, 0) to (R, R, 0, 0) with R the polar image's EndY, the source of
/// (x, y) is column (atan2(-y, -x) + pi) / step, row sqrt(x^2 + y^2). A step not above 0 stands for
/// 2 pi / EndX. The positive X axis comes from column 0: the last one has no right neighbour.
/// Throws XQException "ZUMPolarToCartesianIm: Unknown interpolation method". Runs in the caller's
/// thread.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMPolarToCartesianIm(const ZUMImage<P>& polar, double step,
                                                         ZUMInterpolation interpolation,
                                                         std::type_identity_t<P> default_value);

/// Columns by table: result(x, y, z, t, c) = image(LUTX(x), y, z, t, c), over the table's X and the
/// image's Y, Z and T. The table is a row of one channel at Y, Z, T 0; its values must be columns
/// of the image's raster. Throws XQException "ZUMWarpXLut: Dimensions of LUTX are not accepted".
/// Tasks: CTaskWarpXLut.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMWarpXLut(const ZUMImage<P>& image,
                                               const ZUMImage<ZUMLong>& LUTX);
