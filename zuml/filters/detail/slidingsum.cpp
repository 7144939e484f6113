#include "zuml/filters/detail/slidingsum.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "zuml/core/foreachrun.h"

namespace zuml_detail {
namespace {

// Sliding is a chain of dependent additions; this many rows go side by side.
constexpr int kRows = 8;

template <class OutT>
OutT Weigh(WeightOf<OutT> w, OutT value) {
  return w * value;
}

// N rows of n pixels.
template <int N, class OutT, class InT>
void SlideRows(OutT* const* r, const InT* const* s, std::ptrdiff_t n,
               const Terms<WeightOf<OutT>>& all, const Terms<WeightOf<OutT>>& changes) {
  OutT sums[N] = {};
  const auto add = [&](const Terms<WeightOf<OutT>>& terms, std::ptrdiff_t x) {
    for (std::size_t k = 0; k < terms.offsets.size(); ++k) {
      const std::ptrdiff_t at = x + terms.offsets[k];
      const WeightOf<OutT> w = terms.weights[k];
      for (int j = 0; j < N; ++j) sums[j] += Weigh<OutT>(w, s[j][at]);
    }
  };
  add(all, 0);
  for (int j = 0; j < N; ++j) r[j][0] = sums[j];
  for (std::ptrdiff_t x = 1; x < n; ++x) {
    add(changes, x - 1);
    for (int j = 0; j < N; ++j) r[j][x] = sums[j];
  }
}

// Integers may be added in any order: the changes of a whole row come first.
template <class InT>
void SlideIntegers(const ZUMRoDRef& part, const ZUMImage<ZUMLong>& result,
                   const ZUMImage<InT>& source, const Terms<ZUMLong>& all,
                   const Terms<ZUMLong>& changes) {
  const ZUMRect box = part.Rect();
  if (part.EmptyP()) return;
  ZUMRect column = box, others = box;
  column.end.x = column.begin.x;
  WriteWeightedSums(ZUMRoDRef(column), result, source, all);
  if (box.begin.x == box.end.x) return;
  // What changes from one pixel to the next counts from the one before.
  others.begin.x += 1;
  Terms<ZUMLong> from_before = changes;
  from_before.distance.x -= 1;
  WriteWeightedSums(ZUMRoDRef(others), result, source, from_before);
  ZUMForEachRun(
      part,
      [](ZUMLong* r, std::ptrdiff_t n) {
        std::uint32_t sum = 0;
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          r[i] = static_cast<ZUMLong>(sum += static_cast<std::uint32_t>(r[i]));
        }
      },
      result);
}

}  // namespace

template <class OutT, class InT>
void WriteSlidingSums(const ZUMRoDRef& part, const ZUMImage<OutT>& result,
                      const ZUMImage<InT>& source, const Terms<WeightOf<OutT>>& all,
                      const Terms<WeightOf<OutT>>& changes) {
  if constexpr (std::is_same_v<OutT, ZUMLong>) {
    SlideIntegers(part, result, source, all, changes);
  } else {
    OutT* r[kRows];
    const InT* s[kRows];
    int rows = 0;
    std::ptrdiff_t n = 0;
    ForEachDisplacedRun(
        part,
        [&](const ZUMRunPlace&, OutT* to, const InT* from, std::ptrdiff_t length) {
          r[rows] = to;
          s[rows] = from;
          n = length;
          if (++rows == kRows) {
            SlideRows<kRows>(r, s, n, all, changes);
            rows = 0;
          }
        },
        result, source, all.distance);
    for (int j = 0; j < rows; ++j) SlideRows<1>(r + j, s + j, n, all, changes);
  }
}

#define ZUML_INSTANTIATE(OUT, IN)                                                             \
  template void WriteSlidingSums(const ZUMRoDRef&, const ZUMImage<OUT>&, const ZUMImage<IN>&, \
                                 const Terms<WeightOf<OUT>>&, const Terms<WeightOf<OUT>>&);
#define ZUML_INSTANTIATE_LONG(IN) ZUML_INSTANTIATE(ZUMLong, IN)
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE_LONG)
ZUML_INSTANTIATE(ZUMReal, ZUMReal)
ZUML_INSTANTIATE(ZUMComplex, ZUMComplex)
#undef ZUML_INSTANTIATE_LONG
#undef ZUML_INSTANTIATE

}  // namespace zuml_detail
