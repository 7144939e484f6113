/// Kernels as products of sparse coefficient lists: what a convolution applies stage by stage.
///
/// A kernel is an image whose region lies around the origin. ZUMSubKernel keeps its non-zero pixels
/// with their coordinates; ZUMKernel is a chain of such stages, whose effect is that of one after
/// the other, so that a separable kernel costs the sum of its axes, not their product.
#pragma once

#include <concepts>
#include <cstddef>
#include <vector>

#include "zuml/core/export.h"
#include "zuml/core/xqsimplelist.h"
#include "zuml/core/zumimage.h"

/// The types of coefficients: long, double.
template <class T>
concept ZUMKernelCoefficient = std::same_as<T, ZUMLong> || std::same_as<T, ZUMReal>;

/// A coefficient and its position.
template <ZUMKernelCoefficient T>
struct ZUMKernelFactor {
  T coefficient;
  int x, y, z, t;

  friend bool operator==(const ZUMKernelFactor&, const ZUMKernelFactor&) = default;
};

/// One stage of a kernel: for each channel the list of its non-zero coefficients, and the box.
template <ZUMKernelCoefficient T>
class ZUML_API ZUMSubKernel {
 public:
  /// The non-zero pixels of the image in sweep order, each in the list of its channel.
  explicit ZUMSubKernel(const ZUMImage<T>& image);

  int GetCSz() const { return static_cast<int>(factors_.size()); }

  /// The image's box on X and Y, zero pixels counted. Z and T are 0: a stage leaves these sides of
  /// a region alone, and whoever applies one with coefficients off the plane sees to them.
  ZUMRect GetRect() const { return box_; }
  /// The margins that the results p need to read p + k for all positions k of the box.
  ZUMRect GetFrame() const;
  /// The margins for p - k.
  ZUMRect GetSymmetricFrame() const;
  /// The points p of the region for which p + k lies in it for all k of the box.
  ZUMRoDRef DirectRoD(const ZUMRoDRef& rod) const;
  /// The points for which p - k does.
  ZUMRoDRef SymmetricRoD(const ZUMRoDRef& rod) const;

  /// The coefficients of channel c, which is not tested.
  const XQSimpleList<ZUMKernelFactor<T>>& GetFactors(int c) const {
    return factors_[static_cast<std::size_t>(c)];
  }
  /// The sum of the coefficients of channel c and that of their squares, 0 if it has none. Integers
  /// wrap.
  T Sum(int c) const;
  T SumSqr(int c) const;

 private:
  std::vector<XQSimpleList<ZUMKernelFactor<T>>> factors_;
  ZUMRect box_;
};

/// A chain of stages.
template <ZUMKernelCoefficient T>
class ZUML_API ZUMKernel {
 public:
  /// One stage.
  explicit ZUMKernel(const ZUMImage<T>& image);
  /// A separable kernel: a line along each axis, where an empty image stands for no kernel on that
  /// axis. The stages have the order of the arguments. Throws XQException "ZUMLSKernel::ZUMKernel:
  /// Non linear kernel aren't allowed" for an image whose box, empty or not, extends along another
  /// axis than its own, and "ZUMLSKernel::ZUMKernel: kernels with different number of channels".
  ZUMKernel(const ZUMImage<T>& kx, const ZUMImage<T>& ky, const ZUMImage<T>& kz,
            const ZUMImage<T>& kt);

  /// The channels of every stage; -1 if there is no stage.
  int GetCSz() const { return csz_; }
  const XQSimpleList<ZUMSubKernel<T>>& GetKernels() const { return kernels_; }

  /// The least box that holds the boxes of all stages; the origin if there is none.
  ZUMRect Rect() const;
  /// The product of the stages' Sum or SumSqr, 1 without a stage. Integers wrap.
  T Sum(int c) const;
  T SumSqr(int c) const;

 private:
  XQSimpleList<ZUMSubKernel<T>> kernels_;
  int csz_ = -1;
};
