#include "zuml/core/zumkernel.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "zuml/core/pixelarith.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumsweep.h"

namespace {

ZUMBasePoint<int> Negate(const ZUMBasePoint<int>& p) { return {-p.x, -p.y, -p.z, -p.t}; }

// The region with its low sides moved by `low` and its high sides by `high`.
ZUMRoDRef MoveSides(const ZUMRoDRef& rod, const ZUMBasePoint<int>& low,
                    const ZUMBasePoint<int>& high) {
  return DisplaceSides(rod, low.x, low.y, low.z, low.t, high.x, high.y, high.z, high.t);
}

using Size = int (ZUMRoDRef::*)() const;
constexpr Size kX = &ZUMRoDRef::RoDXSz;
constexpr Size kY = &ZUMRoDRef::RoDYSz;
constexpr Size kZ = &ZUMRoDRef::RoDZSz;
constexpr Size kT = &ZUMRoDRef::RoDTSz;

// Whether the box has no extent but along that axis. The sides count, also where it is empty.
bool IsLine(const ZUMRoDRef& rod, Size along) {
  const Size sizes[] = {kX, kY, kZ, kT};
  return std::all_of(std::begin(sizes), std::end(sizes),
                     [&](Size size) { return size == along || (rod.*size)() < 2; });
}

}  // namespace

template <ZUMKernelCoefficient T>
ZUMSubKernel<T>::ZUMSubKernel(const ZUMImage<T>& image)
    : factors_(static_cast<std::size_t>(image.GetCSz())),
      box_(image.BeginX(), image.BeginY(), 0, 0, image.EndX(), image.EndY(), 0, 0) {
  for (ZUMGenericSweepCoords1 sweep(image, image); sweep.GetStart1(); sweep.Next()) {
    auto& factors = factors_[static_cast<std::size_t>(sweep.GetC())];
    const T* const end = static_cast<const T*>(sweep.GetEnd1());
    int x = sweep.GetX();
    for (const T* p = static_cast<const T*>(sweep.GetStart1()); p <= end; ++p, ++x) {
      if (*p != 0) factors.PushBack({*p, x, sweep.GetY(), sweep.GetZ(), sweep.GetT()});
    }
  }
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
  return MoveSides(rod, Negate(box_.begin), Negate(box_.end));
}

template <ZUMKernelCoefficient T>
ZUMRoDRef ZUMSubKernel<T>::SymmetricRoD(const ZUMRoDRef& rod) const {
  return MoveSides(rod, box_.end, box_.begin);
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
