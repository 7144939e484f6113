#include "zuml/morphology/winnermorphology.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <vector>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/morphology/detail/lanes.h"
#include "zuml/morphology/detail/startvalue.h"
#include "zuml/morphology/detail/steps.h"

using zuml_detail::Direction;
using zuml_detail::Greatest;
using zuml_detail::Least;
using zuml_detail::Step;
using zuml_detail::StepMap;
using zuml_detail::Stored;

namespace {

// What the tasks share. The image begins at the origin, as the result does.
template <class P>
struct Contest {
  ZUMImage<P> image;
  std::vector<Step> steps;
  bool own;         // a pixel begins with its own value, otherwise
  Stored<P> start;  // with this one
};

// Holds the contest on the part and hands each line to Derived::Write: the place of its first
// pixel, and for n pixels the values and the numbers of the winning steps, -1 where none won.
template <class P, class Order, class R>
class ContestTask : public XQTask {
 public:
  using S = Stored<P>;

  ZUMRoDRef part;
  const ZUMImage<R>* result;
  const Contest<P>* contest;

  virtual void Write(const ZUMRunPlace& at, const S* values, const int* winners,
                     std::ptrdiff_t n) = 0;

  int Cost() const { return static_cast<int>(contest->steps.size()); }

  void Run() override {
    if (part.EmptyP()) return;
    const auto room = static_cast<std::size_t>(part.RoDXSz());
    const auto values = zuml_detail::MakeScratch<S>(room);
    const auto winners = zuml_detail::MakeScratch<int>(room);
    ZUMForEachPlacedRun(
        part,
        [&](const ZUMRunPlace& at, const P* own, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) {
            values.get()[i] = contest->own ? zuml_detail::NumberAt(own, i) : contest->start;
          }
          std::fill_n(winners.get(), n, -1);
          for (std::size_t k = 0; k < contest->steps.size(); ++k) {
            HoldRound(at, own, n, static_cast<int>(k), values.get(), winners.get());
          }
          Write(at, values.get(), winners.get(), n);
        },
        contest->image);
  }

 private:
  // The line's pixels against those that step k leads to, where these are in the image.
  void HoldRound(const ZUMRunPlace& at, const P* own, std::ptrdiff_t n, int k, S* values,
                 int* winners) const {
    const Step& step = contest->steps[static_cast<std::size_t>(k)];
    const ZUMRect box = contest->image.Rect();
    const auto leads_inside = [&](zuml_detail::Axis axis, int from) {
      return step.*axis <= box.end.*axis - from && step.*axis >= -from;
    };
    if (!leads_inside(zuml_detail::kY, at.y) || !leads_inside(zuml_detail::kZ, at.z) ||
        !leads_inside(zuml_detail::kT, at.t)) {
      return;
    }
    const std::ptrdiff_t x = std::ptrdiff_t{at.x} + step.x;
    const std::ptrdiff_t first = std::max<std::ptrdiff_t>(-x, 0);
    const std::ptrdiff_t end = std::min<std::ptrdiff_t>(box.end.x - x + 1, n);
    const std::ptrdiff_t offset = contest->image.Displacement(step, 0);
    for (std::ptrdiff_t i = first; i < end; ++i) {
      const S kept = values[i], value = zuml_detail::NumberAt(own, offset + i);
      const bool wins = std::is_same_v<Order, Greatest> ? value > kept : value < kept;
      values[i] = wins ? value : kept;
      winners[i] = wins ? k : winners[i];
    }
  }
};

template <class P, class Order>
class CoordsTask : public ContestTask<P, Order, ZUMLong> {
 public:
  ZUMBasePoint<int> begin;  // of the image, where it lies

  void Write(const ZUMRunPlace& at, const Stored<P>*, const int* winners,
             std::ptrdiff_t n) override {
    const ZUMBasePoint<int> line(at.x, at.y, at.z, at.t);
    int c = 0;
    for (const zuml_detail::Axis axis : zuml_detail::kAxes) {
      ZUMLong* const out = &(*this->result)(line, c++);
      const int first = begin.*axis + line.*axis;
      for (std::ptrdiff_t i = 0; i < n; ++i) {
        const int own = first + (axis == zuml_detail::kX ? static_cast<int>(i) : 0);
        out[i] = winners[i] < 0
                     ? own
                     : own + this->contest->steps[static_cast<std::size_t>(winners[i])].*axis;
      }
    }
  }
};

}  // namespace

template <class P>
class CTaskDilateCoordsEx final : public CoordsTask<P, Greatest> {};
template <class P>
class CTaskErodeCoordsEx final : public CoordsTask<P, Least> {};

class CTaskDilateAndDistanceEx final : public ContestTask<ZUMReal, Greatest, ZUMReal> {
 public:
  const std::vector<ZUMReal>* distances;  // one a step, that of no winner behind them

  void Write(const ZUMRunPlace& at, const ZUMReal* values, const int* winners,
             std::ptrdiff_t n) override {
    std::copy_n(values, n, &(*result)(at.x, at.y, at.z, at.t, 0));
    ZUMReal* const out = &(*result)(at.x, at.y, at.z, at.t, 1);
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      out[i] =
          winners[i] < 0 ? distances->back() : (*distances)[static_cast<std::size_t>(winners[i])];
    }
  }
};

namespace {

template <class Task, class Order, class P>
ZUMImage<ZUMLong> FindCoords(const char* operation, const ZUMImage<P>& image,
                             const ZUMImage<ZUMBool>& element) {
  zuml_detail::RequireSingleChannelElement(operation, element);
  const bool own = zuml_detail::HoldsOrigin(element);
  const Stored<P> start = own ? Stored<P>() : zuml_detail::FindStart<Order>(image);
  // Without a channel there is nothing to win with: as if all pixels were equal.
  const ZUMImage<P> first = image.GetCSz() > 0 ? image.Channel(0) : ZUMImage<P>(image, 1, P());
  return zuml_detail::ComputeAtOrigin<ZUMLong>(
      first, image, 4, [&](const ZUMImage<P>& source, const ZUMRoDRef& box) {
        const Contest<P> contest{
            source, zuml_detail::ListSteps(element, StepMap(image, image, Direction::kMirrored)),
            own, start};
        return ZUMRunTasks<Task, ZUMLong>(box, 4, [&](Task& task) {
          task.contest = &contest;
          task.begin = image.Begin();
        });
      });
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<ZUMLong> ZUMDilateCoordsEx(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  return FindCoords<CTaskDilateCoordsEx<P>, Greatest>("ZUMDilateCoordsEx", image, element);
}

template <ZUMScalarPixel P>
ZUMImage<ZUMLong> ZUMErodeCoordsEx(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
  return FindCoords<CTaskErodeCoordsEx<P>, Least>("ZUMErodeCoordsEx", image, element);
}

ZUMImage<ZUMReal> ZUMDilateAndDistanceEx(const ZUMImage<ZUMReal>& image,
                                         const ZUMImage<ZUMBool>& element,
                                         const ZUMImage<ZUMReal>& distance) {
  zuml_detail::RequireSingleChannelElement("ZUMDilateAndDistanceEx", element);
  if (distance.GetCSz() != 1) {
    throw XQException("ZUMDilateAndDistanceEx: Multichannel distance elements are not allowed");
  }
  if (image.GetCSz() != 1) {
    throw XQException("ZUMDilateAndDistanceEx: Multichannel images are not allowed");
  }
  if (element.RoD() != distance.RoD()) {
    throw XQException(
        "ZUMDilateAndDistanceEx: structuring element and distance have differents RoDs");
  }
  const bool own = zuml_detail::HoldsOrigin(element);
  const ZUMReal start = own ? ZUMReal() : zuml_detail::FindStart<Greatest>(image);
  return zuml_detail::ComputeAtOrigin<ZUMReal>(
      image, image, 2, [&](const ZUMImage<ZUMReal>& source, const ZUMRoDRef& box) {
        Contest<ZUMReal> contest{source, {}, own, start};
        std::vector<ZUMReal> distances;
        zuml_detail::ForEachStep(element, StepMap(image, image, Direction::kMirrored),
                                 [&](const Step& step, const ZUMBasePoint<int>& k, bool) {
                                   contest.steps.push_back(step);
                                   distances.push_back(distance(k));
                                 });
        distances.push_back(own ? distance(0) : -90000000.0);
        return ZUMRunTasks<CTaskDilateAndDistanceEx, ZUMReal>(box, 2, [&](auto& task) {
          task.contest = &contest;
          task.distances = &distances;
        });
      });
}

#define ZUML_INSTANTIATE(PIX)                                                      \
  template ZUML_API ZUMImage<ZUMLong> ZUMDilateCoordsEx(const ZUMImage<PIX>&,      \
                                                        const ZUMImage<ZUMBool>&); \
  template ZUML_API ZUMImage<ZUMLong> ZUMErodeCoordsEx(const ZUMImage<PIX>&,       \
                                                       const ZUMImage<ZUMBool>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
