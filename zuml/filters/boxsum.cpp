#include "zuml/filters/boxsum.h"

#include <cstddef>
#include <initializer_list>
#include <type_traits>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/filters/detail/boxrows.h"
#include "zuml/filters/detail/displacedruns.h"
#include "zuml/filters/detail/slidingsum.h"
#include "zuml/filters/detail/weightedsum.h"
#include "zuml/filters/detail/wholerows.h"

using zuml_detail::Axis;
using zuml_detail::IsBox;
using zuml_detail::KernelFromOrigin;
using zuml_detail::kT;
using zuml_detail::kX;
using zuml_detail::kY;
using zuml_detail::kZ;
using zuml_detail::MakeDirectRegion;
using zuml_detail::NeededPart;
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
  int Cost() const { return static_cast<int>(this->all->offsets.size()); }

  void Run() override {
    zuml_detail::WriteWeightedSums(this->part, *this->result, *this->source, *this->all);
  }
};

template <class OutT, class InT>
class SlidingSum : public SumTask<OutT, InT> {
 public:
  const Terms<WeightOf<OutT>>* changes;

  int Cost() const { return static_cast<int>(changes->offsets.size()); }

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
W SignOf(int c) {
  return c == 0 ? W(1) : W(-1);
}
template <class W>
Terms<W> MakeSignedTerms(const ZUMRaster& source, const KernelFromOrigin<ZUMBool>& mask,
                         const ZUMRoDRef& rod) {
  Terms<W> terms{mask.GetDistance(), {}, {}};
  for (int c = 0; c < mask.pixels.GetCSz(); ++c) {
    ZUMDisplacementArray steps;
    steps.FromNonZeroPixels(source, NeededPart(mask.pixels.Channel(c), rod));
    AddTerms(terms, steps, SignOf<W>(c));
  }
  return terms;
}

// The box without an extent on other axes than these.
ZUMRect KeepAxes(const ZUMRect& box, std::initializer_list<Axis> axes) {
  ZUMRect kept;
  for (const Axis axis : axes) {
    kept.begin.*axis = box.begin.*axis;
    kept.end.*axis = box.end.*axis;
  }
  return kept;
}

// The sums over the box's extent along an axis, Z or T, whose neighbours are `stride` pixels apart.
template <class OutT>
ZUMImage<OutT> RunAcross(const ZUMImage<OutT>& image, const ZUMRect& rect, Axis axis,
                         long long stride) {
  using W = WeightOf<OutT>;
  const ZUMRect line = KeepAxes(rect, {axis});
  const ZUMRoDRef rod = MakeDirectRegion(image, line);
  const ZUMBasePoint<int> b = line.begin;
  Terms<W> terms{{b.x, b.y, b.z, b.t}, {}, {}};
  // A box that leaves nothing of the image may be as long as coordinates go.
  const long long n = rod.EmptyP() ? 1 : zuml_detail::SizeOf(line, axis);
  for (long long k = 0; k < n; ++k) terms.Add(k * stride, W(1));
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
  const KernelFromOrigin<ZUMBool> moved(mask);
  const Terms<W> all = MakeSignedTerms<W>(image, moved, rod);
  if (rod.EmptyP()) return ZUMImage<OutT>(rod, image.GetCSz(), nullptr);
  Terms<W> changes{all.distance, {}, {}};
  std::size_t entering = 0;
  for (int c = 0; c < n; ++c) {
    ZUMDisplacementArray out;
    out.FromNonZeroPixelsL2ROut(image, moved.pixels.Channel(c));
    AddTerms(changes, out, -SignOf<W>(c));
  }
  for (int c = 0; c < n; ++c) {
    ZUMDisplacementArray in;
    in.FromNonZeroPixelsL2RIn(image, moved.pixels.Channel(c));
    AddTerms(changes, in, SignOf<W>(c), 1);
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
  const ZUMRect plane = KeepAxes(rect, {kX, kY});
  ZUMImage<OutT> result;
  if (plane == ZUMRect()) {
    result = zuml_detail::ConvertCopy<OutT>(image);
  } else {
    result =
        ZUMRunTasks<Task, OutT>(MakeDirectRegion(image, plane), image.GetCSz(), [&](Task& task) {
          task.source = &image;
          task.rect = &rect;
        });
  }
  if (b.z != 0 || e.z != 0) result = RunAcross(result, rect, kZ, result.GetPlaneSz());
  if (b.t != 0 || e.t != 0) result = RunAcross(result, rect, kT, result.GetFrameSz());
  return result;
}

template <class OutT, class InT>
requires ZUMSumPixels<OutT, InT> ZUMImage<OutT> ZUMSum(const ZUMImage<InT>& image,
                                                       const ZUMRoDRef& rod) {
  if (IsBox(rod)) return ZUMSum<OutT>(image, rod.Rect());
  // A region without a result needs no mask as large as it is.
  const ZUMRoDRef left = MakeDirectRegion(image, rod.Rect());
  if (left.EmptyP() && !rod.EmptyP()) return ZUMImage<OutT>(left, image.GetCSz(), nullptr);
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
