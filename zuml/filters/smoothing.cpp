#include "zuml/filters/smoothing.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "zuml/algebra/division.h"
#include "zuml/algebra/statistics.h"
#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/filters/detail/boxrows.h"
#include "zuml/filters/detail/clippedmean.h"
#include "zuml/filters/detail/displacedruns.h"
#include "zuml/filters/detail/slidingsum.h"
#include "zuml/filters/detail/weightedsum.h"
#include "zuml/filters/detail/wholerows.h"

using zuml_detail::KernelFromOrigin;
using zuml_detail::PlacedTerms;
using zuml_detail::Terms;
using zuml_detail::Unreached;

namespace {

// Calls body(band) for bands of whole rows of a part, so low that sums over them stay in the cache.
template <class Body>
void ForEachBand(const ZUMRoDRef& part, const Body& body) {
  constexpr std::int64_t kRows = 128;
  if (!zuml_detail::IsBox(part) || part.EmptyP()) return body(part);
  for (std::int64_t y = part.BeginY(); y <= part.EndY(); y += kRows) {
    ZUMRect band = part.Rect();
    band.begin.y = static_cast<int>(y);
    band.end.y = static_cast<int>(std::min<std::int64_t>(y + kRows - 1, part.EndY()));
    body(ZUMRoDRef(band));
  }
}

// The sums in `result` become means. A sum of nothing but -0.0 counts as 0.0, as one from 0 is.
void Scale(const ZUMRoDRef& rod, const ZUMImage<ZUMReal>& result, double factor) {
  ZUMForEachRun(
      rod,
      [factor](ZUMReal* r, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = (r[i] + 0.0) * factor;
      },
      result);
}

/// What the tasks of means under a mask have in common.
template <class P>
class MeanTask : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<ZUMReal>* result;
  const ZUMImage<P>* source;
  const Terms<ZUMReal>* all;

  double Factor() const { return 1.0 / static_cast<double>(all->offsets.size()); }
};

}  // namespace

/// Each sum taken directly.
template <class P>
class CTaskSmooth final : public MeanTask<P> {
 public:
  int Cost() const { return static_cast<int>(this->all->offsets.size()); }

  void Run() override {
    ForEachBand(this->part, [this](const ZUMRoDRef& band) {
      zuml_detail::WriteWeightedSums(band, *this->result, *this->source, *this->all);
      Scale(band, *this->result, this->Factor());
    });
  }
};

/// Sums that slide along the rows.
template <class P>
class CTaskSmoothSC final : public MeanTask<P> {
 public:
  const Terms<ZUMReal>* changes;
  const ZUMRect* box;  // the mask's, if it is true all over its region

  int Cost() const { return static_cast<int>(changes->offsets.size()); }

  void Run() override {
    ForEachBand(this->part, [this](const ZUMRoDRef& band) {
      if constexpr (std::same_as<P, ZUMReal>) {
        zuml_detail::WriteSlidingSums(band, *this->result, *this->source, *this->all, *changes);
        Scale(band, *this->result, this->Factor());
      } else {
        WriteIntegerMeans(band);
      }
    });
  }

 private:
  static Terms<ZUMLong> ToLong(const Terms<ZUMReal>& terms) {
    return {terms.distance, terms.offsets, {terms.weights.begin(), terms.weights.end()}};
  }

  // Sums of integers are exact in any order.
  void WriteIntegerMeans(const ZUMRoDRef& band) {
    const ZUMImage<ZUMLong> sums(band, this->result->GetCSz(), nullptr);
    if (box) {
      zuml_detail::WriteBoxSums(band, sums, *this->source, *box);
    } else {
      zuml_detail::WriteSlidingSums(band, sums, *this->source, ToLong(*this->all),
                                    ToLong(*changes));
    }
    ZUMForEachRun(
        band,
        [factor = this->Factor()](ZUMReal* r, const ZUMLong* sum, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = sum[i] * factor;
        },
        *this->result, sums);
  }
};

namespace {

// The steps from `shift` on, each with the weight.
void AddSteps(Terms<ZUMReal>& terms, const ZUMDisplacementArray& steps, ZUMReal weight,
              long long shift = 0) {
  for (const long long step : steps) terms.Add(step + shift, weight);
}

// Whether sums of so many pixels fit in 32 bits.
template <class P>
bool SumsFit(std::size_t n) {
  if constexpr (std::integral<P> && sizeof(P) < sizeof(ZUMLong)) {
    constexpr std::int64_t kGreatest = std::same_as<P, ZUMShort>
                                           ? -std::int64_t{std::numeric_limits<P>::min()}
                                           : std::int64_t{std::numeric_limits<P>::max()};
    return static_cast<std::int64_t>(n) <= std::numeric_limits<ZUMLong>::max() / kGreatest;
  } else {
    return false;
  }
}

template <class P>
ZUMImage<ZUMReal> RunSliding(const ZUMImage<P>& image, const ZUMRoDRef& rod,
                             const Terms<ZUMReal>& all, const KernelFromOrigin<ZUMBool>& moved,
                             const ZUMImage<ZUMBool>& mask) {
  ZUMDisplacementArray out, in;
  out.FromNonZeroPixelsL2ROut(image, moved.pixels);
  in.FromNonZeroPixelsL2RIn(image, moved.pixels);
  Terms<ZUMReal> changes{all.distance, {}, {}};
  AddSteps(changes, out, -1);
  AddSteps(changes, in, 1, 1);
  const ZUMRect box = mask.Rect();
  const bool plane = box.begin.z == 0 && box.end.z == 0 && box.begin.t == 0 && box.end.t == 0;
  const bool filled = plane && zuml_detail::IsBox(mask) && zuml_detail::IsBox(rod) &&
                      static_cast<std::size_t>(mask.NPixels()) == all.offsets.size();
  using Task = CTaskSmoothSC<P>;
  return ZUMRunTasks<Task, ZUMReal>(rod, image.GetCSz(), [&](Task& task) {
    zuml_detail::KeepRowsWhole(task.part, rod);
    task.source = &image;
    task.all = &all;
    task.changes = &changes;
    task.box = filled ? &box : nullptr;
  });
}

template <class P>
ZUMImage<ZUMReal> RunDirect(const ZUMImage<P>& image, const ZUMRoDRef& rod,
                            const Terms<ZUMReal>& all) {
  using Task = CTaskSmooth<P>;
  return ZUMRunTasks<Task, ZUMReal>(rod, image.GetCSz(), [&](Task& task) {
    task.source = &image;
    task.all = &all;
  });
}

// A step of -INT_MIN stops at INT_MAX: neither reaches a pixel.
ZUMBasePoint<int> Mirror(const ZUMRunPlace& at, std::ptrdiff_t i) {
  const auto negate = [](std::int64_t a) { return zuml_detail::ToCoordinate(-a); };
  return {negate(at.x + i), negate(at.y), negate(at.z), negate(at.t)};
}

// The kernel's pixels as the places that they read. In a single row or column they lie where they
// are, elsewhere on the other side of the origin.
template <class OutT>
PlacedTerms<OutT> PlaceKernel(const ZUMImage<OutT>& kernel) {
  const ZUMRect box = kernel.Rect();
  const bool plane = box.begin.z == 0 && box.end.z == 0 && box.begin.t == 0 && box.end.t == 0;
  const bool line =
      plane && ((box.begin.x == 0 && box.end.x == 0) || (box.begin.y == 0 && box.end.y == 0));
  PlacedTerms<OutT> terms;
  ZUMForEachPlacedRun(
      kernel,
      [&](const ZUMRunPlace& at, const OutT* w, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          if (line) {
            terms.Add({at.x + static_cast<int>(i), at.y, 0, 0}, w[i]);
          } else if (w[i] != 0) {
            terms.Add(Mirror(at, i), w[i]);
          }
        }
      },
      kernel);
  return terms;
}

}  // namespace

template <std::same_as<ZUMLong> OutT, ZUMScalarPixel InT>
ZUMImage<OutT> ZUMSmooth(const ZUMImage<InT>& image) {
  if constexpr (std::same_as<InT, ZUMReal>) {
    return ZUMSmooth(static_cast<ZUMImage<ZUMLong>>(image));
  } else {
    static constexpr ZUMLong kBinomial[] = {1, 2, 1};
    const ZUMImage<ZUMLong> none;
    const ZUMImage<ZUMLong> x(ZUMRect(-1, 0, 0, 0, 1, 0, 0, 0), 1, kBinomial);
    const ZUMImage<ZUMLong> y(ZUMRect(0, -1, 0, 0, 0, 1, 0, 0), 1, kBinomial);
    return ZUMCorr(image, ZUMKernel<ZUMLong>(x, y, none, none));
  }
}

template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT> ZUMImage<OutT> ZUMSmooth(const ZUMImage<InT>& image,
                                                           const ZUMImage<OutT>& kernel) {
  return ZUMCorr(image, kernel) / ZUMSum<OutT>(kernel);
}

template <ZUMScalarPixel PixT>
ZUMImage<ZUMReal> ZUMSmooth(const ZUMImage<PixT>& image, const ZUMImage<ZUMBool>& mask) {
  if (mask.GetCSz() != 1) throw XQException("ZUMSmooth only allows a mask with one channel");
  const ZUMRoDRef rod = zuml_detail::MakeDirectRegion(image, mask.Rect());
  const KernelFromOrigin<ZUMBool> moved(mask);
  ZUMDisplacementArray steps, entering;
  steps.FromNonZeroPixels(image, zuml_detail::NeededPart(moved.pixels, rod));
  if (rod.EmptyP()) return ZUMImage<ZUMReal>(rod, image.GetCSz(), nullptr);
  entering.FromNonZeroPixelsL2RIn(image, moved.pixels);
  Terms<ZUMReal> all{moved.GetDistance(), {}, {}};
  AddSteps(all, steps, 1);
  if (steps.GetLength() <= 2 * entering.GetLength()) return RunDirect(image, rod, all);
  if constexpr (!std::same_as<PixT, ZUMReal>) {
    // In `double`, wider sums of integers are exact as well.
    if (!SumsFit<PixT>(steps.GetLength())) {
      const ZUMImage<ZUMReal> wide = image;
      return ZUMSmooth(wide, mask);
    }
  }
  return RunSliding(image, rod, all, moved, mask);
}

template <class OutT, class InT>
requires ZUMCorrPixels<OutT, InT> ZUMImage<OutT> ZUMSmoothEx(const ZUMImage<InT>& image,
                                                             const ZUMImage<OutT>& kernel) {
  if (kernel.GetCSz() != 1) throw XQException("ZUMSmooth: Multichannel kernels are not allowed");
  return zuml_detail::MakeClippedMeans(image, PlaceKernel(kernel), Unreached::kQuotient);
}

template <ZUMScalarPixel PixT>
ZUMImage<ZUMReal> ZUMSmoothEx(const ZUMImage<PixT>& image, const ZUMImage<ZUMBool>& mask) {
  if (mask.GetCSz() != 1) {
    throw XQException("ZUMSmoothEx only allows a mask with one or two channels");
  }
  PlacedTerms<ZUMReal> terms;
  ZUMForEachPlacedRun(
      mask,
      [&](const ZUMRunPlace& at, const ZUMBool* m, std::ptrdiff_t n) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
          if (zuml_detail::ValueAt(m, i)) terms.Add(Mirror(at, i), 1.0);
        }
      },
      mask);
  return zuml_detail::MakeClippedMeans(image, terms, Unreached::kZero);
}

#define ZUML_INSTANTIATE(IN)                                                                      \
  template ZUML_API ZUMImage<ZUMLong> ZUMSmooth<ZUMLong>(const ZUMImage<IN>&);                    \
  template ZUML_API ZUMImage<ZUMLong> ZUMSmooth(const ZUMImage<IN>&, const ZUMImage<ZUMLong>&);   \
  template ZUML_API ZUMImage<ZUMReal> ZUMSmooth(const ZUMImage<IN>&, const ZUMImage<ZUMReal>&);   \
  template ZUML_API ZUMImage<ZUMReal> ZUMSmooth(const ZUMImage<IN>&, const ZUMImage<ZUMBool>&);   \
  template ZUML_API ZUMImage<ZUMLong> ZUMSmoothEx(const ZUMImage<IN>&, const ZUMImage<ZUMLong>&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMSmoothEx(const ZUMImage<IN>&, const ZUMImage<ZUMReal>&); \
  template ZUML_API ZUMImage<ZUMReal> ZUMSmoothEx(const ZUMImage<IN>&, const ZUMImage<ZUMBool>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
