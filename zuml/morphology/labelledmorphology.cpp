#include "zuml/morphology/labelledmorphology.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/morphology/detail/lanes.h"
#include "zuml/morphology/detail/startvalue.h"
#include "zuml/morphology/detail/steps.h"

using zuml_detail::Direction;
using zuml_detail::Greatest;
using zuml_detail::Step;
using zuml_detail::StepMap;
using zuml_detail::Stored;
using zuml_detail::StoredPixels;

namespace {

struct LabelledStep {
  ZUMLong label;
  Step step;
};

// The element's steps in ascending order of their labels, and in sweep order within a label.
std::vector<LabelledStep> ListLabelledSteps(const ZUMImage<ZUMLong>& element, const StepMap& map) {
  std::vector<LabelledStep> steps;
  zuml_detail::ForEachStep(element, map,
                           [&](const Step& step, const ZUMBasePoint<int>&, ZUMLong label) {
                             steps.push_back({label, step});
                           });
  std::stable_sort(steps.begin(), steps.end(),
                   [](const LabelledStep& a, const LabelledStep& b) { return a.label < b.label; });
  return steps;
}

// Offsets by label, all labels above 0.
struct LabelGroups {
  std::vector<std::ptrdiff_t> offsets;
  std::vector<std::size_t> ends;  // where the next label begins

  LabelGroups(const ZUMRaster& target, const std::vector<LabelledStep>& steps) {
    ZUMLong label = 0;
    for (const LabelledStep& s : steps) {
      if (s.label <= 0) continue;
      if (s.label != label && label != 0) ends.push_back(offsets.size());
      label = s.label;
      offsets.push_back(target.Displacement(s.step, 0));
    }
    if (label != 0) ends.push_back(offsets.size());
  }
};

// The sums on a part; no offset leaves the image.
template <class R, class P>
class SumTask : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<R>* result;
  const ZUMImage<P>* image;
  const LabelGroups* groups;

  int Cost() const { return static_cast<int>(groups->offsets.size()); }

  void Run() override {
    if (part.EmptyP()) return;
    const auto maxima =
        zuml_detail::MakeScratch<Stored<P>>(static_cast<std::size_t>(part.RoDXSz()));
    ZUMForEachRun(
        part,
        [&](R* sums, const P* in, std::ptrdiff_t n) {
          const Stored<P> zero{};
          std::fill_n(sums, n, R());
          std::size_t begin = 0;
          for (const std::size_t end : groups->ends) {
            zuml_detail::FoldTaps<P, Greatest>(maxima.get(), StoredPixels(in),
                                               groups->offsets.data() + begin,
                                               static_cast<int>(end - begin), &zero, n);
            for (std::ptrdiff_t i = 0; i < n; ++i) {
              sums[i] = ZUMWrapAdd<R>(sums[i], static_cast<R>(maxima.get()[i]));
            }
            begin = end;
          }
        },
        *result, *image);
  }
};

}  // namespace

template <class R, class P>
class CTaskDilateSum final : public SumTask<R, P> {};
template <class R, class P>
class CTaskDilateSumEx final : public SumTask<R, P> {};

namespace {

// Image and region begin at the origin, or the image is widened to where steps lead.
template <class Task, class R, class P>
ZUMImage<R> SumMaxima(const ZUMImage<P>& image, const ZUMRoDRef& rod,
                      const std::vector<LabelledStep>& steps) {
  const LabelGroups groups(image, steps);
  return ZUMRunTasks<Task, R>(rod, image.GetCSz(), [&](Task& task) {
    task.image = &image;
    task.groups = &groups;
  });
}

template <class R, class P>
ZUMImage<R> SumMaximaInside(const char* operation, const ZUMImage<P>& image,
                            const ZUMImage<ZUMLong>& element) {
  zuml_detail::RequireSingleChannelElement(operation, element);
  zuml_detail::RequirePixels<ZUMDisplacementValueArray<ZUMLong>>(element, Direction::kMirrored);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(image, element.Rect(), Direction::kMirrored);
  return zuml_detail::ComputeAtOrigin<R>(
      image, rod, image.GetCSz(), [&](const ZUMImage<P>& source, const ZUMRoDRef& box) {
        return SumMaxima<CTaskDilateSum<R, P>, R>(
            source, box, ListLabelledSteps(element, StepMap(image, rod, Direction::kMirrored)));
      });
}

}  // namespace

template <class R, ZUMWidensTo<R> P>
ZUMImage<R> ZUMDilateSum(const ZUMImage<P>& image, const ZUMImage<ZUMLong>& element) {
  return SumMaximaInside<R>("CTaskDilateAcum", image, element);
}

template <class R, ZUMWidensTo<R> P>
ZUMImage<R> ZUMDilateMedian(const ZUMImage<P>& image, const ZUMImage<ZUMLong>& element) {
  return SumMaximaInside<R>("CTaskDilateMedian", image, element);
}

// Zeros around the image change no maximum, since all begin at 0.
template <class R, ZUMWidensTo<R> P>
ZUMImage<R> ZUMDilateSumEx(const ZUMImage<P>& image, const ZUMImage<ZUMLong>& element) {
  zuml_detail::RequireSingleChannelElement("CTaskDilateAcumEx", element);
  return zuml_detail::ComputeAtOrigin<R>(
      image, image, image.GetCSz(), [&](const ZUMImage<P>& source, const ZUMRoDRef& box) {
        const std::vector<LabelledStep> steps =
            ListLabelledSteps(element, StepMap(image, image, Direction::kMirrored));
        ZUMRect reach;
        for (const LabelledStep& s : steps) zuml_detail::Include(reach, s.step);
        return SumMaxima<CTaskDilateSumEx<R, P>, R>(zuml_detail::WidenToReach(source, box, reach),
                                                    box, steps);
      });
}

ZUMImage<ZUMLong> ZUMMaxErode(const ZUMImage<ZUMBool>& image, const ZUMImage<ZUMLong>& element) {
  if (element.GetCSz() != 1 || !element.InP(0, 0, 0, 0)) {
    throw XQException("ZUMMaxErode: Dimensions of the structuring element are not allowed");
  }
  zuml_detail::RequirePixels<ZUMDisplacementValueArray<ZUMLong>>(element, Direction::kDirect);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(image, element.Rect(), Direction::kDirect);
  return zuml_detail::ComputeAtOrigin<ZUMLong>(
      image, rod, image.GetCSz(), [&](const ZUMImage<ZUMBool>& source, const ZUMRoDRef& box) {
        std::vector<ZUMDisplacementValue<ZUMLong>> levels;
        for (const LabelledStep& s :
             ListLabelledSteps(element, StepMap(image, rod, Direction::kDirect))) {
          levels.push_back({source.Displacement(s.step, 0), s.label});
        }
        const ZUMLong last = levels.back().value;
        const ZUMLong above = last < std::numeric_limits<ZUMLong>::max() ? last + 1 : last;
        const ZUMImage<ZUMLong> result(box, image.GetCSz(), nullptr);
        ZUMForEachRun(
            box,
            [&](ZUMLong* out, const ZUMBool* in, std::ptrdiff_t n) {
              for (std::ptrdiff_t i = 0; i < n; ++i) {
                const ZUMByte* const pixel = StoredPixels(in) + i;
                const auto stop =
                    std::find_if(levels.begin(), levels.end(),
                                 [pixel](const auto& l) { return pixel[l.offset] == 0; });
                out[i] = stop == levels.end() ? above : stop->value;
              }
            },
            result, source);
        return result;
      });
}

#define ZUML_INSTANTIATE_PAIR(OUT, IN)                                               \
  template ZUML_API ZUMImage<OUT> ZUMDilateSum<OUT, IN>(const ZUMImage<IN>&,         \
                                                        const ZUMImage<ZUMLong>&);   \
  template ZUML_API ZUMImage<OUT> ZUMDilateSumEx<OUT, IN>(const ZUMImage<IN>&,       \
                                                          const ZUMImage<ZUMLong>&); \
  template ZUML_API ZUMImage<OUT> ZUMDilateMedian<OUT, IN>(const ZUMImage<IN>&,      \
                                                           const ZUMImage<ZUMLong>&);
#define ZUML_INSTANTIATE(PIX) ZUML_INSTANTIATE_PAIR(ZUMLong, PIX)
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE)
ZUML_INSTANTIATE_PAIR(ZUMReal, ZUMReal)
#undef ZUML_INSTANTIATE
#undef ZUML_INSTANTIATE_PAIR
