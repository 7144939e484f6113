#include "zuml/filters/detail/boxrows.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "zuml/core/xqmemory.h"
#include "zuml/filters/detail/displacedruns.h"
#include "zuml/filters/detail/rowband.h"
#include "zuml/filters/detail/rowsum.h"

namespace zuml_detail {
namespace {

// r[i] = sum + (in[0] - out[0]) + ... + (in[i] - out[i]), four at a time.
void WriteRunningRow(std::uint32_t* r, const std::uint32_t* in, const std::uint32_t* out,
                     std::ptrdiff_t n, std::uint32_t sum) {
  using V = Vector<std::uint32_t, 16>;
  const V zeros = {};
  V before = zeros + sum;
  std::ptrdiff_t i = 0;
  for (; n - i >= 4; i += 4) {
    V v = LoadVector<V>(in + i) - LoadVector<V>(out + i);
    v += __builtin_shufflevector(zeros, v, 0, 4, 5, 6);
    v += __builtin_shufflevector(zeros, v, 0, 1, 4, 5);
    v += before;
    StoreVector(r + i, v);
    before = __builtin_shufflevector(v, v, 3, 3, 3, 3);
  }
  sum = before[0];
  for (; i < n; ++i) r[i] = sum += in[i] - out[i];
}

// To the box's first pixel, in the plane.
Distance MakeDistance(const ZUMRect& box) { return {box.begin.x, box.begin.y}; }

template <class InT>
void WriteRunningSums(const ZUMRoDRef& part, const ZUMImage<ZUMLong>& result,
                      const ZUMImage<InT>& source, const ZUMRect& box) {
  const std::ptrdiff_t line = source.GetLineSz();
  const std::ptrdiff_t width = SizeOf(box, kX), height = SizeOf(box, kY);
  const std::ptrdiff_t reach = part.RoDXSz() + width - 1;
  const ScratchBlock<std::uint32_t> columns =
      MakeScratch<std::uint32_t>(static_cast<std::size_t>(reach + 1));
  // At a row's first pixel no column leaves.
  columns[0] = 0;
  std::uint32_t* const c = columns.get() + 1;
  ForEachDisplacedRun(
      part,
      [&](const ZUMRunPlace& place, ZUMLong* r, const InT* s, std::ptrdiff_t n) {
        if (place.y == part.BeginY()) {
          std::fill_n(c, reach, 0u);
          for (std::ptrdiff_t dy = 0; dy < height; ++dy) {
            const InT* const p = s + dy * line;
            for (std::ptrdiff_t i = 0; i < reach; ++i) {
              c[i] += static_cast<std::uint32_t>(NumberAt(p, i));
            }
          }
        } else {
          const InT* const in = s + (height - 1) * line;
          const InT* const out = s - line;
          for (std::ptrdiff_t i = 0; i < reach; ++i) {
            c[i] += static_cast<std::uint32_t>(NumberAt(in, i)) -
                    static_cast<std::uint32_t>(NumberAt(out, i));
          }
        }
        std::uint32_t sum = 0;
        for (std::ptrdiff_t i = 0; i < width - 1; ++i) sum += c[i];
        WriteRunningRow(reinterpret_cast<std::uint32_t*>(r), c + width - 1, c - 1, n, sum);
      },
      result, source, MakeDistance(box));
}

// sums[K] += v for kFirst <= K < kLast. Constant indices, without which the sums would live in
// memory.
template <std::size_t kFirst, std::size_t kLast, std::size_t N, class V>
[[gnu::always_inline]] inline void AddTo(V (&sums)[N], V v) {
  [&]<std::size_t... K>(std::index_sequence<K...>) { ((sums[kFirst + K] += v), ...); }
  (std::make_index_sequence<kLast - kFirst>());
}

// N sums of `length` terms: load(0), load(1) and so on for the first, and for each further one
// from kStep terms behind on. Each term is loaded once for all sums, and each sum takes its terms
// in their order. A sum has more than (N - 1) kStep terms.
template <std::size_t kStep, std::size_t N, class V, class Load>
[[gnu::always_inline]] inline void SumWindows(V (&sums)[N], std::ptrdiff_t length,
                                              const Load& load) {
  constexpr std::size_t kOpening = (N - 1) * kStep;
  const auto at = [&](std::ptrdiff_t begin, std::size_t j) {
    return load(begin + static_cast<std::ptrdiff_t>(j));
  };
  const auto open = [&]<std::size_t J>(std::integral_constant<std::size_t, J>) {
    const V v = at(0, J);
    AddTo<0, (J + kStep - 1) / kStep>(sums, v);
    if constexpr (J % kStep == 0) sums[J / kStep] = v;
  };
  [&]<std::size_t... J>(std::index_sequence<J...>) {
    (open(std::integral_constant<std::size_t, J>()), ...);
  }
  (std::make_index_sequence<kOpening + 1>());
  for (std::ptrdiff_t j = kOpening + 1; j < length; ++j) AddTo<0, N>(sums, load(j));
  [&]<std::size_t... J>(std::index_sequence<J...>) {
    (AddTo<J / kStep + 1, N>(sums, at(length, J)), ...);
  }
  (std::make_index_sequence<kOpening>());
}

using Doubles = Vector<double>;
constexpr std::ptrdiff_t kLanes = VectorOf<double>::kLanes;

// A real pixel is one number, a complex one two.
template <class P>
constexpr int kNumbers = sizeof(P) / sizeof(double);

// As many rows of results are made at once, if windows are not shorter.
constexpr int kGroup = 8;

// The results from r[x] on that fill blocks of N vectors: r[i] = s[i] + ..., `length` pixels of
// kStep numbers each. Returns where the rest begins.
template <int N, int kStep>
std::ptrdiff_t SumAlongRow(double* r, const double* s, std::ptrdiff_t x, std::ptrdiff_t n,
                           std::ptrdiff_t length) {
  constexpr int kDistance = std::max<int>(kLanes / kStep, 1);
  if (length <= (N - 1) * kDistance) return x;
  for (; n - x >= N * kLanes; x += N * kLanes) {
    Doubles sums[N];
    SumWindows<kDistance>(sums, length,
                          [&](std::ptrdiff_t j) { return LoadVector<Doubles>(s + x + j * kStep); });
    for (int k = 0; k < N; ++k) StoreVector(r + x + k * kLanes, sums[k]);
  }
  return x;
}

// The same for N results across rows: r[k][i] = rows[k][i] + ..., `length` rows.
template <int N>
std::ptrdiff_t SumAcrossRows(double* const* r, const double* const* rows, std::ptrdiff_t n,
                             std::ptrdiff_t length) {
  std::ptrdiff_t x = 0;
  for (; n - x >= kLanes; x += kLanes) {
    Doubles sums[N];
    SumWindows<1>(sums, length, [&](std::ptrdiff_t j) { return LoadVector<Doubles>(rows[j] + x); });
    for (int k = 0; k < N; ++k) StoreVector(r[k] + x, sums[k]);
  }
  return x;
}

// Sums over windows of a row and of several rows. The addresses and weights of terms are kept for
// what fills no block.
class WindowSums {
 public:
  explicit WindowSums(std::ptrdiff_t longest)
      : pixels_(static_cast<std::size_t>(longest)), ones_(pixels_.size(), 1.0) {}

  // The sums of n numbers, over `length` pixels of kStep numbers each.
  template <int kStep>
  void AlongRow(double* r, const double* s, std::ptrdiff_t n, std::ptrdiff_t length) {
    std::ptrdiff_t x = SumAlongRow<4, kStep>(r, s, 0, n, length);
    x = SumAlongRow<2, kStep>(r, s, x, n, length);
    Rest(r, x, n, length, [&](std::ptrdiff_t j) { return s + j * kStep; });
  }

  // The sums of `count` results of n numbers, over `length` rows from rows[k] on for result k.
  void AcrossRows(double* const* r, const double* const* rows, std::ptrdiff_t count,
                  std::ptrdiff_t n, std::ptrdiff_t length) {
    const bool group = count == kGroup && length >= kGroup;
    const std::ptrdiff_t x = group ? SumAcrossRows<kGroup>(r, rows, n, length) : 0;
    for (std::ptrdiff_t k = 0; k < count; ++k) {
      Rest(r[k], x, n, length, [&](std::ptrdiff_t j) { return rows[k + j]; });
    }
  }

 private:
  // The results from r[x] on, of terms that begin at term(j) for r[0].
  template <class Term>
  void Rest(double* r, std::ptrdiff_t x, std::ptrdiff_t n, std::ptrdiff_t length,
            const Term& term) {
    if (x == n) return;
    for (std::ptrdiff_t j = 0; j < length; ++j) {
      pixels_[static_cast<std::size_t>(j)] = term(j) + x;
    }
    SumRow<double>(r + x, {pixels_.data(), ones_.data(), static_cast<std::size_t>(length)}, n - x,
                   false);
  }

  std::vector<const double*> pixels_;
  std::vector<double> ones_;
};

// The rows' sums are made as the columns need them, in memory that stays in the cache, and several
// rows of results at a time.
template <class P>
void WriteOrderedSums(const ZUMRoDRef& part, const ZUMImage<P>& result, const ZUMImage<P>& source,
                      const ZUMRect& box) {
  const std::ptrdiff_t width = SizeOf(box, kX), height = SizeOf(box, kY);
  const std::ptrdiff_t line = source.GetLineSz() * kNumbers<P>;
  const std::ptrdiff_t group = height >= kGroup ? kGroup : 1, slots = height + group - 1;
  WindowSums windows(std::max(width, height));
  ForEachStrip(part, slots, sizeof(P), [&](const ZUMRoDRef& strip) {
    const std::ptrdiff_t n = strip.RoDXSz() * kNumbers<P>;
    // Rows a large power of two apart would fall on the same lines of the cache.
    const std::ptrdiff_t slot_size = (n + 63) / 64 * 64 + 80;
    const auto scratch = MakeScratch<double>(static_cast<std::size_t>(slots * slot_size));
    std::vector<const double*> rows;
    std::ptrdiff_t made = 0;
    const auto make = [&](const double* s) {
      if (width > 1) {
        double* const sums = scratch.get() + made++ % slots * slot_size;
        windows.AlongRow<kNumbers<P>>(sums, s, n, width);
        s = sums;
      }
      rows.push_back(s);
    };
    double* results[kGroup];
    std::ptrdiff_t count = 0;
    ForEachDisplacedRun(
        strip,
        [&](const ZUMRunPlace& place, P* to, const P* from, std::ptrdiff_t) {
          double* const r = reinterpret_cast<double*>(to);
          const double* const s = reinterpret_cast<const double*>(from);
          if (height == 1) return windows.AlongRow<kNumbers<P>>(r, s, n, width);
          if (place.y == strip.BeginY()) {
            rows.clear();
            for (std::ptrdiff_t dy = 0; dy < height - 1; ++dy) make(s + dy * line);
          }
          make(s + (height - 1) * line);
          results[count++] = r;
          if (count < group && place.y != strip.EndY()) return;
          windows.AcrossRows(results, rows.data(), count, n, height);
          rows.erase(rows.begin(), rows.begin() + count);
          count = 0;
        },
        result, source, MakeDistance(box));
  });
}

}  // namespace

template <class OutT, class InT>
void WriteBoxSums(const ZUMRoDRef& part, const ZUMImage<OutT>& result, const ZUMImage<InT>& source,
                  const ZUMRect& box) {
  if (part.EmptyP()) return;
  if constexpr (std::is_same_v<OutT, ZUMLong>) {
    WriteRunningSums(part, result, source, box);
  } else {
    WriteOrderedSums(part, result, source, box);
  }
}

#define ZUML_INSTANTIATE(OUT, IN)                                                         \
  template void WriteBoxSums(const ZUMRoDRef&, const ZUMImage<OUT>&, const ZUMImage<IN>&, \
                             const ZUMRect&);
#define ZUML_INSTANTIATE_LONG(IN) ZUML_INSTANTIATE(ZUMLong, IN)
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE_LONG)
ZUML_INSTANTIATE(ZUMReal, ZUMReal)
ZUML_INSTANTIATE(ZUMComplex, ZUMComplex)
#undef ZUML_INSTANTIATE_LONG
#undef ZUML_INSTANTIATE

}  // namespace zuml_detail
