/// Gaussian smoothing and derivatives of images, in `double`, with the kernels of
/// zuml/filters/gaussiankernels.h.
///
/// A radius of 0 asks for the default radius of the sigma. Plain forms shrink the region by the
/// kernel's radius on each side of an axis that is filtered; Ex forms keep it, and renormalise the
/// kernel at the border as ZUMSmoothEx does. Channels are filtered each by itself. Kernels throw
/// under their own names, X before Y. Two axes go through the image in one pass. Tasks: those of
/// ZUMConv, or CTaskSmoothEx.
#pragma once

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Smoothing with ZUMGaussianX, then ZUMGaussianY. An image of a single column is smoothed along Y
/// alone, another one of a single row along X alone. A sigma of 0 gives the pixels as they are, in
/// `double`.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianSmooth(const ZUMImage<PixT>& image,
                                                           ZUMReal sigma, int radius = 0);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianSmoothEx(const ZUMImage<PixT>& image,
                                                             ZUMReal sigma, int radius = 0);

/// The same with a sigma for each axis. An axis with a sigma of 0 is not smoothed; the extents of
/// the image do not matter.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianXYSmooth(const ZUMImage<PixT>& image,
                                                             ZUMReal sigma_x, ZUMReal sigma_y,
                                                             int radius_x = 0, int radius_y = 0);
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianXYSmoothEx(const ZUMImage<PixT>& image,
                                                               ZUMReal sigma_x, ZUMReal sigma_y,
                                                               int radius_x = 0, int radius_y = 0);

/// Derivatives of order ndx along X and ndy along Y (0, 1 or 2), with ZUMGaussianX_D and
/// ZUMGaussianY_D, whose order 0 is not normalised. Which axes are filtered follows from the image
/// as in ZUMGaussianSmooth: of a single column ndx takes no part, of a single row ndy. A sigma of 0
/// gives the pixels as they are, whatever the orders.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianDerive(const ZUMImage<PixT>& image,
                                                           ZUMReal sigma, int ndx, int ndy,
                                                           int radius = 0);
/// The same with a sigma for each axis, which are filtered as in ZUMGaussianXYSmooth.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianXYDerive(const ZUMImage<PixT>& image,
                                                             ZUMReal sigma_x, ZUMReal sigma_y,
                                                             int ndx, int ndy, int radius_x = 0,
                                                             int radius_y = 0);

/// The gradient of an image of one channel: the derivative along X, smoothed along Y, in channel 0,
/// and the derivative along Y, smoothed along X, in channel 1; Y grows downwards. The region loses
/// the radius of the derivative's kernel on each side along X and Y. Throws XQException
/// "ZUMGaussianGrad: It only allows monochannel images". Tasks: CTaskConvGrad.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianGrad(const ZUMImage<PixT>& image, ZUMReal sigma,
                                                         int radius = 0);
/// Its modulus, sqrt(dy^2 + dx^2), in one channel. Throws XQException "ZUMGaussianGradModule: It
/// only allows monochannel images". Tasks: CTaskConvSqrAddSqrt.
template <ZUMScalarPixel PixT>
[[nodiscard]] ZUML_API ZUMImage<ZUMReal> ZUMGaussianGradModule(const ZUMImage<PixT>& image,
                                                               ZUMReal sigma, int radius = 0);
