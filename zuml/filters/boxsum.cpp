#include "zuml/filters/boxsum.h"

#include "zuml/core/detail/boxes.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/filters/detail/boxrows.h"
#include "zuml/filters/detail/slidingsum.h"
#include "zuml/filters/detail/weightedsum.h"
#include "zuml/filters/detail/wholerows.h"

using zuml_detail::IsBox;
using zuml_detail::MakeDirectRegion;
using zuml_detail::Terms;
using zuml_detail::WeightOf;

namespace {

/// What the tasks of sums have in common.
template <class OutT, class InT>
class SumTask : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<InT>* source;
  const Terms<WeightOf<OutT>>* all;
};

template <class OutT, class InT>
class DirectSum : public SumTask<OutT, InT> {
 public:
  void Run() override {
    zuml_detail::WriteWeightedSums(this->part, *this->result, *this->source, *this->all);
  }
};

template <class OutT, class InT>
class SlidingSum : public SumTask<OutT, InT> {
 public:
  const Terms<WeightOf<OutT>>* changes;

  void Run() override {
    zuml_detail::WriteSlidingSums(this->part, *this->result, *this->source, *this->all, *changes);
  }
};

}  // namespace

template <class OutT, class InT>
class CTaskSum1 final : public DirectSum<OutT, InT> {};
template <class OutT, class InT>
class CTaskSum2 final : public DirectSum<OutT, InT> {};
template <class OutT, class InT>
class CTaskSumSC1 final : public SlidingSum<OutT, InT> {};
template <class OutT, class InT>
class CTaskSumSC2 final : public SlidingSum<OutT, InT> {};

/// Sums along X, and along Y of these where the box has an extent there.
template <class OutT, class InT>
class CTaskSumX final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<InT>* source;
  const ZUMRect* rect;

  void Run() override { zuml_detail::WriteBoxSums(part, *result, *source, *rect); }
};

/// Sums across lines.
template <class T>
class CTaskSumT final : public DirectSum<T, T> {};

namespace {

template <class Task, class OutT, class InT>
ZUMImage<OutT> RunSum(const ZUMImage<InT>& image, const ZUMRoDRef& rod,
                      const Terms<WeightOf<OutT>>& all) {
  return ZUMRunTasks<Task, OutT>(rod, image.GetCSz(), [&](Task& task) {
    task.source = &image;
    task.all = &all;
  });
}

template <class Task, class OutT, class InT>
ZUMImage<OutT> RunSliding(const ZUMImage<InT>& image, const ZUMRoDRef& rod,
                          const Terms<WeightOf<OutT>>& all, const Terms<WeightOf<OutT>>& changes) {
  return ZUMRunTasks<Task, OutT>(rod, image.GetCSz(), [&](Task& task) {
    zuml_detail::KeepRowsWhole(task.part, rod);
    task.source = &image;
    task.all = &all;
    task.changes = &changes;
  });
}

template <class W>
void AddTerms(Terms<W>& terms, const ZUMDisplacementArray& steps, W weight, long long shift = 0) {
  for (const long long step : steps) terms.Add(step + shift, weight);
}

// A mask of one channel that is true all over its region.
bool IsFilledBox(const ZUMImage<ZUMBool>& mask, std::size_t pixels) {
  return mask.GetCSz() == 1 && IsBox(mask) && static_cast<std::size_t>(mask.NPixels()) == pixels;
}

// 1 for the pixels of channel 0, -1 for those of channel 1.
template <class W>
Terms<W> MakeSignedTerms(const ZUMRaster& source, const ZUMImage<ZUMBool>& mask) {
  Terms<W> terms;
  for (int c = 0; c < mask.GetCSz(); ++c) {
    ZUMDisplacementArray steps;
    steps.FromNonZeroPixels(source, mask.Channel(c));
    AddTerms(terms, steps, W(c == 0 ? 1 : -1));
  }
  return terms;
}

// The sums from `begin` to `end` along an axis, Z or T, whose neighbours are `stride` pixels apart.
template <class OutT>
ZUMImage<OutT> RunAcross(const ZUMImage<OutT>& image, const ZUMRoDRef& rod, int begin, int end,
                         long long stride) {
  using W = WeightOf<OutT>;
  Terms<W> terms;
  // A box that leaves nothing of the image may be as long as coordinates go.
  if (rod.EmptyP()) end = begin;
  for (long long k = begin; k <= end; ++k) terms.Add(k * stride, W(1));
  return RunSum<CTaskSumT<OutT>, OutT>(image, rod, terms);
}

}  // namespace

template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT> ZUMImage<OutT> ZUMSum(const ZUMImage<InT>& image,
                                                       const ZUMImage<ZUMBool>& mask) {
  using W = WeightOf<OutT>;
  const int n = mask.GetCSz();
  if (n != 1 && n != 2) throw XQException("ZUMSum only allows a mask with one or two channels");
  const ZUMRoDRef rod = MakeDirectRegion(image, mask.Rect());
  const Terms<W> all = MakeSignedTerms<W>(image, mask);
  Terms<W> changes;
  std::size_t entering = 0;
  for (int c = 0; c < n; ++c) {
    ZUMDisplacementArray out;
    out.FromNonZeroPixelsL2ROut(image, mask.Channel(c));
    AddTerms(changes, out, W(c == 0 ? -1 : 1));
  }
  for (int c = 0; c < n; ++c) {
    ZUMDisplacementArray in;
    in.FromNonZeroPixelsL2RIn(image, mask.Channel(c));
    AddTerms(changes, in, W(c == 0 ? 1 : -1), 1);
    entering += in.GetLength();
  }
  if (all.offsets.size() <= 2 * entering) {
    return n == 1 ? RunSum<CTaskSum1<OutT, InT>, OutT>(image, rod, all)
                  : RunSum<CTaskSum2<OutT, InT>, OutT>(image, rod, all);
  }
  if constexpr (std::is_same_v<OutT, ZUMLong>) {
    if (IsFilledBox(mask, all.offsets.size())) return ZUMSum<OutT>(image, mask.Rect());
  }
  return n == 1 ? RunSliding<CTaskSumSC1<OutT, InT>, OutT>(image, rod, all, changes)
                : RunSliding<CTaskSumSC2<OutT, InT>, OutT>(image, rod, all, changes);
}

template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT> ZUMImage<OutT> ZUMSum(const ZUMImage<InT>& image,
                                                       const ZUMRect& rect) {
  const ZUMBasePoint<int> b = rect.begin, e = rect.end;
  if (b.x > e.x || b.y > e.y || b.z > e.z || b.t > e.t) {
    throw XQException("ZUMSum: empty rectangle is not allowed");
  }
  using Task = CTaskSumX<OutT, InT>;
  ZUMImage<OutT> result;
  if (b.x == 0 && e.x == 0 && b.y == 0 && e.y == 0) {
    result = static_cast<ZUMImage<OutT>>(image);
  } else {
    result = ZUMRunTasks<Task, OutT>(DisplaceSides(image, -b.x, -b.y, 0, 0, -e.x, -e.y, 0, 0),
                                     image.GetCSz(), [&](Task& task) {
                                       task.source = &image;
                                       task.rect = &rect;
                                     });
  }
  if (b.z != 0 || e.z != 0) {
    const ZUMRoDRef rod = DisplaceSides(result, 0, 0, -b.z, 0, 0, 0, -e.z, 0);
    result = RunAcross(result, rod, b.z, e.z, result.GetPlaneSz());
  }
  if (b.t != 0 || e.t != 0) {
    const ZUMRoDRef rod = DisplaceSides(result, 0, 0, 0, -b.t, 0, 0, 0, -e.t);
    result = RunAcross(result, rod, b.t, e.t, result.GetFrameSz());
  }
  return result;
}

template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT> ZUMImage<OutT> ZUMSum(const ZUMImage<InT>& image,
                                                       const ZUMRoDRef& rod) {
  if (IsBox(rod)) return ZUMSum<OutT>(image, rod.Rect());
  return ZUMSum<OutT>(image, ZUMImage<ZUMBool>(rod, 1, true));
}

#define ZUML_INSTANTIATE(OUT, IN)                                                             \
  template ZUML_API ZUMImage<OUT> ZUMSum<OUT>(const ZUMImage<IN>&, const ZUMImage<ZUMBool>&); \
  template ZUML_API ZUMImage<OUT> ZUMSum<OUT>(const ZUMImage<IN>&, const ZUMRect&);           \
  template ZUML_API ZUMImage<OUT> ZUMSum<OUT>(const ZUMImage<IN>&, const ZUMRoDRef&);
#define ZUML_INSTANTIATE_LONG(IN) ZUML_INSTANTIATE(ZUMLong, IN)
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE_LONG)
ZUML_INSTANTIATE(ZUMReal, ZUMReal)
ZUML_INSTANTIATE(ZUMComplex, ZUMComplex)
#undef ZUML_INSTANTIATE_LONG
#undef ZUML_INSTANTIATE
