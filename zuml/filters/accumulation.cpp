#include "zuml/filters/accumulation.h"

#include <cstddef>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/filters/detail/wholerows.h"

namespace {

using zuml_detail::IsBox;
using zuml_detail::NumberAt;

// r[i] = the sum of s[0] to s[i].
template <class OutT, class InT>
void AccumulateRow(OutT* r, const InT* s, std::ptrdiff_t n) {
  OutT sum = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    sum = ZUMWrapAdd(sum, static_cast<OutT>(NumberAt(s, i)));
    r[i] = sum;
  }
}

}  // namespace

/// Running sums of its rows; the result has one pixel more in front.
template <class OutT, class InT>
class CTaskXAccumImage final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<InT>* source;

  void Run() override {
    const ZUMRoDRef pixels = Intersection(part, *source);
    const bool has_zeros = result->BeginX() < source->BeginX();
    ZUMForEachRun(
        pixels,
        [has_zeros](OutT* r, const InT* s, std::ptrdiff_t n) {
          if (has_zeros) r[-1] = 0;
          AccumulateRow(r, s, n);
        },
        *result, *source);
  }
};

template <class OutT, class InT>
requires ZUMAccumPixels<OutT, InT> ZUMImage<OutT> ZUMXAccumImage(const ZUMImage<InT>& image) {
  if (!IsBox(image)) throw XQException("ZUMXAccumImage only allows rectangular images");
  const ZUMRoDRef rod = DisplaceSides(image, -1, 0, 0, 0, 0, 0, 0, 0);
  if (image.EmptyP()) return ZUMImage<OutT>(rod, image.GetCSz(), OutT());
  using Task = CTaskXAccumImage<OutT, InT>;
  return ZUMRunTasks<Task, OutT>(rod, image.GetCSz(), [&](Task& task) {
    zuml_detail::KeepRowsWhole(task.part, rod);
    task.source = &image;
  });
}

template <class OutT, class InT>
requires ZUMAccumPixels<OutT, InT> ZUMImage<OutT> ZUMYAccumImage(const ZUMImage<InT>& image) {
  if (!IsBox(image)) throw XQException("ZUMYAccumImage only allows rectangular images");
  const ZUMImage<OutT> result(DisplaceSides(image, 0, -1, 0, 0, 0, 0, 0, 0), image.GetCSz(),
                              OutT());
  const std::ptrdiff_t line = result.GetLineSz();
  ZUMForEachPlacedRun(
      image,
      [&](const ZUMRunPlace& place, OutT* r, const InT* s, std::ptrdiff_t n) {
        const OutT* above = place.y > result.BeginY() ? r - line : r;  // zeros, where none is above
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          r[i] = ZUMWrapAdd(above[i], static_cast<OutT>(NumberAt(s, i)));
        }
      },
      result, image);
  return result;
}

template <class OutT, class InT>
requires ZUMAccumPixels<OutT, InT> ZUMImage<OutT> ZUMAccumImage(const ZUMImage<InT>& image) {
  if (!IsBox(image) || image.RoDZSz() != 1 || image.RoDTSz() != 1) {
    throw XQException("ZUMAccumImage only allows 2D rectangular images");
  }
  const ZUMImage<OutT> result(DisplaceSides(image, -1, -1, 0, 0, 0, 0, 0, 0), image.GetCSz(),
                              OutT());
  const std::ptrdiff_t line = result.GetLineSz();
  ZUMForEachPlacedRun(
      image,
      [&](const ZUMRunPlace& place, OutT* r, const InT* s, std::ptrdiff_t n) {
        AccumulateRow(r, s, n);
        if (place.y == result.BeginY()) return;
        for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = ZUMWrapAdd(r[i], r[i - line]);
      },
      result, image);
  return result;
}

#define ZUML_INSTANTIATE(OUT, IN)                                           \
  template ZUML_API ZUMImage<OUT> ZUMXAccumImage<OUT>(const ZUMImage<IN>&); \
  template ZUML_API ZUMImage<OUT> ZUMYAccumImage<OUT>(const ZUMImage<IN>&); \
  template ZUML_API ZUMImage<OUT> ZUMAccumImage<OUT>(const ZUMImage<IN>&);
#define ZUML_INSTANTIATE_LONG(IN) ZUML_INSTANTIATE(ZUMLong, IN)
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE_LONG)
ZUML_INSTANTIATE(ZUMReal, ZUMReal)
#undef ZUML_INSTANTIATE_LONG
#undef ZUML_INSTANTIATE
