#include "zuml/filters/detail/clippedmean.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "zuml/core/detail/axes.h"
#include "zuml/core/detail/boxes.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/pixelarith.h"
#include "zuml/core/taskframe.h"
#include "zuml/filters/detail/rowsum.h"

namespace zuml_detail {
namespace {

// Whether a product with a weight is truncated before it is added.
template <class OutT, class InT>
constexpr bool kTruncates = std::is_integral_v<OutT> && !std::is_integral_v<InT>;

template <class OutT, class InT>
OutT Weigh(OutT w, InT value) {
  if constexpr (kTruncates<OutT, InT>) {
    return ZUMTruncate<OutT>(static_cast<double>(w) * value);
  } else {
    return ZUMWrapMul(w, static_cast<OutT>(value));
  }
}

// Without -0.0 as the start of a sum, a sum of zeros has no sign.
template <class OutT>
OutT Divide(OutT sum, OutT weights) {
  return ZUMWrapDiv(ZUMWrapAdd(sum, OutT(0)), weights);
}

// The terms that can reach a pixel of the box from another one.
template <class W>
PlacedTerms<W> KeepNear(const PlacedTerms<W>& terms, const ZUMRect& box) {
  PlacedTerms<W> near;
  for (std::size_t k = 0; k < terms.places.size(); ++k) {
    const ZUMBasePoint<int>& place = terms.places[k];
    if (std::all_of(std::begin(kAxes), std::end(kAxes), [&](Axis axis) {
          const std::int64_t step = place.*axis;
          return step < SizeOf(box, axis) && -step < SizeOf(box, axis);
        })) {
      near.Add(place, terms.weights[k]);
    }
  }
  return near;
}

}  // namespace
}  // namespace zuml_detail

/// The means of its part.
template <class OutT, class InT>
class CTaskSmoothEx final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<OutT>* result;
  const ZUMImage<InT>* source;
  const zuml_detail::PlacedTerms<OutT>* terms;
  zuml_detail::Unreached unreached;

  int Cost() const { return static_cast<int>(terms->places.size()) + 1; }

  void Run() override {
    box_ = source->Rect();
    is_box_ = zuml_detail::IsBox(*source);
    ZUMForEachPlacedRun(
        part, [this](const ZUMRunPlace& at, OutT* r, std::ptrdiff_t n) { WriteRun(at, r, n); },
        *result);
  }

 private:
  // A sum's type: unsigned for `long`, whose sums wrap.
  using T = std::conditional_t<std::is_integral_v<OutT>, std::uint32_t, OutT>;

  // A term on the source's line that it reads for the present one.
  struct LineTerm {
    const InT* line;  // at the source's low X
    ZUMBasePoint<int> at;
    std::int64_t step;
    OutT weight;
  };

  void WriteRun(const ZUMRunPlace& at, OutT* r, std::ptrdiff_t n) {
    FindLines(at);
    // Of the run's pixels, those in [first, end) have all of the terms inside.
    const std::int64_t x = at.x;
    std::int64_t first = x, end = x + n;
    OutT weights = 0;
    for (const LineTerm& term : lines_) {
      first = std::max(first, box_.begin.x - term.step);
      end = std::min(end, box_.end.x - term.step + 1);
      weights = ZUMWrapAdd(weights, term.weight);
    }
    if (!is_box_ || lines_.empty() || first >= end) first = end = x + n;
    for (std::int64_t i = x; i < first; ++i) r[i - x] = MeanAt(i);
    if (first < end) WriteWhole(r + (first - x), first, end - first, weights);
    for (std::int64_t i = end; i < x + n; ++i) r[i - x] = MeanAt(i);
  }

  void FindLines(const ZUMRunPlace& at) {
    lines_.clear();
    for (std::size_t k = 0; k < terms->places.size(); ++k) {
      const ZUMBasePoint<int>& step = terms->places[k];
      ZUMBasePoint<int> p(box_.begin.x, 0, 0, 0);
      const auto move = [&](zuml_detail::Axis axis, int from) {
        const std::int64_t to = std::int64_t{from} + step.*axis;
        p.*axis = static_cast<int>(to);
        return box_.begin.*axis <= to && to <= box_.end.*axis;
      };
      if (move(zuml_detail::kY, at.y) && move(zuml_detail::kZ, at.z) &&
          move(zuml_detail::kT, at.t)) {
        lines_.push_back({&(*source)(p, at.c), p, step.x, terms->weights[k]});
      }
    }
  }

  OutT MeanAt(std::int64_t x) const {
    OutT sum = 0, weights = 0;
    bool reached = false;
    for (const LineTerm& term : lines_) {
      const std::int64_t from = x + term.step;
      if (from < box_.begin.x || from > box_.end.x) continue;
      if (!is_box_ && !source->InP(static_cast<int>(from), term.at.y, term.at.z, term.at.t)) {
        continue;
      }
      sum = ZUMWrapAdd(sum, zuml_detail::Weigh(term.weight, term.line[from - box_.begin.x]));
      weights = ZUMWrapAdd(weights, term.weight);
      reached = true;
    }
    if (!reached && unreached == zuml_detail::Unreached::kZero) return 0;
    return zuml_detail::Divide(sum, weights);
  }

  // n means from x on, of all terms.
  void WriteWhole(OutT* r, std::int64_t x, std::ptrdiff_t n, OutT weights) {
    const std::int64_t offset = x - box_.begin.x;
    if constexpr (zuml_detail::kTruncates<OutT, InT>) {
      std::fill_n(r, n, OutT());
      for (const LineTerm& term : lines_) {
        const InT* const s = term.line + offset + term.step;
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          r[i] = ZUMWrapAdd(r[i], zuml_detail::Weigh(term.weight, s[i]));
        }
      }
    } else {
      pixels_.clear();
      weights_.clear();
      for (const LineTerm& term : lines_) {
        pixels_.push_back(reinterpret_cast<const T*>(term.line + offset + term.step));
        weights_.push_back(static_cast<T>(term.weight));
      }
      zuml_detail::SumRow<T>(reinterpret_cast<T*>(r),
                             {pixels_.data(), weights_.data(), weights_.size()}, n, false);
    }
    for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = zuml_detail::Divide(r[i], weights);
  }

  ZUMRect box_;
  bool is_box_ = true;
  std::vector<LineTerm> lines_;
  std::vector<const T*> pixels_;
  std::vector<T> weights_;
};

namespace zuml_detail {

template <class OutT, class InT>
ZUMImage<OutT> MakeClippedMeans(const ZUMImage<InT>& source, const PlacedTerms<OutT>& terms,
                                Unreached unreached) {
  if constexpr (!std::is_same_v<OutT, InT> && !kTruncates<OutT, InT>) {
    return MakeClippedMeans(static_cast<ZUMImage<OutT>>(source), terms, unreached);
  } else {
    const PlacedTerms<OutT> near = KeepNear(terms, source.Rect());
    using Task = CTaskSmoothEx<OutT, InT>;
    return ZUMRunTasks<Task, OutT>(source, source.GetCSz(), [&](Task& task) {
      task.source = &source;
      task.terms = &near;
      task.unreached = unreached;
    });
  }
}

#define ZUML_INSTANTIATE(IN)                                                                    \
  template ZUMImage<ZUMLong> MakeClippedMeans(const ZUMImage<IN>&, const PlacedTerms<ZUMLong>&, \
                                              Unreached);                                       \
  template ZUMImage<ZUMReal> MakeClippedMeans(const ZUMImage<IN>&, const PlacedTerms<ZUMReal>&, \
                                              Unreached);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

}  // namespace zuml_detail
