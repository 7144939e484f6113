#include "zuml/morphology/labelledmorphology.h"

#include <algorithm>
#include <vector>

#include "zuml/algebra/frames.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/morphology/detail/elementfold.h"
#include "zuml/morphology/detail/lines.h"
#include "zuml/morphology/detail/startvalue.h"

using zuml_detail::Direction;
using zuml_detail::Greatest;
using zuml_detail::Stored;
using zuml_detail::StoredPixels;

namespace {

using LabelledOffset = ZUMDisplacementValue<ZUMLong>;

// Offsets by label, all labels above 0, and their order in the element within a label.
struct LabelGroups {
  std::vector<std::ptrdiff_t> offsets;
  std::vector<std::size_t> ends;  // where the next label begins
  ZUMBasePoint<int> first;        // the pixel that the offsets are counted from

  // The steps from `first` on, a step inside the image from every pixel of the result, so that no
  // address outside the image is formed.
  LabelGroups(const ZUMRaster& target, const ZUMImage<ZUMLong>& element) {
    struct Labelled {
      ZUMLong label;
      zuml_detail::Step step;
    };
    std::vector<Labelled> labelled;
    const ZUMRect box = element.Rect();
    zuml_detail::ForEachLine(element, 1, [&](int y, int z, int t, int) {
      for (int x = box.begin.x; x <= box.end.x; ++x) {
        const ZUMLong label = element(x, y, z, t);
        if (label > 0) labelled.push_back({label, {-x, -y, -z, -t}});
      }
    });
    std::stable_sort(labelled.begin(), labelled.end(),
                     [](const Labelled& a, const Labelled& b) { return a.label < b.label; });
    for (std::size_t i = 0; i < labelled.size(); ++i) {
      if (i == 0) first = labelled[0].step;
      if (i != 0 && labelled[i].label != labelled[i - 1].label) ends.push_back(i);
      const zuml_detail::Step& s = labelled[i].step;
      offsets.push_back(
          target.Displacement(s.x - first.x, s.y - first.y, s.z - first.z, s.t - first.t, 0));
    }
    if (!labelled.empty()) ends.push_back(labelled.size());
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

  void Run() override {
    if (part.EmptyP()) return;
    const std::ptrdiff_t n = part.RoDXSz();
    const auto maxima = zuml_detail::MakeScratch<Stored<P>>(static_cast<std::size_t>(n));
    const Stored<P> zero{};
    const ZUMBasePoint<int>& first = groups->first;
    zuml_detail::ForEachLine(part, result->GetCSz(), [&](int y, int z, int t, int c) {
      R* const sums = &(*result)(part.BeginX(), y, z, t, c);
      std::fill_n(sums, n, R());
      if (groups->ends.empty()) return;
      const Stored<P>* const in = StoredPixels(
          &(*image)(part.BeginX() + first.x, y + first.y, z + first.z, t + first.t, c));
      std::size_t begin = 0;
      for (const std::size_t end : groups->ends) {
        zuml_detail::FoldTaps<P, Greatest>(maxima.get(), in, groups->offsets.data() + begin,
                                           static_cast<int>(end - begin), &zero, n);
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          sums[i] = ZUMWrapAdd<R>(sums[i], static_cast<R>(maxima[static_cast<std::size_t>(i)]));
        }
        begin = end;
      }
    });
  }
};

}  // namespace

template <class R, class P>
class CTaskDilateSum final : public SumTask<R, P> {};
template <class R, class P>
class CTaskDilateSumEx final : public SumTask<R, P> {};

namespace {

template <class Task, class R, class P>
ZUMImage<R> SumMaxima(const ZUMImage<P>& image, const ZUMRoDRef& rod,
                      const ZUMImage<ZUMLong>& element) {
  const LabelGroups groups(image, element);
  return ZUMRunTasks<Task, R>(rod, image.GetCSz(), [&](Task& task) {
    task.image = &image;
    task.groups = &groups;
  });
}

template <class R, class P>
ZUMImage<R> SumMaximaInside(const char* operation, const ZUMImage<P>& image,
                            const ZUMImage<ZUMLong>& element) {
  zuml_detail::RequireSingleChannelElement(operation, element);
  ZUMDisplacementValueArray<ZUMLong>().SymmetricFromNonZeroPixels(image, element);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(image, element.Rect(), Direction::kMirrored);
  return SumMaxima<CTaskDilateSum<R, P>, R>(image, rod, element);
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
  if (image.EmptyP() || element.EmptyP()) return ZUMImage<R>(image, image.GetCSz(), R());
  ZUMRect box = image.Rect();
  for (const auto axis : zuml_detail::kAxes) {
    box.begin.*axis -= std::max(element.End().*axis, 0);
    box.end.*axis -= std::min(element.Begin().*axis, 0);
  }
  return SumMaxima<CTaskDilateSumEx<R, P>, R>(ZUMPadding(image, box, P()), image, element);
}

ZUMImage<ZUMLong> ZUMMaxErode(const ZUMImage<ZUMBool>& image, const ZUMImage<ZUMLong>& element) {
  if (element.GetCSz() != 1 || !element.InP(0, 0, 0, 0)) {
    throw XQException("ZUMMaxErode: Dimensions of the structuring element are not allowed");
  }
  ZUMDisplacementValueArray<ZUMLong> offsets;
  offsets.FromNonZeroPixels(image, element);
  std::stable_sort(
      offsets.begin(), offsets.end(),
      [](const LabelledOffset& a, const LabelledOffset& b) { return a.value < b.value; });
  const ZUMLong above = ZUMWrapAdd<ZUMLong>((offsets.end() - 1)->value, 1);
  const ZUMRoDRef rod = zuml_detail::ShrinkRegion(image, element.Rect(), Direction::kDirect);
  const ZUMImage<ZUMLong> result(rod, image.GetCSz(), nullptr);
  ZUMForEachRun(
      rod,
      [&](ZUMLong* levels, const ZUMBool* pixels, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          const ZUMByte* pixel = StoredPixels(pixels) + i;
          const auto stop =
              std::find_if(offsets.begin(), offsets.end(),
                           [pixel](const LabelledOffset& o) { return pixel[o.offset] == 0; });
          levels[i] = stop == offsets.end() ? above : stop->value;
        }
      },
      result, image);
  return result;
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
