#include "zuml/filters/rank.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/foreachrun.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/filters/detail/displacedruns.h"
#include "zuml/filters/detail/rankbits.h"
#include "zuml/filters/detail/selection.h"
#include "zuml/filters/detail/selectionnetwork.h"

namespace {

/// A mask on one source: all its pixels, those that enter when it moves one pixel to the right, and
/// those that leave.
struct Mask {
  ZUMDisplacementArray all, in, out;
  zuml_detail::Distance distance;  // from which the steps count
};

/// Up to this many values are selected by a network: sorting them costs less than keeping counts.
constexpr std::size_t kMostInNetwork = 64;

/// What the tasks have in common.
template <class P>
class RankTask : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<P>* result;
  const ZUMImage<P>* source;
  const Mask* mask;
  std::int64_t k;

 protected:
  // Calls body(r, x, n) for each run of the part: the result's pixels from r on, and the source's
  // from which the steps count.
  template <class Body>
  void ForEachRun(const Body& body) const {
    zuml_detail::ForEachDisplacedRun(
        part, [&](const ZUMRunPlace&, P* r, const P* x, std::ptrdiff_t n) { body(r, x, n); },
        *result, *source, mask->distance);
  }

  // Selects by a network if the mask is small; whether it did.
  bool SelectByNetwork() {
    const std::size_t n = mask->all.GetLength();
    if (n > kMostInNetwork) return false;
    const zuml_detail::SelectionNetwork network(static_cast<int>(n), static_cast<int>(k));
    SelectSideBySide<zuml_detail::SelectionNetwork::kWidth<P>>(
        [&](P* values, P* to) { network.Select(values, to); });
    return true;
  }

  // Selects bit by bit, unless the mask is larger than counts of the pixel's width.
  bool SelectByBits() {
    const std::size_t n = mask->all.GetLength();
    if (n > std::numeric_limits<ZUMShort>::max()) return false;
    SelectSideBySide<zuml_detail::kRankWidth<P>>([&](P* values, P* to) {
      zuml_detail::SelectByBits(values, static_cast<std::ptrdiff_t>(n), k, to);
    });
    return true;
  }

  // The values under the mask collected at each pixel.
  void SelectEach() {
    ForEachRun([this](P* r, const P* x, std::ptrdiff_t n) { SelectEach(r, x, n); });
  }

 private:
  // Calls select(values, to) for kWidth pixels at a time: row j of `values` has the j-th value of
  // each.
  template <std::ptrdiff_t kWidth, class Select>
  void SelectSideBySide(const Select& select) {
    const auto values =
        zuml_detail::MakeScratch<P>(mask->all.GetLength() * static_cast<std::size_t>(kWidth));
    P selected[kWidth];
    ForEachRun([&](P* r, const P* x, std::ptrdiff_t count) {
      for (std::ptrdiff_t i = 0; i < count; i += kWidth) {
        const std::ptrdiff_t width = std::min(kWidth, count - i);
        P* row = values.get();
        for (const long long offset : mask->all) {
          const P* const from = x + i + offset;
          std::copy_n(from, width, row);
          std::fill(row + width, row + kWidth, from[width - 1]);
          row += kWidth;
        }
        if (!HasTotalOrder(values.get(), row)) {
          SelectEach(r + i, x + i, width);
        } else {
          select(values.get(), selected);
          std::copy_n(selected, width, r + i);
        }
      }
    });
  }

  // Whether `<` alone tells the order: not of NaNs, nor of zeros of both signs.
  static bool HasTotalOrder(const P* values, const P* end) {
    if constexpr (std::floating_point<P>) {
      bool total = true;
      for (; values != end; ++values)
        total &= *values == *values && !(*values == 0 && std::signbit(*values));
      return total;
    } else {
      return true;
    }
  }

  void SelectEach(P* r, const P* x, std::ptrdiff_t n) {
    if (collected_.get() == nullptr) {
      collected_ = zuml_detail::MakeScratch<P>(mask->all.GetLength());
    }
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      P* v = collected_.get();
      for (const long long offset : mask->all) *v++ = x[i + offset];
      r[i] = zuml_detail::SelectRank(collected_.get(), v - collected_.get(),
                                     static_cast<std::ptrdiff_t>(k));
    }
  }

  zuml_detail::ScratchBlock<P> collected_;
};

template <class P>
class SelectingTask : public RankTask<P> {
 public:
  int Cost() const { return static_cast<int>(4 * this->mask->all.GetLength()); }

  void Run() override {
    if (!this->SelectByNetwork() && !this->SelectByBits()) this->SelectEach();
  }
};

}  // namespace

template <class P>
class CTaskRankOrder final : public SelectingTask<P> {};
template <class P>
class CTaskMedian final : public SelectingTask<P> {};

/// A count of false pixels that slides along the rows.
class CTaskRankOrderBool final : public RankTask<ZUMBool> {
 public:
  int Cost() const { return static_cast<int>(2 * mask->in.GetLength()); }

  void Run() override {
    ForEachRun([this](ZUMBool* r, const ZUMBool* x, std::ptrdiff_t n) {
      const auto count = [&](const ZUMDisplacementArray& steps, std::ptrdiff_t i) {
        std::int64_t falses = 0;
        for (const long long offset : steps) falses += !zuml_detail::ValueAt(x, i + offset);
        return falses;
      };
      std::int64_t falses = count(mask->all, 0);
      r[0] = falses <= k;
      for (std::ptrdiff_t i = 1; i < n; ++i) {
        falses += count(mask->in, i) - count(mask->out, i - 1);
        r[i] = falses <= k;
      }
    });
  }
};

/// A histogram that slides along the rows, with the level of the rank and the count below it.
class CTaskRankOrderByte final : public RankTask<ZUMByte> {
 public:
  int Cost() const { return static_cast<int>(2 * mask->in.GetLength()); }

  void Run() override {
    if (SelectByNetwork()) return;
    ForEachRun([this](ZUMByte* r, const ZUMByte* x, std::ptrdiff_t n) {
      std::fill(std::begin(histogram_), std::end(histogram_), 0);
      for (const long long offset : mask->all) ++histogram_[x[offset]];
      level_ = 0;
      below_ = 0;
      r[0] = FindLevel();
      for (std::ptrdiff_t i = 1; i < n; ++i) {
        for (const long long offset : mask->out) {
          const int value = x[i - 1 + offset];
          --histogram_[value];
          below_ -= value < level_;
        }
        for (const long long offset : mask->in) {
          const int value = x[i + offset];
          ++histogram_[value];
          below_ += value < level_;
        }
        r[i] = FindLevel();
      }
    });
  }

 private:
  ZUMByte FindLevel() {
    while (below_ + histogram_[level_] <= k) below_ += histogram_[level_++];
    while (below_ > k) below_ -= histogram_[--level_];
    return static_cast<ZUMByte>(level_);
  }

  int histogram_[256];
  int level_;
  std::int64_t below_;  // how many values lie below the level
};

namespace {

void RequireOneChannel(const char* operation, const ZUMImage<ZUMBool>& mask) {
  if (mask.GetCSz() != 1) {
    throw XQException("%s: Multichannel mask elements are not allowed", operation);
  }
}

template <class P>
void RequirePercentile(double p) {
  const bool inside = std::same_as<P, ZUMBool> ? p > 0 && p < 101 : p >= 0 && p <= 100;
  if (!inside) throw XQException("ZUMRankOrder: the percentile is out of domain [0..100]");
}

std::int64_t RankOf(std::size_t n, double percentile) {
  return static_cast<std::int64_t>(static_cast<double>(n) * percentile * 0.01 - 0.5);
}

template <class Task, class P, class Rank>
ZUMImage<P> RunFilter(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& element,
                      const Rank& rank) {
  const ZUMRoDRef rod = zuml_detail::MakeDirectRegion(image, element.Rect());
  const zuml_detail::KernelFromOrigin<ZUMBool> moved(element);
  Mask mask;
  mask.all.FromNonZeroPixels(image, zuml_detail::NeededPart(moved.pixels, rod));
  if (rod.EmptyP()) return ZUMImage<P>(rod, image.GetCSz(), nullptr);
  mask.in.FromNonZeroPixelsL2RIn(image, moved.pixels);
  mask.out.FromNonZeroPixelsL2ROut(image, moved.pixels);
  mask.distance = moved.GetDistance();
  const std::int64_t k = rank(mask.all.GetLength());
  return ZUMRunTasks<Task, P>(rod, image.GetCSz(), [&](Task& task) {
    task.source = &image;
    task.mask = &mask;
    task.k = k;
  });
}

// The value at the index rank(N) of all N pixels.
template <class P, class Rank>
P SelectFrom(const char* operation, const ZUMImage<P>& image, const Rank& rank) {
  const auto n =
      static_cast<std::size_t>(image.NPixels()) * static_cast<std::size_t>(image.GetCSz());
  if (n == 0) throw XQException("%s: empty image is not allowed", operation);
  using S = zuml_detail::Stored<P>;
  const auto values = zuml_detail::MakeScratch<S>(n);
  S* v = values.get();
  ZUMForEachRun(
      image,
      [&v](const P* x, std::ptrdiff_t count) {
        for (std::ptrdiff_t i = 0; i < count; ++i) *v++ = zuml_detail::NumberAt(x, i);
      },
      image);
  return static_cast<P>(zuml_detail::SelectRank(values.get(), static_cast<std::ptrdiff_t>(n),
                                                static_cast<std::ptrdiff_t>(rank(n))));
}

template <class P>
struct RankTaskOf {
  using Type = CTaskRankOrder<P>;
};
template <>
struct RankTaskOf<ZUMBool> {
  using Type = CTaskRankOrderBool;
};
template <>
struct RankTaskOf<ZUMByte> {
  using Type = CTaskRankOrderByte;
};

}  // namespace

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMRankOrder(const ZUMImage<PixT>& image, const ZUMImage<ZUMBool>& mask,
                            double percentile) {
  RequireOneChannel("ZUMRankOrder", mask);
  RequirePercentile<PixT>(percentile);
  return RunFilter<typename RankTaskOf<PixT>::Type>(
      image, mask, [=](std::size_t n) { return RankOf(n, percentile); });
}

template <ZUMGreyPixel PixT>
PixT ZUMRankOrder(const ZUMImage<PixT>& image, double percentile) {
  RequirePercentile<PixT>(percentile);
  return SelectFrom("ZUMRankOrder", image, [=](std::size_t n) { return RankOf(n, percentile); });
}

template <ZUMScalarPixel PixT>
ZUMImage<PixT> ZUMMedian(const ZUMImage<PixT>& image, const ZUMImage<ZUMBool>& mask) {
  RequireOneChannel("ZUMMedian", mask);
  if constexpr (std::same_as<PixT, ZUMBool> || std::same_as<PixT, ZUMByte>) {
    return ZUMRankOrder(image, mask, 50.0);
  } else {
    return RunFilter<CTaskMedian<PixT>>(
        image, mask, [](std::size_t n) { return static_cast<std::int64_t>((n - 1) / 2); });
  }
}

template <ZUMScalarPixel PixT>
PixT ZUMMedian(const ZUMImage<PixT>& image) {
  return SelectFrom("ZUMMedian", image,
                    [](std::size_t n) { return static_cast<std::int64_t>((n - 1) / 2); });
}

#define ZUML_INSTANTIATE(PIX)                                                                  \
  template ZUML_API ZUMImage<PIX> ZUMRankOrder(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, \
                                               double);                                        \
  template ZUML_API ZUMImage<PIX> ZUMMedian(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&);   \
  template ZUML_API PIX ZUMMedian(const ZUMImage<PIX>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(PIX) template ZUML_API PIX ZUMRankOrder(const ZUMImage<PIX>&, double);
ZUML_GREY_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
