#include "zuml/morphology/winnermorphology.h"

#include <algorithm>
#include <vector>

#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/morphology/detail/elementfold.h"
#include "zuml/morphology/detail/lines.h"
#include "zuml/morphology/detail/startvalue.h"

using zuml_detail::Direction;
using zuml_detail::Greatest;
using zuml_detail::Least;
using zuml_detail::Step;
using zuml_detail::Stored;
using zuml_detail::StoredPixels;

namespace {

// What the tasks share.
template <class P>
struct Contest {
  const ZUMImage<P>& image;
  std::vector<Step> steps;
  bool own;         // a pixel begins with its own value, otherwise
  Stored<P> start;  // with this one

  template <class Order>
  static Contest Make(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element) {
    const bool own = zuml_detail::OriginP(element);
    return {image, zuml_detail::ListSteps(element, Direction::kMirrored), own,
            own ? Stored<P>() : zuml_detail::FindStart<Order>(image)};
  }
};

// Of bool pixels only the truth counts.
template <class P>
Stored<P> ValueOf(Stored<P> stored) {
  if constexpr (std::same_as<P, ZUMBool>) return stored != 0;
  return stored;
}

// Holds the contest on the part and hands each line to Derived::Write: its values and the numbers
// of the winning steps, -1 where none won.
template <class P, class Order, class R>
class ContestTask : public XQTask {
 public:
  using S = Stored<P>;

  ZUMRoDRef part;
  const ZUMImage<R>* result;
  const Contest<P>* contest;

  virtual void Write(int y, int z, int t, const S* values, const int* winners) = 0;

  void Run() override {
    if (part.EmptyP()) return;
    const auto n = static_cast<std::size_t>(part.RoDXSz());
    const auto values = zuml_detail::MakeScratch<S>(n);
    const auto winners = zuml_detail::MakeScratch<int>(n);
    zuml_detail::ForEachLine(part, 1, [&](int y, int z, int t, int) {
      const S* own = Pixel(part.BeginX(), y, z, t);
      for (std::size_t i = 0; i < n; ++i) {
        values[i] = ValueOf<P>(contest->own ? own[i] : contest->start);
      }
      std::fill_n(winners.get(), n, -1);
      for (std::size_t k = 0; k < contest->steps.size(); ++k) {
        const Step& step = contest->steps[k];
        const ZUMImage<P>& image = contest->image;
        const int first = std::max(part.BeginX(), image.BeginX() - step.x);
        const int last = std::min(part.EndX(), image.EndX() - step.x);
        if (first > last || !image.InP(first + step.x, y + step.y, z + step.z, t + step.t))
          continue;
        const int begin = first - part.BeginX();
        Challenge(values.get() + begin, winners.get() + begin, static_cast<int>(k),
                  Pixel(first + step.x, y + step.y, z + step.z, t + step.t), last - first + 1);
      }
      Write(y, z, t, values.get(), winners.get());
    });
  }

 private:
  const S* Pixel(int x, int y, int z, int t) const {
    return StoredPixels(&contest->image(x, y, z, t));
  }

  static void Challenge(S* values, int* winners, int k, const S* challengers, int n) {
    for (int i = 0; i < n; ++i) {
      const S kept = values[i], value = ValueOf<P>(challengers[i]);
      const bool wins = std::is_same_v<Order, Greatest> ? value > kept : value < kept;
      values[i] = wins ? value : kept;
      winners[i] = wins ? k : winners[i];
    }
  }
};

template <class P, class Order>
class CoordsTask : public ContestTask<P, Order, ZUMLong> {
 public:
  void Write(int y, int z, int t, const Stored<P>*, const int* winners) override {
    const int first = this->part.BeginX(), n = this->part.RoDXSz();
    const ZUMBasePoint<int> line(first, y, z, t);
    int c = 0;
    for (const auto axis : zuml_detail::kAxes) {
      ZUMLong* out = &(*this->result)(first, y, z, t, c++);
      for (int i = 0; i < n; ++i) {
        const int own = line.*axis + (axis == &Step::x ? i : 0);
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

  void Write(int y, int z, int t, const ZUMReal* values, const int* winners) override {
    const int n = part.RoDXSz();
    std::copy_n(values, n, &(*result)(part.BeginX(), y, z, t, 0));
    ZUMReal* out = &(*result)(part.BeginX(), y, z, t, 1);
    for (int i = 0; i < n; ++i) {
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
  const auto contest = Contest<P>::template Make<Order>(image, element);
  return ZUMRunTasks<Task, ZUMLong>(image, 4, [&](Task& task) { task.contest = &contest; });
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
  const auto contest = Contest<ZUMReal>::Make<Greatest>(image, element);
  std::vector<ZUMReal> distances;
  for (const Step& step : contest.steps) distances.push_back(distance(zuml_detail::Mirror(step)));
  distances.push_back(contest.own ? distance(0) : -90000000.0);
  return ZUMRunTasks<CTaskDilateAndDistanceEx, ZUMReal>(image, 2, [&](auto& task) {
    task.contest = &contest;
    task.distances = &distances;
  });
}

#define ZUML_INSTANTIATE(PIX)                                                      \
  template ZUML_API ZUMImage<ZUMLong> ZUMDilateCoordsEx(const ZUMImage<PIX>&,      \
                                                        const ZUMImage<ZUMBool>&); \
  template ZUML_API ZUMImage<ZUMLong> ZUMErodeCoordsEx(const ZUMImage<PIX>&,       \
                                                       const ZUMImage<ZUMBool>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
