/// Gaussian kernels and their derivatives as images around the origin, ready for ZUMConv.
///
/// A kernel has one channel, reaches from -r to r on its own axes and holds the coordinate 0 on the
/// others. A radius of 0 asks for the default r = trunc(1.5 sigma + 0.5): 2 for a sigma of 1, and
/// not three sigma. The profile of order n at the offset u is
///
///   P0(u) = (a / sigma) exp(-u^2 / (2 sigma^2))                              a = 1 / sqrt(2 pi)
///   P1(u) = -u / (b sigma^3) exp(-u^2 / (2 sigma^2))                         b = sqrt(2 pi)
///   P2(u) = (u^2 - sigma^2) (a / sigma^5) exp(-u^2 / (2 sigma^2))
///
/// A sigma of 0 with a radius stands for the limit: P0 is 1 at 0 and 0 elsewhere. What is called
/// negative in a message is a NaN too. A kernel whose pixels would not fit in a block is refused as
/// every such image is.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The profile P0 along one axis, divided by its sum: the kernel sums to 1 whatever the radius.
/// With a radius that comes out as 0 it is the single pixel 1.
///
/// Throw XQException "ZUMGaussianX: Sigma negative not allowed", "ZUMGaussianX: Radius negative not
/// allowed", each with its own axis.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianX(ZUMReal sigma, int radius = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianY(ZUMReal sigma, int radius = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianZ(ZUMReal sigma, int radius = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianT(ZUMReal sigma, int radius = 0);

/// Integer kernels: g(i) = trunc(exp(-i^2 / (2 sigma^2)) p) with the peak p = (a / sigma) scale, as
/// far as g is not 0. The scale 0 asks for trunc(sigma 4 sqrt(2 pi)), which makes a peak near 4. A
/// sigma of 0 gives the single pixel 1. A sigma below 0.1 has the default scale 0, and with it a
/// kernel of a single 0.
///
/// Throw XQException "ZUMGaussianIntX: Sigma negative not allowed", "ZUMGaussianIntX: Scale
/// negative not allowed", each with its own axis.
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMGaussianIntX(ZUMReal sigma, int scale = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMGaussianIntY(ZUMReal sigma, int scale = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMGaussianIntZ(ZUMReal sigma, int scale = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMLong> ZUMGaussianIntT(ZUMReal sigma, int scale = 0);

/// The product of ZUMGaussianX and ZUMGaussianY. The kernel along X is made first, and throws
/// first.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussian2D(ZUMReal sigma, int radius = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianXY(ZUMReal sigma_x, ZUMReal sigma_y,
                                                       int radius_x = 0, int radius_y = 0);

/// The profile of order nd (0, 1 or 2) along one axis, as it is: no order is normalised. Where the
/// default radius comes out as 0, a derivative has the radius 1, and order 0 the single pixel 1.
///
/// Throw XQException, with the axis of each,
///   "ZUMGaussianX_D: Sigma negative not allowed", "ZUMGaussianX_D: Radius negative not allowed",
///   "ZUMGaussianX_D: Sigma 0 not allowed" for a derivative,
///   "ZUMGaussianX_D only accept derivatives of orden 0,1 or 2 (nd=%d)",
/// but for a derivative of sigma 0 along Z and T "ZUMGaussianY_D: Sigma 0 not allowed", and for a
/// wrong order along T "ZUMGaussianZ_D only accept derivatives of orden 0,1 or 2 (nd=%d)".
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianX_D(ZUMReal sigma, int nd, int radius = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianY_D(ZUMReal sigma, int nd, int radius = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianZ_D(ZUMReal sigma, int nd, int radius = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianT_D(ZUMReal sigma, int nd, int radius = 0);

/// A line through the origin at `angle` radians, from X toward Y, with the profile of order nd
/// along it: in the square of the radius, the pixel (x, y) has u = x cos + y sin along the line and
/// w = x sin - y cos across. It is Pnd(u) where x^2 + y^2 <= r^2 and |w| <= half_width, and 0
/// elsewhere. The Left form is 0 for u > 0, the Right form for u < 0.
///
/// Where the default radius comes out as 0, a derivative has the radius 1. All throw XQException
/// "ZUMGaussianX_D: SigmaX negative not allowed", "ZUMGaussianX_D: SigmaX 0 not allowed" for a
/// derivative, "ZUMGaussianX_D: Radius negative not allowed", "ZUMGaussianX_D only accept
/// derivatives of orden 0,1 or 2 (ndx=%d)".
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianX_D(ZUMReal sigma, int nd, ZUMReal angle,
                                                        ZUMReal half_width, int radius);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianX_DLeft(ZUMReal sigma, int nd, ZUMReal angle,
                                                            ZUMReal half_width, int radius = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianX_DRight(ZUMReal sigma, int nd, ZUMReal angle,
                                                             ZUMReal half_width, int radius = 0);

/// A derivative of order ndx along the direction `angle` and ndy across. At the angle 0 exactly it
/// is the product of ZUMGaussianX_D and ZUMGaussianY_D, at any other Pndx(u) Pndy(w) in the square
/// of the radius, u and w as above; so at small angles odd orders of ndy have the other sign. Where
/// the default radius of the square comes out as 0 and one of the orders is a derivative, it is 1.
///
/// The L and R forms have the square at all angles: L is 0 for u > sigma, R for u < -sigma.
///
/// All throw XQException "ZUMGaussian2D_D: Sigma negative not allowed", "ZUMGaussian2D_D: Radius
/// negative not allowed", "ZUMGaussian2D_D: Sigma 0 not allowed" if one of the orders is a
/// derivative, "ZUMGaussian2D_D only accept derivatives of orden 0,1 or 2 (ndx=%d)" and the same
/// with ndy.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussian2D_D(ZUMReal sigma, int ndx, int ndy,
                                                         ZUMReal angle, int radius = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussian2D_DL(ZUMReal sigma, int ndx, int ndy,
                                                          ZUMReal angle, int radius = 0);
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussian2D_DR(ZUMReal sigma, int ndx, int ndy,
                                                          ZUMReal angle, int radius = 0);

/// The product of ZUMGaussianX_D(sigma_x, ndx, radius_x) and ZUMGaussianY_D(sigma_y, ndy,
/// radius_y).
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianXY_D(ZUMReal sigma_x, ZUMReal sigma_y, int ndx,
                                                         int ndy, int radius_x, int radius_y);
/// The same at an angle, in the way of ZUMGaussian2D_D, in the rectangle of both radii. Throws
/// XQException "ZUMGaussian2D_D: SigmaX negative not allowed", "ZUMGaussian2D_D: SigmaY negative
/// not allowed", "ZUMGaussian2D_D: SigmaX 0 not allowed" and "ZUMGaussian2D_D: SigmaY 0 not
/// allowed" if one of the orders is a derivative, "ZUMGaussian2D_D: Radius negative not allowed",
/// and for wrong orders as ZUMGaussian2D_D.
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianXY_D(ZUMReal sigma_x, ZUMReal sigma_y, int ndx,
                                                         int ndy, ZUMReal angle, int radius_x,
                                                         int radius_y);

/// The Laplacian of a Gaussian in the square of the radius: with t = -(x^2 + y^2) / (2 sigma^2), it
/// is -exp(t) (t + 1) / (pi sigma^4). It is neither normalised nor brought to the mean 0. Throws
/// XQException "ZUMLoG2D: Sigma negative not allowed", "ZUMLoG2D: Radius negative not allowed",
/// "ZUMLoG2D: Sigma 0 not allowed".
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMLoG2D(ZUMReal sigma, int radius = 0);
