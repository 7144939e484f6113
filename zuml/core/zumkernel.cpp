#include "zuml/core/zumkernel.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"

using zuml_detail::Axis;
using zuml_detail::kT;
using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::kZ;

namespace {

// The least int, which has no negative, becomes the greatest.
ZUMBasePoint<int> Negate(const ZUMBasePoint<int>& p) {
  const auto negate = [](std::int64_t a) { return zuml_detail::ToCoordinate(-a); };
  return {negate(p.x), negate(p.y), negate(p.z), negate(p.t)};
}

// Whether the box has no extent but along that axis. The sides count, also where it is empty.
bool IsLine(const ZUMRoDRef& rod, Axis along) {
  const ZUMRect box = rod.Rect();
  return std::all_of(std::begin(zuml_detail::kAxes), std::end(zuml_detail::kAxes), [&](Axis axis) {
    return axis == along || zuml_detail::SizeOf(box, axis) < 2;
  });
}

}  // namespace

template <ZUMKernelCoefficient T>
ZUMSubKernel<T>::ZUMSubKernel(const ZUMImage<T>& image)
    : factors_(static_cast<std::size_t>(image.GetCSz())),
      box_(image.BeginX(), image.BeginY(), 0, 0, image.EndX(), image.EndY(), 0, 0) {
  ZUMForEachPlacedRun(
      image,
      [this](const ZUMRunPlace& at, const T* pixels, std::ptrdiff_t n) {
        auto& factors = factors_[static_cast<std::size_t>(at.c)];
        for (int i = 0; i < n; ++i) {
          if (pixels[i] != 0) factors.PushBack({pixels[i], at.x + i, at.y, at.z, at.t});
        }
      },
      image);
}

template <ZUMKernelCoefficient T>
ZUMRect ZUMSubKernel<T>::GetFrame() const {
  return {Negate(box_.begin), box_.end};
}

template <ZUMKernelCoefficient T>
ZUMRect ZUMSubKernel<T>::GetSymmetricFrame() const {
  return {box_.end, Negate(box_.begin)};
}

template <ZUMKernelCoefficient T>
ZUMRoDRef ZUMSubKernel<T>::DirectRoD(const ZUMRoDRef& rod) const {
  return zuml_detail::MakeDirectRegion(rod, box_);
}

template <ZUMKernelCoefficient T>
ZUMRoDRef ZUMSubKernel<T>::SymmetricRoD(const ZUMRoDRef& rod) const {
  return zuml_detail::MakeMirroredRegion(rod, box_);
}

template <ZUMKernelCoefficient T>
T ZUMSubKernel<T>::Sum(int c) const {
  T sum = 0;
  for (const auto& factor : GetFactors(c)) sum = ZUMWrapAdd(sum, factor.coefficient);
  return sum;
}

template <ZUMKernelCoefficient T>
T ZUMSubKernel<T>::SumSqr(int c) const {
  T sum = 0;
  for (const auto& factor : GetFactors(c)) {
    sum = ZUMWrapAdd(sum, ZUMWrapMul(factor.coefficient, factor.coefficient));
  }
  return sum;
}

template <ZUMKernelCoefficient T>
ZUMKernel<T>::ZUMKernel(const ZUMImage<T>& image) : csz_(image.GetCSz()) {
  kernels_.PushBack(ZUMSubKernel<T>(image));
}

template <ZUMKernelCoefficient T>
ZUMKernel<T>::ZUMKernel(const ZUMImage<T>& kx, const ZUMImage<T>& ky, const ZUMImage<T>& kz,
                        const ZUMImage<T>& kt) {
  if (!IsLine(kx, kX) || !IsLine(ky, kY) || !IsLine(kz, kZ) || !IsLine(kt, kT)) {
    throw XQException("ZUMLSKernel::ZUMKernel: Non linear kernel aren't allowed");
  }
  for (const ZUMImage<T>* image : {&kx, &ky, &kz, &kt}) {
    if (image->EmptyP()) continue;
    if (csz_ == -1) csz_ = image->GetCSz();
    if (csz_ != image->GetCSz()) {
      throw XQException("ZUMLSKernel::ZUMKernel: kernels with different number of channels");
    }
    kernels_.PushBack(ZUMSubKernel<T>(*image));
  }
}

template <ZUMKernelCoefficient T>
ZUMRect ZUMKernel<T>::Rect() const {
  if (kernels_.EmptyP()) return {};
  ZUMRect all = kernels_.GetFront().GetRect();
  for (const ZUMSubKernel<T>& kernel : kernels_) {
    const ZUMRect box = kernel.GetRect();
    all = ZUMRect(std::min(all.begin.x, box.begin.x), std::min(all.begin.y, box.begin.y), 0, 0,
                  std::max(all.end.x, box.end.x), std::max(all.end.y, box.end.y), 0, 0);
  }
  return all;
}

template <ZUMKernelCoefficient T>
T ZUMKernel<T>::Sum(int c) const {
  T product = 1;
  for (const ZUMSubKernel<T>& kernel : kernels_) product = ZUMWrapMul(product, kernel.Sum(c));
  return product;
}

template <ZUMKernelCoefficient T>
T ZUMKernel<T>::SumSqr(int c) const {
  T product = 1;
  for (const ZUMSubKernel<T>& kernel : kernels_) product = ZUMWrapMul(product, kernel.SumSqr(c));
  return product;
}

#define ZUML_INSTANTIATE(TYPE)       \
  template class ZUMSubKernel<TYPE>; \
  template class ZUMKernel<TYPE>;
ZUML_INSTANTIATE(ZUMLong)
ZUML_INSTANTIATE(ZUMReal)
#undef ZUML_INSTANTIATE
