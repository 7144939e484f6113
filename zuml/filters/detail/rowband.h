/// Displaced rows of a source for a filter that goes down the lines of its result.
#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <type_traits>
#include <vector>

#include "zuml/core/detail/pixelvalue.h"
#include "zuml/core/xqmemory.h"
#include "zuml/core/zumimage.h"
#include "zuml/filters/detail/weightedsum.h"

namespace zuml_detail {

/// The parts of the source's rows that a set of offsets reaches, in another pixel type or filtered:
/// each row is made once and kept while the result's next lines need it, in memory that stays in
/// the cache.
template <class S>
class RowBand {
 public:
  /// For results of at most `width` pixels a line, over a raster with lines of `line` pixels.
  RowBand(const std::vector<long long>& offsets, long long line, std::ptrdiff_t width)
      : line_(line), places_(offsets.size()) {
    std::vector<std::size_t> order(offsets.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return offsets[a] < offsets[b]; });
    std::ptrdiff_t longest = 0;
    for (const std::size_t k : order) {
      // Offsets with a wide gap between them are better served apart.
      constexpr long long kGap = 16;
      if (stretches_.empty() || offsets[k] > stretches_.back().last + kGap ||
          offsets[k] >= stretches_.back().first + line) {
        stretches_.push_back({offsets[k], offsets[k], kNone, stretches_.size()});
      }
      Stretch& stretch = stretches_.back();
      stretch.last = offsets[k];
      places_[k] = {stretches_.size() - 1, offsets[k] - stretch.first};
      longest = std::max(longest, static_cast<std::ptrdiff_t>(stretch.last - stretch.first));
    }
    for (Stretch& stretch : stretches_) {
      const auto below = std::find_if(stretches_.begin(), stretches_.end(), [&](const Stretch& s) {
        return s.first == stretch.first + line;
      });
      if (below != stretches_.end() && below->last - below->first >= stretch.last - stretch.first) {
        stretch.below = static_cast<std::size_t>(below - stretches_.begin());
      }
    }
    // Rows a large power of two apart would fall on the same lines of the cache.
    slot_size_ = static_cast<std::size_t>((width + longest + 63) / 64 * 64 + 80);
    pixels_ = MakeScratch<S>(slot_size_ * stretches_.size());
  }

  /// Sets pointers[k] to what goes with offset k of the line that begins at `start` in the source.
  /// fill(to, from, n) makes n pixels from those of the source at `from`.
  template <class InT, class Fill>
  void MoveTo(const InT* start, std::ptrdiff_t n, const S** pointers, const Fill& fill) {
    const bool down =
        start_ != nullptr && start == static_cast<const InT*>(start_) + line_ && n <= n_;
    taken_.assign(stretches_.size(), false);
    old_.clear();
    for (const Stretch& stretch : stretches_) old_.push_back(stretch.slot);
    const auto kept = [&](const Stretch& s) { return down && s.below != kNone; };
    for (Stretch& stretch : stretches_) {
      if (!kept(stretch)) continue;
      stretch.slot = old_[stretch.below];
      taken_[stretch.slot] = true;
    }
    std::size_t free = 0;
    for (Stretch& stretch : stretches_) {
      if (kept(stretch)) continue;
      while (taken_[free]) ++free;
      stretch.slot = free++;
      fill(SlotOf(stretch), start + stretch.first, n + (stretch.last - stretch.first));
    }
    for (std::size_t k = 0; k < places_.size(); ++k) {
      pointers[k] = SlotOf(stretches_[places_[k].stretch]) + places_[k].position;
    }
    start_ = start;
    n_ = n;
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  struct Stretch {
    long long first, last;  // offsets
    std::size_t below;      // the stretch that reads the same source pixels from one line above
    std::size_t slot;
  };
  struct Place {
    std::size_t stretch;
    long long position;
  };

  S* SlotOf(const Stretch& stretch) const { return pixels_.get() + stretch.slot * slot_size_; }

  long long line_;
  std::vector<Stretch> stretches_;
  std::vector<Place> places_;
  std::vector<std::size_t> old_;
  std::vector<bool> taken_;
  std::size_t slot_size_;
  ScratchBlock<S> pixels_;
  const void* start_ = nullptr;
  std::ptrdiff_t n_ = 0;
};

/// How many lines of a raster the offsets lie on, about.
inline long long CountLines(const std::vector<long long>& offsets, long long line) {
  const auto [low, high] = std::minmax_element(offsets.begin(), offsets.end());
  return std::min(static_cast<long long>(offsets.size()), (*high - *low) / std::max(line, 1LL) + 1);
}

/// Calls body(strip) for upright strips of the region, so narrow that `rows` rows of `bytes` a
/// pixel stay in the cache.
template <class Body>
void ForEachStrip(const ZUMRoDRef& part, long long rows, std::size_t bytes, Body&& body) {
  constexpr long long kCache = 262144;
  const long long width = std::max(512LL, kCache / (rows * static_cast<long long>(bytes)));
  if (part.EmptyP()) return;
  if (part.RoDXSz() <= width) return body(part);
  for (long long x = part.BeginX(); x <= part.EndX(); x += width) {
    ZUMRect box = part.Rect();
    box.begin.x = static_cast<int>(x);
    box.end.x = static_cast<int>(std::min<long long>(x + width - 1, part.EndX()));
    body(Intersection(part, box));
  }
}

/// n pixels in another type that holds their values.
template <class S, class InT>
void WidenRow(S* to, const InT* from, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = static_cast<S>(NumberAt(from, i));
}

/// Goes over the region in strips. For each line it calls row(r, pointers, n): the results from r
/// on, and for each offset of the terms the source's pixels as type S.
template <class S, class OutT, class InT, class W, class Row>
void ForEachRowOfTerms(const ZUMRoDRef& part, const ZUMImage<OutT>& result,
                       const ZUMImage<InT>& source, const Terms<W>& terms, const Row& row) {
  const std::vector<long long>& offsets = terms.offsets;
  constexpr bool kDirect = sizeof(S) == sizeof(InT) && !std::is_same_v<InT, bool> &&
                           std::is_integral_v<S> == std::is_integral_v<InT>;
  std::vector<const S*> pointers(offsets.size());
  ForEachStrip(part, CountLines(offsets, source.GetLineSz()), sizeof(S),
               [&](const ZUMRoDRef& strip) {
                 const auto run = [&](const auto& point) {
                   ForEachDisplacedRun(
                       strip,
                       [&](const ZUMRunPlace&, OutT* r, const InT* s, std::ptrdiff_t n) {
                         point(s, n);
                         row(r, pointers.data(), n);
                       },
                       result, source, terms.distance);
                 };
                 if constexpr (kDirect) {
                   run([&](const InT* s, std::ptrdiff_t) {
                     for (std::size_t k = 0; k < offsets.size(); ++k) {
                       pointers[k] = reinterpret_cast<const S*>(s + offsets[k]);
                     }
                   });
                 } else {
                   RowBand<S> band(offsets, source.GetLineSz(), strip.RoDXSz());
                   run([&](const InT* s, std::ptrdiff_t n) {
                     band.MoveTo(s, n, pointers.data(), WidenRow<S, InT>);
                   });
                 }
               });
}

}  // namespace zuml_detail
