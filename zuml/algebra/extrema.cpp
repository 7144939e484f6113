#include "zuml/algebra/extrema.h"

#include <cstddef>
#include <type_traits>

#include "zuml/algebra/detail/flagbeside.h"
#include "zuml/core/detail/mapped.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"

using zuml_detail::FlagBeside;
using zuml_detail::Stored;
using zuml_detail::ValueAt;

namespace {

// Which of two pixels is the better one. No comparison with a NaN holds, on either side.
struct Greater {
  template <class P>
  static bool IsBetter(P a, P b) {
    return a > b;
  }
};
struct Less {
  template <class P>
  static bool IsBetter(P a, P b) {
    return a < b;
  }
};

// The pixels of one round of the loops: a cache line, as independent chains of comparisons.
template <class P>
inline constexpr int kLanes = 64 / sizeof(P);

template <class Order, class P>
void KeepBetter(P& best, P value) {
  best = Order::IsBetter(value, best) ? value : best;
}

// The best of a run and of `start`. Of equal values it may return either: zeros of both signs.
template <class Order, class P>
P BestOfRun(const P* x, std::ptrdiff_t n, P start) {
  using V = Stored<P>;
  V lane[kLanes<P>];
  for (V& v : lane) v = start;
  std::ptrdiff_t i = 0;
  for (; i + kLanes<P> <= n; i += kLanes<P>) {
    for (int j = 0; j < kLanes<P>; ++j) KeepBetter<Order, V>(lane[j], ValueAt(x, i + j));
  }
  V best = start;
  for (; i < n; ++i) KeepBetter<Order, V>(best, ValueAt(x, i));
  for (const V v : lane) KeepBetter<Order, V>(best, v);
  return best;
}

// An extreme value, and the run of pixels in which it stands first.
template <class P>
struct Extremum {
  P value{};
  const P* run = nullptr;
  std::ptrdiff_t n = 0;

  // The first pixel of the run with the value; for a NaN, which equals nothing, the last pixel.
  const P* Find() const {
    std::ptrdiff_t i = 0;
    while (i < n - 1 && !(ValueAt(run, i) == value)) ++i;
    return run + i;
  }
};

template <class Order, class P>
void TakeRun(Extremum<P>& best, const P* x, std::ptrdiff_t n) {
  const P value = BestOfRun<Order>(x, n, best.value);
  if (Order::IsBetter(value, best.value)) best = {value, x, n};
}

// Folds what a task has found. Parts may be cut along any axis; of equal values the one at the
// lower address comes first in sweep order.
template <class Order, class P>
void Fold(Extremum<P>& best, const Extremum<P>& found) {
  if (!found.run) return;
  if (Order::IsBetter(found.value, best.value) ||
      (found.value == best.value && found.run < best.run)) {
    best = found;
  }
}

template <class P, class Order>
class ExtremumTask : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<P>* image;
  Extremum<P> best;

  void SetStart(const Extremum<P>& start) { best = start; }
  void Run() override {
    Extremum<P> found = best;
    ZUMForEachRun(
        part, [&found](const P* x, std::ptrdiff_t n) { TakeRun<Order>(found, x, n); }, *image);
    best = found;
  }
  void FoldInto(Extremum<P>& total) const { Fold<Order>(total, best); }
};

// Sweeps the image with tasks. All start from the image's first pixel and look for better ones, so
// that an empty part finds nothing and the first pixel of a part counts like any other.
template <class Task, class P, class... Totals>
void RunExtrema(const ZUMImage<P>& image, Totals&... totals) {
  const P* pixel = static_cast<const P*>(image.PixelAddress(image.Begin(), 0));
  const Extremum<P> first{ValueAt(pixel, 0), pixel, 1};
  Task tasks[ZUMMaxTasks];
  ZUMRunPass(tasks, image, image.GetCSz(), [&](Task& task) {
    task.image = &image;
    task.SetStart({first.value, nullptr, 0});
  });
  ((totals = first), ...);
  for (const Task& task : tasks) task.FoldInto(totals...);
}

template <class Task, class P>
const P* FindExtremum(const ZUMImage<P>& image) {
  Extremum<P> best;
  RunExtrema<Task>(image, best);
  return best.Find();
}

template <class P>
void RequireValue(const char* operation, const ZUMImage<P>& image) {
  if (image.EmptyP() || image.GetCSz() == 0) {
    throw XQException("%s:Valor indefinido por imagen vacia", operation);
  }
}

// The first pixel of the run that equals the value; null if none does.
template <class P>
const P* FindEqual(const P* x, std::ptrdiff_t n, P value) {
  constexpr std::ptrdiff_t kStretch = 64;
  std::ptrdiff_t i = 0;
  for (; i + kStretch <= n; i += kStretch) {
    FlagBeside<P> any = 0;
    for (std::ptrdiff_t j = 0; j < kStretch; ++j) any |= FlagBeside<P>{ValueAt(x, i + j) == value};
    if (any) break;
  }
  for (; i < n; ++i) {
    if (ValueAt(x, i) == value) return x + i;
  }
  return nullptr;
}

}  // namespace

template <class P>
class CTaskMax final : public ExtremumTask<P, Greater> {};
template <class P>
class CTaskMin final : public ExtremumTask<P, Less> {};
template <class P>
class CTaskSearchMax final : public ExtremumTask<P, Greater> {};
template <class P>
class CTaskSearchMin final : public ExtremumTask<P, Less> {};

/// Both extrema of its part: a run is in the nearest cache when it is read again.
template <class P>
class CTaskMinMax final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<P>* image;
  Extremum<P> min, max;

  void SetStart(const Extremum<P>& start) { min = max = start; }
  void Run() override {
    Extremum<P> low = min, high = max;
    ZUMForEachRun(
        part,
        [&low, &high](const P* x, std::ptrdiff_t n) {
          TakeRun<Less>(low, x, n);
          TakeRun<Greater>(high, x, n);
        },
        *image);
    min = low;
    max = high;
  }
  void FoldInto(Extremum<P>& low, Extremum<P>& high) const {
    Fold<Less>(low, min);
    Fold<Greater>(high, max);
  }
};

template <ZUMOrderedPixel PixT>
PixT ZUMMax(const ZUMImage<PixT>& image) {
  RequireValue("ZUMMax", image);
  return ValueAt(FindExtremum<CTaskMax<PixT>>(image), 0);
}

template <ZUMOrderedPixel PixT>
PixT ZUMMin(const ZUMImage<PixT>& image) {
  RequireValue("ZUMMin", image);
  return ValueAt(FindExtremum<CTaskMin<PixT>>(image), 0);
}

template <ZUMOrderedPixel PixT>
void ZUMMinMax(const ZUMImage<PixT>& image, std::type_identity_t<PixT>& min,
               std::type_identity_t<PixT>& max) {
  RequireValue("ZUMMinMax", image);
  Extremum<PixT> low, high;
  RunExtrema<CTaskMinMax<PixT>>(image, low, high);
  min = ValueAt(low.Find(), 0);
  max = ValueAt(high.Find(), 0);
}

template <ZUMScalarPixel PixT>
ZUMBasePoint<int> ZUMSearchMax(const ZUMImage<PixT>& image) {
  if (image.GetCSz() != 1) {
    throw XQException("ZUMSearchMax: It only allows single channel images");
  }
  if (image.EmptyP()) throw XQException("ZUMSearchMax: It not works width empty images");
  return image.AddressCoord(FindExtremum<CTaskSearchMax<PixT>>(image));
}

template <ZUMScalarPixel PixT>
ZUMBasePoint<int> ZUMSearchMin(const ZUMImage<PixT>& image) {
  if (image.GetCSz() != 1) {
    throw XQException("ZUMSearchMin: It only allows images of a one channel");
  }
  if (image.EmptyP()) throw XQException("ZUMSearchMin: It not works width empty images");
  return image.AddressCoord(FindExtremum<CTaskSearchMin<PixT>>(image));
}

template <ZUMScalarPixel PixT>
ZUMBool ZUMSearchEqual(const ZUMImage<PixT>& image, std::type_identity_t<PixT> value,
                       ZUMBasePoint<int>& point) {
  if (image.GetCSz() != 1) {
    throw XQException("ZUMSearchEqual: only it allows images of a one channel");
  }
  const auto search = [&](const PixT* x, std::ptrdiff_t n) {
    const PixT* found = FindEqual(x, n, value);
    if (!found) return true;
    const ZUMBasePoint<int> at = image.AddressCoord(found);
    point = ZUMBasePoint<int>(at.x, at.y);
    return false;
  };
  return !ZUMForEachRunWhile(image, search, image);
}

#define ZUML_INSTANTIATE(PIX)                              \
  template ZUML_API PIX ZUMMax<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API PIX ZUMMin<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API void ZUMMinMax<PIX>(const ZUMImage<PIX>&, PIX&, PIX&);
ZUML_ORDERED_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX)                                                  \
  template ZUML_API ZUMBasePoint<int> ZUMSearchMax<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMBasePoint<int> ZUMSearchMin<PIX>(const ZUMImage<PIX>&); \
  template ZUML_API ZUMBool ZUMSearchEqual<PIX>(const ZUMImage<PIX>&, PIX, ZUMBasePoint<int>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
