#include "zuml/filters/medianmasked.h"

#include <algorithm>
#include <concepts>
#include <cstddef>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/mapped.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/filters/detail/displacedruns.h"

using zuml_detail::PixelAt;
using zuml_detail::Stored;
using zuml_detail::ValueAt;

namespace {

// The lower median of n > 0 values, which change their order.
template <class V>
V SelectMedian(V* values, std::ptrdiff_t n) {
  V* end = values + n;
  V* middle = values + (n - 1) / 2;
  if constexpr (std::floating_point<V>) {
    // NaNs have no order; they go behind the numbers.
    end = std::partition(values, end, [](V v) { return v == v; });
    if (middle >= end) return *middle;
  }
  std::nth_element(values, middle, end);
  return *middle;
}

void RequireSameChannels(const ZUMRaster& image, const ZUMRaster& mask) {
  if (image.GetCSz() != mask.GetCSz()) {
    throw XQException("ZUMMedianMasked: im and mask don't have the same number of channels");
  }
}

}  // namespace

/// The medians of its part.
template <class P>
class CTaskMedianMasked final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<P>* result;
  const ZUMImage<P>* image;
  const ZUMImage<ZUMBool>* mask;
  zuml_detail::Distance distance;  // from which the steps count
  const ZUMDisplacementArray* on_image;
  const ZUMDisplacementArray* on_mask;

  int Cost() const { return static_cast<int>(on_image->GetLength()); }

  void Run() override {
    const auto values = zuml_detail::MakeScratch<P>(on_image->GetLength());
    ZUMForEachPlacedRun(
        part,
        [&](const ZUMRunPlace& place, P* r, std::ptrdiff_t n) {
          const P* const x = PixelAt(*image, place, distance);
          const ZUMBool* const m = PixelAt(*mask, place, distance);
          for (std::ptrdiff_t i = 0; i < n; ++i) {
            const std::ptrdiff_t count = Collect(values.get(), x + i, m + i);
            r[i] = count > 0 ? SelectMedian(values.get(), count) : OwnPixel(place, i);
          }
        },
        *result);
  }

 private:
  std::ptrdiff_t Collect(P* values, const P* x, const ZUMBool* m) const {
    P* v = values;
    const long long* step = on_mask->begin();
    for (const long long offset : *on_image) {
      *v = x[offset];
      v += !ValueAt(m, *step++);
    }
    return v - values;
  }

  P OwnPixel(const ZUMRunPlace& place, std::ptrdiff_t i) const {
    const ZUMBasePoint<int> at(static_cast<int>(place.x + i), place.y, place.z, place.t);
    return image->InP(at) ? (*image)(at, place.c) : P{};
  }
};

template <ZUMScalarPixel PixT>
PixT ZUMMedianMasked(const ZUMImage<PixT>& image, const ZUMImage<ZUMBool>& mask) {
  RequireSameChannels(image, mask);
  const ZUMRoDRef rod = Intersection(image, mask);
  const auto values = zuml_detail::MakeScratch<Stored<PixT>>(
      static_cast<std::size_t>(rod.NPixels()) * static_cast<std::size_t>(image.GetCSz()));
  std::ptrdiff_t count = 0;
  ZUMForEachRun(
      rod,
      [&](const PixT* x, const ZUMBool* m, std::ptrdiff_t n) {
        Stored<PixT>* v = values.get() + count;
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          *v = ValueAt(x, i);
          v += !ValueAt(m, i);
        }
        count = v - values.get();
      },
      image, mask);
  if (count == 0) throw XQException("ZUMMedianMasked:Valor indefinido por imagen vacia");
  return static_cast<PixT>(SelectMedian(values.get(), count));
}

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMMedianMasked(const ZUMImage<PixT>& image, const ZUMImage<ZUMBool>& element,
                               const ZUMImage<ZUMBool>& mask) {
  if (element.GetCSz() != 1) {
    throw XQException("ZUMMedianMasked: Multichannel structuring elements are not allowed");
  }
  RequireSameChannels(image, mask);
  if constexpr (std::same_as<PixT, ZUMBool>) {
    return ZUMMedianMasked(ZUMImage<ZUMByte>(image), element, mask);
  } else {
    const ZUMRoDRef rod = zuml_detail::MakeDirectRegion(Intersection(image, mask), element.Rect());
    const zuml_detail::KernelFromOrigin<ZUMBool> moved(element);
    const ZUMImage<ZUMBool> pixels = zuml_detail::NeededPart(moved.pixels, rod);
    ZUMDisplacementArray on_image, on_mask;
    on_image.FromNonZeroPixels(image, pixels);
    on_mask.FromNonZeroPixels(mask, pixels);
    using Task = CTaskMedianMasked<PixT>;
    return ZUMRunTasks<Task, PixT>(rod, image.GetCSz(), [&](Task& task) {
      task.image = &image;
      task.mask = &mask;
      task.distance = moved.GetDistance();
      task.on_image = &on_image;
      task.on_mask = &on_mask;
    });
  }
}

#define ZUML_INSTANTIATE(PIX)                                                                 \
  template ZUML_API PIX ZUMMedianMasked<PIX>(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&); \
  template ZUML_API ZUMImage<PIX> ZUMMedianMasked<PIX>(                                       \
      const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, const ZUMImage<ZUMBool>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
