// Sums that a second image governs: where to sum, or what to count.

#include <algorithm>
#include <cstddef>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/filters/boxsum.h"
#include "zuml/filters/detail/displacedruns.h"

using zuml_detail::Distance;
using zuml_detail::KernelFromOrigin;
using zuml_detail::MakeDirectRegion;
using zuml_detail::NeededPart;
using zuml_detail::NumberAt;
using zuml_detail::PixelAt;

namespace {

template <class OutT, class InT>
class SumMaskedTask : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<InT>* source;
  const ZUMImage<ZUMBool>* mask;
  Distance distance;  // from which the steps count
  const ZUMDisplacementArray* added;
  const ZUMDisplacementArray* subtracted;  // empty for a kernel of one channel
  OutT value;

  int Cost() const { return static_cast<int>(added->GetLength() + subtracted->GetLength()); }

  void Run() override {
    ZUMForEachPlacedRun(
        part,
        [this](const ZUMRunPlace& place, OutT* r, const bool* m, std::ptrdiff_t n) {
          const InT* const s = PixelAt(*source, place, distance);
          for (std::ptrdiff_t i = 0; i < n;) {
            const std::ptrdiff_t begin = i;
            const bool inside = NumberAt(m, i);
            while (i < n && NumberAt(m, i) == inside) ++i;
            inside ? Sum(r + begin, s + begin, i - begin)
                   : static_cast<void>(std::fill_n(r + begin, i - begin, value));
          }
        },
        *result, *mask);
  }

 private:
  void Sum(OutT* r, const InT* s, std::ptrdiff_t n) const {
    std::fill_n(r, n, OutT());
    for (const long long step : *added) {
      const InT* p = s + step;
      for (std::ptrdiff_t i = 0; i < n; ++i) {
        r[i] = ZUMWrapAdd(r[i], static_cast<OutT>(NumberAt(p, i)));
      }
    }
    for (const long long step : *subtracted) {
      const InT* p = s + step;
      for (std::ptrdiff_t i = 0; i < n; ++i) {
        r[i] = ZUMWrapSub(r[i], static_cast<OutT>(NumberAt(p, i)));
      }
    }
  }
};

}  // namespace

template <class OutT, class InT>
class CTaskSumMasked1 final : public SumMaskedTask<OutT, InT> {};
template <class OutT, class InT>
class CTaskSumMasked2 final : public SumMaskedTask<OutT, InT> {};

template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT> &&
    (!std::same_as<OutT, ZUMComplex>)ZUMImage<OutT> ZUMSumMasked(const ZUMImage<InT>& image,
                                                                 const ZUMImage<ZUMBool>& kernel,
                                                                 const ZUMImage<ZUMBool>& mask,
                                                                 std::type_identity_t<OutT> value) {
  const int n = kernel.GetCSz();
  if (n != 1 && n != 2) throw XQException("ZUMSum only allows a kernel with one or two channels");
  if (image.GetCSz() != mask.GetCSz()) {
    throw XQException(
        "ZUMSumMasked: It don't allows image and mask with different number of channels");
  }
  const ZUMRoDRef rod = Intersection(MakeDirectRegion(image, kernel.Rect()), mask);
  const KernelFromOrigin<ZUMBool> moved(kernel);
  ZUMDisplacementArray added, subtracted;
  added.FromNonZeroPixels(image, NeededPart(moved.pixels.Channel(0), rod));
  if (n == 2) subtracted.FromNonZeroPixels(image, NeededPart(moved.pixels.Channel(1), rod));
  const auto run = [&]<class Task>(const Task*) {
    return ZUMRunTasks<Task, OutT>(rod, image.GetCSz(), [&](Task& task) {
      task.source = &image;
      task.mask = &mask;
      task.distance = moved.GetDistance();
      task.added = &added;
      task.subtracted = &subtracted;
      task.value = value;
    });
  };
  return n == 1 ? run(static_cast<CTaskSumMasked1<OutT, InT>*>(nullptr))
                : run(static_cast<CTaskSumMasked2<OutT, InT>*>(nullptr));
}

template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT> && ZUMGreyPixel<InT> ZUMImage<OutT> ZUMSumThr(
    const ZUMImage<InT>& image, const ZUMImage<InT>& threshold, const ZUMImage<ZUMBool>& mask) {
  if (mask.GetCSz() != 1) throw XQException("ZUMSumThr only allows a mask with one channel");
  // Under a mask away from the origin, the region would leave the threshold's.
  const ZUMRoDRef rod =
      Intersection(MakeDirectRegion(Intersection(image, threshold), mask.Rect()), threshold);
  const KernelFromOrigin<ZUMBool> moved(mask);
  ZUMDisplacementArray steps;
  steps.FromNonZeroPixels(image, NeededPart(moved.pixels, rod));
  const ZUMImage<OutT> result(rod, image.GetCSz(), nullptr);
  for (int c = 0; c < image.GetCSz(); ++c) {
    const ZUMImage<InT> source = image.Channel(c);
    ZUMForEachPlacedRun(
        rod,
        [&](const ZUMRunPlace& place, OutT* r, const InT* limit, std::ptrdiff_t n) {
          const InT* const s = PixelAt(source, place, moved.GetDistance());
          std::fill_n(r, n, OutT());
          for (const long long step : steps) {
            const InT* p = s + step;
            for (std::ptrdiff_t i = 0; i < n; ++i) r[i] += static_cast<OutT>(!(p[i] < limit[i]));
          }
        },
        result.Channel(c), threshold.Channel(std::min(c, threshold.GetCSz() - 1)));
  }
  return result;
}

#define ZUML_INSTANTIATE(OUT, IN)                                                                  \
  template ZUML_API ZUMImage<OUT> ZUMSumMasked<OUT>(const ZUMImage<IN>&, const ZUMImage<ZUMBool>&, \
                                                    const ZUMImage<ZUMBool>&, OUT);
#define ZUML_INSTANTIATE_LONG(IN) ZUML_INSTANTIATE(ZUMLong, IN)
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE_LONG)
ZUML_INSTANTIATE(ZUMReal, ZUMReal)
#undef ZUML_INSTANTIATE_LONG
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(OUT, IN)                                                          \
  template ZUML_API ZUMImage<OUT> ZUMSumThr<OUT>(const ZUMImage<IN>&, const ZUMImage<IN>&, \
                                                 const ZUMImage<ZUMBool>&);
#define ZUML_INSTANTIATE_LONG(IN) ZUML_INSTANTIATE(ZUMLong, IN)
ZUML_INTEGER_TYPES(ZUML_INSTANTIATE_LONG)
ZUML_INSTANTIATE(ZUMReal, ZUMReal)
#undef ZUML_INSTANTIATE_LONG
#undef ZUML_INSTANTIATE
