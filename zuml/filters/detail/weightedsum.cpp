#include "zuml/filters/detail/weightedsum.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "zuml/core/pixelarith.h"
#include "zuml/filters/detail/rowband.h"
#include "zuml/filters/detail/rowsum.h"

namespace zuml_detail {
namespace {

// The type in which sums are taken where source, weights and sums have the same one: its unsigned
// integer for `long`, whose sums wrap.
template <class OutT>
using SumType = std::conditional_t<std::is_same_v<OutT, ZUMLong>, std::uint32_t, WeightOf<OutT>>;

// How many numbers a pixel has.
template <class OutT>
constexpr std::ptrdiff_t kParts = std::is_same_v<OutT, ZUMComplex> ? 2 : 1;

template <class OutT, class InT>
constexpr bool kRoundsEachProduct = (std::is_same_v<OutT, ZUMLong> &&
                                     std::is_floating_point_v<InT>) ||
                                    (std::is_same_v<OutT, ZUMSReal> &&
                                     std::is_same_v<InT, ZUMReal>);

template <class InT>
constexpr bool kIsNarrow = std::is_integral_v<InT> && sizeof(InT) <= 2;

bool Fit16Bits(const std::vector<ZUMLong>& weights) {
  return std::all_of(weights.begin(), weights.end(), [](ZUMLong w) {
    return w >= std::numeric_limits<std::int16_t>::min() &&
           w <= std::numeric_limits<std::int16_t>::max();
  });
}

// The weights as 16-bit pairs; a term of weight 0 fills the last pair.
template <class InT>
void WriteSums16(const ZUMRoDRef& part, const ZUMImage<ZUMLong>& result,
                 const ZUMImage<InT>& source, Terms<ZUMLong> terms) {
  if (terms.offsets.size() % 2 != 0) terms.Add(terms.offsets.back(), 0);
  const std::vector<std::int16_t> weights(terms.weights.begin(), terms.weights.end());
  ForEachRowOfTerms<std::int16_t>(
      part, result, source, terms,
      [&](ZUMLong* r, const std::int16_t* const* pixels, std::ptrdiff_t n) {
        SumRow16(reinterpret_cast<std::uint32_t*>(r), pixels, weights.data(), weights.size(), n);
      });
}

// The pixels' numbers as an array of T; `scratch` holds the addresses where they are not that
// already.
template <class T, class S>
const T* const* NumbersOf(const S* const* pixels, std::vector<const T*>& scratch) {
  if constexpr (std::is_same_v<S, T>) {
    return pixels;
  } else {
    for (std::size_t k = 0; k < scratch.size(); ++k) {
      scratch[k] = reinterpret_cast<const T*>(pixels[k]);
    }
    return scratch.data();
  }
}

// The rules that round or truncate every product before it is added.
template <class OutT, class InT>
void WriteRoundedSums(const ZUMRoDRef& part, const ZUMImage<OutT>& result,
                      const ZUMImage<InT>& source, const Terms<OutT>& terms, bool onto) {
  const std::vector<InT> weights(terms.weights.begin(), terms.weights.end());
  ForEachRowOfTerms<InT>(
      part, result, source, terms, [&](OutT* r, const InT* const* pixels, std::ptrdiff_t n) {
        constexpr std::ptrdiff_t kBlock = 64;
        for (std::ptrdiff_t x = 0; x < n; x += kBlock) {
          const std::ptrdiff_t count = std::min(kBlock, n - x);
          OutT sums[kBlock];
          const auto add = [&](std::size_t k, const auto& to) {
            const InT* p = pixels[k] + x;
            const InT w = weights[k];
            for (std::ptrdiff_t i = 0; i < count; ++i) {
              to(sums[i], ZUMTruncate<OutT>(static_cast<double>(w * p[i])));
            }
          };
          std::size_t k = 0;
          if (onto) {
            std::copy_n(r + x, count, sums);
          } else {
            add(k++, [](OutT& sum, OutT product) { sum = product; });
          }
          for (; k < weights.size(); ++k) {
            add(k, [](OutT& sum, OutT product) { sum = ZUMWrapAdd(sum, product); });
          }
          std::copy_n(sums, count, r + x);
        }
      });
}

}  // namespace

template <class OutT, class InT>
void WriteWeightedSums(const ZUMRoDRef& part, const ZUMImage<OutT>& result,
                       const ZUMImage<InT>& source, const Terms<WeightOf<OutT>>& terms, bool onto) {
  using T = SumType<OutT>;
  if (terms.offsets.empty()) {
    if (onto) return;
    ZUMForEachRun(
        part, [](OutT* r, std::ptrdiff_t n) { std::fill_n(r, n, OutT()); }, result);
    return;
  }
  if constexpr (kRoundsEachProduct<OutT, InT>) {
    WriteRoundedSums(part, result, source, terms, onto);
  } else {
    if constexpr (std::is_same_v<OutT, ZUMLong> && kIsNarrow<InT>) {
      if (!onto && Fit16Bits(terms.weights)) return WriteSums16(part, result, source, terms);
    }
    const std::vector<T> weights(terms.weights.begin(), terms.weights.end());
    std::vector<const T*> scratch(weights.size());
    using S = std::conditional_t<std::is_same_v<OutT, ZUMComplex>, ZUMComplex, T>;
    ForEachRowOfTerms<S>(part, result, source, terms,
                         [&](OutT* r, const S* const* pixels, std::ptrdiff_t n) {
                           SumRow<T>(reinterpret_cast<T*>(r),
                                     {NumbersOf(pixels, scratch), weights.data(), weights.size()},
                                     n * kParts<OutT>, onto);
                         });
  }
}

namespace {

// Whether all sums of two lists of weights over such pixels are integers that float holds. Floats
// are multiplied several times as fast as 32-bit integers by processors without AVX2.
template <class InT>
bool FitFloat(const std::vector<ZUMLong>& weights1, const std::vector<ZUMLong>& weights2) {
  constexpr double kExact = 16777216;  // 2^24
  const auto total = [](const std::vector<ZUMLong>& weights) {
    double sum = 0;
    for (const ZUMLong w : weights) sum += std::abs(static_cast<double>(w));
    return sum;
  };
  constexpr double kLargest = sizeof(InT) == 1 ? 255 : 32768;
  return kLargest * std::max(total(weights1), 1.0) * std::max(total(weights2), 1.0) <= kExact;
}

// The sums in type T.
template <class T, class OutT, class InT>
void RunSumsOfSums(const ZUMRoDRef& part, const ZUMImage<OutT>& result, const ZUMImage<InT>& source,
                   const Terms<OutT>& first, const Terms<OutT>& second) {
  constexpr bool kConvert = std::is_same_v<OutT, ZUMLong> && std::is_same_v<T, float>;
  const std::vector<T> weights1(first.weights.begin(), first.weights.end());
  const std::vector<T> weights2(second.weights.begin(), second.weights.end());
  const auto [low, high] = std::minmax_element(first.offsets.begin(), first.offsets.end());
  const long long begin = *low;
  const std::ptrdiff_t reach = static_cast<std::ptrdiff_t>(*high - *low);
  std::vector<const T*> pointers1(weights1.size());
  std::vector<const T*> pointers2(weights2.size());
  const long long line = source.GetLineSz();
  const Distance &d = first.distance, &e = second.distance;
  const Distance distance(d.x + e.x, d.y + e.y, d.z + e.z, d.t + e.t);

  ForEachStrip(part, CountLines(second.offsets, line), sizeof(T), [&](const ZUMRoDRef& strip) {
    RowBand<T> band(second.offsets, line, strip.RoDXSz());
    // A row of the first sums reaches as far beyond the strip as the second ones do on a line.
    const ScratchBlock<T> row =
        MakeScratch<T>(static_cast<std::size_t>(strip.RoDXSz() + line + reach));
    const auto fill = [&](T* to, const InT* from, std::ptrdiff_t n) {
      const T* pixels = row.get();
      if constexpr (std::is_same_v<T, InT>) {
        pixels = from + begin;
      } else {
        WidenRow(row.get(), from + begin, n + reach);
      }
      for (std::size_t k = 0; k < weights1.size(); ++k) {
        pointers1[k] = pixels + (first.offsets[k] - begin);
      }
      SumRow<T>(to, {pointers1.data(), weights1.data(), weights1.size()}, n, false);
    };
    ForEachDisplacedRun(
        strip,
        [&](const ZUMRunPlace&, OutT* r, const InT* s, std::ptrdiff_t n) {
          band.MoveTo(s, n, pointers2.data(), fill);
          T* const sums = kConvert ? row.get() : reinterpret_cast<T*>(r);
          SumRow<T>(sums, {pointers2.data(), weights2.data(), weights2.size()}, n, false);
          if constexpr (kConvert) {
            for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = static_cast<OutT>(sums[i]);
          }
        },
        result, source, distance);
  });
}

}  // namespace

template <class OutT, class InT>
void WriteSumsOfSums(const ZUMRoDRef& part, const ZUMImage<OutT>& result,
                     const ZUMImage<InT>& source, const Terms<OutT>& first,
                     const Terms<OutT>& second) {
  if constexpr (std::is_same_v<OutT, ZUMLong> && kIsNarrow<InT>) {
    if (FitFloat<InT>(first.weights, second.weights)) {
      return RunSumsOfSums<float>(part, result, source, first, second);
    }
  }
  RunSumsOfSums<SumType<OutT>>(part, result, source, first, second);
}

#define ZUML_INSTANTIATE(OUT, IN)                                                              \
  template void WriteWeightedSums(const ZUMRoDRef&, const ZUMImage<OUT>&, const ZUMImage<IN>&, \
                                  const Terms<WeightOf<OUT>>&, bool);
#define ZUML_INSTANTIATE_OUTPUTS(IN) \
  ZUML_INSTANTIATE(ZUMLong, IN)      \
  ZUML_INSTANTIATE(ZUMReal, IN)      \
  ZUML_INSTANTIATE(ZUMSReal, IN)
ZUML_ORDERED_TYPES(ZUML_INSTANTIATE_OUTPUTS)
ZUML_INSTANTIATE(ZUMComplex, ZUMComplex)
#undef ZUML_INSTANTIATE_OUTPUTS
#undef ZUML_INSTANTIATE

#define ZUML_INSTANTIATE(OUT, IN)                                                            \
  template void WriteSumsOfSums(const ZUMRoDRef&, const ZUMImage<OUT>&, const ZUMImage<IN>&, \
                                const Terms<OUT>&, const Terms<OUT>&);
#define ZUML_INSTANTIATE_OUTPUTS(IN) \
  ZUML_INSTANTIATE(ZUMLong, IN)      \
  ZUML_INSTANTIATE(ZUMReal, IN)
ZUML_DISCRETE_TYPES(ZUML_INSTANTIATE_OUTPUTS)
ZUML_INSTANTIATE(ZUMReal, ZUMReal)
#undef ZUML_INSTANTIATE_OUTPUTS
#undef ZUML_INSTANTIATE

}  // namespace zuml_detail
